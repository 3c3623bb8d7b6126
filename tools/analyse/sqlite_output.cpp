#include "analyse/sqlite_output.h"

#include <exception>
#include <filesystem>
#include <system_error>

#include "analyse/sqlite_schema.h"
#include "analyse/sqlite_values.h"

namespace orvelin::tools {

namespace {

constexpr int wait_milliseconds = 5000;
constexpr std::chrono::milliseconds transaction_time{1000};

/// A cache, or what another program keeps in its file, is neither replaced nor added to.
void refuse_other_tables(std::string const& name) {
    Database database(name, wait_milliseconds);
    Statement others(database,
                     "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name NOT IN "
                     "('receipt', 'games', 'positions', 'lines', 'terms')");
    others.step();
    if (others.number(0) > 0) {
        throw DatabaseError(name +
                            " has other tables than those of --sqlite, and is left as it is");
    }
}

/// Makes room for a new file, or refuses to.
std::string const& prepared(std::string const& name, open_mode mode) {
    std::error_code ignored;
    bool const is_there = std::filesystem::is_regular_file(name, ignored) &&
                          std::filesystem::file_size(name, ignored) > 0;
    if (mode == open_mode::create && is_there) {
        throw DatabaseError(name +
                            " is there already; --resume goes on with it, --overwrite begins it "
                            "anew");
    }
    if (is_there) {
        refuse_other_tables(name);
    }
    if (mode == open_mode::replace) {
        // A journal that a killed run left would be played back into the new file.
        for (char const* const end : {"", "-journal", "-wal", "-shm"}) {
            std::filesystem::remove(name + end, ignored);
        }
    }
    return name;
}

std::int64_t signed_of(std::uint64_t value) {
    return static_cast<std::int64_t>(value);
}

}  // namespace

struct SqliteOutput::Statements {
    explicit Statements(Database& database)
        : receipt(database, insert_statement("receipt", 8)),
          game(database, insert_statement("games", 9)),
          position(database, insert_statement("positions", 24)),
          line(database, insert_statement("lines", 17)),
          terms(database, insert_statement("terms", 2 + static_cast<int>(term::count))) {}

    Statement receipt;
    Statement game;
    Statement position;
    Statement line;
    Statement terms;
};

SqliteOutput::SqliteOutput(std::string const& name, open_mode mode)
    : database_(prepared(name, mode), wait_milliseconds), is_new_(mode == open_mode::create) {
    // Only one process is to write; others may read between transactions.
    database_.run(sqlite_schema().c_str());
    statements_ = std::make_unique<Statements>(database_);
    begin();
    find_last();
}

SqliteOutput::~SqliteOutput() {
    // As with the other outputs, a run that is refused leaves no file behind.
    if (is_new_ && !receipt_written_ && std::uncaught_exceptions() > 0) {
        if (in_transaction_) {
            roll_back();
        }
        std::error_code ignored;
        std::filesystem::remove(database_.name(), ignored);
    }
}

void SqliteOutput::find_last() {
    Statement receipt(
        database_,
        "SELECT schema, search_limit, lines, leaves, played, rest, version, signature FROM "
        "receipt");
    if (!receipt.step()) {
        return;
    }
    if (receipt.number(0) != analyse::record_schema) {
        throw DatabaseError("cannot resume " + database_.name() + ": schema " + receipt.text(0) +
                            "; this program knows " + std::to_string(analyse::record_schema));
    }
    receipt_written_ = true;
    last_.receipt = {receipt.text(1),        static_cast<int>(receipt.number(2)),
                     receipt.number(3) != 0, receipt.number(4) != 0,
                     receipt.number(5) != 0, receipt.text(6),
                     receipt.text(7)};
    Statement position(database_, "SELECT number, fen FROM positions ORDER BY number DESC LIMIT 1");
    if (position.step()) {
        last_.number = static_cast<std::uint64_t>(position.number(0));
        last_.fen = position.text(1);
    }
    Statement game(database_, "SELECT id, file, game FROM games ORDER BY id DESC LIMIT 1");
    if (game.step()) {
        game_id_ = game.number(0);
        game_file_ = game.text(1);
        game_number_ = static_cast<std::uint64_t>(game.number(2));
    }
}

void SqliteOutput::begin() {
    database_.run("BEGIN IMMEDIATE");
    in_transaction_ = true;
    began_ = std::chrono::steady_clock::now();
}

void SqliteOutput::commit() {
    database_.run("COMMIT");
    in_transaction_ = false;
}

// A position may be there without its terms.
void SqliteOutput::roll_back() {
    in_transaction_ = false;
    try {
        database_.run("ROLLBACK");
    } catch (DatabaseError const&) {
        // It was rolled back with the failure.
    }
}

void SqliteOutput::write(std::vector<Answered> const& answered, std::string const&) {
    if (!in_transaction_) {
        begin();
    }
    try {
        for (Answered const& one : answered) {
            if (one.record.number > last_.number) {
                add(one.record);
            }
        }
    } catch (DatabaseError const&) {
        roll_back();
        throw;
    }
    if (std::chrono::steady_clock::now() - began_ >= transaction_time) {
        commit();
    }
}

void SqliteOutput::finish() {
    if (in_transaction_) {
        commit();
    }
}

void SqliteOutput::add(analyse::Record const& record) {
    if (!receipt_written_) {
        analyse::Receipt const& receipt = record.receipt;
        statements_->receipt.bind(std::int64_t{analyse::record_schema})
            .bind(receipt.limit)
            .bind(std::int64_t{receipt.lines})
            .bind(std::int64_t{receipt.leaves})
            .bind(std::int64_t{receipt.played})
            .bind(std::int64_t{receipt.rest})
            .bind(receipt.version)
            .bind(receipt.signature)
            .step();
        receipt_written_ = true;
    }
    analyse::Source const& source = record.source;
    bool const of_game = source.game > 0;
    if (of_game && (source.game != game_number_ || source.file != game_file_)) {
        add_game(source);
    }
    Statement& position = statements_->position;
    position.bind(signed_of(record.number));
    bind_optional(position,
                  of_game ? std::optional<int>(static_cast<int>(game_id_)) : std::nullopt);
    position.bind(source.file).bind(signed_of(source.line)).bind(source.id);
    bind_optional(position, of_game ? std::optional<int>(source.ply) : std::nullopt);
    position.bind(record.fen).bind(std::int64_t{record.chess960}).bind(signed_of(record.nodes));
    position.bind(std::int64_t{record.depth});
    bind_score(position, record.score);
    position.bind(std::int64_t{record.static_score});
    bind_played(position, record.played);
    position.step();
    add_terms(record.number, root_terms, record.terms);
    for (std::size_t i = 0; i < record.lines.size(); ++i) {
        add_line(record.number, static_cast<int>(i) + 1, record.lines[i]);
    }
    if (record.rest) {
        add_line(record.number, rest_line, *record.rest);
    }
    if (record.played && record.played->line) {
        add_line(record.number, played_line, *record.played->line);
    }
}

void SqliteOutput::add_game(analyse::Source const& source) {
    statements_->game.bind(++game_id_)
        .bind(source.file)
        .bind(signed_of(source.game))
        .bind(signed_of(source.line))
        .bind(source.white)
        .bind(source.black)
        .bind(source.result)
        .bind(source.event)
        .bind(source.date)
        .step();
    game_file_ = source.file;
    game_number_ = source.game;
}

void SqliteOutput::add_line(std::uint64_t position, int number, analyse::RecordLine const& line) {
    Statement& row = statements_->line;
    row.bind(signed_of(position)).bind(std::int64_t{number}).bind(std::int64_t{line.depth});
    bind_score(row, line.score);
    row.bind(std::int64_t{line.at_least}).bind(line.moves).bind(line.san);
    if (line.leaf) {
        row.bind_null().bind(line.leaf->moves).bind(line.leaf->fen);
        row.bind(std::int64_t{line.leaf->score}).bind(double{line.leaf->fading});
    } else {
        row.bind(line.unexplained);
        bind_nulls(row, 4);
    }
    row.step();
    if (line.leaf) {
        add_terms(position, number, line.leaf->terms);
    }
}

void SqliteOutput::add_terms(std::uint64_t position, int number,
                             analyse::term_scores_t const& terms) {
    Statement& row = statements_->terms;
    row.bind(signed_of(position)).bind(std::int64_t{number});
    for (float const value : terms) {
        row.bind(double{value});
    }
    row.step();
}

}  // namespace orvelin::tools
