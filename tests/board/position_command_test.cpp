#include <gtest/gtest.h>
#include <string>

#include "board/board_fixture.h"
#include "support/positions.h"

namespace orvelin::board::test {
namespace {

std::string position(std::string const& more) {
    return "'ask':'position'," + more;
}

std::string from(std::string const& fen, std::string const& moves = "") {
    return position("'start':'" + fen + "'," + moves_member(moves));
}

/// "checkmate 0-1", or nothing while the game goes on.
std::string end_of(std::string const& members) {
    Answer const answer = ask(members);
    if (answer.is_null("end")) {
        return "";
    }
    Answer const end = answer.part("end");
    return end.text("kind") + ' ' + end.text("result");
}

/// The legal move of this text.
Answer legal(Answer const& answer, std::string const& uci) {
    for (std::size_t i = 0; i < answer.size("legal"); ++i) {
        Answer move = answer.element("legal", i);
        if (move.text("uci") == uci) {
            return move;
        }
    }
    ADD_FAILURE() << uci << " is not legal";
    return Answer("{}");
}

TEST(BoardPosition, TheStart) {
    Answer const answer = ask("'ask':'position'");
    EXPECT_EQ(answer.text("fen"), positions::start);
    EXPECT_EQ(answer.text("start"), positions::start);
    EXPECT_EQ(answer.text("side"), "white");
    EXPECT_FALSE(answer.flag("check"));
    EXPECT_FALSE(answer.flag("chess960"));
    EXPECT_EQ(answer.size("legal"), 20U);
    EXPECT_EQ(answer.size("sans"), 0U);
    EXPECT_TRUE(answer.is_null("end"));
}

TEST(BoardPosition, MovesAreMade) {
    Answer const answer = ask(position(moves_member("e2e4 d7d5 e4d5 d8d5 b1c3 d5e5")));
    EXPECT_EQ(answer.text("fen"), "rnb1kbnr/ppp1pppp/8/4q3/8/2N5/PPPP1PPP/R1BQKBNR w KQkq - 2 4");
    EXPECT_EQ(answer.words("sans"), "e4 d5 exd5 Qxd5 Nc3 Qe5+");
    EXPECT_TRUE(answer.flag("check"));
    EXPECT_EQ(answer.size("legal"), 5U);
}

TEST(BoardPosition, WhatIsToldOfAMove) {
    Answer const answer = ask(from(positions::promotion_by_capture));
    Answer const promotion = legal(answer, "d7c8q");
    EXPECT_EQ(promotion.text("san"), "dxc8=Q");
    EXPECT_EQ(promotion.text("from"), "d7");
    EXPECT_EQ(promotion.text("to"), "c8");
    EXPECT_EQ(promotion.text("promotion"), "q");
    EXPECT_TRUE(promotion.flag("capture"));
    EXPECT_FALSE(promotion.flag("castling"));
    Answer const castling = legal(answer, "e1g1");
    EXPECT_TRUE(castling.is_null("promotion"));
    EXPECT_TRUE(castling.flag("castling"));
    EXPECT_FALSE(castling.flag("capture"));
    EXPECT_EQ(castling.text("kingTo"), "g1");
    EXPECT_EQ(castling.text("rookFrom"), "h1");
    EXPECT_EQ(castling.text("rookTo"), "f1");
}

TEST(BoardPosition, TakingEnPassantIsACapture) {
    Answer const answer = ask(position(moves_member("e2e4 a7a6 e4e5 d7d5")));
    EXPECT_TRUE(legal(answer, "e5d6").flag("capture"));
    EXPECT_FALSE(legal(answer, "e5e6").flag("capture"));
}

TEST(BoardPosition, CastlingInChess960) {
    std::string const fen = "1r2k1r1/pppppppp/8/8/8/8/PPPPPPPP/1R2K1R1 w BGbg - 0 1";
    Answer const answer = ask(from(fen));
    EXPECT_TRUE(answer.flag("chess960"));
    Answer const castling = legal(answer, "e1g1");
    EXPECT_EQ(castling.text("san"), "O-O");
    EXPECT_EQ(castling.text("rookFrom"), "g1");
    EXPECT_EQ(ask(from(fen, "e1g1 e8b8")).words("sans"), "O-O O-O-O");
    EXPECT_TRUE(ask(position("'chess960':true")).flag("chess960"));
}

TEST(BoardPosition, MateAndStalemate) {
    EXPECT_EQ(end_of(position(moves_member("f2f3 e7e5 g2g4 d8h4"))), "checkmate 0-1");
    EXPECT_EQ(end_of(from("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "a1a8")), "checkmate 1-0");
    EXPECT_EQ(end_of(from("k7/8/1Q6/8/8/8/8/6K1 b - - 0 1")), "stalemate 1/2-1/2");
}

TEST(BoardPosition, TheThirdTimeIsADraw) {
    std::string const twice = "g1f3 g8f6 f3g1 f6g8";
    EXPECT_EQ(end_of(position(moves_member(twice))), "");
    EXPECT_EQ(end_of(position(moves_member(twice + " g1f3 g8f6 f3g1"))), "");
    EXPECT_EQ(end_of(position(moves_member(twice + ' ' + twice))), "repetition 1/2-1/2");
}

TEST(BoardPosition, ASquareBehindAPawnCountsWhereItCanBeTaken) {
    std::string const knights = " g8f6 g1f3 f6g8 f3g1";
    // The pawn that would take it is pinned.
    std::string const pinned = "3k2n1/8/8/8/3p4/8/4P3/3RK1N1 w - - 0 1";
    EXPECT_EQ(end_of(from(pinned, "e2e4" + knights + knights)), "repetition 1/2-1/2");
    // Here it can be taken the first time, and then no more.
    std::string const taken = "4k1n1/8/8/8/3p4/8/4P3/4K1N1 w - - 0 1";
    EXPECT_EQ(end_of(from(taken, "e2e4" + knights + knights)), "");
    EXPECT_EQ(end_of(from(taken, "e2e4" + knights + knights + knights)), "repetition 1/2-1/2");
}

TEST(BoardPosition, ALostRightToCastleMakesAnotherPosition) {
    std::string const kings = " e1e2 e8e7 e2e1 e7e8";
    EXPECT_EQ(end_of(from(positions::all_castlings, kings + kings)), "");
    EXPECT_EQ(end_of(from(positions::all_castlings, kings + kings + kings)), "repetition 1/2-1/2");
}

TEST(BoardPosition, FiftyMovesAndPiecesThatCannotMate) {
    EXPECT_EQ(end_of(from("4k3/8/8/8/8/8/8/R3K3 w - - 98 80", "a1a2")), "");
    EXPECT_EQ(end_of(from("4k3/8/8/8/8/8/8/R3K3 w - - 98 80", "a1a2 e8e7")), "fifty 1/2-1/2");
    // The mate comes before the count.
    EXPECT_EQ(end_of(from("6k1/5ppp/8/8/8/8/8/R5K1 w - - 99 80", "a1a8")), "checkmate 1-0");
    EXPECT_EQ(end_of(from("4k3/8/8/8/8/8/8/4KN2 w - - 0 1")), "material 1/2-1/2");
}

TEST(BoardPosition, WhatIsWrongIsTold) {
    EXPECT_EQ(ask(position(moves_member("e2e4 e7e4"))).error(),
              "move 2, \"e7e4\", is not legal in "
              "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
    EXPECT_NE(ask(from("4k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7a8")).error().find("a7a8q"),
              std::string::npos);
    EXPECT_EQ(ask(from("8/8/8/8/8/8/8/8 w - - 0 1")).error(),
              "FEN field 1 (pieces): White has no king");
    EXPECT_EQ(ask(position("'moves':'e2e4'")).error(), "moves: an array of texts is expected");
    EXPECT_EQ(ask(position("'moves':[1]")).error(), "moves: an array of texts is expected");
    EXPECT_EQ(ask(position("'start':7")).error(), "start: a text is expected");
    EXPECT_EQ(ask(position("'chess960':1")).error(), "chess960: true or false is expected");
}

TEST(BoardPosition, WhatWasPutRightIsTold) {
    Answer const answer = ask(from("4k3/8/8/8/8/8/8/4K3 w KQ - 0 1"));
    EXPECT_EQ(answer.text("start"), "4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(answer.size("remarks"), 2U);
}

TEST(BoardPosition, AGameHasAnEnd) {
    std::string moves;
    for (int i = 0; i < 1000; ++i) {
        moves += "g1f3 g8f6 f3g1 f6g8 ";
    }
    EXPECT_EQ(ask(position(moves_member(moves))).size("sans"), 4000U);
    EXPECT_EQ(ask(position(moves_member(moves + "e2e4"))).error(),
              "moves: there are 4001, more than 4000");
}

TEST(BoardLine, MovesAndPositions) {
    Answer const answer =
        ask("'ask':'line'," + moves_member("e2e4 e7e5") + ',' + moves_member("g1f3 b8c6", "line"));
    EXPECT_EQ(answer.words("sans"), "Nf3 Nc6");
    ASSERT_EQ(answer.size("fens"), 2U);
    EXPECT_NE(answer.words("fens").find("r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w "
                                        "KQkq - 2 3"),
              std::string::npos);
    EXPECT_EQ(ask("'ask':'line'").size("sans"), 0U);
}

TEST(BoardLine, AMoveThatIsNotLegalIsTold) {
    EXPECT_EQ(ask("'ask':'line'," + moves_member("e2e4 e7e5", "line")).words("sans"), "e4 e5");
    EXPECT_EQ(ask("'ask':'line'," + moves_member("e2e4 e7e4", "line")).error().substr(0, 26),
              "move 2, \"e7e4\", is not leg");
}

}  // namespace
}  // namespace orvelin::board::test
