#include "analyse/answer_cache.h"

#include <atomic>
#include <chrono>
#include <string_view>
#include <thread>
#include <utility>

#include "analyse/record_json.h"
#include "analyse/record_reader.h"

namespace orvelin::tools {

namespace {

/// Another process may be writing.
constexpr int wait_milliseconds = 10000;

/// All that an answer depends on.
std::string key_of(Asked const& asked, Request const& request) {
    analyse::Receipt const receipt = request.receipt();
    std::string key = asked.fen + (asked.chess960 ? "|960|" : "|") + receipt.limit + '|' +
                      std::to_string(receipt.lines) + (receipt.leaves ? "|leaves|" : "|");
    key += asked.played.algebraic(asked.chess960) + (receipt.played ? "|searched|" : "|");
    key += receipt.rest ? "rest|" : "";
    key += asked.taken ? analyse::taken_text(*asked.taken) + '|' : "";
    return key + receipt.version + '|' + receipt.signature + '|' +
           std::to_string(analyse::record_schema);
}

/// Records that were written with --sqlite, or a database of something else, are left as they are.
void refuse_others(Database& database) {
    Statement tables(
        database, "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name <> 'answers'");
    tables.step();
    if (tables.number(0) > 0) {
        throw DatabaseError(database.name() + " is a database of something else, no cache");
    }
}

/// Of two processes that begin a file at a time one is refused at once, without the wait that it
/// has asked for.
void set_up(Database& database) {
    using clock = std::chrono::steady_clock;
    auto const until = clock::now() + std::chrono::milliseconds(wait_milliseconds);
    while (true) {
        try {
            refuse_others(database);
            // Readers and a writer do not wait for one another. What a crash of the machine takes
            // away is searched again.
            database.run(
                "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
                "CREATE TABLE IF NOT EXISTS answers (key TEXT PRIMARY KEY, record TEXT) "
                "WITHOUT ROWID");
            return;
        } catch (DatabaseError const& error) {
            bool const is_locked = std::string_view(error.what()).ends_with("is locked");
            if (!is_locked || clock::now() >= until) {
                throw;
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

class CachedAnswerer : public Answerer {
 public:
    CachedAnswerer(AnswerCache& cache, std::unique_ptr<Answerer> answerer)
        : cache_(cache), answerer_(std::move(answerer)) {}

    analyse::Record answer(Asked const& asked, Request const& request) override {
        if (auto record = cache_.find(asked, request)) {
            record->number = asked.number;
            record->source = asked.source;
            return *std::move(record);
        }
        analyse::Record record = answerer_->answer(asked, request);
        if (!interrupted_) {
            cache_.keep(asked, request, record);
        }
        return record;
    }
    void interrupt() override {
        interrupted_ = true;
        answerer_->interrupt();
    }

 private:
    AnswerCache& cache_;
    std::unique_ptr<Answerer> answerer_;
    std::atomic<bool> interrupted_ = false;
};

}  // namespace

AnswerCache::AnswerCache(std::string const& name) : database_(name, wait_milliseconds) {
    set_up(database_);
    find_ = std::make_unique<Statement>(database_, "SELECT record FROM answers WHERE key = ?");
    keep_ = std::make_unique<Statement>(database_, "INSERT OR IGNORE INTO answers VALUES (?, ?)");
}

std::optional<analyse::Record> AnswerCache::find(Asked const& asked, Request const& request) {
    std::string const key = key_of(asked, request);
    std::string text;
    {
        std::lock_guard const lock(mutex_);
        if (!find_->bind(key).step()) {
            return std::nullopt;
        }
        text = find_->text(0);
        find_->reset();
    }
    analyse::Record record = read_record(text);
    // The file may have been written by anybody.
    if (record.fen != asked.fen || record.receipt != request.receipt()) {
        throw DatabaseError(database_.name() + ": an answer stands under another question");
    }
    return record;
}

void AnswerCache::keep(Asked const& asked, Request const& request, analyse::Record const& record) {
    analyse::Record kept = record;
    kept.number = 0;
    kept.source = analyse::Source();
    std::string const key = key_of(asked, request);
    std::string text;
    analyse::append_json(text, kept);
    std::lock_guard const lock(mutex_);
    keep_->bind(key).bind(text).step();
}

std::unique_ptr<Answerer> make_cached_answerer(AnswerCache& cache,
                                               std::unique_ptr<Answerer> answerer) {
    return std::make_unique<CachedAnswerer>(cache, std::move(answerer));
}

}  // namespace orvelin::tools
