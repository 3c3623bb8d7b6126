#pragma once

#include <map>
#include <memory>
#include <string>

#include "tables/ending_table.h"

namespace orvelin::tools {

class Progress;

/// Finds out whether tables are right: those in files by building them anew, which is done once
/// for each ending.
class TableChecker {
 public:
    /// The progress must outlive the object.
    explicit TableChecker(Progress& progress) : progress_(progress) {}

    /// What is wrong with the table in a file, or with that of an ending when it is built; empty
    /// when nothing is. Values that contradict each other are also told on standard error.
    std::string fault(std::string const& source);

 private:
    struct built_t {
        explicit built_t(ending_t const& ending) : table(ending) {}

        EndingTable table;
        bool consistent = false;
    };

    std::string find_fault(std::string const& source);
    built_t const& built(ending_t const& ending);

    Progress& progress_;
    std::map<std::string, std::unique_ptr<built_t>> built_;
};

}  // namespace orvelin::tools
