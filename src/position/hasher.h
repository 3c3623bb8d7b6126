#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "position/move.h"

namespace orvelin {

class ChessPosition;
struct HashKeys;
struct Tables;

/// Keeps the position key and the pawn key up to date while moves are made.
///
/// `KeySet` tells which set of keys of the tables is read: 1, the only one in use, is the published
/// book key set, so that the key of a standard position equals the key of the book file format. The
/// top of the key stack holds the pieces' contribution only; rights, en passant and side to move
/// are folded in when the key is asked for. One entry lies on each stack for each move made and one
/// below them, so neither stack is ever empty. Owned by one ChessPosition and used on its thread.
template <int KeySet>
class Hasher {
    static_assert(KeySet == 1);

 public:
    /// One 0 entry on each stack, no position bound.
    explicit Hasher(Tables const& tables);

    /// Binds `position`, which must outlive the use of hash(), and builds both keys from its
    /// pieces.
    void init(ChessPosition const* position);

    /// Pushes the keys after `move`, which is not tested.
    void make_move(Move const& move);

    /// Pops what make_move() pushed. The lowest entry of each stack stays.
    void pop() {
        if (keys_.size() < 2) {
            return;
        }
        keys_.pop_back();
        pawn_keys_.pop_back();
    }

    /// The position key, with the bound position's castling rights, en passant square and side to
    /// move. Without a bound position the pieces' contribution alone.
    std::uint64_t hash() const;

    /// The pawn key: the pawns' contribution alone.
    std::uint64_t pawn_hash() const { return pawn_keys_.back(); }

 private:
    ChessPosition const* position_ = nullptr;
    HashKeys const& key_set_;
    /// Contribution of the rights on corner rooks, by corner_rights().
    std::array<std::uint64_t, 16> corner_keys_{};
    std::vector<std::uint64_t> keys_;
    std::vector<std::uint64_t> pawn_keys_;
};

extern template class Hasher<1>;

}  // namespace orvelin
