#include "evaluation/pht_record.h"

#include <bit>
#include <cstddef>

#include "position/masks.h"

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

BitBoard fill_up(BitBoard set) {
    set |= set << 8;
    set |= set << 16;
    set |= set << 32;
    return set;
}

BitBoard fill_down(BitBoard set) {
    set |= set >> 8;
    set |= set >> 16;
    set |= set >> 32;
    return set;
}

BitBoard file_fill(BitBoard const& set) {
    return fill_up(set) | fill_down(set);
}

/// The squares left and right of each member.
BitBoard beside(BitBoard const& set) {
    return ((set << 1) & not_a_file) | ((set >> 1) & not_h_file);
}

/// Shifts by `ranks` ranks in the direction of the side.
template <bool White>
BitBoard ahead(BitBoard const& set, int ranks) {
    if constexpr (White) {
        return set << (8 * ranks);
    } else {
        return set >> (8 * ranks);
    }
}

/// The set and all squares ahead of its members.
template <bool White>
BitBoard front_fill(BitBoard const& set) {
    if constexpr (White) {
        return fill_up(set);
    } else {
        return fill_down(set);
    }
}

/// Pawns with no friend on an adjacent file at the same rank or behind.
template <bool White>
BitBoard weak_pawns(BitBoard const& pawns) {
    return pawns & ~front_fill<White>(beside(pawns));
}

/// Pawns with no enemy pawn ahead on the same or an adjacent file.
template <bool White>
BitBoard passed_pawns(BitBoard const& pawns, BitBoard const& enemy) {
    BitBoard const held = front_fill<!White>(ahead<!White>(enemy, 1));
    return pawns & ~(held | beside(held));
}

/// Value of a set of passed pawns by rank. Those nearer home count nothing.
template <bool White>
std::int32_t rank_values(BitBoard const& passed) {
    constexpr BitBoard fourth = White ? rank4 : rank5;
    constexpr BitBoard fifth = White ? rank5 : rank4;
    constexpr BitBoard sixth = White ? rank6 : rank3;
    constexpr BitBoard seventh = White ? rank7 : rank2;
    return 25 * (passed & fourth).popcount() + 50 * (passed & fifth).popcount() +
           100 * (passed & sixth).popcount() + 200 * (passed & seventh).popcount();
}

/// Passed pawns by rank, connected ones a second time. Connected means adjacent files at any rank.
template <bool White>
std::int32_t passer_score(BitBoard const& passed) {
    BitBoard const connected = passed & beside(file_fill(passed));
    return rank_values<White>(passed) + rank_values<White>(connected);
}

/// The squares two to seven ranks ahead.
template <bool White>
BitBoard far_ahead(BitBoard const& passed) {
    return front_fill<White>(ahead<White>(passed, 2));
}

/// Pawns with a friend one to four ranks ahead on the file. Pawns five or six ranks apart are not
/// doubled, by design.
template <bool White>
std::int32_t doubled_pawns(BitBoard const& pawns) {
    BitBoard const behind = ahead<!White>(pawns, 1) | ahead<!White>(pawns, 2) |
                            ahead<!White>(pawns, 3) | ahead<!White>(pawns, 4);
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

void PHTrecord::set_pawns(BitBoard const& white, BitBoard const& black) {
    BitBoard const white_files = file_fill(white);
    BitBoard const black_files = file_fill(black);
    white_open_files = ~white_files;
    black_open_files = ~black_files;
    isolated =
        (black & ~beside(black_files)).popcount() - (white & ~beside(white_files)).popcount();
    white_weak = weak_pawns<true>(white);
    black_weak = weak_pawns<false>(black);
    weak = black_weak.popcount() - white_weak.popcount();

    white_passed = passed_pawns<true>(white, black);
    black_passed = passed_pawns<false>(black, white);
    white_passer_score = passer_score<true>(white_passed);
    black_passer_score = passer_score<false>(black_passed);
    white_stop = ahead<true>(white_passed, 1);
    black_stop = ahead<false>(black_passed, 1);
    white_ahead = far_ahead<true>(white_passed);
    black_ahead = far_ahead<false>(black_passed);
    white_behind = file_fill(white_passed) & ~(white_ahead | white_stop | white_passed);
    black_behind = file_fill(black_passed) & ~(black_ahead | black_stop | black_passed);

    islands = island_count(black_files) - island_count(white_files);
    doubled = doubled_pawns<false>(black) - doubled_pawns<true>(white);
    rookpawns = (black & vborder).popcount() - (white & vborder).popcount();
}

}  // namespace orvelin
