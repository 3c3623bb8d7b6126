#include "evaluation/pht_record.h"

#include <bit>
#include <cstddef>

#include "position/masks.h"
#include "position/set_steps.h"
#include "position/side.h"

namespace orvelin {

namespace {

constexpr std::array<std::uint8_t, 256> make_pawn_island_table() {
    std::array<std::uint8_t, 256> table{};
    for (unsigned mask = 0; mask < table.size(); ++mask) {
        // A run starts at each set bit whose lower neighbour is clear.
        table[mask] = static_cast<std::uint8_t>(std::popcount(mask & ~(mask << 1)));
    }
    return table;
}

/// Pawns with no friend on an adjacent file at the same rank or behind.
template <int Side>
BitBoard weak_pawns(BitBoard const& pawns) {
    return pawns & ~fill_ahead<Side>(beside(pawns));
}

/// Pawns with no enemy pawn ahead on the same or an adjacent file.
template <int Side>
BitBoard passed_pawns(BitBoard const& pawns, BitBoard const& enemy) {
    BitBoard const held = fill_ahead<enemy_of<Side>>(ahead<enemy_of<Side>>(enemy, 1));
    return pawns & ~(held | beside(held));
}

/// Value of a set of passed pawns by rank. Those nearer home count nothing.
template <int Side>
std::int32_t rank_values(BitBoard const& passed) {
    constexpr BitBoard fourth = Side == side::white ? rank4 : rank5;
    constexpr BitBoard fifth = Side == side::white ? rank5 : rank4;
    constexpr BitBoard sixth = Side == side::white ? rank6 : rank3;
    constexpr BitBoard seventh = Side == side::white ? rank7 : rank2;
    return 25 * (passed & fourth).popcount() + 50 * (passed & fifth).popcount() +
           100 * (passed & sixth).popcount() + 200 * (passed & seventh).popcount();
}

/// Passed pawns by rank, connected ones a second time. Connected means adjacent files at any rank.
template <int Side>
std::int32_t passer_score(BitBoard const& passed) {
    BitBoard const connected = passed & beside(file_fill(passed));
    return rank_values<Side>(passed) + rank_values<Side>(connected);
}

/// The squares two to seven ranks ahead.
template <int Side>
BitBoard far_ahead(BitBoard const& passed) {
    return fill_ahead<Side>(ahead<Side>(passed, 2));
}

/// Pawns with a friend one to four ranks ahead on the file. Pawns five or six ranks apart are not
/// doubled (oddity 112).
template <int Side>
std::int32_t doubled_pawns(BitBoard const& pawns) {
    BitBoard const behind = ahead<enemy_of<Side>>(pawns, 1) | ahead<enemy_of<Side>>(pawns, 2) |
                            ahead<enemy_of<Side>>(pawns, 3) | ahead<enemy_of<Side>>(pawns, 4);
    return (pawns & behind).popcount();
}

std::int32_t island_count(BitBoard const& files) {
    return PHTrecord::pawn_island_table[static_cast<std::size_t>(to_ull(files & rank1))];
}

}  // namespace

constinit const std::array<std::uint8_t, 256> PHTrecord::pawn_island_table =
    make_pawn_island_table();

void PHTrecord::clear() {
    *this = PHTrecord();
}

// Passed pawns on adjacent files are connected at any rank (oddity 113).
void PHTrecord::set_pawns(BitBoard const& white, BitBoard const& black) {
    BitBoard const white_files = file_fill(white);
    BitBoard const black_files = file_fill(black);
    white_open_files = ~white_files;
    black_open_files = ~black_files;
    isolated =
        (black & ~beside(black_files)).popcount() - (white & ~beside(white_files)).popcount();
    white_weak = weak_pawns<side::white>(white);
    black_weak = weak_pawns<side::black>(black);
    weak = black_weak.popcount() - white_weak.popcount();

    white_passed = passed_pawns<side::white>(white, black);
    black_passed = passed_pawns<side::black>(black, white);
    white_passer_score = passer_score<side::white>(white_passed);
    black_passer_score = passer_score<side::black>(black_passed);
    white_stop = ahead<side::white>(white_passed, 1);
    black_stop = ahead<side::black>(black_passed, 1);
    white_ahead = far_ahead<side::white>(white_passed);
    black_ahead = far_ahead<side::black>(black_passed);
    white_behind = file_fill(white_passed) & ~(white_ahead | white_stop | white_passed);
    black_behind = file_fill(black_passed) & ~(black_ahead | black_stop | black_passed);

    islands = island_count(black_files) - island_count(white_files);
    doubled = doubled_pawns<side::black>(black) - doubled_pawns<side::white>(white);
    rookpawns = (black & vborder).popcount() - (white & vborder).popcount();
    // Those of another structure.
    relations = king_relations_t();
}

}  // namespace orvelin
