#include <cmath>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "analyse/position_search.h"
#include "analyse/term_names.h"
#include "analyse/term_scores.h"
#include "board/board_fixture.h"
#include "support/positions.h"

namespace orvelin::board::test {
namespace {

analyse::Result static_result(std::string const& fen) {
    static analyse::PositionSearch search;
    analyse::Question question;
    question.fen = fen;
    question.limit = {analyse::Limit::kind::static_eval, 0};
    return search.answer(question);
}

Answer evaluation(std::string const& fen) {
    return ask("'ask':'evaluation','start':'" + fen + "'");
}

/// All terms with their group, each once and to the last bit.
void expect_terms(Answer const& answer, analyse::term_scores_t const& terms, double pawn) {
    std::size_t found = 0;
    double all = 0;
    ASSERT_EQ(answer.size("groups"), analyse::term_group_count);
    for (std::size_t g = 0; g < analyse::term_group_count; ++g) {
        Answer const group = answer.element("groups", g);
        double sum = 0;
        for (std::size_t t = 0; t < group.size("terms"); ++t) {
            Answer const term = group.element("terms", t);
            std::size_t i = 0;
            while (i < terms.size() && analyse::term_names()[i].code != term.text("id")) {
                ++i;
            }
            ASSERT_LT(i, terms.size()) << term.text("id");
            EXPECT_EQ(static_cast<std::size_t>(analyse::term_names()[i].group), g);
            EXPECT_EQ(term.text("name"), analyse::term_names()[i].full);
            EXPECT_EQ(static_cast<float>(term.real("units")), terms[i]);
            EXPECT_EQ(term.real("value"), static_cast<double>(terms[i]) / pawn);
            sum += static_cast<double>(terms[i]);
            ++found;
        }
        EXPECT_EQ(group.real("units"), sum);
        EXPECT_EQ(group.real("value"), sum / pawn);
        all += sum;
    }
    EXPECT_EQ(found, terms.size());
    if (answer.flag("isSum")) {
        EXPECT_LE(std::abs(all - answer.number("score")), 0.51);
    }
}

TEST(BoardEvaluation, TheTermsAreThoseOfRecords) {
    for (std::string const fen :
         {positions::start, positions::kiwipete, positions::quiet_middle_game,
          positions::rook_ending, positions::last_of_bench,
          "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 0 1",
          "4k3/5b2/p7/8/8/P7/4B3/4K3 w - - 0 1"}) {
        Answer const answer = evaluation(fen);
        analyse::Result const result = static_result(fen);
        bool const white = fen.find(" w ") != std::string::npos;
        EXPECT_EQ(answer.text("fen"), fen);
        EXPECT_EQ(answer.number("score"), white ? result.static_score : -result.static_score);
        EXPECT_TRUE(answer.flag("isSum")) << fen;
        EXPECT_EQ(answer.real("pawn"), analyse::pawn_value(fen));
        expect_terms(answer, result.terms, analyse::pawn_value(fen));
    }
}

TEST(BoardEvaluation, ItIsThatOfWhite) {
    Answer const white = evaluation("rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    Answer const black = evaluation("rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1");
    for (Answer const& answer : {white, black}) {
        EXPECT_GT(answer.number("score"), 1000);
        EXPECT_GT(answer.number("cp"), 400);
        EXPECT_GT(answer.real("winChance"), 0.9);
        EXPECT_GT(answer.part("wdl").number("win"), 900);
        EXPECT_EQ(answer.element("groups", 0).text("id"), "material");
        EXPECT_GT(answer.element("groups", 0).real("value"), 5);
    }
    EXPECT_EQ(white.element("groups", 1).text("id"), "king_safety");
    EXPECT_EQ(white.element("groups", 1).text("name"), "king safety");
}

TEST(BoardEvaluation, AFunctionOfAnEndgameIsNoSum) {
    EXPECT_FALSE(evaluation("8/8/8/8/8/2k5/8/KBN5 w - - 0 1").flag("isSum"));
}

TEST(BoardEvaluation, ADrawnGameIsADraw) {
    Answer const answer = evaluation("4k3/8/8/8/8/8/8/4KN2 w - - 0 1");
    EXPECT_EQ(answer.number("score"), 0);
    EXPECT_EQ(answer.part("wdl").number("draw"), 1000);
    EXPECT_EQ(answer.real("winChance"), 0.5);
}

/// The first line of a search, whose leaf is known from the record.
struct searched_t {
    Answer line;
    std::string fen;
};

searched_t searched(std::string const& fen) {
    Answer const record =
        ask("'ask':'record','search':'best','limit':{'depth':7},'start':'" + fen + "'");
    return {record.element("lines", 0), fen};
}

std::string leaf_members(searched_t const& searched, std::string const& score) {
    return "'ask':'leaf','start':'" + searched.fen + "'," +
           moves_member(searched.line.text("moves"), "line") + ',' + score;
}

TEST(BoardLeaf, ItIsTheOneOfTheRecord) {
    for (std::string const fen :
         {positions::start, positions::quiet_middle_game,
          "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 b - - 0 10"}) {
        searched_t const best = searched(fen);
        Answer const wanted = best.line.part("leaf");
        std::string const units = "'score':" + std::to_string(best.line.number("score"));
        std::string const hundredths = "'cp':" + std::to_string(best.line.number("centipawns"));
        for (std::string const& score : {units, hundredths}) {
            Answer const answer = ask(leaf_members(best, score));
            EXPECT_TRUE(answer.is_null("why"));
            Answer const leaf = answer.part("leaf");
            EXPECT_EQ(leaf.text("fen"), wanted.text("fen"));
            EXPECT_EQ(leaf.words("moves"), wanted.text("moves"));
            EXPECT_EQ(leaf.size("sans"), leaf.size("moves"));
            EXPECT_EQ(leaf.number("score"), wanted.number("score"));
            bool const white = fen.find(" w ") != std::string::npos;
            EXPECT_EQ(leaf.part("evaluation").number("score"),
                      white ? wanted.number("score") : -wanted.number("score"));
            EXPECT_EQ(leaf.part("evaluation").size("groups"), analyse::term_group_count);
        }
    }
}

TEST(BoardLeaf, WhyThereIsNone) {
    EXPECT_EQ(ask("'ask':'leaf'," + moves_member("f2f3 e7e5 g2g4 d8h4", "line") + ",'score':-29999")
                  .text("why"),
              "mate or draw");
    Answer const other = ask("'ask':'leaf'," + moves_member("e2e4 e7e5", "line") + ",'score':9000");
    EXPECT_EQ(other.text("why"), "not found");
    EXPECT_TRUE(other.is_null("leaf"));
}

TEST(BoardLeaf, WhatIsWrongIsTold) {
    std::string const line = "'ask':'leaf'," + moves_member("e2e4", "line");
    EXPECT_EQ(ask(line).error(), "a score in engine units or cp, in hundredths, is expected");
    EXPECT_NE(ask(line + ",'score':1,'cp':1").error(), "");
    EXPECT_EQ(ask(line + ",'score':40000").error(),
              "score: a number from -32000 to 32000 is expected");
    EXPECT_EQ(ask("'ask':'leaf','score':1").error(), "line: one move at least is expected");
}

}  // namespace
}  // namespace orvelin::board::test
