#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "position/chess_position.h"
#include "position/move.h"
#include "position/setup_fixture.h"
#include "position/square.h"
#include "support/chess960_positions.h"
#include "support/perft.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::test {
namespace {

class MirrorTest : public SetupTest {
 protected:
    /// Ordinary positions: rights of both notations, en passant, pins and a check.
    static std::vector<std::string> some_fens() {
        std::vector<std::string> fens = random_chess960_fens(shared_tables(), 20);
        fens.insert(fens.end(), {start_fen, positions::promotions,
                                 "rnbqkbnr/pppp2pp/8/4pp2/8/N3P3/PPPP1PPP/R1BQKBNR w KQkq e6 0 3",
                                 "7k/8/8/8/8/8/8/rRK5 w B - 0 1", "7k/6Q1/6K1/8/8/8/8/8 b - - 7 40",
                                 "1R3Qk1/5pp1/8/5P1p/n7/6P1/2P2P1P/6K1 b - - 0 29"});
        return fens;
    }

    std::string flipped(std::string const& text) {
        position.fen(text);
        position.flip();
        return position.fen();
    }

    std::string flopped(std::string const& text) {
        position.fen(text);
        position.flop();
        return position.fen();
    }
};

class FlipTest : public MirrorTest {};
class FlopTest : public MirrorTest {};

TEST_F(FlipTest, ChangesTheSideToMove) {
    for (std::string const& text : some_fens()) {
        position.fen(text);
        int const before = position.stm();
        position.flip();
        EXPECT_EQ(position.stm(), 1 - before) << text;
    }
}

TEST_F(FlipTest, TwiceGivesTheFirstPositionAndKey) {
    for (std::string const& text : some_fens()) {
        position.fen(text);
        const std::uint64_t key = position.get_hash();
        const std::string written = position.fen();
        position.flip();
        EXPECT_NE(position.get_hash(), key) << text;
        expect_new_game();
        position.flip();
        EXPECT_EQ(position.get_hash(), key) << text;
        EXPECT_EQ(position.fen(), written);
    }
}

TEST_F(FlipTest, MirrorsPiecesRightsAndEnPassantAndKeepsTheCounters) {
    EXPECT_EQ(flipped(start_fen), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1");
    EXPECT_EQ(flipped("rnbqkbnr/pppp2pp/8/4pp2/8/N3P3/PPPP1PPP/R1BQKBNR w Kkq e6 5 3"),
              "r1bqkbnr/pppp1ppp/n3p3/8/4PP2/8/PPPP2PP/RNBQKBNR b KQk e3 5 3");
    EXPECT_EQ(flipped("4k3/8/8/8/4Pp2/8/8/4K3 b - e3 0 9"), "4k3/8/8/4pP2/8/8/8/4K3 w - e6 0 9");
}

TEST_F(FlipTest, WhitesRightOnH1BecomesBlacksOnH8) {
    position.fen(positions::white_short_castling);
    EXPECT_EQ(position.castlingrights(), 0x0080);
    position.flip();
    EXPECT_EQ(position.castlingrights(), 0x8000);
    EXPECT_EQ(position.fen(), "4k2r/8/8/8/8/8/8/4K3 b k - 0 1");
    position.flip();
    EXPECT_EQ(position.castlingrights(), 0x0080);
}

TEST_F(FlipTest, ExchangesTheRightsOfBothSides) {
    EXPECT_EQ(flipped("1r2k1r1/8/8/8/8/8/8/R1R1K3 w ACbg - 0 1"),
              "r1r1k3/8/8/8/8/8/8/1R2K1R1 b BGac - 0 1");
    EXPECT_EQ(position.castlingrights(), 0x0542);
}

TEST_F(FlipTest, KeepsNoEnPassantSquareAsItIs) {
    position.newgame();
    position.flip();
    EXPECT_EQ(position.ep(), Square());
}

// The written text knows corner rights by wing only, and reading it looks for a rook.
TEST_F(FlipTest, ACornerRightWithoutItsRookIsReadAgainFromTheText) {
    position.fen("4k3/8/8/8/8/8/8/4K1R1 w H - 0 1");
    position.flip();
    EXPECT_EQ(position.castlingrights(), 0x4000);
    position.fen("4k3/8/8/8/8/8/8/4K3 w H - 0 1");
    position.flip();
    EXPECT_EQ(position.castlingrights(), 0x0200);
}

TEST_F(FlipTest, ForgetsTheGame) {
    position.newgame();
    for (char const* text : {"g1f3", "g8f6", "f3g1", "f6g8"}) {
        play(text);
    }
    ASSERT_TRUE(position.draw_by_threefold_repetition());
    position.flip();
    EXPECT_EQ(position.fen(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 4 3");
    EXPECT_TRUE(position.moves_history().empty());
    expect_new_game();
}

TEST_F(FlipTest, LeavesTheNumberOfLinesAsItIs) {
    Perft perft(shared_tables());
    for (std::string const& text : some_fens()) {
        position.fen(text);
        const std::uint64_t leaves = perft.count(position, 2);
        position.flip();
        EXPECT_EQ(perft.count(position, 2), leaves) << text;
    }
}

TEST_F(FlopTest, TwiceGivesTheFirstPositionAndKey) {
    for (std::string const& text : some_fens()) {
        position.fen(text);
        const std::uint64_t key = position.get_hash();
        const std::string written = position.fen();
        int const side = position.stm();
        position.flop();
        EXPECT_EQ(position.stm(), side) << text;
        EXPECT_NE(position.get_hash(), key) << text;
        expect_new_game();
        position.flop();
        EXPECT_EQ(position.get_hash(), key) << text;
        EXPECT_EQ(position.fen(), written);
    }
}

TEST_F(FlopTest, MirrorsPiecesRightsAndEnPassantAndKeepsTheCounters) {
    EXPECT_EQ(flopped(start_fen), "rnbkqbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBKQBNR w KQkq - 0 1");
    EXPECT_EQ(flopped("rnbqkbnr/pppp2pp/8/4pp2/8/N3P3/PPPP1PPP/R1BQKBNR w Kkq e6 5 3"),
              "rnbkqbnr/pp2pppp/8/2pp4/8/3P3N/PPP1PPPP/RNBKQB1R w Qkq d6 5 3");
}

TEST_F(FlopTest, WhitesRightOnH1BecomesHisRightOnA1) {
    position.fen(positions::white_short_castling);
    position.flop();
    EXPECT_EQ(position.castlingrights(), 0x0001);
    EXPECT_EQ(position.fen(), "3k4/8/8/8/8/8/8/R2K4 w Q - 0 1");
}

TEST_F(FlopTest, ReversesTheRightsOfEachSide) {
    EXPECT_EQ(flopped("1r2k1r1/8/8/8/8/8/8/R1R1K3 w ACbg - 0 1"),
              "1r1k2r1/8/8/8/8/8/8/3K1R1R w FHbg - 0 1");
    EXPECT_EQ(position.castlingrights(), 0x42A0);
}

TEST_F(FlopTest, LeavesEnPassantOnItsRank) {
    for (int file = 0; file < 8; ++file) {
        for (char const rank : {'3', '6'}) {
            const std::string field{static_cast<char>('a' + file), rank};
            const std::string mirrored{static_cast<char>('h' - file), rank};
            EXPECT_EQ(flopped("4k3/8/8/8/8/8/8/4K3 w - " + field + " 0 1"),
                      "3k4/8/8/8/8/8/8/3K4 w - " + mirrored + " 0 1");
        }
    }
}

TEST_F(FlopTest, KeepsNoEnPassantSquareAsItIs) {
    position.newgame();
    position.flop();
    EXPECT_EQ(position.ep(), Square());
}

TEST_F(FlopTest, ForgetsTheGame) {
    position.newgame();
    for (char const* text : {"g1f3", "g8f6", "f3g1", "f6g8"}) {
        play(text);
    }
    ASSERT_TRUE(position.draw_by_threefold_repetition());
    position.flop();
    EXPECT_EQ(position.fen(), "rnbkqbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBKQBNR w KQkq - 4 3");
    EXPECT_TRUE(position.moves_history().empty());
    expect_new_game();
}

TEST_F(FlopTest, CommutesWithFlip) {
    for (std::string const& text : some_fens()) {
        position.fen(text);
        position.flip();
        position.flop();
        const std::string one_way = position.fen();
        position.fen(text);
        position.flop();
        position.flip();
        EXPECT_EQ(position.fen(), one_way);
    }
}

TEST_F(MirrorTest, MirroringAnyTextTouchesNoForeignMemory) {
    for (char const* text :
         {"QQQQQQQQQQQQQQQQQQQQ/QQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQ/K/k w KQkq a3 0 1",
          "////////////////////////pppppppp b KQkq h3 0 1", "8/8/8/8/8/8/8/8 w AHah - 65535 -7",
          "KKKKKKKK/8/8/8/8/8/8/kkkkkkkk w KQkq - 0 1", ""}) {
        EXPECT_FALSE(flipped(text).empty());
        EXPECT_EQ(position.history().size(), 1U) << text;
        EXPECT_FALSE(flopped(text).empty());
        EXPECT_EQ(position.history().size(), 1U) << text;
    }
}

// A king that promotes to a knight becomes an id that is no piece and has no letter.
TEST_F(MirrorTest, MirroringAnIdThatIsNoPieceTouchesNoForeignMemory) {
    for (bool const top_to_bottom : {true, false}) {
        position.fen(positions::white_castlings);
        position.make_move(Square("e1"), Square("e2"), promo_knight);
        ASSERT_EQ(position.get_piece_id_from(Square("e2")), 7);
        if (top_to_bottom) {
            position.flip();
        } else {
            position.flop();
        }
        EXPECT_EQ(position.history().size(), 1U);
        EXPECT_FALSE(position.fen().empty());
    }
}

}  // namespace
}  // namespace orvelin::test
