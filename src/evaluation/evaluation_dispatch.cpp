#include <cstdint>

#include "evaluation/evaluation.h"
#include "position/chess_position.h"

namespace orvelin {

namespace {

// One piece of each kind in one half of a material word.
constexpr std::uint64_t pawn = 1ULL;
constexpr std::uint64_t knight = 1ULL << 4;
constexpr std::uint64_t bishop = 1ULL << 8;
constexpr std::uint64_t rook = 1ULL << 12;
constexpr std::uint64_t queen = 1ULL << 16;

/// The bits of all sides in the list below.
constexpr std::uint64_t all_bits =
    2 * knight | (knight + bishop) | 2 * bishop | (bishop + pawn) | (rook + pawn) | queen;

constexpr std::uint64_t material_key(std::uint64_t white, std::uint64_t black) {
    return white << 32 | black;
}

}  // namespace

// Comes after the whole blend, so that the endgame functions can use the score as a base.
void Evaluation::dispatch_endgame() {
    static_assert(endgame_material_bits == material_key(all_bits, all_bits));
    switch (position_.materialindex().index()) {
        case material_key(2 * knight, 0):
        case material_key(0, 2 * knight):
            score_ = static_cast<float>(KNNK());
            break;
        case material_key(knight + bishop, 0):
        case material_key(0, knight + bishop):
            score_ = static_cast<float>(KBNK());
            break;
        case material_key(2 * bishop, 0):
        case material_key(0, 2 * bishop):
            score_ = static_cast<float>(KBBK());
            break;
        case material_key(bishop + pawn, 0):
        case material_key(0, bishop + pawn):
            score_ = static_cast<float>(KBPK());
            break;
        case material_key(pawn, 0):
        case material_key(0, pawn):
            score_ = static_cast<float>(KPK());
            break;
        case material_key(rook, 0):
        case material_key(0, rook):
            score_ = static_cast<float>(KRK());
            break;
        case material_key(queen, 0):
        case material_key(0, queen):
            score_ = static_cast<float>(KQK());
            break;
        case material_key(rook + pawn, rook):
        case material_key(rook, rook + pawn):
            score_ = static_cast<float>(KRPKR());
            break;
        case material_key(queen, rook):
        case material_key(rook, queen):
            score_ = static_cast<float>(KQKR());
            break;
        default:
            break;
    }
}

}  // namespace orvelin
