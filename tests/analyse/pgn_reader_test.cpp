// What games of real databases hold.

#include "analyse/pgn_reader.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analyse/pgn_reader_fixture.h"
#include "support/positions.h"

namespace orvelin::analyse::test {

namespace {

std::string const italian = "e2e4 e7e5 g1f3 b8c6 f1c4";

TEST(PgnReaderTest, ReadsAGame) {
    ReadGame const read = read_game(
        "[Event \"A \\\"great\\\" match\"]\n[White \"Adams, M\"]\n[Result \"1-0\"]\n\n"
        "1. e4 e5 2. Nf3 Nc6\n3. Bc4 1-0\n");
    EXPECT_EQ(read.reason, "");
    EXPECT_EQ(read.moves(), italian);
    EXPECT_EQ(read.game.tag("Event"), "A \"great\" match");
    EXPECT_EQ(read.game.tag("White"), "Adams, M");
    EXPECT_EQ(read.game.tag("Black"), "");
    EXPECT_EQ(read.game.result, "1-0");
    EXPECT_EQ(read.game.start_fen, positions::start);
    EXPECT_FALSE(read.game.chess960);
    EXPECT_EQ(read.game.number, 1U);
    EXPECT_EQ(read.game.line, 1U);
}

TEST(PgnReaderTest, ReadsAnyFormOfMoveNumbers) {
    for (std::string const text :
         {"1. e4 e5 2. Nf3 Nc6 3. Bc4 *", "1.e4 e5 2.Nf3 Nc6 3.Bc4 *", "e4 e5 Nf3 Nc6 Bc4",
          "1. e4 1... e5 2. Nf3 2... Nc6 3. Bc4", "1 e4 e5 2 Nf3 Nc6 3 Bc4",
          "1.e4 1...e5 2.Nf3 2...Nc6 3.Bc4", "1. e4 .. e5 2. Nf3 ... Nc6 3. Bc4",
          "1e4 e5 2Nf3 Nc6 3Bc4", "1. e4 1. e5 7. Nf3 9999999999999999999999. Nc6 0. Bc4",
          "e2e4 e7e5 g1f3 b8c6 f1c4", "1.\ne4\n\n\ne5 2.\tNf3\vNc6\f3. Bc4 "}) {
        ReadGame const read = read_game(text);
        EXPECT_EQ(read.reason, "") << text;
        EXPECT_EQ(read.moves(), italian) << text;
    }
}

TEST(PgnReaderTest, ReadsPastWhatIsSaidOfMoves) {
    for (std::string const text :
         {"{[%evp 0,3] first} 1. e4 {[%eval 0.17] [%clk 0:05:00]} 1... e5 { [%eval 0.2] } 2. Nf3 "
          "Nc6 "
          "3. Bc4 *",
          "1. e4! $1 e5 $14$15 2. Nf3!? Nc6?? 3. Bc4 += *",
          "1. e4 ! e5 ?! 2. Nf3 +/- Nc6 -+ 3. Bc4 = *",
          "1. e4 (1. d4 d5 (1... Nf6 2. c4) 2. c4) 1... e5 2. Nf3 (2. Xyz -- 1-0 {)} ;)\n) Nc6 3. "
          "Bc4",
          "1. e4 ; the king's pawn { 1... c5\n1... e5 2. Nf3 Nc6 3. Bc4 *",
          "% an escaped line 1. d4\n1. e4 e5\n%another\n2. Nf3 Nc6 3. Bc4 *",
          "1. e4{no blank}e5{none}2. Nf3(2. f4)Nc6;none\n3. Bc4*",
          "1. e4 {a ; ( [ % comment\n% of\n[lines]} e5 2. Nf3 Nc6 3. Bc4 *",
          "1. e4) e5} 2. Nf3] Nc6 3. Bc4 *", "1. e4 {} e5 () 2. Nf3 Nc6 3. Bc4 *"}) {
        ReadGame const read = read_game(text);
        EXPECT_EQ(read.reason, "") << text;
        EXPECT_EQ(read.moves(), italian) << text;
    }
}

TEST(PgnReaderTest, ReadsBytesOfAllKinds) {
    ReadGame const read = read_game(
        "\xEF\xBB\xBF[White \"Gr\xFC"
        "nfeld\"]\r\n[Black \"\xC5\xA0"
        "ahovi\xC4\x87\"]\r\n\r\n1. e4 {\xFF\xFE} e5\r\n2. Nf3" +
        std::string(3, '\0') + " Nc6\r\n3. Bc4\r\n1/2-1/2");
    EXPECT_EQ(read.reason, "");
    EXPECT_EQ(read.moves(), italian);
    EXPECT_EQ(read.game.tag("White"), "Gr\xFCnfeld");
    EXPECT_EQ(read.game.tag("Black"),
              "\xC5\xA0"
              "ahovi\xC4\x87");
    EXPECT_EQ(read.game.result, "1/2-1/2");
}

TEST(PgnReaderTest, ReadsResults) {
    struct example_t {
        std::string text;
        std::string result;
    };
    for (auto const& [text, result] : std::vector<example_t>{
             {"1. e4 1-0", "1-0"},
             {"1. e4 0-1", "0-1"},
             {"1. e4 1/2-1/2", "1/2-1/2"},
             {"1. e4 1/2", "1/2-1/2"},
             {"1. e4 *", "*"},
             {"1. e4", "*"},
             {"[Result \"0-1\"]\n\n1. e4", "0-1"},
             {"[Result \"0-1\"]\n\n1. e4 *", "0-1"},
             {"[Result \"0-1\"]\n\n1. e4 1-0", "0-1"},
             {"[Result \"*\"]\n\n1. e4 1-0", "1-0"},
             {"[Result \"?\"]\n\n1. e4 1-0", "1-0"},
             {"[Result \"1-0 forfeit\"]\n\n1. e4", "*"},
             {"[Result \"0-1\"]", "0-1"},
         }) {
        EXPECT_EQ(read_game(text).game.result, result) << text;
    }
}

TEST(PgnReaderTest, ReadsTagsAsTheyAreWritten) {
    ReadGame const read = read_game(
        "  [ Event  \"a\" ] [Site \"C:\\\\games\"] [Round\"3\"]\n[White \"the \"great\" one\"]\n"
        "[Black \"not closed]\n{a comment}\n1. e4 *");
    EXPECT_EQ(read.reason, "");
    EXPECT_EQ(read.game.tag("Event"), "a");
    EXPECT_EQ(read.game.tag("Site"), "C:\\games");
    EXPECT_EQ(read.game.tag("Round"), "3");
    EXPECT_EQ(read.game.tag("White"), "the \"great\" one");
    EXPECT_EQ(read.game.tag("Black"), "not closed");
    EXPECT_EQ(read.moves(), "e2e4");
}

TEST(PgnReaderTest, TellsGamesApart) {
    std::vector<ReadGame> const games = read_games(
        "[Event \"1\"]\n\n1. e4 e5 *\n\n[Event \"2\"]\n\n*\n\n[Event \"3\"]\n[Event \"4\"]\n\n1. "
        "d4\n"
        "[Event \"5\"]\n1. c4 {the end} 1-0 {behind the end}\n\n1. Nf3 1/2-1/2 1. f4 *\n"
        "[Round \"8\"]\n\n[White \"8\"]\n\n[Round \"9\"]\n\n\n");
    ASSERT_EQ(games.size(), 9U);
    std::vector<std::string> const moves{"e2e4 e7e5", "",     "", "d2d4", "c2c4",
                                         "g1f3",      "f2f4", "", ""};
    std::vector<std::uint64_t> const lines{1, 5, 9, 10, 13, 16, 16, 17, 21};
    for (std::size_t i = 0; i < games.size(); ++i) {
        EXPECT_EQ(games[i].reason, "");
        EXPECT_EQ(games[i].moves(), moves[i]) << i;
        EXPECT_EQ(games[i].game.number, i + 1);
        EXPECT_EQ(games[i].game.line, lines[i]) << i;
    }
    EXPECT_EQ(games[7].game.tag("White"), "8");
    EXPECT_TRUE(read_games(" \n\n{nothing}\n; here\n").empty());
    EXPECT_TRUE(read_games("").empty());
}

TEST(PgnReaderTest, BeginsWhereTheTagsSay) {
    ReadGame const read = read_game(
        "[SetUp \"1\"]\n[FEN \"4k3/8/8/8/8/8/4P3/4K3 b - - 3 40\"]\n\n40... Kd7 41. e4 *");
    EXPECT_EQ(read.reason, "");
    EXPECT_EQ(read.moves(), "e8d7 e2e4");
    EXPECT_EQ(read.game.start_fen, "4k3/8/8/8/8/8/4P3/4K3 b - - 3 40");
    EXPECT_FALSE(read.game.chess960);

    ReadGame const short_text = read_game("[Fen \"4k3/8/8/8/8/8/4P3/4K3 w -\"]\n\n1. e4 *");
    EXPECT_EQ(short_text.reason, "");
    EXPECT_EQ(short_text.game.start_fen, "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    EXPECT_EQ(short_text.remarks.size(), 3U);
    EXPECT_EQ(read_game("[FEN \"\"]\n[SetUp \"0\"]\n\n1. e4").moves(), "e2e4");
}

TEST(PgnReaderTest, ReadsGamesAfterFischer) {
    std::string const moves = "\n\n1. O-O O-O 2. Kh1 Kh8 *";
    for (std::string const tags :
         {"[Variant \"Chess960\"]\n[FEN \"qrkr4/pppppppp/8/8/8/8/PPPPPPPP/QRKR4 w DBdb - 0 1\"]",
          "[FEN \"qrkr4/pppppppp/8/8/8/8/PPPPPPPP/QRKR4 w KQkq - 0 1\"]\n[Variant "
          "\"fischerandom\"]",
          "[FEN \"qrkr4/pppppppp/8/8/8/8/PPPPPPPP/QRKR4 w KQkq - 0 1\"]",
          "[Variant \"Fischer Random\"]\n[FEN \"qrkr4/pppppppp/8/8/8/8/PPPPPPPP/QRKR4 w Dd - 0 "
          "1\"]"}) {
        ReadGame const read = read_game(tags + moves);
        EXPECT_EQ(read.reason, "") << tags;
        EXPECT_EQ(read.moves(), "c1d1 c8d8 g1h1 g8h8") << tags;
        EXPECT_TRUE(read.game.chess960) << tags;
    }
    // The king stands elsewhere, and the rooks in their corners.
    EXPECT_TRUE(read_game("[FEN \"r2k3r/8/8/8/8/8/8/R2K3R w KQkq - 0 1\"]\n\n*").game.chess960);
    EXPECT_FALSE(read_game("[FEN \"r3k2r/8/8/8/8/8/8/R3K2R w HAha - 0 1\"]\n\n*").game.chess960);
    EXPECT_TRUE(read_game("[Variant \"chess 960\"]\n\n1. e4 *").game.chess960);
    EXPECT_FALSE(read_game("[Variant \"From Position\"]\n\n1. e4 *").game.chess960);
}

TEST(PgnReaderTest, GoesBackToTheStartForEachGame) {
    std::vector<ReadGame> const games = read_games(
        "1. e4 e5 *\n1. e4 c5 *\n[FEN \"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1\"]\n\n1. e4 Kd7 *\n"
        "[FEN \"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1\"]\n\n1. e3 *\n[Event \"\"]\n\n1. d4 d5 *\n");
    ASSERT_EQ(games.size(), 5U);
    std::vector<std::string> const moves{"e2e4 e7e5", "e2e4 c7c5", "e2e4 e8d7", "e2e3",
                                         "d2d4 d7d5"};
    for (std::size_t i = 0; i < games.size(); ++i) {
        EXPECT_EQ(games[i].reason, "");
        EXPECT_EQ(games[i].moves(), moves[i]);
    }
}

TEST(PgnReaderTest, TheBlocksOfTheInputDoNotMatter) {
    std::string const text =
        "[Event \"a\"]\n[White \"b \\\"c\\\"\"]\n\n1. e4 {[%eval 0.17]} e5 2. a8(Q) *\n\n"
        "[Event \"d\"]\n\n1. e4 (1. d4) e5 {not closed\n\n[Event \"e\"]\n\n1. d4 d5 1/2-1/2\n";
    std::vector<ReadGame> const whole = read_games(text);
    ASSERT_EQ(whole.size(), 3U);
    for (std::size_t block = 1; block < 40; ++block) {
        std::vector<ReadGame> const games = read_games(text, block);
        ASSERT_EQ(games.size(), whole.size());
        for (std::size_t i = 0; i < games.size(); ++i) {
            EXPECT_EQ(games[i].moves(), whole[i].moves());
            EXPECT_EQ(games[i].reason, whole[i].reason);
            EXPECT_EQ(games[i].game.line, whole[i].game.line);
        }
    }
}

TEST(PgnReaderTest, ReadsLongGames) {
    std::string text = "1. Nf3 Nf6";
    constexpr int moves = 10000;
    for (int move = 2; move < moves; move += 2) {
        text += (move % 4 == 2) ? " Ng1 Ng8" : " Nf3 Nf6";
    }
    ReadGame const read = read_game(text + " 1/2-1/2");
    EXPECT_EQ(read.reason, "");
    EXPECT_EQ(read.game.moves.size(), std::size_t{moves});
}

}  // namespace

}  // namespace orvelin::analyse::test
