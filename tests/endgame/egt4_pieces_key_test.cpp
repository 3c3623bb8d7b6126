#include <algorithm>
#include <array>
#include <cstddef>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <utility>

#include "endgame/egt4_pieces.h"
#include "support/lent_table.h"
#include "support/logic_error_text.h"
#include "support/squares.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

/// The white king's squares in the order of their index.
const std::array<std::string, 10> triangle = {"a1", "b1", "c1", "d1", "b2",
                                              "c2", "d2", "c3", "d3", "d4"};

unsigned int id(std::string const& square) {
    return static_cast<unsigned int>(Square(square).id());
}

/// A key from its fields.
unsigned int key(unsigned int king_index, std::string const& black_king, std::string const& piece1,
                 std::string const& piece2, unsigned int side) {
    return king_index << 19 | id(black_king) << 13 | id(piece2) << 7 | id(piece1) << 1 | side;
}

unsigned int king_index(unsigned int key) {
    return key >> 19;
}

Move move(std::string const& from, std::string const& to, piece_t piece,
          piece_t capture = no_piece) {
    return Move(Square(from), Square(to), normal_move, piece, capture);
}

}  // namespace

class Egt4PiecesKey : public testing::Test {
 protected:
    Egt4Pieces kbnk_{shared_attacks(), white_knight, white_bishop};
    Egt4Pieces kqkr_{shared_attacks(), white_queen, black_rook};
};

TEST_F(Egt4PiecesKey, StartsWithoutTableAndName) {
    EXPECT_EQ(kbnk_.size(), 5242880U);
    EXPECT_EQ(kbnk_.progress(), -1);
    EXPECT_EQ(kbnk_.stm(), 1);
    EXPECT_EQ(kbnk_.sign(), 1);
    EXPECT_EQ(kbnk_.moves_made(), 0U);
    EXPECT_FALSE(kbnk_.white_king() | kbnk_.black_king() | kbnk_.piece1() | kbnk_.piece2());
    EXPECT_EQ(kbnk_[0], 255);
    EXPECT_EQ(kbnk_.name(), "KBNK");
    EXPECT_EQ(kqkr_.name(), "KQKR");
    EXPECT_EQ(Egt4Pieces(shared_attacks(), white_rook, black_knight).name(), "KRKN");
    EXPECT_EQ(Egt4Pieces(shared_attacks(), white_queen, black_knight).name(), "unknown");
    EXPECT_EQ(Egt4Pieces(shared_attacks(), white_bishop, white_knight).name(), "unknown");
}

TEST_F(Egt4PiecesKey, IsNeitherBusyNorReadyBeforeGeneration) {
    EXPECT_FALSE(kbnk_.busy());
    EXPECT_FALSE(kbnk_.ready());
    LentTable lent(white_knight, white_bishop);
    lent.open();
    EXPECT_EQ(lent.table().progress(), 0);
    EXPECT_TRUE(lent.table().busy());
    EXPECT_FALSE(lent.table().ready());
}

TEST_F(Egt4PiecesKey, SetsThePositionOfAKey) {
    kqkr_.set_key(key(5, "g7", "d4", "h1", 0));
    EXPECT_EQ(kqkr_.white_king(), squares({"c2"}));
    EXPECT_EQ(kqkr_.black_king(), squares({"g7"}));
    EXPECT_EQ(kqkr_.piece1(), squares({"d4"}));
    EXPECT_EQ(kqkr_.piece2(), squares({"h1"}));
    EXPECT_EQ(kqkr_.stm(), 0);
    for (unsigned int index = 0; index < triangle.size(); ++index) {
        kqkr_.set_key(key(index, "h8", "g8", "f8", 1));
        EXPECT_EQ(kqkr_.white_king(), squares({triangle.at(index)}));
        EXPECT_EQ(kqkr_.stm(), 1);
    }
}

TEST_F(Egt4PiecesKey, PieceOnAKingsSquareIsAbsent) {
    kqkr_.set_key(key(1, "g7", "g7", "b1", 1));
    EXPECT_FALSE(kqkr_.piece1());
    EXPECT_FALSE(kqkr_.piece2());
    kqkr_.set_key(key(1, "g7", "b1", "g7", 1));
    EXPECT_FALSE(kqkr_.piece1());
    EXPECT_FALSE(kqkr_.piece2());
}

TEST_F(Egt4PiecesKey, SettingAKeySetsTheSignBack) {
    kqkr_.fen("7k/8/8/8/8/q7/8/K6R w - - 0 1");
    ASSERT_EQ(kqkr_.sign(), -1);
    kqkr_.set_key(key(0, "h8", "a3", "b3", 1));
    EXPECT_EQ(kqkr_.sign(), 1);
}

TEST_F(Egt4PiecesKey, CapturedRookIsWrittenWithTheBlackKingsSquare) {
    EXPECT_EQ(key_of(kqkr_, "8/6k1/8/8/3Q4/8/2K5/8 b"), key(5, "g7", "d4", "g7", 0));
    EXPECT_EQ(key_of(kqkr_, "8/6k1/8/8/3r4/8/2K5/8 w"), key(5, "g7", "g7", "d4", 1));
    EXPECT_EQ(key_of(kqkr_, "8/6k1/8/8/8/8/2K5/8 w"), key(5, "g7", "g7", "g7", 1));
}

TEST_F(Egt4PiecesKey, FlipsAndFlopsTheWhiteKingOnH8ToIndex0) {
    EXPECT_EQ(key_of(kqkr_, "5Q1K/8/8/3k4/8/8/8/1r6 w"), key(0, "e4", "c1", "g8", 1));
    EXPECT_EQ(king_index(key_of(kqkr_, "5Q1K/8/8/3k4/8/8/8/1r6 b")), 0U);
}

TEST_F(Egt4PiecesKey, ReflectsTheWhiteKingOnB3ToIndex5) {
    EXPECT_EQ(key_of(kqkr_, "7k/8/8/8/8/1K6/8/Q6r w"), key(5, "h8", "a1", "a8", 1));
    EXPECT_EQ(key_of(kqkr_, "8/5k2/8/8/8/1K6/8/1Q4r1 w"), key(5, "g6", "a2", "a7", 1));
}

TEST_F(Egt4PiecesKey, EverySquareOfTheWhiteKingFallsIntoTheTriangle) {
    // Distances to the nearest edges tell the triangle's square apart from the rest.
    for (int square = 0; square < 64; ++square) {
        int const file = std::min(square % 8, 7 - square % 8);
        int const rank = std::min(square / 8, 7 - square / 8);
        Square const expected(std::max(file, rank) + 8 * std::min(file, rank));
        std::string text(64, '1');
        text.at(static_cast<std::size_t>((7 - square / 8) * 8 + square % 8)) = 'K';
        text.at(text.find('1')) = 'k';
        for (std::size_t rank_end = 56; rank_end > 0; rank_end -= 8) {
            text.insert(rank_end, "/");
        }
        unsigned int const index = king_index(key_of(kqkr_, text + " w"));
        ASSERT_LT(index, triangle.size()) << text;
        EXPECT_EQ(triangle.at(index), expected.name()) << text;
    }
}

TEST_F(Egt4PiecesKey, GettingTheKeyChangesNothing) {
    kqkr_.fen("7k/8/6K1/8/8/q7/8/R7 w - - 0 1");
    std::string const before = kqkr_.fen();
    EXPECT_EQ(kqkr_.get_key(), kqkr_.get_key());
    EXPECT_EQ(kqkr_.fen(), before);
    EXPECT_EQ(kqkr_.sign(), -1);
}

TEST_F(Egt4PiecesKey, HasNoKeyWithoutTwoSingleKings) {
    EXPECT_EQ(kqkr_.get_key(), kqkr_.size());
    EXPECT_EQ(key_of(kqkr_, "8/8/8/8/8/8/8/K7 w"), kqkr_.size());
    EXPECT_EQ(key_of(kqkr_, "kk6/8/8/8/8/8/8/K7 w"), kqkr_.size());
    kqkr_.set_key(key(10, "h8", "a1", "b1", 1));
    EXPECT_FALSE(kqkr_.white_king());
    EXPECT_EQ(kqkr_.get_key(), kqkr_.size());
}

TEST_F(Egt4PiecesKey, SetAndGetGiveTheSameKeyForEveryLegalKey) {
    unsigned int const step = short_tests ? 13 : 1;
    unsigned int legal = 0;
    unsigned int different = 0;
    for (unsigned int i = 0; i < kqkr_.size(); i += step) {
        if (!Egt4Pieces::is_legal_key(i)) {
            continue;
        }
        ++legal;
        kqkr_.set_key(i);
        if (kqkr_.get_key() != i) {
            ++different;
        }
    }
    EXPECT_EQ(different, 0U);
    // The black king not on the white one, each piece on none of the two, or captured.
    if (step == 1) {
        EXPECT_EQ(legal, 10U * 63 * (62 * 61 + 62 + 62 + 1) * 2);
    }
}

TEST_F(Egt4PiecesKey, MirrorKeyReflectsThreeSquares) {
    EXPECT_EQ(Egt4Pieces::get_mirror_key(key(4, "h1", "c5", "a7", 1)), key(4, "a8", "e3", "g1", 1));
    EXPECT_EQ(Egt4Pieces::get_mirror_key(key(9, "f2", "d1", "e5", 0)), key(9, "b6", "a4", "e5", 0));
    for (unsigned int i = 0; i < kqkr_.size(); i += 1009) {
        EXPECT_EQ(Egt4Pieces::get_mirror_key(Egt4Pieces::get_mirror_key(i)), i);
    }
}

TEST_F(Egt4PiecesKey, LegalKeyNeedsDifferentSquares) {
    EXPECT_TRUE(Egt4Pieces::is_legal_key(key(1, "h8", "c4", "d4", 0)));
    EXPECT_FALSE(Egt4Pieces::is_legal_key(key(1, "b1", "c4", "d4", 0)));
    EXPECT_FALSE(Egt4Pieces::is_legal_key(key(1, "h8", "b1", "d4", 0)));
    EXPECT_FALSE(Egt4Pieces::is_legal_key(key(1, "h8", "c4", "b1", 0)));
    EXPECT_FALSE(Egt4Pieces::is_legal_key(key(1, "h8", "c4", "c4", 0)));
    EXPECT_TRUE(Egt4Pieces::is_legal_key(key(1, "h8", "h8", "h8", 0)));
    EXPECT_TRUE(Egt4Pieces::is_legal_key(key(1, "h8", "h8", "d4", 0)));
    EXPECT_TRUE(Egt4Pieces::is_legal_key(key(1, "h8", "c4", "h8", 0)));
}

TEST_F(Egt4PiecesKey, LegalKeyEndsBehindIndex10) {
    EXPECT_TRUE(Egt4Pieces::is_legal_key(key(9, "h8", "c4", "c5", 1)));
    EXPECT_TRUE(Egt4Pieces::is_legal_key(key(10, "h8", "c4", "c5", 1)));
    EXPECT_FALSE(Egt4Pieces::is_legal_key(key(11, "h8", "c4", "c5", 1)));
    EXPECT_FALSE(Egt4Pieces::is_legal_key(0xFFFFFFFF));
}

TEST_F(Egt4PiecesKey, AdjacentKingsAreIllegalWithEitherSideToMove) {
    for (std::string const side : {" w", " b"}) {
        kbnk_.fen("8/8/8/3k4/4K3/8/8/N6B" + side);
        EXPECT_FALSE(kbnk_.is_legal());
        kbnk_.fen("8/8/3k4/8/4K3/8/8/N5B1" + side);
        EXPECT_TRUE(kbnk_.is_legal());
    }
}

TEST_F(Egt4PiecesKey, SideNotToMoveMustNotStandInCheckByABlackPiece) {
    kqkr_.fen("8/6k1/8/8/r3K3/8/8/8 w");
    EXPECT_TRUE(kqkr_.is_legal());
    kqkr_.fen("8/6k1/8/8/r3K3/8/8/8 b");
    EXPECT_FALSE(kqkr_.is_legal());
    kqkr_.fen("8/6k1/8/8/rQ2K3/8/8/8 b");
    EXPECT_TRUE(kqkr_.is_legal()) << "the queen stands between";
}

TEST_F(Egt4PiecesKey, SideNotToMoveMustNotStandInCheckByAWhitePiece) {
    for (std::string const placement : {"8/6k1/8/5N2/4K3/8/8/8", "8/6k1/8/8/4K3/8/1B6/8"}) {
        kbnk_.fen(placement + " w");
        EXPECT_FALSE(kbnk_.is_legal()) << placement;
        kbnk_.fen(placement + " b");
        EXPECT_TRUE(kbnk_.is_legal()) << placement;
    }
    kbnk_.fen("8/6k1/8/8/4K3/3B4/8/8 b");
    EXPECT_TRUE(kbnk_.is_legal()) << "a piece gives its own king no check";
    kqkr_.fen("8/Q5k1/8/8/4K3/8/8/8 w");
    EXPECT_FALSE(kqkr_.is_legal());
    kqkr_.fen("8/Q2r2k1/8/8/4K3/8/8/8 w");
    EXPECT_TRUE(kqkr_.is_legal()) << "the rook stands between";
}

TEST_F(Egt4PiecesKey, IllegalWithoutOneKingEach) {
    for (std::string const placement : {"8/8/8/8/8/8/8/8", "K7/8/8/8/8/8/8/8", "k7/8/8/8/8/8/8/8",
                                        "KK5k/8/8/8/8/8/8/8", "K5kk/8/8/8/8/8/8/8"}) {
        kqkr_.fen(placement + " w");
        EXPECT_FALSE(kqkr_.is_legal()) << placement;
    }
}

TEST_F(Egt4PiecesKey, LegalityRefusesAnImpossiblePiece1) {
    for (int piece = 0; piece < 16; ++piece) {
        Egt4Pieces table(shared_attacks(), static_cast<piece_t>(piece), black_rook);
        EXPECT_EQ(logic_error_text([&] { table.is_legal(); }), "no exception")
            << "without kings nothing is asked of the pieces";
        table.set_key(key(0, "h8", "c4", "c5", 1));
        EXPECT_EQ(logic_error_text([&] { table.is_legal(); }),
                  piece >= white_knight && piece <= white_queen
                      ? "no exception"
                      : "Egt4Pieces::is_legal() unkown piece 1")
            << piece;
    }
}

TEST_F(Egt4PiecesKey, LegalityRefusesAnImpossiblePiece2) {
    for (int piece = 0; piece < 16; ++piece) {
        Egt4Pieces table(shared_attacks(), white_rook, static_cast<piece_t>(piece));
        table.set_key(key(0, "h8", "c4", "c5", 1));
        bool const possible = (piece >= white_knight && piece <= white_queen) ||
                              (piece >= black_knight && piece <= black_queen);
        EXPECT_EQ(logic_error_text([&] { table.is_legal(); }),
                  possible ? "no exception" : "Egt4Pieces::is_legal() unkown piece 2")
            << piece;
    }
}

TEST_F(Egt4PiecesKey, MakesAndTakesBackAMoveOfEachMan) {
    std::string const start = "8/6k1/8/8/3Q4/8/r1K5/8 w - - 0 1";
    using case_t = std::pair<Move, std::string>;
    for (auto const& [made, expected] : std::initializer_list<case_t>{
             {move("d4", "d8", white_queen), "3Q4/6k1/8/8/8/8/r1K5/8 b - - 0 1"},
             {move("c2", "b3", white_king), "8/6k1/8/8/3Q4/1K6/r7/8 b - - 0 1"},
             {move("a2", "a8", black_rook), "r7/6k1/8/8/3Q4/8/2K5/8 b - - 0 1"},
             {move("g7", "h6", black_king), "8/8/7k/8/3Q4/8/r1K5/8 b - - 0 1"}}) {
        kqkr_.fen(start);
        kqkr_.make_move(made);
        EXPECT_EQ(kqkr_.fen(), expected);
        kqkr_.unmake_move(made);
        EXPECT_EQ(kqkr_.fen(), start);
    }
    EXPECT_EQ(kqkr_.moves_made(), 4U);
}

TEST_F(Egt4PiecesKey, CapturesReturnOnTheTargetSquare) {
    kqkr_.fen("8/8/8/8/3Q4/2k5/r7/K7 b - - 0 1");
    Move const takes_queen = move("c3", "d4", black_king, white_queen);
    kqkr_.make_move(takes_queen);
    EXPECT_EQ(kqkr_.fen(), "8/8/8/8/3k4/8/r7/K7 w - - 0 1");
    Move const takes_rook = move("a1", "a2", white_king, black_rook);
    kqkr_.make_move(takes_rook);
    EXPECT_EQ(kqkr_.fen(), "8/8/8/8/3k4/8/K7/8 b - - 0 1");
    kqkr_.unmake_move(takes_rook);
    EXPECT_EQ(kqkr_.fen(), "8/8/8/8/3k4/8/r7/K7 w - - 0 1");
    kqkr_.unmake_move(takes_queen);
    EXPECT_EQ(kqkr_.fen(), "8/8/8/8/3Q4/2k5/r7/K7 b - - 0 1");
}

TEST_F(Egt4PiecesKey, AnyOtherPieceMovesTheBlackKing) {
    kqkr_.fen("8/6k1/8/8/3Q4/8/r1K5/8 w - - 0 1");
    kqkr_.make_move(move("g7", "g8", white_pawn));
    EXPECT_EQ(kqkr_.fen(), "6k1/8/8/8/3Q4/8/r1K5/8 b - - 0 1");
}

TEST_F(Egt4PiecesKey, EmptyMoveOnlyPassesTheTurn) {
    kqkr_.fen("8/6k1/8/8/3Q4/8/r1K5/8 w - - 0 1");
    kqkr_.make_move(Move());
    EXPECT_EQ(kqkr_.fen(), "8/6k1/8/8/3Q4/8/r1K5/8 b - - 0 1");
    EXPECT_EQ(kqkr_.moves_made(), 1U);
    kqkr_.unmake_move(Move());
    EXPECT_EQ(kqkr_.fen(), "8/6k1/8/8/3Q4/8/r1K5/8 w - - 0 1");
    EXPECT_EQ(kqkr_.moves_made(), 1U);
}

}  // namespace orvelin::test
