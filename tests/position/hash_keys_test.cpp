#include "position/hash_keys.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

#include "position/random64.h"

namespace orvelin::test {

namespace {

// Piece ids in the order of the published keys.
constexpr int published_order[12] = {9, 1, 10, 2, 11, 3, 12, 4, 13, 5, 14, 6};

std::uint64_t published(int index) {
    return rndh[static_cast<std::size_t>(index)];
}

}  // namespace

TEST(HashKeys, PieceKeysAreThePublishedOnesByPieceId) {
    HashKeys const keys = make_polyglot_keys();
    for (int kind = 0; kind < 12; ++kind) {
        for (int square = 0; square < 64; ++square) {
            EXPECT_EQ(keys.piece[published_order[kind]][square], published(64 * kind + square));
        }
    }
}

TEST(HashKeys, RowsWithoutAPieceAreZero) {
    HashKeys const keys = make_polyglot_keys();
    for (int const id : {0, 7, 8, 15}) {
        for (int square = 0; square < 64; ++square) {
            EXPECT_EQ(keys.piece[id][square], 0U);
        }
    }
}

TEST(HashKeys, PawnKeysEqualThePieceKeysOfPawnsAndAreZeroElsewhere) {
    HashKeys const keys = make_polyglot_keys();
    for (int id = 0; id < HashKeys::rows; ++id) {
        for (int square = 0; square < 64; ++square) {
            std::uint64_t const expected = id == 1 || id == 9 ? keys.piece[id][square] : 0;
            EXPECT_EQ(keys.pawn[id][square], expected) << id;
        }
    }
    EXPECT_EQ(keys.pawn[9][0], rndh[0]);
    EXPECT_EQ(keys.pawn[1][63], rndh[127]);
}

TEST(HashKeys, CastlingEnPassantAndTurnKeysFollowThePieceKeys) {
    HashKeys const keys = make_polyglot_keys();
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(keys.castling[i], published(768 + i));
    }
    for (int file = 0; file < 8; ++file) {
        EXPECT_EQ(keys.en_passant[file], published(772 + file));
    }
    EXPECT_EQ(keys.turn, rndh[780]);
}

TEST(HashKeys, StartPositionHashesToItsPublishedKey) {
    HashKeys const keys = make_polyglot_keys();
    std::string const back_rank = "RNBQKBNR";
    std::string const letters = " PNBRQK";
    std::uint64_t key = keys.turn;
    for (int file = 0; file < 8; ++file) {
        auto const id = static_cast<int>(letters.find(back_rank[static_cast<std::size_t>(file)]));
        key ^= keys.piece[id][file] ^ keys.piece[id + 8][56 + file];
        key ^= keys.piece[1][8 + file] ^ keys.piece[9][48 + file];
    }
    for (std::uint64_t const castling_key : keys.castling) {
        key ^= castling_key;
    }
    EXPECT_EQ(key, 0x463B96181691FC9C);
}

TEST(HashKeys, SecondSetIsTheAndOfThreeDrawsInMemberOrder) {
    std::mt19937_64 twister(5633491);
    std::uniform_int_distribution<std::uint64_t> draw(1, std::numeric_limits<std::uint64_t>::max());
    auto const expect_next = [&](std::uint64_t key) {
        std::uint64_t const first = draw(twister);
        std::uint64_t const second = draw(twister);
        std::uint64_t const third = draw(twister);
        EXPECT_EQ(key, first & second & third);
    };
    HashKeys const keys = make_random_keys();
    for (auto const* rows : {keys.piece, keys.pawn}) {
        for (int id = 0; id < 15; ++id) {
            for (std::uint64_t const key : rows[id]) {
                expect_next(key);
            }
        }
        for (std::uint64_t const key : rows[15]) {
            EXPECT_EQ(key, 0U);
        }
    }
    for (std::uint64_t const key : keys.castling) {
        expect_next(key);
    }
    for (std::uint64_t const key : keys.en_passant) {
        expect_next(key);
    }
    expect_next(keys.turn);
}

}  // namespace orvelin::test
