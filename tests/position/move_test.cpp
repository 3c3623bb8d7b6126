#include "position/move.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace orvelin {
namespace {

Move move_of(char const* from, char const* to, unsigned int code, int piece, int capture) {
    return Move(Square(from), Square(to), code, Piece(piece), Piece(capture));
}

TEST(Move, WordZeroHasNoSquares) {
    const Move move;
    EXPECT_EQ(move.word(), 0U);
    EXPECT_EQ(move.from(), Square());
    EXPECT_EQ(move.to(), Square());
    EXPECT_EQ(move.from_id(), 0);
    EXPECT_EQ(move.to_id(), 0);
    EXPECT_EQ(move.algebraic(false), "0000");
    EXPECT_EQ(move.algebraic(true), "0000");
    EXPECT_EQ(move.dump(),
              "from:no_square  to:no_square  code:nullmove  piece:no piece  capture:no piece  "
              "check:false   xcode:hashtable_move");
}

TEST(Move, PacksItsFields) {
    const Move move = move_of("e7", "d8", promo_rook, 1, 13);
    EXPECT_EQ(move.word(), 0x091D3D3BU);
    EXPECT_EQ(move.from().name(), "e7");
    EXPECT_EQ(move.to().name(), "d8");
    EXPECT_EQ(move.from_id(), Square("e7").id());
    EXPECT_EQ(move.to_id(), Square("d8").id());
    EXPECT_EQ(move.code(), promo_rook);
    EXPECT_EQ(move.piece(), Piece(1));
    EXPECT_EQ(move.piece_id(), 1);
    EXPECT_EQ(move.capture(), Piece(13));
    EXPECT_EQ(move.capture_id(), 13);
    EXPECT_EQ(move.xcode(), xnormal_move);
    EXPECT_FALSE(move.check());
}

TEST(Move, BothConstructorsGiveTheSameWord) {
    EXPECT_EQ(Move(Square("b1"), Square("c3"), normal_move, white_knight, black_pawn).word(),
              move_of("b1", "c3", normal_move, 2, 9).word());
}

TEST(Move, ConstructorCutsSquaresToSixBits) {
    const Move move(Square(64 + 3), Square(128 + 5), normal_move, Piece(4), Piece());
    EXPECT_EQ(move.from().id(), 3);
    EXPECT_EQ(move.to().id(), 5);
    EXPECT_EQ(move.code(), normal_move);
}

TEST(Move, ConstructorCutsTheWholeTo24Bits) {
    const Move move(Square(0), Square(0), normal_move, Piece(16 + 4), Piece());
    EXPECT_EQ(move.piece_id(), 4);
    EXPECT_EQ(move.xcode(), xnormal_move);
}

TEST(Move, ConstructorDoesNotMaskCodeAndCapture) {
    EXPECT_TRUE(Move(Square(0), Square(0), 8 + 1, Piece(), Piece()).check());
    EXPECT_EQ(Move(Square(0), Square(0), normal_move, Piece(), Piece(16)).piece_id(), 1);
}

TEST(Move, SettersReplaceTheirFieldOnly) {
    Move move = move_of("a8", "h1", en_passant, 14, 6);
    move.check(true);
    move.from(Square("c2"));
    EXPECT_EQ(move.from().name(), "c2");
    move.to(Square("f7"));
    EXPECT_EQ(move.to().name(), "f7");
    move.code(promo_bishop);
    EXPECT_EQ(move.code(), promo_bishop);
    move.xcode(losing_capture);
    EXPECT_EQ(move.xcode(), losing_capture);
    move.piece(Piece(3));
    EXPECT_EQ(move.piece_id(), 3);
    move.piece(9U);
    EXPECT_EQ(move.piece_id(), 9);
    move.piece_id(4);
    EXPECT_EQ(move.piece_id(), 4);
    move.capture(Piece(11));
    EXPECT_EQ(move.capture_id(), 11);
    move.capture(12U);
    EXPECT_EQ(move.capture_id(), 12);
    move.capture_id(10);
    EXPECT_EQ(move.capture_id(), 10);
    EXPECT_TRUE(move.check());
    const std::uint32_t word = 11U << 24 | 4U << 20 | 10U << 16 | 1U << 15 | 4U << 12 |
                               static_cast<std::uint32_t>(Square("c2").id()) << 6 |
                               static_cast<std::uint32_t>(Square("f7").id());
    EXPECT_EQ(move.word(), word);
    move.check(false);
    EXPECT_EQ(move.word(), word & ~0x8000U);
    move.clear();
    EXPECT_EQ(move.word(), 0U);
}

TEST(Move, StandardCastlingIsWrittenByTheKingsTarget) {
    const Move move = move_of("e1", "h1", castling, 6, 0);
    EXPECT_EQ(move.from().name(), "e1");
    EXPECT_EQ(move.to().name(), "h1");
    EXPECT_EQ(int{move.code()}, 6);
    EXPECT_EQ(move.piece_id(), 6);
    EXPECT_EQ(move.algebraic(false), "e1g1");
    EXPECT_EQ(move.algebraic(true), "e1h1");
    EXPECT_EQ(move_of("e1", "a1", castling, 6, 0).algebraic(false), "e1c1");
    EXPECT_EQ(move_of("e8", "h8", castling, 14, 0).algebraic(false), "e8g8");
    EXPECT_EQ(move_of("e8", "a8", castling, 14, 0).algebraic(false), "e8c8");
    EXPECT_EQ(move_of("e8", "a8", castling, 14, 0).algebraic(true), "e8a8");
}

TEST(Move, OtherCastlingKeepsItsSquaresInBothModes) {
    const Move move = move_of("b1", "a1", castling, 6, 0);
    EXPECT_EQ(move.algebraic(false), "b1a1");
    EXPECT_EQ(move.algebraic(true), "b1a1");
    EXPECT_EQ(move_of("e1", "f1", castling, 6, 0).algebraic(false), "e1f1");
}

TEST(Move, AMoveThatIsNoCastlingIsNeverRewritten) {
    EXPECT_EQ(move_of("e1", "h1", normal_move, 4, 0).algebraic(false), "e1h1");
}

TEST(Move, PromotionsHaveALetter) {
    EXPECT_EQ(move_of("a7", "a8", promo_queen, 1, 0).algebraic(false), "a7a8q");
    EXPECT_EQ(move_of("a7", "a8", promo_rook, 1, 0).algebraic(true), "a7a8r");
    EXPECT_EQ(move_of("a7", "a8", promo_bishop, 1, 0).algebraic(false), "a7a8b");
    EXPECT_EQ(move_of("a7", "a8", promo_knight, 1, 0).algebraic(false), "a7a8n");
    EXPECT_EQ(move_of("a5", "b6", en_passant, 1, 9).algebraic(false), "a5b6");
}

TEST(Move, IdentityLeavesTheClassOut) {
    const Move move = move_of("e2", "e4", normal_move, 1, 0);
    Move classed = move;
    classed.xcode(good_capture);
    EXPECT_TRUE(classed == move);
    EXPECT_FALSE(classed != move);
    EXPECT_TRUE(classed < move);
    EXPECT_FALSE(move < classed);
}

TEST(Move, IdentityHoldsTheCheckBit) {
    const Move move = move_of("e2", "e4", normal_move, 1, 0);
    Move checking = move;
    checking.check(true);
    EXPECT_FALSE(checking == move);
    EXPECT_TRUE(checking != move);
}

TEST(Move, SortsByClassThenPieceCaptureCheckCodeFromTo) {
    Move low = move_of("h8", "h8", en_passant, 14, 14);
    low.check(true);
    low.xcode(killer);
    Move high = move_of("b1", "b1", normal_move, 2, 2);
    high.xcode(counter_move);
    EXPECT_TRUE(low < high);
    const Move base = move_of("b1", "b1", normal_move, 2, 2);
    EXPECT_TRUE(move_of("h8", "h8", en_passant, 2, 14) < move_of("a1", "a1", nullmove, 3, 0));
    const Move quiet = move_of("h8", "h8", en_passant, 2, 2);
    EXPECT_TRUE(quiet < move_of("a1", "a1", nullmove, 2, 3));
    Move checking = base;
    checking.check(true);
    EXPECT_TRUE(quiet < checking);
    EXPECT_TRUE(move_of("h8", "h8", normal_move, 2, 2) < move_of("a1", "a1", promo_queen, 2, 2));
    EXPECT_TRUE(move_of("b1", "h8", normal_move, 2, 2) < move_of("c1", "a1", normal_move, 2, 2));
    EXPECT_TRUE(base < move_of("b1", "c1", normal_move, 2, 2));
}

TEST(Move, SquareA1WithACodeIsNotNoSquare) {
    Move move;
    move.code(castling);
    EXPECT_NE(move.word(), 0U);
    EXPECT_EQ(move.from().name(), "a1");
    EXPECT_EQ(move.to().name(), "a1");
}

TEST(Move, DumpNamesEveryCode) {
    const std::array<char const*, 8> texts{"nullmove  ",   "normal_move  ",  "promo_queen  ",
                                           "promo_rook  ", "promo_bishop  ", "promo_knight  ",
                                           "castling  ",   "en_passant  "};
    for (unsigned int code = 0; code < 8; ++code) {
        EXPECT_EQ(move_of("g1", "f3", code, 2, 12).dump(),
                  std::string("from:g1  to:f3  code:") + texts[code] +
                      "piece:white knight  capture:black rook  check:false   xcode:xnormal_move");
    }
}

TEST(Move, DumpNamesEveryClass) {
    const std::array<char const*, 14> texts{"hashtable_move",   "mate_attack",
                                            "promotion",        "good_capture",
                                            "killer",           "counter_move",
                                            "historical_move1", "historical_move2",
                                            "historical_move3", "xnormal_move",
                                            "bad move",         "losing_capture",
                                            "no_xmove_t",       ""};
    Move move = move_of("g1", "f3", normal_move, 2, 0);
    move.check(true);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        move.xcode(static_cast<xmove_t>(i));
        EXPECT_EQ(move.dump(), std::string("from:g1  to:f3  code:normal_move  piece:white knight  "
                                           "capture:no piece  check:true   xcode:") +
                                   texts[i]);
    }
}

TEST(Move, EnumerationsHaveTheirValues) {
    const std::array<xmove_t, 13> classes{
        hashtable_move, mate_attack,      promotion,        good_capture,     killer,
        counter_move,   historical_move1, historical_move2, historical_move3, xnormal_move,
        bad_move,       losing_capture,   no_xmove_t};
    for (std::size_t i = 0; i < classes.size(); ++i) {
        EXPECT_EQ(std::size_t{classes[i]}, i);
    }
    const std::array<move_t, 8> codes{nullmove,     normal_move,  promo_queen, promo_rook,
                                      promo_bishop, promo_knight, castling,    en_passant};
    for (std::size_t i = 0; i < codes.size(); ++i) {
        EXPECT_EQ(std::size_t{codes[i]}, i);
    }
}

static_assert(sizeof(Move) == 4);

}  // namespace
}  // namespace orvelin
