#include "analyse/sentence.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analyse/lines_fixture.h"
#include "analyse/result_text.h"
#include "analyse/sentence_check.h"
#include "play/position_reader.h"
#include "search/score.h"
#include "support/data_file.h"
#include "support/positions.h"
#include "support/test_config.h"

namespace orvelin::analyse::test {

namespace {

using orvelin::test::shared_tables;
using orvelin::test::short_tests;

std::string sentence_of(SearchedMove& moves) {
    std::string const text = SentenceWriter(shared_tables()).write(moves.in_game(), moves.judged());
    for (std::string const& fault : faults_of_sentence(text, moves.in_game(), shared_tables())) {
        ADD_FAILURE() << text << "\n" << fault;
    }
    return text;
}

/// Black to move has the bishop on b4 attacked by a3.
std::string const attacked = "rnbqk2r/pppp1ppp/4pn2/8/1bPP4/P1N5/1P2PPPP/R1BQKBNR b KQkq - 0 4";

Line const bishop_takes = line_from(attacked, "b4c3 b2c3", 0);
Line const bishop_lost = line_from(attacked, "e8g8 a3b4 d7d5", -700);

TEST(SentenceTest, ALossIsToldWithTermsAndPieces) {
    SearchedMove moves(attacked,
                       line_with(bishop_lost, term::material, 800, term::king_attack, -30),
                       line_with(bishop_takes, term::material, 50));
    EXPECT_EQ(sentence_of(moves),
              "4...O-O loses a bishop: material -3.0, after 5.axb4 d5; better 4...Bxc3+.");
}

TEST(SentenceTest, WhatMakesUpForALossIsTold) {
    SearchedMove moves(attacked,
                       line_with(bishop_lost, term::material, 800, term::king_attack, -400),
                       line_with(bishop_takes, term::material, 50));
    EXPECT_EQ(sentence_of(moves),
              "4...O-O loses a bishop: material -3.0 against king attack +1.6, after 5.axb4 d5; "
              "better 4...Bxc3+.");
}

TEST(SentenceTest, AMissedChanceIsToldWithItsLine) {
    std::string const fen = "rnbqkb1r/ppp1pppp/8/3n4/8/2N5/PPPP1PPP/R1BQKBNR w KQkq - 0 4";
    SearchedMove moves(fen, line_with(line_from(fen, "a2a3 d5c3", 0), term::material, -10),
                       line_with(line_from(fen, "c3d5 a7a6 a2a3", 700), term::material, 700));
    EXPECT_EQ(sentence_of(moves),
              "4.a3 loses a knight: material -2.8, after 4...Nxc3; better 4.Nxd5.");
    moves.result.played = line_with(line_from(fen, "a2a3 a7a6", 0), term::material, -10);
    EXPECT_EQ(sentence_of(moves),
              "4.a3 misses winning a knight: material -2.8; better 4.Nxd5 a6 5.a3.");
}

TEST(SentenceTest, OnlyWhatTheLineItselfLosesIsLost) {
    std::string const fen = "rnbqkb1r/ppp1pppp/8/3n4/8/2N5/PPPP1PPP/R1BQKBNR w KQkq - 0 4";
    Line const takes_two =
        line_with(line_from(fen, "c3d5 c7c6 d5e7 f8e7", 700), term::material, 700);
    SearchedMove moves(fen, line_with(line_from(fen, "c3e4 a7a6", 0), term::material, -10),
                       takes_two);
    EXPECT_EQ(sentence_of(moves),
              "4.Ne4 misses winning a pawn: material -2.8; better 4.Nxd5 c6 5.Nxe7 Bxe7.");
    // More is missed than lost.
    SearchedMove both(fen,
                      line_with(line_from(fen, "a2a4 a7a6 a4a5 b7b6 a5b6 c7b6 b2b4 d5b4 c1b2", 0),
                                term::material, -100),
                      takes_two);
    EXPECT_EQ(sentence_of(both),
              "4.a4 loses a pawn: material -3.2, after 4...a6 5.a5 b6 6.axb6 cxb6 7.b4 Nxb4; "
              "better 4.Nxd5.");
    Line const takes_knight = line_with(line_from(fen, "c3d5 c7c6 d5e3", 700), term::material, 700);
    both.result.lines[0] = takes_knight;
    EXPECT_EQ(sentence_of(both),
              "4.a4 misses winning a knight and loses a pawn: material -3.2, after 4...a6 5.a5 b6 "
              "6.axb6 cxb6 7.b4 Nxb4; better 4.Nxd5.");
    // Both lose.
    Line const loses_knight = line_with(line_from(fen, "a2a3 d5c3 a3a4", 0), term::material, -700);
    Line const loses_queen =
        line_with(line_from(fen, "d1g4 c8g4 a2a3 d5c3", -2000), term::material, -2000);
    SearchedMove worse(fen, loses_queen, loses_knight);
    EXPECT_EQ(sentence_of(worse),
              "4.Qg4 ends a queen worse: material -5.2, after 4...Bxg4 5.a3 Nxc3; better 4.a3.");
}

TEST(SentenceTest, WhoDoesNotRecaptureIsToldSo) {
    std::string const fen = "rnbqkb1r/ppp1pppp/8/3n4/8/2N5/PPPP1PPP/R1BQKBNR w KQkq - 0 4";
    Line const takes = line_with(line_from(fen, "c3d5 a7a6 a2a3", 700), term::material, 700);
    SearchedMove moves(fen, line_with(line_from(fen, "a2a3 a7a6", 0), term::material, -10), takes);
    MoveInGame move = moves.in_game();
    auto const told = [&](char const* square) {
        move.taken = Taken{white_pawn, Square(square)};
        std::string const text =
            SentenceWriter(shared_tables()).write(move, judge(move, shared_tables()));
        for (std::string const& fault : faults_of_sentence(text, move, shared_tables())) {
            ADD_FAILURE() << text << "\n" << fault;
        }
        return text;
    };
    EXPECT_EQ(told("d5"), "4.a3 does not recapture: material -2.8; better 4.Nxd5 a6 5.a3.");
    EXPECT_EQ(told("e7"), "4.a3 misses winning a knight: material -2.8; better 4.Nxd5 a6 5.a3.");
    EXPECT_EQ(faults_of_sentence("4.a3 does not recapture.", move, shared_tables()).size(), 1U);
}

TEST(SentenceTest, ABishopPairIsToldByItsName) {
    std::string const fen = "r1bqkb1r/pppp1ppp/5n2/4p3/2BnP3/2NP4/PPP2PPP/R1BQK1NR w KQkq - 0 5";
    Line const best = line_with(line_from(fen, "h2h3 a7a6", 0), term::material, 0);
    Line const gives_up = line_from(fen, "c4f7 e8f7 c1g5 d4c2 d1c2", -100);
    SearchedMove moves(fen, line_with(gives_up, term::material, -100), best);
    EXPECT_EQ(sentence_of(moves),
              "5.Bxf7+ gives up the bishop pair: material -0.4, after 5...Kxf7 6.Bg5 Nxc2+; better "
              "5.h3.");
    std::string const other = "r1bqk1nr/pppp1ppp/2n5/8/1b6/P1N5/1PPP1PPP/R1BQKBNR w KQkq - 0 5";
    SearchedMove leaves(other, line_with(line_from(other, "h2h3 b4a5", 0), term::material, -100),
                        line_with(line_from(other, "a3b4 a7a6", 100), term::material, 0));
    EXPECT_EQ(sentence_of(leaves),
              "5.h3 leaves Black the bishop pair: material -0.4, after 5...Ba5; better 5.axb4.");
    // Without bishops in it.
    Line const quiet = line_with(line_from(fen, "a2a3 a7a6", -100), term::material, -100);
    SearchedMove hardly(fen, quiet, best);
    EXPECT_EQ(sentence_of(hardly),
              "5.a3 ends slightly behind in material: material -0.4, after "
              "5...a6; better 5.h3.");
    hardly.result.lines[0] = line_with(line_from(fen, "h2h3 a7a6", 0), term::material, 200);
    hardly.result.played = line_with(quiet, term::material, 100);
    EXPECT_EQ(sentence_of(hardly),
              "5.a3 keeps slightly less of the lead in material: material "
              "-0.4, after 5...a6; better 5.h3.");
}

// The line that is shown goes as far as the last capture.
TEST(SentenceTest, TheLineReachesTheCaptureThatIsToldOf) {
    std::string const fen = "rnbqkb1r/ppp1pppp/8/3n4/8/2N5/PPPP1PPP/R1BQKBNR w KQkq - 0 4";
    std::string const moves = "a2a3 a7a6 h2h3 h7h6 a3a4 a6a5 h3h4 d5c3 g2g3";
    Line played =
        line_with(line_from(fen, moves, -700), term::material, -700, term::pst_knight, -300);
    SearchedMove searched(fen, played,
                          line_with(line_from(fen, "c3d5 d8d5", 0), term::material, 0));
    EXPECT_EQ(
        sentence_of(searched),
        "4.a3 loses a knight: material -2.8, knight placement -1.2, after 4...a6 5.h3 h6 6.a4 "
        "a5 7.h4 Nxc3; better 4.Nxd5.");
}

TEST(SentenceTest, ReasonsThatDoNotExplainTheLossAreNotTold) {
    Line const best = line_with(line_from(positions::start, "e2e4", 0), term::mobility, 0);
    Line const played = line_from(positions::start, "a2a3", -400);
    // A pawn less, and nearly a pawn more of many small things.
    Line much = line_with(played, term::material, -250);
    for (std::size_t const one : {term::pst_rook, term::pst_queen, term::knight_mobility,
                                  term::bishop_mobility, term::rook_mobility}) {
        much.leaf.terms[one] = 45;
    }
    SearchedMove moves(positions::start, much, best);
    EXPECT_EQ(sentence_of(moves), "1.a3 is worse: the score goes from 0.00 to -1.34; better 1.e4.");
}

TEST(SentenceTest, TheRightToMoveIsNoReason) {
    Line const best = line_with(line_from(positions::start, "e2e4", 0), term::stm, 60);
    Line const played = line_from(positions::start, "a2a3", -400);
    SearchedMove moves(positions::start, line_with(played, term::stm, -60), best);
    EXPECT_EQ(sentence_of(moves), "1.a3 is worse: the score goes from 0.00 to -1.34; better 1.e4.");
    moves.result.played = line_with(played, term::stm, -60, term::weak_pawns, -200);
    EXPECT_EQ(sentence_of(moves), "1.a3 ends with the weaker pawns: weak pawns -0.8; better 1.e4.");
}

TEST(SentenceTest, DrawsAreTold) {
    std::string const queen = "7k/8/4Q1K1/8/8/8/8/8 w - - 0 60";
    Line stalemate = line_from(queen, "e6f7", 0);
    stalemate.drawn = true;
    stalemate.why_not = unexplained::mate_or_draw;
    SearchedMove moves(queen, stalemate, line_from(queen, "e6e5 h8g8", 3500));
    EXPECT_EQ(sentence_of(moves),
              "60.Qf7 is stalemate: the score goes from 11.70 to 0.00; better 60.Qe5+.");
    std::string const bare = "8/8/4k3/8/8/4K3/3p4/8 w - - 0 60";
    Line takes = line_from(bare, "e3d2", 0);
    takes.drawn = true;
    takes.why_not = unexplained::mate_or_draw;
    SearchedMove taken(bare, takes, takes);
    EXPECT_EQ(sentence_of(taken), "60.Kxd2 takes the draw: no side can give mate.");
    std::string const kings = "8/8/4k3/8/8/4K3/8/8 w - - 0 60";
    Line nothing = line_from(kings, "e3d2", 0);
    nothing.drawn = true;
    SearchedMove quiet(kings, nothing, nothing);
    EXPECT_EQ(sentence_of(quiet), "60.Kd2 changes nothing: no side can give mate.");
}

TEST(SentenceTest, WithoutALeafOnlyTheScoresAreTold) {
    SearchedMove moves(attacked, bishop_lost, bishop_takes);
    EXPECT_EQ(sentence_of(moves),
              "4...O-O is worse: the score goes from 0.00 to 2.34, after 5.axb4 d5; better "
              "4...Bxc3+.");
    moves.result.played.why_not = unexplained::endgame;
    EXPECT_EQ(sentence_of(moves),
              "4...O-O goes into a worse endgame: by endgame knowledge the score goes from 0.00 to "
              "2.34, after 5.axb4 d5; better 4...Bxc3+.");
    moves.result.lines[0].score = 700;
    moves.result.played.score = 0;
    moves.result.played.why_not = unexplained::mate_or_draw;
    EXPECT_EQ(sentence_of(moves),
              "4...O-O allows a draw: the score goes from -2.34 to 0.00, after 5.axb4 d5; better "
              "4...Bxc3+.");
}

TEST(SentenceTest, GroupsAreToldByWhoIsAhead) {
    Line const best = line_with(line_from(positions::start, "e2e4", 0), term::king_attack, 200);
    Line const played = line_from(positions::start, "a2a3", -400);
    SearchedMove moves(positions::start, line_with(played, term::king_attack, -200), best);
    EXPECT_EQ(sentence_of(moves),
              "1.a3 ends with the less safe king: king attack -1.6; better 1.e4.");
    moves.result.played = line_with(played, term::king_attack, 50);
    EXPECT_EQ(sentence_of(moves),
              "1.a3 keeps less of the lead in king safety: king attack -0.6; better 1.e4.");
    moves.result.lines[0] = line_from(positions::start, "e2e4", 0);
    moves.result.lines[0].why_not = unexplained::none;
    moves.result.played = line_with(played, term::weak_pawns, -60, term::passed_pawns, -80);
    EXPECT_EQ(
        sentence_of(moves),
        "1.a3 falls behind in passed pawns: passed pawns -0.3, weak pawns -0.2; better 1.e4.");
    moves.result.played.leaf.terms[term::isolated_pawns] = -60;
    EXPECT_EQ(
        sentence_of(moves),
        "1.a3 ends with the weaker pawns: pawn structure -0.5, passed pawns -0.3; better 1.e4.");
}

std::string const mating = "6k1/5ppp/8/8/8/8/r4PPP/3R2K1 w - - 0 30";

TEST(SentenceTest, MatesAreTold) {
    Line const mate = line_from(mating, "d1d8", mate_score - 1);
    Line const quiet = line_from(mating, "h2h3 h7h6", 0);
    SearchedMove missed(mating, quiet, mate);
    EXPECT_EQ(sentence_of(missed), "30.h3 misses mate in 1: 30.Rd8#.");
    SearchedMove found(mating, mate, mate);
    EXPECT_EQ(sentence_of(found), "30.Rd8# is mate.");
    Line const mated = line_from(mating, "d1b1 a2a1 g1h1 a1b1", 4 - mate_score);
    SearchedMove allowed(mating, mated, quiet);
    EXPECT_EQ(sentence_of(allowed), "30.Rb1 allows mate in 2: 30...Ra1 31.Kh1 Rxb1#.");
    SearchedMove both(mating, mated, mate);
    EXPECT_EQ(sentence_of(both),
              "30.Rb1 misses mate in 1 (30.Rd8#) and allows mate in 2: 30...Ra1 31.Kh1 Rxb1#.");
    SearchedMove lost(mating, mated, mated);
    EXPECT_EQ(sentence_of(lost), "30.Rb1 cannot stop mate in 2: 30...Ra1 31.Kh1 Rxb1#.");
    Line const forced = line_from(mating, "d1b1 h7h6 b1b8", mate_score - 3);
    SearchedMove later(mating, forced, mate);
    EXPECT_EQ(sentence_of(later), "30.Rb1 forces mate in 2: 30...h6 31.Rb8+.");
}

TEST(SentenceTest, GoodMovesGetTheirReason) {
    Line const best = line_with(bishop_takes, term::material, 50);
    SearchedMove moves(attacked, best, best);
    moves.rest(line_with(bishop_lost, term::material, 800));
    EXPECT_EQ(sentence_of(moves),
              "4...Bxc3+ is the only good move; 4...O-O loses a bishop: material -3.0, after "
              "5.axb4 d5.");
    moves.result.rest = bishop_lost;
    EXPECT_EQ(sentence_of(moves),
              "4...Bxc3+ is the only good move; 4...O-O is worse: the score goes from 0.00 to "
              "2.34, after 5.axb4 d5.");
    moves.result.rest = line_from(attacked, "e8g8 a3b4", 2 - mate_score);
    EXPECT_EQ(sentence_of(moves),
              "4...Bxc3+ is the only good move; 4...O-O allows mate in 1, after 5.axb4.");
    moves.result.rest = Line();
    EXPECT_EQ(sentence_of(moves), "4...Bxc3+ is the best move.");
    Line const wins = line_with(line_from(attacked, "b4c3 c1d2", 900), term::material, -700);
    SearchedMove won(attacked, wins, wins);
    EXPECT_EQ(sentence_of(won), "4...Bxc3+ wins a knight, after 5.Bd2.");
    // Who was a knight behind has his own again.
    std::string const behind = "rnbqk2r/pppp1ppp/4p3/8/1bPP4/P1N5/1P2PPPP/R1BQKBNR b KQkq - 0 4";
    Line const even = line_with(line_from(behind, "b4c3 c1d2", 0), term::material, 0);
    SearchedMove back(behind, even, even);
    EXPECT_EQ(sentence_of(back), "4...Bxc3+ wins back a knight, after 5.Bd2.");
    EXPECT_EQ(
        faults_of_sentence("4...Bxc3+ wins back a knight.", won.in_game(), shared_tables()).size(),
        1U);
}

TEST(SentenceTest, OtherMovesAreHeldAgainstTheBest) {
    Line const best = line_with(line_from(positions::start, "e2e4", 40), term::mobility, 40);
    SearchedMove moves(positions::start, line_from(positions::start, "a2a3", 40), best);
    EXPECT_EQ(sentence_of(moves), "1.a3 is as good as 1.e4.");
    moves.result.played = line_with(line_from(positions::start, "a2a3", 0), term::mobility, 5);
    EXPECT_EQ(sentence_of(moves), "1.a3 is hardly worse than 1.e4.");
    moves.result.played = Line();
    EXPECT_EQ(sentence_of(moves), "");
}

TEST(SentenceCheckTest, FindsWhatIsNotInTheData) {
    SearchedMove moves(attacked, line_with(bishop_lost, term::material, 800),
                       line_with(bishop_takes, term::material, 50));
    auto const faults = [&moves](std::string const& text) {
        return faults_of_sentence(text, moves.in_game(), shared_tables()).size();
    };
    std::string const good =
        "4...O-O loses a bishop: material -3.0, after 5.axb4 d5; better 4...Bxc3+.";
    EXPECT_EQ(faults(good), 0U);
    auto const with = [&good](std::string const& part, std::string const& other) {
        std::string text = good;
        return text.replace(text.find(part), part.size(), other);
    };
    for (auto const& [part, other] :
         std::vector<std::pair<std::string, std::string>>{{"-3.0", "-3.1"},
                                                          {"-3.0", "+3.0"},
                                                          {"material", "mobility"},
                                                          {"bishop", "rook"},
                                                          {"a bishop", "two bishops"},
                                                          {"d5", "d6"},
                                                          {"d5", "dxe5"},
                                                          {"5.axb4", "6.axb4"},
                                                          {"4...Bxc3+", "4...Bxc3"},
                                                          {"4...Bxc3+", "4...Be7"},
                                                          {"4...O-O", "4.O-O"},
                                                          {"+.", "+"},
                                                          {"after", "to 0.50, after"},
                                                          {"after", "mate in 2, after"}}) {
        EXPECT_GT(faults(with(part, other)), 0U) << with(part, other);
    }
}

// All that is said of real positions is found again in what was searched.
TEST(SentenceTest, IsTrueOfRealPositions) {
    PositionSearch search;
    SentenceWriter writer(shared_tables());
    int sentences = 0;
    int changes = 0;
    for (auto const& block : orvelin::test::read_data_blocks("leaf_positions.txt")) {
        for (std::string const& fen : block) {
            ChessPosition position(shared_tables());
            position.fen(fen);
            std::vector<Move> const legal = play::legal_moves(position, shared_tables());
            // The best move of the search, and others, in turn.
            Question asked = question(fen, short_tests ? "depth=3" : "depth=4", 2);
            std::size_t const turn = static_cast<std::size_t>(sentences) % 3;
            asked.rest = true;
            asked.played = turn == 0 ? Move() : legal[turn == 1 ? 0 : legal.size() / 2];
            Result const result = search.answer(asked);
            Move const played = turn == 0 ? result.lines.at(0).moves.at(0) : asked.played;
            MoveInGame const move{fen, played, std::nullopt, &result};
            std::string const text = writer.write(move, judge(move, shared_tables()));
            for (std::string const& fault : faults_of_sentence(text, move, shared_tables())) {
                ADD_FAILURE() << fen << '\n' << text << '\n' << fault;
            }
            ++sentences;
            changes += text.find(": ") != std::string::npos ? 1 : 0;
        }
    }
    EXPECT_EQ(sentences, 60);
    EXPECT_GT(changes, 25);
}

}  // namespace

}  // namespace orvelin::analyse::test
