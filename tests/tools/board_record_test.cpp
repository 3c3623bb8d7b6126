// The records that a board in a page has made are those of orvelin-analyse, byte for byte.

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analyse/record_json.h"
#include "board/board_fixture.h"
#include "tools/analyse_tool.h"

namespace orvelin::board::test {
namespace {

using orvelin::test::analysis::output_of;

/// A game, the arguments of the tool, and what a page asks for the same.
struct case_t {
    std::string pgn;
    std::vector<std::string> arguments;
    std::string request;
};

std::string first_game(std::string const& pgn) {
    std::string request = R"({"ask":"pgn","text":)";
    analyse::append_json_text(request, pgn);
    return shared_core().answer(request + '}');
}

/// All records of the game, each asked for by its ply.
std::string records_of_board(std::string const& pgn, std::string const& more) {
    Answer const game = Answer(first_game(pgn)).element("games", 0);
    std::string records;
    for (std::size_t ply = 0; ply <= game.size("moves"); ++ply) {
        std::string request = R"({"ask":"record","start":")" + game.text("start") + R"(","ply":)" +
                              std::to_string(ply) + ",\"result\":\"" + game.text("result") +
                              "\",\"chess960\":" + (game.flag("chess960") ? "true" : "false");
        request += R"(,"tags":{"White":"A","Black":"M\u00fcller","Event":"x","Date":"2026.01.02"})";
        std::string moves = ',' + moves_member(game.words("moves"));
        std::replace(moves.begin(), moves.end(), '\'', '"');
        records += shared_core().answer(request + moves + more + '}') + '\n';
    }
    return records;
}

std::string const tags =
    "[Event \"x\"]\n[Date \"2026.01.02\"]\n[White \"A\"]\n[Black \"M\xC3\xBCller\"]\n";

TEST(BoardRecord, ItIsWhatTheToolWrites) {
    std::vector<case_t> const cases{
        // To a mate, with every move judged.
        {tags + "[Result \"1-0\"]\n\n1. e4 e5 2. Qh5 Nc6 3. Bc4 Nf6 4. Qxf7# 1-0\n",
         {"--limit", "depth=6", "--moves", "best,played,rest"},
         R"(,"limit":{"depth":6},"search":"best,played,rest")"},
        // Several lines by nodes.
        {tags + "\n1. e4 d5 2. exd5 Qxd5 *\n",
         {"--limit", "nodes=4000", "--lines", "3", "--moves", "best,played"},
         R"(,"limit":{"nodes":4000},"lines":3)"},
        {tags + "[Variant \"Chess960\"]\n[FEN \"1r2k1r1/pppppppp/8/8/8/8/PPPPPPPP/1R2K1R1 w GBgb - "
                "0 1\"]\n\n1. O-O O-O-O 2. e4 1/2-1/2\n",
         {"--limit", "depth=5", "--moves", "best"},
         R"(,"limit":{"depth":5},"search":"best")"},
    };
    for (case_t const& asked : cases) {
        std::vector<std::string> arguments = asked.arguments;
        arguments.insert(arguments.end(), {"--quiet", "--jobs", "1", "--jsonl", "-", "-"});
        EXPECT_EQ(records_of_board(asked.pgn, asked.request), output_of(arguments, asked.pgn));
    }
}

TEST(BoardRecord, WhatIsWrongIsTold) {
    EXPECT_EQ(ask("'ask':'record'").error(), "limit: a depth or a number of nodes is expected");
    EXPECT_EQ(ask("'ask':'record','limit':{'depth':101}").error(),
              "depth: a number from 1 to 100 is expected");
    EXPECT_EQ(ask("'ask':'record','limit':{'depth':1},'lines':51").error(),
              "lines: a number from 1 to 50 is expected");
    EXPECT_EQ(ask("'ask':'record','limit':{'depth':1},'ply':1").error(),
              "ply: a number from 0 to 0 is expected");
    EXPECT_EQ(ask("'ask':'record','limit':{'depth':1},'search':'played'").error(),
              "search: best, best,played, best,rest or best,played,rest is expected");
}

}  // namespace
}  // namespace orvelin::board::test
