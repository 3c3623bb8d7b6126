#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "endgame/egt4_pieces.h"
#include "support/lent_table.h"
#include "support/logic_error_text.h"
#include "support/positions.h"
#include "support/squares.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

/// A key by its fields, with the white king on b1.
unsigned int key(std::string const& black_king, std::string const& piece1,
                 std::string const& piece2, unsigned int side) {
    auto const id = [](std::string const& square) {
        return static_cast<unsigned int>(Square(square).id());
    };
    return 1U << 19 | id(black_king) << 13 | id(piece2) << 7 | id(piece1) << 1 | side;
}

template <typename Action>
std::string printed(Action action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

}  // namespace

class Egt4PiecesText : public testing::Test {
 protected:
    /// The text of the position that another text sets.
    static std::string rewritten(Egt4Pieces& table, std::string const& fen) {
        table.fen(fen);
        return table.fen();
    }
    std::string error(std::string const& fen) {
        return logic_error_text([&] { kqkr_.fen(fen); });
    }

    Egt4Pieces kbnk_{shared_attacks(), white_knight, white_bishop};
    Egt4Pieces kqkr_{shared_attacks(), white_queen, black_rook};
};

TEST_F(Egt4PiecesText, WritesTheFourPieces) {
    EXPECT_EQ(kqkr_.fen(), positions::empty_board);
    EXPECT_EQ(rewritten(kqkr_, "r6k/8/8/3Q4/8/8/8/K7 b"), "r6k/8/8/3Q4/8/8/8/K7 b - - 0 1");
    EXPECT_EQ(rewritten(kbnk_, "k7/8/2K1BN2/8/8/8/8/8 w"), "k7/8/2K1BN2/8/8/8/8/8 w - - 0 1");
    kqkr_.set_key(key("h8", "h8", "c3", 0));
    EXPECT_EQ(kqkr_.fen(), "7k/8/8/8/8/2r5/8/1K6 b - - 0 1");
}

TEST_F(Egt4PiecesText, LettersFollowThePieceCodes) {
    constexpr std::string_view white = "NBRQ";
    constexpr std::string_view black = "nbrq";
    for (int type = 0; type < 4; ++type) {
        for (int other = 0; other < 4; ++other) {
            auto const at = [&](std::string_view letters, int index) {
                return std::string(1, letters.at(static_cast<std::size_t>(index)));
            };
            Egt4Pieces mixed(shared_attacks(), static_cast<piece_t>(white_knight + type),
                             static_cast<piece_t>(black_knight + other));
            mixed.set_key(key("h8", "g8", "f8", 1));
            EXPECT_EQ(mixed.fen(),
                      "5" + at(black, other) + at(white, type) + "k/8/8/8/8/8/8/1K6 w - - 0 1");
            std::string const squares = "K: b1 k: h8 " + at(white, type) + ": g8 ";
            EXPECT_EQ(mixed.get_key_str(), squares + at(black, other) + ": f8 (white)");
            Egt4Pieces same(shared_attacks(), static_cast<piece_t>(white_knight + type),
                            static_cast<piece_t>(white_knight + other));
            same.set_key(key("h8", "g8", "f8", 0));
            EXPECT_EQ(same.get_key_str(), squares + at(white, other) + ": f8 (black)");
        }
    }
}

TEST_F(Egt4PiecesText, TextOfAKeyNamesACapturedPieceByTheBlackKingsSquare) {
    EXPECT_EQ(kqkr_.get_key_str(key("h8", "h8", "c3", 1)), "K: b1 k: h8 Q: h8 r: c3 (white)");
    EXPECT_EQ(kqkr_.get_key_str(0U), "K: a1 k: a1 Q: a1 r: a1 (black)");
}

TEST_F(Egt4PiecesText, TextOfAPositionIsThatOfItsKey) {
    kqkr_.fen("8/6k1/8/8/8/1K6/8/1Q4r1 w");
    EXPECT_EQ(kqkr_.get_key_str(), "K: c2 k: g7 Q: a2 r: a7 (white)");
    EXPECT_EQ(kqkr_.get_key_str(), kqkr_.get_key_str(kqkr_.get_key()));
}

TEST_F(Egt4PiecesText, TextOfAKeyBeyondTheTableHasNoWhiteKing) {
    EXPECT_EQ(kqkr_.get_key_str(10U << 19), "K: no_square k: a1 Q: a1 r: a1 (black)");
    EXPECT_EQ(kqkr_.get_key_str(0xFFFFFFFF), "K: no_square k: h8 Q: h8 r: h8 (white)");
}

TEST_F(Egt4PiecesText, UpperCaseLettersFallToPiece1ByTheirCodeElseToPiece2) {
    kbnk_.fen("8/8/8/8/8/8/8/NBRQ4 w");
    EXPECT_EQ(kbnk_.piece1(), squares({"a1"}));
    EXPECT_EQ(kbnk_.piece2(), squares({"b1", "c1", "d1"}));
    EXPECT_EQ(kbnk_.sign(), 1);
}

TEST_F(Egt4PiecesText, LowerCaseLettersExchangeTheColours) {
    kqkr_.fen("7k/8/8/8/8/q7/8/K6R w");
    EXPECT_EQ(kqkr_.sign(), -1);
    EXPECT_EQ(kqkr_.stm(), 0);
    EXPECT_EQ(kqkr_.white_king(), squares({"h8"}));
    EXPECT_EQ(kqkr_.black_king(), squares({"a1"}));
    EXPECT_EQ(kqkr_.piece1(), squares({"a3"}));
    EXPECT_EQ(kqkr_.piece2(), squares({"h1"}));
    EXPECT_EQ(kqkr_.fen(), "7K/8/8/8/8/Q7/8/k6r b - - 0 1");
    kqkr_.fen("7k/8/8/8/8/q7/8/K6R b");
    EXPECT_EQ(kqkr_.stm(), 1);
    kqkr_.fen("7k/8/8/8/8/Q7/8/K6r b");
    EXPECT_EQ(kqkr_.sign(), 1);
    EXPECT_EQ(kqkr_.stm(), 0);
}

TEST_F(Egt4PiecesText, BlackPieceOfPiece1sTypeIsPiece2WhenThatIsItsCode) {
    Egt4Pieces rooks(shared_attacks(), white_rook, black_rook);
    rooks.fen("7k/8/8/8/8/r7/8/K6R w");
    EXPECT_EQ(rooks.sign(), 1);
    EXPECT_EQ(rooks.piece1(), squares({"h1"}));
    EXPECT_EQ(rooks.piece2(), squares({"a3"}));
}

TEST_F(Egt4PiecesText, LoneRookIsAlwaysReadAsPiece2) {
    // By design: a rook of White's alone does not exchange the colours.
    kqkr_.fen("7k/8/8/8/8/8/8/K6R w");
    EXPECT_EQ(kqkr_.sign(), 1);
    EXPECT_EQ(kqkr_.fen(), "7k/8/8/8/8/8/8/K6r w - - 0 1");
}

TEST_F(Egt4PiecesText, AnySideFieldButWIsBlack) {
    for (std::string const side : {"b", "W", "white", "-", ""}) {
        kqkr_.fen("7k/8/8/8/8/8/8/KQ6 " + side);
        EXPECT_EQ(kqkr_.stm(), 0) << side;
    }
    kqkr_.fen("\t7k/8/8/8/8/8/8/KQ6 \n w");
    EXPECT_EQ(kqkr_.stm(), 1);
}

TEST_F(Egt4PiecesText, RefusesALetterThatIsNoPieceOfATable) {
    for (std::string const letter : {"p", "P", "x", "0", "9", "-", "\xFF"}) {
        std::string const fen = "7k/8/8/8/8/8/8/KQ4" + letter + "1 w - - 0 1";
        EXPECT_EQ(error(fen), "Egt4Pieces::fen(" + fen + ") \nwrong piece") << letter;
    }
    EXPECT_EQ(error("7k/8/8/8/8/8/8/KQ5r w"), "no exception");
}

TEST_F(Egt4PiecesText, PiecesOffTheBoardAreLeftOut) {
    EXPECT_EQ(rewritten(kqkr_, "7kQ/8/8/8/8/8/8/K7/Q7/Q w"), positions::bare_kings_in_corners);
    EXPECT_EQ(rewritten(kqkr_, "KkQr"), "KkQr4/8/8/8/8/8/8/8 b - - 0 1");
    EXPECT_EQ(rewritten(kqkr_, "8888Q/7k/K7 w"), "8/7k/K7/8/8/8/8/8 w - - 0 1");
    EXPECT_EQ(rewritten(kqkr_, ""), "8/8/8/8/8/8/8/8 b - - 0 1");
}

TEST_F(Egt4PiecesText, FenTextSetsThePositionAnew) {
    EXPECT_EQ(rewritten(kqkr_, "7k/8/8/8/8/q7/8/K6R w"), "7K/8/8/8/8/Q7/8/k6r b - - 0 1");
    EXPECT_EQ(rewritten(kqkr_, "7k/8/8/8/8/8/8/K7 w"), positions::bare_kings_in_corners);
    EXPECT_EQ(kqkr_.sign(), 1);
}

TEST_F(Egt4PiecesText, SurvivesAnyText) {
    LentTable lent(white_queen, black_rook, 7);
    lent.open();
    constexpr std::string_view letters = "KkKkQqRrBbNn12345678//// wbp-";
    std::mt19937 random(2024);
    int refused = 0;
    int texts = short_tests ? 5000 : 50000;
    for (int i = 0; i < texts; ++i) {
        std::string text(random() % 90, ' ');
        // The pieces' letters alone in most texts.
        std::size_t const used = letters.size() - (i % 4 == 0 ? 0 : 4);
        std::generate(text.begin(), text.end(), [&] { return letters.at(random() % used); });
        try {
            int const value = lent.table().eval(text);
            ASSERT_TRUE(value == 254 || value == 29993 || value == -29993) << text;
        } catch (std::logic_error const&) {
            ++refused;
        }
        ASSERT_LE(lent.table().get_key(), lent.table().size()) << text;
        ASSERT_FALSE(lent.table().fen().empty());
    }
    EXPECT_GT(refused, texts / 100);
    EXPECT_LT(refused, texts / 2);
    EXPECT_TRUE(lent.guards_whole());
}

TEST_F(Egt4PiecesText, DecodesEachByte) {
    LentTable lent(white_queen, black_rook);
    lent.open();
    std::string const fen = "8/6k1/8/8/3Q4/8/r1K5/8 w";
    using pair_t = std::pair<int, int>;
    for (auto const& [byte, value] : {pair_t{0, 30000}, pair_t{1, 29999}, pair_t{100, 29900},
                                      pair_t{128, -30000}, pair_t{129, -29999}, pair_t{228, -29900},
                                      pair_t{253, 0}, pair_t{254, 254}, pair_t{255, 255}}) {
        lent.byte(fen) = static_cast<unsigned char>(byte);
        EXPECT_EQ(lent.table().eval(fen), value);
        EXPECT_EQ(lent.table().eval(), value);
        EXPECT_EQ(lent.table().eval(lent.table().get_key()), value);
        EXPECT_EQ(lent.table()[lent.table().get_key()], byte);
        // The same position with the colours exchanged; the two marks have no sign.
        EXPECT_EQ(lent.table().eval("8/6K1/8/8/3q4/8/R1k5/8 b"), byte > 253 ? value : -value);
    }
}

TEST_F(Egt4PiecesText, HasNoValuesWithoutTableOrProgress) {
    EXPECT_EQ(kqkr_.eval("8/6k1/8/8/3Q4/8/r1K5/8 w"), 255);
    EXPECT_EQ(kqkr_.eval("8/8/8/8/8/8/8/8 w"), 255);
    LentTable lent(white_queen, black_rook);
    EXPECT_EQ(lent.table().eval(2U), 255);
    lent.open();
    EXPECT_EQ(lent.table().eval(2U), 0);
    EXPECT_EQ(lent.table().eval("8/8/8/8/8/8/8/8 w"), 254) << "a position without kings";
    EXPECT_EQ(lent.table().eval(lent.table().size()), 254);
}

TEST_F(Egt4PiecesText, MateInPrintsThePresentPositionForEachKey) {
    LentTable lent(white_queen, black_rook);
    lent.byte(7U) = 13;
    lent.byte(70000U) = 13;
    lent.byte(lent.table().size() - 1) = 13;
    lent.byte(8U) = 12;
    lent.table().fen("8/6k1/8/8/3Q4/8/r1K5/8 w");
    std::string const line = "mate in 13:   8/6k1/8/8/3Q4/8/r1K5/8 w - - 0 1\n";
    EXPECT_EQ(printed([&] { lent.table().mate_in(13); }), line + line + line);
    EXPECT_EQ(printed([&] { lent.table().mate_in(14); }), "");
    EXPECT_EQ(printed([&] { lent.table().mate_in(-1); }), "");
    EXPECT_EQ(printed([&] { lent.table().mate_in(256 + 12); }), "");
}

TEST_F(Egt4PiecesText, StatsPrintsTheCountOfEachByteInGroupsOfEight) {
    LentTable lent(white_queen, black_rook);
    lent.byte(0U) = 0;
    lent.byte(1U) = 9;
    lent.byte(2U) = 9;
    std::string expected;
    for (int value = 0; value < 256; ++value) {
        if (value % 8 == 0) {
            expected += '\n';
        }
        if (value == 0) {
            expected += "      1  ";
        } else if (value == 9) {
            expected += "      2  ";
        } else {
            expected += value == 253 ? "5242877  " : "      0  ";
        }
    }
    EXPECT_EQ(printed([&] { lent.table().stats(); }), expected);
}

TEST_F(Egt4PiecesText, StatsOfNoTableCountsTheUnknown) {
    std::string const text = printed([&] { kqkr_.stats(); });
    ASSERT_GT(text.size(), 9U);
    EXPECT_EQ(text.substr(text.size() - 9), "5242880  ");
}

TEST_F(Egt4PiecesText, EqualTablesHaveTheSameBytesAndFirstPiece) {
    LentTable first(white_queen, black_rook);
    LentTable other(white_queen, black_knight);
    LentTable third(white_rook, black_rook);
    EXPECT_TRUE(first.table() == other.table()) << "the second piece is not compared";
    EXPECT_FALSE(first.table() != other.table());
    EXPECT_FALSE(first.table() == third.table());
    other.byte(other.table().size() - 1) = 7;
    EXPECT_FALSE(first.table() == other.table());
    EXPECT_TRUE(first.table() != other.table());
}

TEST_F(Egt4PiecesText, DiffIsTheFirstKeyOfTheLowestDifferentByte) {
    LentTable first(white_queen, black_rook);
    LentTable other(white_queen, black_rook);
    EXPECT_EQ(first.table().diff(other.table()), 0U);
    first.byte(50U) = 20;
    first.byte(60U) = 10;
    first.byte(70U) = 10;
    first.byte(80U) = 5;
    other.byte(80U) = 5;
    EXPECT_EQ(first.table().diff(other.table()), 60U);
    EXPECT_EQ(other.table().diff(first.table()), 50U) << "253 there at all of them";
    other.byte(60U) = 10;
    EXPECT_EQ(first.table().diff(other.table()), 70U);
}

}  // namespace orvelin::test
