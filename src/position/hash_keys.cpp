#include "position/hash_keys.h"

#include <cstddef>
#include <limits>
#include <random>

#include "position/random64.h"

namespace orvelin {

namespace {

/// Index into `rndh` of a piece's key on a1. The published order is by kind of piece, Black first.
constexpr int first_piece_key(int piece_id) {
    bool const white = piece_id < 8;
    int const type = piece_id & 7;
    return 64 * (2 * (type - 1) + (white ? 1 : 0));
}

constexpr int castling_keys = 768;
constexpr int en_passant_keys = 772;
constexpr int turn_key = 780;

std::uint64_t published(int index) {
    return rndh[static_cast<std::size_t>(index)];
}

}  // namespace

HashKeys make_polyglot_keys() {
    HashKeys keys;
    for (int id = 1; id <= 14; ++id) {
        if (id == 7 || id == 8) {
            continue;
        }
        for (int square = 0; square < 64; ++square) {
            std::uint64_t const key = published(first_piece_key(id) + square);
            keys.piece[id][square] = key;
            if (id == 1 || id == 9) {
                keys.pawn[id][square] = key;
            }
        }
    }
    for (int i = 0; i < 4; ++i) {
        keys.castling[i] = published(castling_keys + i);
    }
    for (int file = 0; file < 8; ++file) {
        keys.en_passant[file] = published(en_passant_keys + file);
    }
    keys.turn = published(turn_key);
    return keys;
}

HashKeys make_random_keys() {
    std::mt19937_64 twister(5633491);
    std::uniform_int_distribution<std::uint64_t> draw(1, std::numeric_limits<std::uint64_t>::max());
    auto const next = [&] {
        std::uint64_t key = draw(twister);
        key &= draw(twister);
        key &= draw(twister);
        return key;
    };
    HashKeys keys;
    // Row 15 is no part of the set: a draw for it would shift all that follow.
    for (auto* rows : {keys.piece, keys.pawn}) {
        for (int id = 0; id < 15; ++id) {
            for (auto& key : rows[id]) {
                key = next();
            }
        }
    }
    for (auto& key : keys.castling) {
        key = next();
    }
    for (auto& key : keys.en_passant) {
        key = next();
    }
    keys.turn = next();
    return keys;
}

}  // namespace orvelin
