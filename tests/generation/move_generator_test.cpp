#include "generation/move_generator.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>

#include "evaluation/mobility.h"
#include "generation/generator_fixture.h"
#include "support/logic_error_text.h"
#include "support/plain_board.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::test {

namespace {

const std::string start = positions::start;

using MoveGeneratorTest = GeneratorFixture;

/// Whole move words, with piece, capture, check and class.
std::vector<std::uint32_t> words(std::vector<Move> const& list) {
    std::vector<std::uint32_t> result;
    for (Move const& move : list) {
        result.push_back(move.word());
    }
    return result;
}

}  // namespace

TEST_F(MoveGeneratorTest, StartPositionHasTwentyMovesAndNoCaptures) {
    EXPECT_EQ(texts(moves(start)), (texts_t{"b1a3", "b1c3", "g1f3", "g1h3", "a2a3", "a2a4", "b2b3",
                                            "b2b4", "c2c3", "c2c4", "d2d3", "d2d4", "e2e3", "e2e4",
                                            "f2f3", "f2f4", "g2g3", "g2g4", "h2h3", "h2h4"}));
    EXPECT_TRUE(captures(start).empty());
}

TEST_F(MoveGeneratorTest, EveryMoveIsOfTheNormalClass) {
    for (Move const& move : moves(positions::kiwipete)) {
        EXPECT_EQ(move.xcode(), xnormal_move);
    }
}

TEST_F(MoveGeneratorTest, QuietPromotionsComeBehindRealCaptures) {
    std::vector<Move> const list = captures("1n6/P6k/8/3p4/4P3/8/8/K7 w - - 0 1");
    EXPECT_EQ(texts(list), (texts_t{"a7b8q", "a7b8r", "a7b8b", "a7b8n", "e4d5", "a7a8q", "a7a8r",
                                    "a7a8b", "a7a8n"}));
    for (std::size_t i = 5; i < list.size(); ++i) {
        EXPECT_FALSE(list[i].capture());
    }
}

TEST_F(MoveGeneratorTest, BlackPromotesOnTheFirstRank) {
    EXPECT_EQ(texts(captures("7K/8/8/8/8/8/p6k/1N6 b - - 0 1")),
              (texts_t{"a2b1q", "a2b1r", "a2b1b", "a2b1n", "a2a1q", "a2a1r", "a2a1b", "a2a1n"}));
}

TEST_F(MoveGeneratorTest, NoMoveTakesAKing) {
    // The side that has moved is in check here, which no game reaches.
    EXPECT_EQ(texts(captures("k7/1P6/8/8/8/8/8/7K w - - 0 1")),
              (texts_t{"b7b8q", "b7b8r", "b7b8b", "b7b8n"}));
    EXPECT_EQ(texts(captures("7k/8/8/8/8/8/1p6/K7 b - - 0 1")),
              (texts_t{"b2b1q", "b2b1r", "b2b1b", "b2b1n"}));
    EXPECT_TRUE(captures("k7/8/8/8/8/8/8/R6K w - - 0 1").empty());
    EXPECT_TRUE(captures("8/8/8/3k4/4P3/8/8/7K w - - 0 1").empty());
}

TEST_F(MoveGeneratorTest, CapturesAreSortedByVictimThenByAttacker) {
    // The queen on d5 can be taken by pawn, knight, bishop, rook, queen and king.
    EXPECT_EQ(texts(captures("k7/8/4K3/3q3Q/2P5/2N2B2/8/3R4 w - - 0 1")),
              (texts_t{"c4d5", "c3d5", "f3d5", "d1d5", "h5d5", "e6d5"}));
    EXPECT_EQ(texts(captures("7k/8/1p3r2/8/p2Nb3/2P2n2/8/R1K5 w - - 0 1")),
              (texts_t{"d4f3", "a1a4"}));
}

TEST_F(MoveGeneratorTest, SortRefusesAVictimThatIsNoPiece) {
    position_.fen("7k/8/8/3p1p2/4P3/8/8/7K w - - 0 1");
    position_.set_piece_on(Square("d5"), Piece(7));
    movetable_t table;
    generator_.create_movetable(position_, table);
    MoveList list;
    EXPECT_EQ(logic_error_text([&] { generator_.serialize_captures(position_, table, list); }),
              "Piece::abs_value out of range:");
}

TEST_F(MoveGeneratorTest, EnPassantSortsAsAPawnCapture) {
    EXPECT_EQ(texts(captures("7k/8/2n5/1P1Pp3/8/8/8/K7 w - e6 0 1")),
              (texts_t{"b5c6", "d5c6", "d5e6"}));
}

TEST_F(MoveGeneratorTest, FullListComesOutInItsFixedOrder) {
    EXPECT_EQ(texts(moves("7k/8/8/p7/1P6/8/8/K6N w - - 0 1")),
              (texts_t{"b4a5", "h1f2", "h1g3", "b4b5", "a1b1", "a1a2", "a1b2"}));
    texts_t const list = texts(moves("4k3/8/8/8/8/4P3/8/RN1QKB1R w KQ - 0 1"));
    std::string origins;
    for (std::string const& text : list) {
        std::string const from = text.substr(0, 2);
        if (origins.size() < 2 || origins.substr(origins.size() - 2) != from) {
            origins += from;
        }
    }
    // Queen, rooks, knight, bishop, pawn, king, and castling last.
    EXPECT_EQ(origins, "d1a1h1b1f1e3e1");
}

TEST_F(MoveGeneratorTest, CheckmateAndStalemateGiveAnEmptyList) {
    EXPECT_TRUE(moves("7k/6Q1/6K1/8/8/8/8/8 b - - 0 1").empty());
    EXPECT_TRUE(moves("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1").empty());
    EXPECT_TRUE(moves("R5k1/5ppp/8/8/8/8/8/K7 b - - 0 1").empty());
}

TEST_F(MoveGeneratorTest, TableHoldsOwnPiecesButNeitherStageListsThem) {
    position_.fen(start);
    movetable_t table;
    generator_.create_movetable(position_, table);
    EXPECT_EQ(BitBoard(table[1]), (BitBoard{Square("a3"), Square("c3"), Square("d2")}));
    MoveList list;
    generator_.serialize_moves(position_, table, list);
    for (Move const& move : list) {
        EXPECT_NE(move.to(), Square("d2"));
    }
}

TEST_F(MoveGeneratorTest, TableIsZeroWhereNoOwnPieceStands) {
    position_.fen("r3k2r/8/8/8/8/8/P7/4K2R w K - 0 1");
    movetable_t table;
    table.fill(~std::uint64_t{0});
    generator_.create_movetable(position_, table);
    for (int s = 0; s < 64; ++s) {
        bool const own = s == 4 || s == 7 || s == 8;
        EXPECT_EQ(table[static_cast<std::size_t>(s)] != 0, own) << s;
    }
}

TEST_F(MoveGeneratorTest, EnPassantIsNotInTheTable) {
    position_.fen("7k/8/8/3Pp3/8/8/8/K7 w - e6 0 1");
    movetable_t table;
    generator_.create_movetable(position_, table);
    EXPECT_EQ(BitBoard(table[35]), BitBoard{Square("d6")});
    MoveList list;
    generator_.serialize_captures(position_, table, list);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].code(), en_passant);
    EXPECT_EQ(list[0].capture_id(), 9);
}

TEST_F(MoveGeneratorTest, EnPassantDoesNotReachAroundTheBoard) {
    // h4 to a6 is nine squares as well.
    EXPECT_TRUE(captures("7k/8/8/p6P/7P/8/8/K7 w - a6 0 1").empty());
    EXPECT_TRUE(captures("7k/8/8/P6p/8/8/8/K7 w - h6 0 1").empty());
}

TEST_F(MoveGeneratorTest, DoubleStepNeedsBothSquaresFree) {
    EXPECT_EQ(moves_from("7k/8/8/8/p7/8/P7/7K w - - 0 1", "a2"), texts_t{"a2a3"});
    EXPECT_EQ(moves_from("7k/8/8/8/8/p7/P7/7K w - - 0 1", "a2"), texts_t{});
    EXPECT_EQ(moves_from("7k/p7/8/P7/8/8/8/7K b - - 0 1", "a7"), texts_t{"a7a6"});
    EXPECT_EQ(moves_from("7k/p7/P7/8/8/8/8/7K b - - 0 1", "a7"), texts_t{});
}

TEST_F(MoveGeneratorTest, RemoveTakesOneTargetOutOfTheTable) {
    position_.fen(start);
    movetable_t table;
    generator_.create_movetable(position_, table);
    movetable_t const before = table;
    generator_.remove(Move(), table);
    EXPECT_EQ(table, before);
    generator_.remove(Move(Square("b1"), Square("c3"), normal_move, white_knight, no_piece), table);
    EXPECT_EQ(BitBoard(table[1]), (BitBoard{Square("a3"), Square("d2")}));
    MoveList list;
    generator_.serialize_moves(position_, table, list);
    EXPECT_EQ(list.size(), 19U);
}

TEST_F(MoveGeneratorTest, ACopyGeneratesByItself) {
    position_.fen(start);
    MoveList list;
    generator_.generate_moves(position_, list);
    MoveGenerator copy(generator_);
    MoveList copied_list;
    copy.generate_moves(position_, copied_list);
    ASSERT_EQ(copied_list.size(), list.size());
    EXPECT_TRUE(std::equal(list.begin(), list.end(), copied_list.begin()));
}

TEST_F(MoveGeneratorTest, MoreMovesThanAListHoldsAreDropped) {
    std::string const ring_of_queens = "QQQQQQQQ/Q6Q/Q6Q/Q6Q/Q6Q/Q6Q/Q6Q/KQQQQQQQ w - - 0 1";
    std::array<Move, 400> storage{};
    storage.fill(Move(Square("h8"), Square("a8"), normal_move, white_pawn, white_knight));
    Move const untouched = storage[0];
    position_.fen(ring_of_queens);
    ASSERT_GT(PlainBoard(position_).legal_moves().size(), 256U);
    MoveList list(storage.data());
    generator_.generate_moves(position_, list);
    EXPECT_EQ(list.size(), 256U);
    EXPECT_NE(storage[255], untouched);
    for (std::size_t i = 256; i < storage.size(); ++i) {
        EXPECT_EQ(storage[i], untouched) << i;
    }
}

namespace {

/// A board of random pieces, any number of kings and pawns on the last ranks included, with random
/// rights and a random en passant square or none.
std::string random_fen(std::mt19937& random) {
    std::string const letters = "PNBRQKpnbrqk";
    auto const density = 1 + random() % 12;
    std::string fen;
    for (int s = 0; s < 64; ++s) {
        if (s > 0 && s % 8 == 0) {
            fen += '/';
        }
        fen += random() % 12 < density ? letters[random() % letters.size()] : '1';
    }
    fen += random() % 2 == 0 ? " w " : " b ";
    fen += random() % 2 == 0 ? "KQkqBCDEFGbcdefg " : "ABCDEFGHabcdefgh ";
    if (random() % 2 == 0) {
        return fen + "- 0 1";
    }
    fen += "abcdefgh"[random() % 8];
    fen += random() % 2 == 0 ? "3 0 1" : "6 0 1";
    return fen;
}

}  // namespace

TEST_F(MoveGeneratorTest, PositionsMadeByHandGiveMovesOfTheirOwnPieces) {
    std::mt19937 random(77);
    for (int i = 0; i < 3000; ++i) {
        std::string const fen = random_fen(random);
        for (Move const& move : moves(fen)) {
            // Castling goes by the squares; among many kings none may stand on the one named.
            if (move.code() == castling) {
                continue;
            }
            ASSERT_EQ(move.piece_id(), position_[move.from().id()].id()) << fen;
            ASSERT_EQ(move.piece().black_piece(), position_.black_to_move()) << fen;
        }
    }
}

TEST_F(MoveGeneratorTest, CapturesWithoutATableAreThoseOfTheTable) {
    std::mt19937 random(79);
    std::size_t compared = 0;
    for (int i = 0; i < 3000; ++i) {
        std::string const fen = random_fen(random);
        std::vector<Move> const expected = captures(fen);
        MoveList list;
        generator_.generate_captures_directly(position_, list);
        ASSERT_EQ(words({list.begin(), list.end()}), words(expected)) << fen;
        compared += expected.size();
    }
    EXPECT_GT(compared, 10000U);
}

TEST_F(MoveGeneratorTest, CapturesWithinTheAttacksOfAnEvaluationAreAll) {
    std::mt19937 random(80);
    std::vector<std::string> fens{
        // Nothing but the second king, an en passant capture, a promotion; what stands behind own
        // pieces, and nothing at all.
        "7k/8/8/8/8/6p1/7K/K7 w - - 0 1",    "7k/8/8/3pP3/8/8/8/K7 w - d6 0 1",
        "7k/P7/8/8/8/8/8/K7 w - - 0 1",      "7k/8/8/q7/8/R7/R7/K7 w - - 0 1",
        "7k/8/8/8/1Q4p1/2B5/8/K7 w - - 0 1", "7k/8/8/8/8/8/8/K7 w - - 0 1",
        "K7/8/8/8/8/8/p7/7k b - - 0 1"};
    for (int i = 0; i < 3000; ++i) {
        fens.push_back(random_fen(random));
    }
    std::size_t without = 0;
    for (std::string const& fen : fens) {
        std::vector<Move> const expected = captures(fen);
        Mobility maps(shared_tables().attacks);
        maps.compute(position_);
        MoveList list;
        generator_.generate_captures_directly(position_, maps.attack_sets(position_.stm()), list);
        ASSERT_EQ(words({list.begin(), list.end()}), words(expected)) << fen;
        without += expected.empty() ? 1U : 0U;
    }
    EXPECT_GT(without, 2U);
}

TEST_F(MoveGeneratorTest, WhatAttacksNothingIsNotLookedAt) {
    position_.fen("7k/8/3p4/8/4N3/8/3Q4/K7 w - - 0 1");
    attack_sets_t attacks;
    MoveList list;
    generator_.generate_captures_directly(position_, attacks, list);
    EXPECT_EQ(list.size(), 0U);
    attacks.attacked = attacks.knight_attacks = position_.black_pawn();
    generator_.generate_captures_directly(position_, attacks, list);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].algebraic(false), "e4d6");
}

TEST_F(MoveGeneratorTest, CapturesWithoutATableAreThoseOfTheTableWhereTwoPiecesShareASquare) {
    // Set by hand, the rook's and the queen's sets hold a square of the knight's.
    position_.fen("3r3k/8/1p1p4/8/2N4p/8/8/K7 w - - 0 1");
    position_.set_piece_on(Square("c4"), Piece(white_rook));
    position_.set_piece_on(Square("c4"), Piece(white_queen));
    ASSERT_TRUE(position_.board_is_inconsistent());
    movetable_t table;
    generator_.create_movetable(position_, table);
    MoveList expected;
    generator_.serialize_captures(position_, table, expected);
    MoveList list;
    generator_.generate_captures_directly(position_, list);
    EXPECT_GT(expected.size(), 1U);
    EXPECT_EQ(words({list.begin(), list.end()}), words({expected.begin(), expected.end()}));
}

TEST_F(MoveGeneratorTest, PositionsMadeByHandCanBePlayedOn) {
    std::mt19937 random(78);
    for (int i = 0; i < 300; ++i) {
        position_.fen(random_fen(random));
        MoveList list;
        for (int ply = 0; ply < 30; ++ply) {
            generator_.generate_moves(position_, list);
            ASSERT_LE(list.size(), 256U);
            if (list.size() == 0) {
                break;
            }
            position_.make_move(list[static_cast<int>(random() % list.size())]);
        }
    }
}

}  // namespace orvelin::test
