#include "analyse/analyse_arguments.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "platform/path.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

analyse::Limit limit_of(std::string const& text) {
    auto const limit = analyse::parse_limit(text);
    if (!limit) {
        throw UsageError("--limit is static, depth=N with N from 1 to 100, or nodes=N, not " +
                         text);
    }
    return *limit;
}

analyse::WantedMoves read_moves(std::string const& text) {
    auto const moves = analyse::parse_wanted_moves(text);
    if (!moves) {
        throw UsageError("--moves is best, best,played, best,rest or best,played,rest, not " +
                         text);
    }
    return *moves;
}

/// Annotated games tell all that can be told.
analyse::WantedMoves moves_of(AnalyseArguments const& arguments) {
    bool const annotated = !arguments.output.pgn.empty();
    if (!arguments.moves) {
        return {annotated, annotated};
    }
    analyse::WantedMoves const moves = read_moves(*arguments.moves);
    if (annotated && !moves.played) {
        throw UsageError(
            "--pgn judges the moves that were played: it goes with --moves best,played or "
            "best,played,rest");
    }
    return moves;
}

void refuse_other_limits(AnalyseArguments const& arguments) {
    if (!arguments.depth.empty()) {
        throw UsageError("--depth is written as --limit depth=" + arguments.depth);
    }
    if (!arguments.nodes.empty()) {
        throw UsageError("--nodes is written as --limit nodes=" + arguments.nodes);
    }
}

/// Whether a name that is no file is nearly that of a command: the same but for one letter, or two
/// that changed places.
void refuse_mistyped_command(std::vector<std::string> const& files) {
    std::error_code ignored;
    if (files.empty() || std::filesystem::exists(path_of(files.front()), ignored)) {
        return;
    }
    for (std::string const command : {"verify", "merge"}) {
        std::string const& name = files.front();
        std::size_t const begin = static_cast<std::size_t>(
            std::mismatch(name.begin(), name.end(), command.begin(), command.end()).first -
            name.begin());
        std::size_t const end = static_cast<std::size_t>(
            std::mismatch(name.rbegin(), name.rend(), command.rbegin(), command.rend()).first -
            name.rbegin());
        std::size_t const longer = std::max(name.size(), command.size());
        if (begin + end + 2 >= longer && name.size() + 1 >= command.size()) {
            throw UsageError(name + " is no file; " + command + " is a command");
        }
    }
}

}  // namespace

Request request_of(AnalyseArguments const& arguments) {
    refuse_other_limits(arguments);
    refuse_mistyped_command(arguments.files);
    analyse::WantedMoves const moves = moves_of(arguments);
    return {limit_of(arguments.limit), arguments.lines, !arguments.no_leaves, moves.played,
            moves.rest};
}

Plies plies_of(std::string const& text) {
    auto const plies = parse_plies(text);
    if (!plies) {
        throw UsageError("--plies is FROM-TO, as in 20-60, 20- or -60, not " + text);
    }
    return *plies;
}

Shard shard_of(std::string const& text) {
    auto const shard = parse_shard(text);
    if (!shard) {
        throw UsageError("--shard is I/N with I from 1 to N, not " + text);
    }
    return *shard;
}

void refuse_for_pgn(Request const& request, Shard const& shard) {
    if (request.limit.what == analyse::Limit::kind::static_eval) {
        throw UsageError("--pgn needs a search: it does not go with --limit static");
    }
    if (shard.count > 1) {
        throw UsageError("--pgn needs whole games: it does not go with --shard");
    }
}

}  // namespace orvelin::tools
