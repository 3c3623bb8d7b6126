#include "generation/magic_moves.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace orvelin {

MagicMoves::MagicMoves(bool keep_raw_tables) {
    magic_bishop_moves_ = construct_magic_bishop_moves();
    magic_rook_moves_ = construct_magic_rook_moves();
    for (std::size_t s = 0; s < 64; ++s) {
        bishop_attacks_[s] = distinct_sets(magic_bishop_moves_[s]);
    }
    for (std::size_t s = 0; s < 64; ++s) {
        rook_attacks_[s] = distinct_sets(magic_rook_moves_[s]);
    }
    index_bishops();
    index_rooks();
    for (auto* index : {&bishop_index_, &rook_index_}) {
        index->back().assign(1, 0);
    }
    for (auto* attacks : {&bishop_attacks_, &rook_attacks_}) {
        attacks->back().assign(1, BitBoard());
    }
    if (!keep_raw_tables) {
        drop(magic_bishop_moves_);
        drop(magic_rook_moves_);
    }
    bind_look_ups();
}

MagicMoves::look_up_t MagicMoves::look_up(BitBoard const& mask, magic_t const& number,
                                          std::vector<unsigned char> const& index,
                                          std::vector<BitBoard> const& attacks) {
    return {to_ull(mask), number.magic, index.data(), attacks.data(), number.shift};
}

/// From here on the vectors never move.
void MagicMoves::bind_look_ups() {
    for (std::size_t s = 0; s < bishop_look_ups_.size(); ++s) {
        int const id = static_cast<int>(s);
        bishop_look_ups_[s] = look_up(bishop_masks_.get_mask(Square(id)), magic_numbers_.bishop(id),
                                      bishop_index_[s], bishop_attacks_[s]);
        rook_look_ups_[s] = look_up(rook_masks_.get_mask(Square(id)), magic_numbers_.rook(id),
                                    rook_index_[s], rook_attacks_[s]);
    }
}

/// The 0 of an index that no subset reaches is one of the distinct values (oddity 100).
std::vector<BitBoard> MagicMoves::distinct_sets(std::vector<BitBoard> const& raw) {
    // A few dozen sets occur again and again. They are sorted out by a small hash table first, as
    // sorting all of them would be most of the time that the engine takes to start.
    constexpr int slot_bits = 9;
    constexpr std::size_t slots = std::size_t{1} << slot_bits;
    // A look for a free slot ends, as the table never fills: the rays of a rook end in at most
    // 3 * 4 * 3 * 4 ways, those of a bishop in fewer, and the 0 is one more.
    constexpr std::size_t most_sets = 3 * 4 * 3 * 4 + 1;
    static_assert(slots >= 2 * most_sets);
    std::array<BitBoard, slots> seen{};
    std::array<bool, slots> used{};
    std::vector<BitBoard> distinct;
    for (BitBoard const& set : raw) {
        std::size_t slot =
            static_cast<std::size_t>((to_ull(set) * 0x9E3779B97F4A7C15ULL) >> (64 - slot_bits));
        while (used[slot] && seen[slot] != set) {
            slot = (slot + 1) % slots;
        }
        if (used[slot]) {
            continue;
        }
        used[slot] = true;
        seen[slot] = set;
        distinct.push_back(set);
    }
    std::sort(distinct.begin(), distinct.end());
    return distinct;
}

void MagicMoves::index_bishops() {
    for (std::size_t s = 0; s < 64; ++s) {
        bishop_index_[s] = positions(magic_bishop_moves_[s], bishop_attacks_[s]);
        require_same_length(magic_bishop_moves_[s], bishop_index_[s],
                            "MagicMoves error(1) in constructor");
    }
}

void MagicMoves::index_rooks() {
    for (std::size_t s = 0; s < 64; ++s) {
        rook_index_[s] = positions(magic_rook_moves_[s], rook_attacks_[s]);
        require_same_length(magic_rook_moves_[s], rook_index_[s],
                            "MagicMoves error(2) in constructor");
    }
}

/// The position of each working set in the list of distinct ones; a set that is not in the list
/// leaves the result too short.
std::vector<unsigned char> MagicMoves::positions(std::vector<BitBoard> const& raw,
                                                 std::vector<BitBoard> const& attacks) {
    std::vector<unsigned char> index;
    index.reserve(raw.size());
    for (BitBoard const& set : raw) {
        auto const found = std::lower_bound(attacks.begin(), attacks.end(), set);
        if (found != attacks.end() && *found == set) {
            index.push_back(static_cast<unsigned char>(found - attacks.begin()));
        }
    }
    return index;
}

void MagicMoves::require_same_length(std::vector<BitBoard> const& raw,
                                     std::vector<unsigned char> const& index, char const* failure) {
    if (index.size() != raw.size()) {
        throw std::logic_error(failure);
    }
}

/// Leaves a token of ten entries; the vectors keep their memory.
void MagicMoves::drop(raw_tables_t& raw) {
    for (auto& table : raw) {
        table.clear();
        table.resize(10);
    }
}

MagicMoves::raw_tables_t MagicMoves::construct_magic_bishop_moves() const {
    raw_tables_t tables;
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        magic_t const& number = magic_numbers_.bishop(s);
        auto& table = tables[static_cast<std::size_t>(s)];
        table.resize(std::size_t{1} << (64 - number.shift));
        for (BitBoard const& occupied : possible_occupancies(bishop_masks_.get_mask(square))) {
            table[magic_index(number, occupied)] = bishop_moves(square, occupied);
        }
    }
    return tables;
}

MagicMoves::raw_tables_t MagicMoves::construct_magic_rook_moves() const {
    raw_tables_t tables;
    for (int s = 0; s < 64; ++s) {
        Square const square(s);
        magic_t const& number = magic_numbers_.rook(s);
        auto& table = tables[static_cast<std::size_t>(s)];
        table.resize(std::size_t{1} << (64 - number.shift));
        for (BitBoard const& occupied : possible_occupancies(rook_masks_.get_mask(square))) {
            table[magic_index(number, occupied)] = rook_moves(square, occupied);
        }
    }
    return tables;
}

}  // namespace orvelin
