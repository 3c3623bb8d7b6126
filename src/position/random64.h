#pragma once

#include <array>
#include <cstdint>

namespace orvelin {

/// The published Random64 numbers of the Polyglot book format, in their published order:
/// 12 x 64 piece keys (black pawn, white pawn, black knight, ... white king; squares a1 to h8),
/// four castling keys (white short, white long, black short, black long), eight en passant keys
/// by file and the key of White to move.
extern const std::array<std::uint64_t, 781> rndh;

}  // namespace orvelin
