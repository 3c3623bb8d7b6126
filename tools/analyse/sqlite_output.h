#pragma once

#include <chrono>
#include <memory>

#include "analyse/line_file.h"
#include "analyse/record_output.h"
#include "analyse/sqlite_database.h"

namespace orvelin::tools {

/// Records in the tables of an SQLite file.
///
/// A transaction lasts about a second, so that a run that is killed loses no more than that, and
/// leaves no position by half.
class SqliteOutput : public RecordOutput {
 public:
    /// @throws std::runtime_error when it cannot be opened so, or holds other tables.
    SqliteOutput(std::string const& name, open_mode mode);
    ~SqliteOutput() override;

    LastRecord const& last() const override { return last_; }
    void render(analyse::Record const&, std::string&) const override {}
    void write(std::vector<Answered> const& answered, std::string const& text) override;
    void finish() override;

 private:
    struct Statements;

    void find_last();
    void begin();
    void commit();
    void roll_back();
    void add(analyse::Record const& record);
    void add_game(analyse::Source const& source);
    void add_line(std::uint64_t position, int number, analyse::RecordLine const& line);
    void add_terms(std::uint64_t position, int number, analyse::term_scores_t const& terms);

    Database database_;
    std::unique_ptr<Statements> statements_;
    LastRecord last_;
    /// The last row of games, and which one it is.
    std::int64_t game_id_ = 0;
    std::string game_file_;
    std::uint64_t game_number_ = 0;
    bool receipt_written_ = false;
    /// It may be taken away as long as nothing is in it.
    bool is_new_ = false;
    bool in_transaction_ = false;
    std::chrono::steady_clock::time_point began_;
};

}  // namespace orvelin::tools
