#include "analyse/sqlite_database.h"

#include <sqlite3.h>

namespace orvelin::tools {

Database::Database(std::string const& name, int wait_milliseconds) : name_(name) {
    int const code = sqlite3_open_v2(name.c_str(), &handle_,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (code != SQLITE_OK) {
        std::string const reason = sqlite3_errstr(code);
        sqlite3_close(handle_);
        throw DatabaseError(name_ + ": " + reason);
    }
    sqlite3_busy_timeout(handle_, wait_milliseconds);
}

Database::~Database() {
    sqlite3_close(handle_);
}

void Database::run(char const* statements) {
    if (sqlite3_exec(handle_, statements, nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail();
    }
}

void Database::fail() const {
    throw DatabaseError(name_ + ": " + sqlite3_errmsg(handle_));
}

Statement::Statement(Database& database, std::string const& text) : database_(database) {
    check(sqlite3_prepare_v2(database.handle(), text.c_str(), -1, &statement_, nullptr));
}

Statement::~Statement() {
    sqlite3_finalize(statement_);
}

void Statement::check(int code) const {
    if (code != SQLITE_OK) {
        database_.fail();
    }
}

Statement& Statement::bind(std::int64_t value) {
    check(sqlite3_bind_int64(statement_, ++bound_, value));
    return *this;
}

Statement& Statement::bind(double value) {
    check(sqlite3_bind_double(statement_, ++bound_, value));
    return *this;
}

Statement& Statement::bind(std::string_view text) {
    check(sqlite3_bind_text64(statement_, ++bound_, text.data(), text.size(), SQLITE_STATIC,
                              SQLITE_UTF8));
    return *this;
}

Statement& Statement::bind_null() {
    check(sqlite3_bind_null(statement_, ++bound_));
    return *this;
}

bool Statement::step() {
    int const code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) {
        return true;
    }
    bound_ = 0;
    // The reason is to be asked for before the reset.
    if (code != SQLITE_DONE) {
        std::string const reason = sqlite3_errmsg(database_.handle());
        sqlite3_reset(statement_);
        throw DatabaseError(database_.name() + ": " + reason);
    }
    sqlite3_reset(statement_);
    return false;
}

void Statement::reset() {
    bound_ = 0;
    sqlite3_reset(statement_);
}

std::int64_t Statement::number(int column) const {
    return sqlite3_column_int64(statement_, column);
}

double Statement::real(int column) const {
    return sqlite3_column_double(statement_, column);
}

std::string Statement::text(int column) const {
    auto const* const text = sqlite3_column_text(statement_, column);
    auto const size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return text == nullptr ? std::string() : std::string(reinterpret_cast<char const*>(text), size);
}

bool Statement::is_null(int column) const {
    return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

int Statement::columns() const {
    return sqlite3_column_count(statement_);
}

}  // namespace orvelin::tools
