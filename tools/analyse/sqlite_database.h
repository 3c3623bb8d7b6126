#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace orvelin::tools {

class DatabaseError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// An SQLite file. One thread at a time. All functions throw DatabaseError, with the file's name,
/// when something fails.
class Database {
 public:
    /// Opens the file, and makes it where there is none. What another process has locked is waited
    /// for, for so long.
    explicit Database(std::string const& name, int wait_milliseconds);
    ~Database();
    Database(Database const&) = delete;
    Database& operator=(Database const&) = delete;

    /// Runs statements that give nothing.
    void run(char const* statements);
    sqlite3* handle() const { return handle_; }
    std::string const& name() const { return name_; }
    [[noreturn]] void fail() const;

 private:
    std::string name_;
    sqlite3* handle_ = nullptr;
};

/// A statement that is made ready once. Values are bound from the first parameter on; a bound text
/// must live until step() has returned.
class Statement {
 public:
    Statement(Database& database, std::string const& text);
    ~Statement();
    Statement(Statement const&) = delete;
    Statement& operator=(Statement const&) = delete;

    Statement& bind(std::int64_t value);
    Statement& bind(double value);
    Statement& bind(std::string_view text);
    Statement& bind_null();
    /// True when there is a row. When there is none, the statement can be bound anew.
    bool step();
    /// Ends a statement that has rows left.
    void reset();

    std::int64_t number(int column) const;
    double real(int column) const;
    std::string text(int column) const;
    bool is_null(int column) const;
    int columns() const;

 private:
    void check(int code) const;

    Database& database_;
    sqlite3_stmt* statement_ = nullptr;
    int bound_ = 0;
};

}  // namespace orvelin::tools
