#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "position/chess_position.h"

namespace orvelin::play {

/// Leaves of the tree of legal moves at a depth of 0 or more. Leaves the position as it was.
std::uint64_t perft(ChessPosition& position, Tables const& tables, int depth);

/// The leaves behind each move of the position, a line each, and their sum, with line ends. Once
/// stopped it soon ends with the lines that are true, and without a sum.
std::string perft_report(ChessPosition& position, Tables const& tables, int depth, bool chess960,
                         std::atomic<bool> const& stopped);

}  // namespace orvelin::play
