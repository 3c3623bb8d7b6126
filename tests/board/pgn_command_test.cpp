#include <gtest/gtest.h>
#include <string>

#include "analyse/record_json.h"
#include "board/board_fixture.h"
#include "board/request.h"
#include "support/positions.h"

namespace orvelin::board::test {
namespace {

/// The answer to a text, which may hold anything, and more members.
Answer games_of(std::string const& text, std::string const& more = "") {
    std::string request = R"({"ask":"pgn","text":)";
    analyse::append_json_text(request, text);
    return Answer(shared_core().answer(request + more + '}'));
}

std::string many_games(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "[White \"" + std::to_string(i + 1) + "\"]\n\n1. e4 *\n\n";
    }
    return text;
}

TEST(BoardPgn, AGameIsRead) {
    Answer const answer = games_of(
        "[Event \"Cup \\\"A\\\"\"]\n[White \"M\xC3\xBCller\"]\n[Result \"1-0\"]\n\n"
        "1. e4 {best} e5 (1... c5 2. Nf3) 2. Qh5 Ke7 3. Qxe5# 1-0\n");
    ASSERT_EQ(answer.size("games"), 1U);
    Answer const game = answer.element("games", 0);
    EXPECT_EQ(game.part("tags").text("Event"), "Cup \"A\"");
    EXPECT_EQ(game.part("tags").text("White"), "M\xC3\xBCller");
    EXPECT_EQ(game.words("moves"), "e2e4 e7e5 d1h5 e8e7 h5e5");
    EXPECT_EQ(game.words("sans"), "e4 e5 Qh5 Ke7 Qxe5#");
    EXPECT_EQ(game.text("result"), "1-0");
    EXPECT_EQ(game.text("start"), positions::start);
    EXPECT_FALSE(game.flag("chess960"));
    EXPECT_TRUE(game.is_null("error"));
    EXPECT_EQ(answer.number("count"), 1);
    EXPECT_EQ(answer.number("broken"), 0);
    EXPECT_TRUE(answer.is_null("next"));
}

TEST(BoardPgn, ABrokenGameIsToldWithTheReason) {
    Answer const answer = games_of("1. e4 e5 2. Ke3 *\n\n[White \"B\"]\n\n1. d4 *\n");
    ASSERT_EQ(answer.size("games"), 2U);
    EXPECT_EQ(answer.element("games", 0).words("sans"), "e4 e5");
    EXPECT_NE(answer.element("games", 0).text("error").find("\"Ke3\" is not legal"),
              std::string::npos);
    EXPECT_TRUE(answer.element("games", 1).is_null("error"));
    EXPECT_EQ(answer.number("broken"), 1);
}

TEST(BoardPgn, Chess960) {
    Answer const answer = games_of(
        "[Variant \"Chess960\"]\n[FEN \"1r2k1r1/pppppppp/8/8/8/8/PPPPPPPP/1R2K1R1 w BGbg - 0 "
        "1\"]\n\n"
        "1. O-O O-O-O *\n");
    EXPECT_TRUE(answer.element("games", 0).flag("chess960"));
    EXPECT_EQ(answer.element("games", 0).words("moves"), "e1g1 e8b8");
}

TEST(BoardPgn, ManyGamesAreToldInParts) {
    std::string const text = many_games(2500);
    Answer const all = games_of(text);
    EXPECT_EQ(all.size("games"), 1000U);
    EXPECT_EQ(all.number("count"), 2500);
    EXPECT_EQ(all.number("next"), 1001);
    Answer const part = games_of(text, R"(,"first":2499,"most":7)");
    ASSERT_EQ(part.size("games"), 2U);
    EXPECT_EQ(part.element("games", 0).part("tags").text("White"), "2499");
    EXPECT_EQ(part.element("games", 0).number("number"), 2499);
    EXPECT_TRUE(part.is_null("next"));
    Answer const one = games_of(text, R"(,"most":1)");
    EXPECT_EQ(one.size("games"), 1U);
    EXPECT_EQ(one.number("next"), 2);
    EXPECT_EQ(games_of(many_games(2), R"(,"most":1)").number("next"), 2);
}

TEST(BoardPgn, ALongGameIsCut) {
    std::string moves;
    for (int i = 0; i < 1001; ++i) {
        moves += "Nf3 Nf6 Ng1 Ng8 ";
    }
    Answer const game = games_of(moves + "*").element("games", 0);
    EXPECT_EQ(game.size("moves"), 4000U);
    EXPECT_EQ(game.text("error"), "game 1 has more than 4000 half-moves");
}

TEST(BoardPgn, NothingIsNoGame) {
    EXPECT_EQ(games_of("").number("count"), 0);
    EXPECT_EQ(games_of(std::string(1000, '\0')).number("broken"), 0);
}

TEST(BoardPgn, TooMuchIsRefused) {
    EXPECT_EQ(games_of(std::string((16U << 20) + 1, ' ')).error(),
              "the text is longer than 16 MiB");
    EXPECT_EQ(games_of(std::string(16U << 20, ' ')).number("count"), 0);
    EXPECT_EQ(games_of(std::string(Request::most_bytes, ' ')).error(),
              "the request is longer than 50331648 bytes");
}

TEST(BoardPgn, TagsOfOneNameAreToldOnce) {
    Answer const game = games_of("[White \"A\"]\n[White \"B\"]\n[__proto__ \"C\"]\n\n1. e4 *\n")
                            .element("games", 0);
    EXPECT_EQ(game.part("tags").text("White"), "A");
    EXPECT_EQ(game.part("tags").text("__proto__"), "C");
}

TEST(BoardToPgn, AGameIsWrittenAndReadAgain) {
    std::string const game = moves_member("e2e4 e7e5 g1f3");
    std::string const text = ask("'ask':'to-pgn','tags':{'White':'A]b','Opening':'x'},"
                                 "'result':'1/2-1/2'," +
                                 game)
                                 .text("pgn");
    EXPECT_NE(text.find("[White \"A]b\"]\n"), std::string::npos);
    EXPECT_NE(text.find("[Opening \"x\"]\n"), std::string::npos);
    EXPECT_NE(text.find("\n1. e4 e5 2. Nf3 1/2-1/2\n"), std::string::npos);
    Answer const again = games_of(text).element("games", 0);
    EXPECT_EQ(again.words("moves"), "e2e4 e7e5 g1f3");
    EXPECT_EQ(again.text("result"), "1/2-1/2");
}

TEST(BoardToPgn, OtherStarts) {
    std::string const fen = "1r2k1r1/pppppppp/8/8/8/8/PPPPPPPP/1R2K1R1 w BGbg - 0 1";
    std::string const text =
        ask("'ask':'to-pgn','start':'" + fen + "'," + moves_member("e1g1")).text("pgn");
    EXPECT_NE(text.find("[FEN \"" + fen + "\"]"), std::string::npos);
    EXPECT_NE(text.find("[Variant \"Chess960\"]"), std::string::npos);
    EXPECT_NE(text.find("1. O-O *"), std::string::npos);
}

TEST(BoardToPgn, WhatIsWrongIsTold) {
    EXPECT_EQ(ask("'ask':'to-pgn','result':'2-0'").error(),
              "result: 1-0, 0-1, 1/2-1/2 or * is expected");
    EXPECT_EQ(ask("'ask':'to-pgn','tags':{'White':1}").error(),
              "tags: an object of texts is expected");
    EXPECT_EQ(ask("'ask':'to-pgn','tags':[]").error(), "tags: an object is expected");
}

}  // namespace
}  // namespace orvelin::board::test
