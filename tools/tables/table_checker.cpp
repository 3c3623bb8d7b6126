#include "tables/table_checker.h"

#include <stdexcept>
#include <utility>

#include "support/counted.h"
#include "support/progress.h"
#include "tables/table_file.h"
#include "tables/words.h"

namespace orvelin::tools {

namespace {

/// What differs between a loaded table and a right one; empty when nothing does.
std::string difference(EndingTable const& loaded, EndingTable const& right) {
    int differing = 0;
    unsigned int first = 0;
    for (unsigned int key = 0; key < right.size(); ++key) {
        if (loaded[key] != right[key] && differing++ == 0) {
            first = key;
        }
    }
    if (differing == 0) {
        return "";
    }
    return counted(differing, "key differs", "keys differ") +
           " from the right table, the first at " + std::to_string(first) + ", " +
           right.key_text(first) + ": " + std::to_string(loaded[first]) + " instead of " +
           std::to_string(right[first]);
}

}  // namespace

TableChecker::built_t const& TableChecker::built(ending_t const& ending) {
    std::unique_ptr<built_t>& entry = built_[ending.name];
    if (entry == nullptr) {
        auto fresh = std::make_unique<built_t>(ending);
        fresh->table.build(progress_);
        progress_.show(std::string(ending.name) + ": testing the values against each other");
        fresh->consistent = fresh->table.is_consistent();
        progress_.clear();
        entry = std::move(fresh);
    }
    return *entry;
}

std::string TableChecker::fault(std::string const& source) {
    try {
        return find_fault(source);
    } catch (std::runtime_error const& error) {
        return error.what();
    }
}

std::string TableChecker::find_fault(std::string const& source) {
    ending_t const& ending = ending_of_source(source);
    std::string fault;
    if (find_ending(source) == nullptr) {
        // Loaded first: a damaged file is not worth a build.
        EndingTable loaded(ending);
        loaded.load(source);
        fault = difference(loaded, built(ending).table);
    }
    if (fault.empty() && !built(ending).consistent) {
        fault = "the values contradict each other";
    }
    return fault.empty() ? "" : source + ": " + fault;
}

}  // namespace orvelin::tools
