#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "position/move.h"
#include "position/piece.h"

namespace orvelin {

/// The counts of both sides' pieces but the kings in one word, four bits each: black pawns,
/// knights, bishops, rooks, queens from bit 0 up, White's in the same order from bit 32 up.
///
/// A plain word, copied freely. A heavier piece is more significant within its half, so halves can
/// be compared as numbers. More than 15 of one piece run into the next field.
class MaterialIndex {
 public:
    /// What one piece adds to the word, by piece id 0..14; the last entry, 0, is there so that
    /// every four-bit id is an index.
    static constexpr std::array<std::uint64_t, 16> inc_table{
        0, 1ULL << 32, 1ULL << 36, 1ULL << 40, 1ULL << 44, 1ULL << 48, 0, 0,
        0, 1ULL << 0,  1ULL << 4,  1ULL << 8,  1ULL << 12, 1ULL << 16, 0, 0};

    /// No pieces.
    constexpr MaterialIndex() = default;

    /// OR a count into its field, which must be zero before.
    constexpr void set_whitequeen(int count) { put(48, count); }
    constexpr void set_whiterook(int count) { put(44, count); }
    constexpr void set_whitebishop(int count) { put(40, count); }
    constexpr void set_whiteknight(int count) { put(36, count); }
    constexpr void set_whitepawn(int count) { put(32, count); }
    constexpr void set_blackqueen(int count) { put(16, count); }
    constexpr void set_blackrook(int count) { put(12, count); }
    constexpr void set_blackbishop(int count) { put(8, count); }
    constexpr void set_blackknight(int count) { put(4, count); }
    constexpr void set_blackpawn(int count) { put(0, count); }

    /// Counts, 0..15.
    constexpr int get_whitequeen() const { return field(48); }
    constexpr int get_whiterook() const { return field(44); }
    constexpr int get_whitebishop() const { return field(40); }
    constexpr int get_whiteknight() const { return field(36); }
    constexpr int get_whitepawn() const { return field(32); }
    constexpr int get_blackqueen() const { return field(16); }
    constexpr int get_blackrook() const { return field(12); }
    constexpr int get_blackbishop() const { return field(8); }
    constexpr int get_blackknight() const { return field(4); }
    constexpr int get_blackpawn() const { return field(0); }

    /// Counts one piece of piece id 0..14 in or out.
    constexpr void add_piece(int id) { index_ += inc_table[static_cast<std::size_t>(id)]; }
    constexpr void remove_piece(int id) { index_ -= inc_table[static_cast<std::size_t>(id)]; }

    constexpr void set_index(std::uint64_t const& index) { index_ = index; }
    /// The packed word.
    constexpr std::uint64_t index() const { return index_; }

    constexpr bool operator==(MaterialIndex const& other) const = default;
    constexpr bool operator<(MaterialIndex const& other) const { return index_ < other.index_; }

    /// Both sides have the same pieces.
    constexpr bool equal() const { return white_half() == black_half(); }
    /// Compares the halves as numbers, so a queen beats any number of rooks (oddity 97).
    constexpr bool white_wins() const { return white_half() > black_half(); }
    constexpr bool black_wins() const { return black_half() > white_half(); }

    /// Exchanges the sides.
    constexpr void flip_colors() { index_ = index_ >> 32 | index_ << 32; }

    /// Takes the captured piece off and turns a promoted pawn into its new piece.
    constexpr void make_move(Move const& move) {
        index_ -= inc_table[static_cast<std::size_t>(move.capture_id())];
        index_ += promotion_change(move);
    }
    /// Undoes make_move() of the same word.
    constexpr void unmake_move(Move const& move) {
        index_ += inc_table[static_cast<std::size_t>(move.capture_id())];
        index_ -= promotion_change(move);
    }

    /// Pieces of both sides as letters: "KQRRBBNNPPPPPPPPkqrrbbnnpppppppp" at the start.
    std::string str() const;

    /// Worth of the material from White's point of view, a pawn at 100.
    int value() const;

 private:
    constexpr void put(int shift, int count) {
        index_ |= static_cast<std::uint64_t>(count) << shift;
    }
    constexpr int field(int shift) const { return static_cast<int>((index_ >> shift) & 0xF); }
    constexpr std::uint32_t white_half() const { return static_cast<std::uint32_t>(index_ >> 32); }
    constexpr std::uint32_t black_half() const { return static_cast<std::uint32_t>(index_); }

    /// New piece minus pawn in the lower half, by move code.
    static constexpr std::array<std::uint64_t, 8> black_change{0,    0,   0xFFFF, 0xFFF,
                                                               0xFF, 0xF, 0,      0};

    /// New piece minus pawn for the promotion of a pawn, 0 for every other move.
    static constexpr std::uint64_t promotion_change(Move const& move) {
        if (move.code() == normal_move) {
            return 0;
        }
        std::uint64_t const change = black_change[move.code()];
        if (move.piece_id() == white_pawn) {
            return change << 32;
        }
        if (move.piece_id() == black_pawn) {
            return change;
        }
        return 0;
    }

    std::uint64_t index_ = 0;
};

static_assert(MaterialIndex::inc_table.front() == 0 && MaterialIndex::inc_table.back() == 0);
static_assert(MaterialIndex::inc_table[5] == 0x1000000000000);
static_assert(MaterialIndex::inc_table[13] == 0x10000);

}  // namespace orvelin
