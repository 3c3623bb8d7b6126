#include "book/bk_move.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "position/chess_position.h"
#include "position/move.h"
#include "position/piece.h"
#include "position/square.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

/// A book move from square names, put together by hand.
BKmove book_move(std::string const& from, std::string const& to, char code = 0) {
    BKmove move;
    move.set_from(Square(from));
    move.set_to(Square(to));
    move.set_code(code);
    return move;
}

TEST(BKmoveTest, StartsAsNoMove) {
    const BKmove move;
    EXPECT_EQ(move.dump(), 0U);
    EXPECT_TRUE(move.nomove());
}

TEST(BKmoveTest, AnyOtherWordIsAMove) {
    for (int const word : {1, 0x40, 0x1000, 0x8000, 0xFFFF}) {
        EXPECT_FALSE(BKmove(static_cast<std::uint16_t>(word)).nomove()) << word;
    }
}

TEST(BKmoveTest, FieldsLieInThePublishedBits) {
    const BKmove move(0x4C7D);
    EXPECT_EQ(move.to(), Square(0x3D));
    EXPECT_EQ(move.from(), Square(0x31));
    EXPECT_EQ(move.code(), 4);
    EXPECT_EQ(book_move("e2", "e4").dump(), 12 << 6 | 28);
    EXPECT_EQ(book_move("a1", "h8").dump(), 63);
    EXPECT_EQ(book_move("h8", "a1").dump(), 63 << 6);
    EXPECT_EQ(book_move("a7", "a8", 4).dump(), 4 << 12 | 48 << 6 | 56);
}

TEST(BKmoveTest, TheTopBitBelongsToNoField) {
    const BKmove move(0x8000);
    EXPECT_EQ(move.to(), Square(0));
    EXPECT_EQ(move.from(), Square(0));
    EXPECT_EQ(move.code(), 0);
    EXPECT_EQ(move.dump(), 0x8000);
}

TEST(BKmoveTest, EachFieldIsSetAlone) {
    for (int const word : {0x0000, 0xFFFF}) {
        const BKmove start(static_cast<std::uint16_t>(word));
        BKmove move = start;
        move.set_to(Square(0x2A));
        EXPECT_EQ(move.dump(), (word & ~0x3F) | 0x2A);
        move = start;
        move.set_from(Square(0x15));
        EXPECT_EQ(move.dump(), (word & ~0xFC0) | 0x15 << 6);
        move = start;
        move.set_code(5);
        EXPECT_EQ(move.dump(), (word & ~0x7000) | 5 << 12);
    }
}

TEST(BKmoveTest, ValuesTooLargeAreCutToTheirField) {
    BKmove move;
    move.set_to(Square());
    move.set_from(Square());
    EXPECT_TRUE(move.nomove());
    move.set_code(static_cast<char>(0x7F));
    EXPECT_EQ(move.dump(), 0x7000);
}

TEST(BKmoveTest, ClearLeavesNoMove) {
    BKmove move(0xFFFF);
    move.clear();
    EXPECT_TRUE(move.nomove());
    EXPECT_EQ(move.dump(), 0U);
}

TEST(BKmoveTest, MoveGivesItsSquaresAndPromotion) {
    const std::pair<move_t, int> fields[] = {{nullmove, 0},   {normal_move, 0},  {promo_queen, 4},
                                             {promo_rook, 3}, {promo_bishop, 2}, {promo_knight, 1},
                                             {castling, 0},   {en_passant, 0}};
    for (auto const& [code, field] : fields) {
        Move move(Square("b7"), Square("c8"), code, Piece(white_pawn), Piece(black_rook));
        move.check(true);
        move.xcode(hashtable_move);
        const BKmove stored(move);
        EXPECT_EQ(stored.from(), Square("b7")) << move.dump();
        EXPECT_EQ(stored.to(), Square("c8")) << move.dump();
        EXPECT_EQ(stored.code(), field) << move.dump();
        EXPECT_EQ(stored.dump(), field << 12 | 49 << 6 | 58) << move.dump();
    }
}

TEST(BKmoveTest, EmptyMoveGivesTheWordOfItsMissingSquares) {
    EXPECT_EQ(BKmove(Move()).dump(), 4160U);
}

class BKmoveConversionTest : public ::testing::Test {
 protected:
    Move convert(BKmove const& move) const { return move(position); }

    /// The text of the full move.
    std::string text(BKmove const& move, bool chess960 = false) const {
        return convert(move).algebraic(chess960);
    }

    ChessPosition position{test::shared_tables()};
};

TEST_F(BKmoveConversionTest, NoMoveGivesTheEmptyMove) {
    position.newgame();
    EXPECT_EQ(convert(BKmove()).word(), 0U);
}

TEST_F(BKmoveConversionTest, QuietMoveAndCapture) {
    position.fen("4k3/8/8/3n4/4P3/8/8/4K3 w - - 0 1");
    const Move push = convert(book_move("e4", "e5"));
    EXPECT_EQ(push, Move(Square("e4"), Square("e5"), normal_move, white_pawn, no_piece));
    const Move capture = convert(book_move("e4", "d5"));
    EXPECT_EQ(capture, Move(Square("e4"), Square("d5"), normal_move, white_pawn, black_knight));
}

TEST_F(BKmoveConversionTest, EnPassantIsFilledIn) {
    position.fen("4k3/8/8/3pP3/5Pp1/8/8/4K3 w - d6 0 1");
    EXPECT_EQ(convert(book_move("e5", "d6")),
              Move(Square("e5"), Square("d6"), en_passant, white_pawn, black_pawn));
    position.fen("4k3/8/8/3pP3/5Pp1/8/8/4K3 b - f3 0 1");
    EXPECT_EQ(convert(book_move("g4", "f3")),
              Move(Square("g4"), Square("f3"), en_passant, black_pawn, white_pawn));
}

TEST_F(BKmoveConversionTest, PromotionFieldFourOnAPawnsMoveIsAQueen) {
    position.fen("4k3/P7/8/8/8/8/p7/4K3 w - - 0 1");
    EXPECT_EQ(convert(book_move("a7", "a8", 4)).code(), promo_queen);
    EXPECT_EQ(text(book_move("a7", "a8", 4)), "a7a8q");
}

TEST_F(BKmoveConversionTest, PromotionsOfBothColours) {
    const std::pair<char, move_t> codes[] = {{0, normal_move}, {1, promo_knight}, {2, promo_bishop},
                                             {3, promo_rook},  {4, promo_queen},  {5, normal_move},
                                             {6, normal_move}, {7, normal_move}};
    position.fen("1n2k3/P7/8/8/8/8/p7/1N2K3 w - - 0 1");
    for (auto const& [field, code] : codes) {
        EXPECT_EQ(convert(book_move("a7", "a8", field)),
                  Move(Square("a7"), Square("a8"), code, white_pawn, no_piece));
        EXPECT_EQ(convert(book_move("a7", "b8", field)),
                  Move(Square("a7"), Square("b8"), code, white_pawn, black_knight));
        EXPECT_EQ(convert(book_move("a2", "a1", field)),
                  Move(Square("a2"), Square("a1"), code, black_pawn, no_piece));
        EXPECT_EQ(convert(book_move("a2", "b1", field)),
                  Move(Square("a2"), Square("b1"), code, black_pawn, white_knight));
    }
}

struct castling_case_t {
    char const* from;
    char const* to;
    char const* standard;
    piece_t king;
};

TEST_F(BKmoveConversionTest, KingOnE1WithRookOnH1Castles) {
    position.fen(positions::all_castlings);
    const castling_case_t cases[] = {{"e1", "h1", "e1g1", white_king},
                                     {"e1", "a1", "e1c1", white_king},
                                     {"e8", "h8", "e8g8", black_king},
                                     {"e8", "a8", "e8c8", black_king}};
    for (castling_case_t const& c : cases) {
        const BKmove move = book_move(c.from, c.to);
        EXPECT_EQ(convert(move), Move(Square(std::string(c.from)), Square(std::string(c.to)),
                                      castling, c.king, no_piece));
        EXPECT_EQ(text(move), c.standard);
        EXPECT_EQ(text(move, true), std::string(c.from) + c.to);
    }
}

TEST_F(BKmoveConversionTest, QueenOnE1MakesANormalMoveToH1) {
    position.fen("4k3/8/8/8/8/8/K7/4Q2r w - - 0 1");
    const Move capture = convert(book_move("e1", "h1"));
    EXPECT_EQ(capture, Move(Square("e1"), Square("h1"), normal_move, white_queen, black_rook));
    EXPECT_EQ(capture.algebraic(false), "e1h1");
    position.fen("4k3/8/8/8/8/8/K7/4Q2R w - - 0 1");
    EXPECT_EQ(convert(book_move("e1", "h1")).code(), normal_move);
    position.fen("4q2r/k7/8/8/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(convert(book_move("e8", "h8")).code(), normal_move);
}

TEST_F(BKmoveConversionTest, KingAndRookOfChess960CastleFromAnySquare) {
    position.fen("1r2kr2/8/8/8/8/8/8/1R2KR2 w FBfb - 0 1");
    for (auto const& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"e1", "f1"}, {"e1", "b1"}, {"e8", "f8"}, {"e8", "b8"}}) {
        EXPECT_EQ(convert(book_move(from, to)).code(), castling) << from << to;
        EXPECT_EQ(text(book_move(from, to), true), from + to);
        EXPECT_EQ(text(book_move(from, to), false), from + to);
    }
    position.fen("rk5r/8/8/8/8/8/8/RK5R w HAha - 0 1");
    EXPECT_EQ(convert(book_move("b1", "a1")).code(), castling);
    EXPECT_EQ(convert(book_move("b1", "h1")).code(), castling);
    EXPECT_EQ(convert(book_move("b8", "a8")).code(), castling);
    EXPECT_EQ(convert(book_move("b8", "h8")).code(), castling);
}

TEST_F(BKmoveConversionTest, CastlingAsksForPiecesNotForRights) {
    position.fen("4k3/8/8/3kr3/3KR3/8/8/4K3 w - - 0 1");
    EXPECT_EQ(convert(book_move("d4", "e4")).code(), castling);
    EXPECT_EQ(convert(book_move("d5", "e5")).code(), castling);
    // The rook of the other side is captured.
    EXPECT_EQ(convert(book_move("d4", "e5")),
              Move(Square("d4"), Square("e5"), normal_move, white_king, black_rook));
    EXPECT_EQ(convert(book_move("d5", "e4")),
              Move(Square("d5"), Square("e4"), normal_move, black_king, white_rook));
}

TEST_F(BKmoveConversionTest, CastlingOverridesThePromotionField) {
    position.fen(positions::white_short_castling);
    for (char field = 0; field <= 7; ++field) {
        EXPECT_EQ(convert(book_move("e1", "h1", field)).code(), castling);
    }
}

TEST_F(BKmoveConversionTest, KingsTwoStepsAreNoCastling) {
    position.fen(positions::white_short_castling);
    EXPECT_EQ(convert(book_move("e1", "g1")),
              Move(Square("e1"), Square("g1"), normal_move, white_king, no_piece));
}

TEST_F(BKmoveConversionTest, IllegalMovesComeBackAllTheSame) {
    position.newgame();
    EXPECT_EQ(text(book_move("a1", "a8")), "a1a8");
    EXPECT_EQ(convert(book_move("a1", "a8")).capture_id(), black_rook);
    EXPECT_EQ(text(book_move("e7", "e5")), "e7e5");
    EXPECT_EQ(convert(book_move("d1", "e1")),
              Move(Square("d1"), Square("e1"), normal_move, white_queen, white_king));
    EXPECT_EQ(text(book_move("b1", "b1")), "b1b1");
    // By design a promotion stays on any piece.
    EXPECT_EQ(text(book_move("g1", "f3", 4)), "g1f3q");
    EXPECT_EQ(convert(book_move("g1", "f3", 4)).piece_id(), white_knight);
}

TEST_F(BKmoveConversionTest, EmptyFromSquareGivesAMoveOfNobody) {
    position.newgame();
    for (char const field : {char{0}, char{4}}) {
        const Move move = convert(book_move("e4", "e7", field));
        EXPECT_EQ(move, Move(Square("e4"), Square("e7"), nullmove, no_piece, black_pawn));
        EXPECT_EQ(move.algebraic(false), "e4e7");
    }
}

TEST_F(BKmoveConversionTest, MovesSurviveTheWayThroughAWord) {
    position.fen("r3k2r/P6p/8/3pP3/8/8/8/R3K2R w KQkq d6 0 1");
    for (char const* move_text : {"e1g1", "e1c1", "e5d6", "a7a8", "e5e6", "e1d2", "h1h7"}) {
        const Move move = position.convert_to_move(std::string(move_text));
        const Move back = convert(BKmove(move));
        EXPECT_EQ(back.algebraic(false), move_text);
        EXPECT_EQ(back.code(), move.code()) << move_text;
        EXPECT_EQ(back.capture_id(), move.capture_id()) << move_text;
    }
}

TEST_F(BKmoveConversionTest, EveryWordIsSafe) {
    position.fen("r3k2r/P6p/8/3pP3/8/8/p7/R3K2R w KQkq d6 0 1");
    for (int word = 1; word <= 0xFFFF; ++word) {
        const BKmove stored(static_cast<std::uint16_t>(word));
        const Move move = convert(stored);
        if (move.word() == 0 || move.from() != stored.from() || move.to() != stored.to()) {
            ADD_FAILURE() << word << " gives " << move.dump();
        }
    }
}

}  // namespace
}  // namespace orvelin
