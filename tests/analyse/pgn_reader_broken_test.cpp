// Games that cannot be read, of which none spoils the next.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analyse/pgn_reader.h"
#include "analyse/pgn_reader_fixture.h"

namespace orvelin::analyse::test {

namespace {

std::string const good_game = "[Event \"good\"]\n\n1. d4 d5 1-0\n";

/// The reason against the first of two games, of which the second is good.
std::string reason_before_good(std::string const& text) {
    std::vector<ReadGame> const games = read_games(text + "\n\n" + good_game);
    EXPECT_EQ(games.size(), 2U) << text;
    if (games.size() != 2) {
        return "";
    }
    EXPECT_EQ(games[1].reason, "") << text;
    EXPECT_EQ(games[1].moves(), "d2d4 d7d5") << text;
    EXPECT_EQ(games[1].game.tag("Event"), "good");
    return games[0].reason;
}

TEST(PgnReaderBrokenTest, MoveIsNamedWithItsPlace) {
    EXPECT_EQ(
        reason_before_good("[White \"Adams\"]\n[Black \"Baker\"]\n\n1. e4 e5\n2. Nf3 Bd3 3. d4 "
                           "Xyz 1-0"),
        "game 1 (\"Adams\" - \"Baker\"), line 5: move 2... \"Bd3\" is not legal in "
        "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2");
    EXPECT_EQ(reason_before_good("\n1. e4 e5 2. -- Nc6 *"),
              "game 1, line 2: move 2. \"--\" is a null move, in "
              "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2");
    EXPECT_EQ(reason_before_good("1. Z0 e5 *"),
              "game 1, line 1: move 1. \"Z0\" is a null move, in "
              "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    EXPECT_EQ(reason_before_good("1. e4 hello *").substr(0, 44),
              "game 1, line 1: move 1... \"hello\" is no move");
    EXPECT_EQ(reason_before_good("1. d4 d5 2. Nf3 Nf6 3. Nd2 *").substr(0, 48),
              "game 1, line 1: move 3. \"Nd2\" may mean several m");
}

TEST(PgnReaderBrokenTest, KeepsWhatWasReadBeforeTheFault) {
    std::vector<ReadGame> const games = read_games("1. e4 e5 2. Ke3 Ke7 1-0");
    ASSERT_EQ(games.size(), 1U);
    EXPECT_EQ(games[0].moves(), "e2e4 e7e5");
    EXPECT_EQ(games[0].game.result, "1-0");
}

TEST(PgnReaderBrokenTest, CommentThatIsNotClosedEndsWithItsGame) {
    EXPECT_EQ(reason_before_good("[Event \"a\"]\n\n1. e4 e5\n{not closed 2. Nf3 1-0"),
              "game 1, line 4: the comment that begins here is not closed");
    // A bracket within a comment begins no game where it is no tag or stands within the line.
    EXPECT_EQ(reason_before_good("1. e4 {\n[%eval 0.1]\n[see \"x\"] as in [Event \"b\"]} e5 1-0"),
              "");
    EXPECT_EQ(reason_before_good("1. e4 {see\n\n[Event b] and\n(Event \"c\")} e5 1-0"), "");
    std::vector<ReadGame> const games = read_games("1. e4 {to the end");
    ASSERT_EQ(games.size(), 1U);
    EXPECT_EQ(games[0].reason, "game 1, line 1: the comment that begins here is not closed");
}

TEST(PgnReaderBrokenTest, VariationThatIsNotClosedEndsWithItsGame) {
    EXPECT_EQ(reason_before_good("1. e4\n(1. d4 (1. c4) 1... d5 1-0"),
              "game 1, line 2: the variation that begins here is not closed");
    // As deep as it may be, it takes no room.
    EXPECT_EQ(reason_before_good("1. e4 " + std::string(100000, '(') + std::string(100000, ')') +
                                 " e5 *"),
              "");
}

TEST(PgnReaderBrokenTest, BracketThatIsNoTagIsNamed) {
    EXPECT_EQ(reason_before_good("[Event \"a\"]\n[White Adams]\n[Black \"Baker\"]\n\n1. e4 *"),
              "game 1, line 2: \"[\" begins no tag");
    EXPECT_EQ(reason_before_good("1. e4 [%eval 0.1] e5 *"), "game 1, line 1: \"[\" begins no tag");
}

TEST(PgnReaderBrokenTest, TagsOfTheStartAreChecked) {
    EXPECT_EQ(reason_before_good("[FEN \"8/8/8/8/8/8/8/K7 w - - 0 1\"]\n\n1. Ka2 *").substr(0, 28),
              "game 1, line 1: the tag FEN:");
    EXPECT_EQ(reason_before_good("[Variant \"Atomic\"]\n\n1. e4 *"),
              "game 1, line 1: the variant \"Atomic\" is not chess");
}

TEST(PgnReaderBrokenTest, WhatWouldFillTheMemoryIsRefused) {
    std::string const longest(PgnText::longest_value, 'x');
    EXPECT_EQ(reason_before_good("[White \"" + longest + "\"]\n\n1. e4 *"), "");
    EXPECT_EQ(reason_before_good("[White \"" + longest + "x\"]\n\n1. e4 *"),
              "game 1, line 1: the tag White is longer than 65536 bytes");
    std::string tags;
    for (int tag = 0; tag < 20; ++tag) {
        tags += "[T \"" + longest + "\"]\n";
    }
    EXPECT_EQ(reason_before_good(tags + "\n1. e4 *"),
              "game 1, line 16: the tags are larger than 1048576 bytes");
    std::string moves;
    for (std::size_t move = 0; move < PgnReader::most_moves; move += 4) {
        moves += "Nf3 Nf6 Ng1 Ng8 ";
    }
    EXPECT_EQ(reason_before_good(moves + "*"), "");
    EXPECT_EQ(reason_before_good(moves + "\ne4 *"), "game 1, line 2: more than 20000 moves");
    EXPECT_EQ(reason_before_good(std::string(1000000, 'x') + " *").substr(0, 71),
              "game 1, line 1: move 1. \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...\" i");
    EXPECT_EQ(reason_before_good("[" + std::string(1000, 'N') + " \"x\"]\n1. e4 *"),
              "game 1, line 1: \"[\" begins no tag");
}

TEST(PgnReaderBrokenTest, TextThatIsNoGameIsToldOnce) {
    EXPECT_EQ(reason_before_good("Dear friend, here are my games:\nthey are good").substr(0, 44),
              "game 1, line 1: move 1. \"Dear\" is no move, i");
}

}  // namespace

}  // namespace orvelin::analyse::test
