#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "analyse/analyse_outputs.h"
#include "analyse/plies.h"
#include "analyse/position_source.h"

namespace orvelin::tools {

/// The command line of an analysis, as texts.
struct AnalyseArguments {
    std::vector<std::string> files;
    std::string limit = "depth=10";
    /// Other programs have these; here they are the limit.
    std::string depth;
    std::string nodes;
    int lines = 1;
    std::string plies = "0-";
    std::optional<std::string> moves;
    bool no_leaves = false;
    bool chess960 = false;
    OutputOptions output;
    std::string shard = "1/1";
    std::size_t jobs = 1;
    bool quiet = false;
};

/// What is asked about every position.
/// @throws UsageError when the texts do not mean that, or the first file is nearly a command.
Request request_of(AnalyseArguments const& arguments);

/// @throws UsageError
Plies plies_of(std::string const& text);

/// @throws UsageError
Shard shard_of(std::string const& text);

/// @throws UsageError when games cannot be annotated so.
void refuse_for_pgn(Request const& request, Shard const& shard);

}  // namespace orvelin::tools
