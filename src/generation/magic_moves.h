#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "generation/bishop_mask.h"
#include "generation/magic_number.h"
#include "generation/rook_mask.h"
#include "position/bit_board.h"
#include "position/square.h"

namespace orvelin {

/// Attack sets of rooks and bishops for any occupancy: one multiplication and two table reads.
///
/// The first level is an array of bytes for each square, addressed by the magic product; the
/// second is the list of the square's distinct attack sets. So what is large holds bytes. The
/// object owns its tables, is built once at start and is read-only afterwards, from any thread.
/// Entry 64 (no square) of each index and attack table maps every occupancy to the empty set.
class MagicMoves {
 public:
    /// Attack sets by magic index, one vector for each square.
    using raw_tables_t = std::array<std::vector<BitBoard>, 64>;

    /// Builds all tables. `keep_raw_tables` keeps the working tables, which `selftest_ok()` reads.
    /// Throws std::logic_error when an index table and its working table differ in length.
    explicit MagicMoves(bool keep_raw_tables = false);
    // The look-ups point into the tables of their own object.
    MagicMoves(MagicMoves const&) = delete;
    MagicMoves& operator=(MagicMoves const&) = delete;
    ~MagicMoves() = default;

    /// Attack set of a bishop on `square`; only the masked part of `occupied` counts.
    BitBoard const& bishop(Square const& square, BitBoard const& occupied) const;
    /// Attack set of a rook on `square`; only the masked part of `occupied` counts.
    BitBoard const& rook(Square const& square, BitBoard const& occupied) const;

    /// The slow reference: walks the four rays, each up to and including its first occupied square.
    static BitBoard rook_moves(Square const& square, BitBoard const& occupied);
    /// As `rook_moves`, on the diagonals.
    static BitBoard bishop_moves(Square const& square, BitBoard const& occupied);

    /// All 2^n subsets of the n squares of `mask`. The k-th lowest square is in element i when bit
    /// k of i is set; element 0 is the empty set.
    static std::vector<BitBoard> possible_occupancies(BitBoard const& mask);

    /// Fresh working tables: the attack set at each magic index, empty where no subset arrives.
    raw_tables_t construct_magic_rook_moves() const;
    /// As `construct_magic_rook_moves`, for bishops.
    raw_tables_t construct_magic_bishop_moves() const;

    /// Bytes in the six arrays of vectors, the spare row of no square not counted.
    int size() const;

    /// Checks the tables against the working tables and reports the first fault on standard
    /// output. Needs an object that kept its working tables: without them it returns false.
    bool selftest_ok() const;

    /// The parts of the tables of one square, id 0 to 63.
    std::vector<unsigned char> const& bishop_index(int square) const;
    std::vector<BitBoard> const& bishop_attacks(int square) const;
    std::vector<BitBoard> const& magic_bishop_moves(int square) const;
    std::vector<unsigned char> const& rook_index(int square) const;
    std::vector<BitBoard> const& rook_attacks(int square) const;
    std::vector<BitBoard> const& magic_rook_moves(int square) const;
    BishopMask const& bishop_masks() const { return bishop_masks_; }
    RookMask const& rook_masks() const { return rook_masks_; }
    MagicNumber const& magic_numbers() const { return magic_numbers_; }

 private:
    using index_tables_t = std::array<std::vector<unsigned char>, 65>;
    using attack_tables_t = std::array<std::vector<BitBoard>, 65>;

    /// All that a look-up reads of one square before it reads the tables, in one cache line.
    struct alignas(64) look_up_t {
        std::uint64_t mask = 0;
        std::uint64_t magic = 0;
        unsigned char const* index = nullptr;
        BitBoard const* attacks = nullptr;
        std::uint32_t shift = 0;

        BitBoard const& operator()(BitBoard const& occupied) const {
            return attacks[index[((to_ull(occupied) & mask) * magic) >> shift]];
        }
    };
    using look_ups_t = std::array<look_up_t, 65>;

    /// Lets the tests damage a table and see the fault reported.
    friend struct MagicMovesDamager;

    static std::size_t magic_index(magic_t const& number, BitBoard const& masked) {
        return static_cast<std::size_t>((to_ull(masked) * number.magic) >> number.shift);
    }
    static std::vector<BitBoard> distinct_sets(std::vector<BitBoard> const& raw);
    void index_bishops();
    void index_rooks();
    static std::vector<unsigned char> positions(std::vector<BitBoard> const& raw,
                                                std::vector<BitBoard> const& attacks);
    static void require_same_length(std::vector<BitBoard> const& raw,
                                    std::vector<unsigned char> const& index, char const* failure);
    static bool all_different(std::vector<BitBoard> const& attacks, int square, char const* name);
    static bool index_matches(std::vector<unsigned char> const& index,
                              std::vector<BitBoard> const& attacks,
                              std::vector<BitBoard> const& raw, int square, char const* name);
    static void drop(raw_tables_t& raw);
    static look_up_t look_up(BitBoard const& mask, magic_t const& number,
                             std::vector<unsigned char> const& index,
                             std::vector<BitBoard> const& attacks);
    void bind_look_ups();

    RookMask rook_masks_;
    BishopMask bishop_masks_;
    MagicNumber magic_numbers_;
    raw_tables_t magic_bishop_moves_;
    index_tables_t bishop_index_;
    attack_tables_t bishop_attacks_;
    raw_tables_t magic_rook_moves_;
    index_tables_t rook_index_;
    attack_tables_t rook_attacks_;
    look_ups_t bishop_look_ups_;
    look_ups_t rook_look_ups_;
};

inline BitBoard const& MagicMoves::bishop(Square const& square, BitBoard const& occupied) const {
    return bishop_look_ups_[index(square)](occupied);
}

inline BitBoard const& MagicMoves::rook(Square const& square, BitBoard const& occupied) const {
    return rook_look_ups_[index(square)](occupied);
}

inline std::vector<unsigned char> const& MagicMoves::bishop_index(int square) const {
    return bishop_index_[static_cast<std::size_t>(square)];
}

inline std::vector<BitBoard> const& MagicMoves::bishop_attacks(int square) const {
    return bishop_attacks_[static_cast<std::size_t>(square)];
}

inline std::vector<BitBoard> const& MagicMoves::magic_bishop_moves(int square) const {
    return magic_bishop_moves_[static_cast<std::size_t>(square)];
}

inline std::vector<unsigned char> const& MagicMoves::rook_index(int square) const {
    return rook_index_[static_cast<std::size_t>(square)];
}

inline std::vector<BitBoard> const& MagicMoves::rook_attacks(int square) const {
    return rook_attacks_[static_cast<std::size_t>(square)];
}

inline std::vector<BitBoard> const& MagicMoves::magic_rook_moves(int square) const {
    return magic_rook_moves_[static_cast<std::size_t>(square)];
}

}  // namespace orvelin
