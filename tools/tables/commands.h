#pragma once

#include <string>
#include <vector>

#include "tables/ending.h"

namespace orvelin::tools {

/// The commands of the program; each returns the exit code. A source is the name of an ending,
/// whose table is then built, or the path of a table file.

/// Builds the table and writes it to the file.
int build_command(ending_t const& ending, std::string const& path);
/// Prints the value of each position.
int eval_command(std::string const& source, std::vector<std::string> const& fens);
/// Prints how often each distance occurs, if wanted also as bars.
int stats_command(std::string const& source, bool plot);
/// Tells whether the tables are right; a faulty one does not keep the others from being checked.
int check_command(std::vector<std::string> const& sources);

}  // namespace orvelin::tools
