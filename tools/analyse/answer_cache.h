#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "analyse/answerer.h"
#include "analyse/sqlite_database.h"

namespace orvelin::tools {

/// Answers that were found before, in an SQLite file. Any threads, and any processes, may use the
/// same file at a time.
///
/// An answer is found again for the same position, limit, lines, move played and version, and is
/// then the same to the last bit.
class AnswerCache {
 public:
    /// @throws DatabaseError when the file cannot be opened, or is something else.
    explicit AnswerCache(std::string const& name);

    std::optional<analyse::Record> find(Asked const& asked, Request const& request);
    void keep(Asked const& asked, Request const& request, analyse::Record const& record);

 private:
    std::mutex mutex_;
    Database database_;
    std::unique_ptr<Statement> find_;
    std::unique_ptr<Statement> keep_;
};

/// One that asks the cache before it asks the other.
std::unique_ptr<Answerer> make_cached_answerer(AnswerCache& cache,
                                               std::unique_ptr<Answerer> answerer);

}  // namespace orvelin::tools
