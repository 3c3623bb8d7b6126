#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "play/go_limits.h"
#include "play/position_reader.h"

namespace orvelin::play {

/// What was read of a `go` line.
struct GoText {
    GoLimits limits;
    Refusal refusal;
    /// A count was asked for, which no `bestmove` answers, a refused one neither.
    bool counts = false;
    /// Words and values that were left out or put into range, a line each.
    std::vector<std::string> remarks;
};

/// Reads what follows the word `go`, for a position. Unknown words are left out with a remark; a
/// number out of range is put into range with a remark; a search move that is not legal is left out
/// with a remark, and a list without any legal move is refused. Where something was left out, and
/// nothing is left that ends the search, the line is refused: it would search for ever what was
/// meant to end. Negative clocks count as 1 ms. Nothing is thrown.
GoText read_go(std::string_view arguments, ChessPosition const& position, Tables const& tables);

}  // namespace orvelin::play
