#pragma once

#include <string>
#include <vector>

#include "analyse/analyse_run.h"
#include "analyse/plies.h"

namespace orvelin::tools {

/// Where the user wants records, as named on the command line: empty for nowhere, "-" for standard
/// output.
struct OutputOptions {
    std::string jsonl;
    std::string csv;
    std::string sqlite;
    std::string pgn;
    /// No output, but written too; empty for none.
    std::string cache;
    bool resume = false;
    bool overwrite = false;
};

/// Those that are wanted; lines of JSON on standard output where none is named. The positions of
/// games are those of these plies. A file that is read is not written.
/// @throws UsageError when they exclude each other.
/// @throws std::runtime_error when one cannot be opened.
outputs_t open_outputs(OutputOptions const& options, std::vector<std::string> const& inputs,
                       Plies const& plies);

}  // namespace orvelin::tools
