#include "analyse/annotation.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "analyse/pgn_reader_fixture.h"
#include "analyse/result_text.h"
#include "analyse/sentence_check.h"
#include "search/score.h"
#include "support/positions.h"
#include "support/program.h"
#include "support/temporary_directory.h"

namespace orvelin::analyse::test {

namespace {

using orvelin::test::shared_tables;

constexpr char const* games =
    "[White \"one\"]\n[Annotator \"nobody\"]\n[Result \"1-0\"]\n\n"
    "1. e4 e5 2. Nf3 d6 3. d4 Bg4 4. dxe5 Bxf3 5. Qxf3 dxe5 6. Bc4 Nf6 7. Qb3 Qe7 8. Nc3 c6 9. Bg5 "
    "b5 10. Nxb5 cxb5 11. Bxb5+ Nbd7 12. O-O-O Rd8 13. Rxd7 Rxd7 14. Rd1 Qe6 15. Bxd7+ Nxd7 16. "
    "Qb8+ Nxb8 17. Rd8# 1-0\n\n"
    "[Result \"0-1\"]\n\n1. e4 e5 2. Nf3 Nc6 3. Bc4 Nd4 4. Nxe5 Qg5 5. Nxf7 Qxg2 6. Rf1 Qxe4+ 7. "
    "Be2 Nf3# 0-1\n\n"
    "[FEN \"7k/P7/8/8/8/8/6Kp/8 b - - 0 40\"]\n\n40... h1=Q+ 41. Kxh1 Kg7 42. a8=Q Kg6 *\n";

/// The games with what a search of this depth says of all moves, and all that was asked.
struct Annotated {
    std::vector<ReadGame> read = read_games(games);
    std::vector<AnnotatedGame> annotated;
    int sentences = 0;

    explicit Annotated(std::string const& limit) {
        PositionSearch search;
        for (ReadGame const& game : read) {
            GameAnnotation annotation(shared_tables(), game.game);
            for (std::size_t ply = 0; ply < game.game.moves.size(); ++ply) {
                add(search, limit, game.game, ply, annotation);
            }
            annotated.push_back(annotation.annotated("Orvelin 1.0"));
        }
    }

    void add(PositionSearch& search, std::string const& limit, Game const& game, std::size_t ply,
             GameAnnotation& annotation) {
        Question asked = question(annotation.fen(ply), limit, 2);
        asked.played = game.moves[ply];
        Result const result = search.answer(asked);
        annotation.add(ply, result);
        MoveInGame const move{asked.fen, asked.played,
                              taken_by(ply == 0 ? Move() : game.moves[ply - 1]), &result};
        std::string text = annotation.annotated("").moves[ply].comment;
        if (text.starts_with('[')) {
            text.erase(0, text.find("] ") + 2);
        }
        for (std::string const& fault : faults_of_sentence(text, move, shared_tables())) {
            ADD_FAILURE() << asked.fen << '\n' << text << '\n' << fault;
        }
        ++sentences;
    }

    std::string text() const {
        std::ostringstream out;
        for (AnnotatedGame const& game : annotated) {
            write_pgn(out, game, shared_tables());
        }
        return out.str();
    }
};

Annotated const& at_depth_four() {
    static Annotated const annotated("depth=4");
    return annotated;
}

TEST(AnnotationTest, EvalsAreThoseBehindTheMove) {
    EXPECT_EQ(eval_comment(299, true), "[%eval 1.00]");
    EXPECT_EQ(eval_comment(299, false), "[%eval -1.00]");
    EXPECT_EQ(eval_comment(0, false), "[%eval 0.00]");
    EXPECT_EQ(eval_comment(mate_score - 1, true), "");
    EXPECT_EQ(eval_comment(mate_score - 3, true), "[%eval #1]");
    EXPECT_EQ(eval_comment(mate_score - 3, false), "[%eval #-1]");
    EXPECT_EQ(eval_comment(2 - mate_score, true), "[%eval #-1]");
    EXPECT_EQ(eval_comment(2 - mate_score, false), "[%eval #1]");
}

TEST(AnnotationTest, EveryMoveGetsAScoreAndATrueSentence) {
    Annotated const& all = at_depth_four();
    EXPECT_EQ(all.sentences, 33 + 14 + 5);
    for (AnnotatedGame const& game : all.annotated) {
        for (AnnotatedMove const& move : game.moves) {
            bool const mates = move.comment.ends_with("is mate.");
            EXPECT_EQ(move.comment.starts_with("[%eval "), !mates) << move.comment;
            EXPECT_TRUE(move.comment.ends_with('.')) << move.comment;
        }
    }
}

TEST(AnnotationTest, MarkedMovesHaveTheBestLine) {
    AnnotatedGame const& game = at_depth_four().annotated.at(1);
    AnnotatedMove const& rook = game.moves.at(10);
    EXPECT_EQ(rook.glyphs, std::vector<int>{6}) << rook.comment;
    ASSERT_EQ(rook.variations.size(), 1U);
    EXPECT_TRUE(rook.variations[0].moves.at(0).comment.starts_with("[%eval -"));
    EXPECT_NE(rook.variations[0].moves[0].move, rook.move);
    for (AnnotatedMove const& move : game.moves) {
        bool const bad = !move.glyphs.empty() && move.glyphs[0] != 1;
        EXPECT_EQ(!move.variations.empty(), bad) << move.comment;
    }
    EXPECT_EQ(game.moves.back().comment, "7...Nf3# is mate.");
    EXPECT_TRUE(game.comment.starts_with("White: accuracy ")) << game.comment;
    EXPECT_NE(game.comment.find(" ??. Black: accuracy "), std::string::npos) << game.comment;
}

TEST(AnnotationTest, WhatIsMissingIsLeftOut) {
    Game const& game = at_depth_four().read.at(0).game;
    GameAnnotation annotation(shared_tables(), game);
    annotation.add(3, Result());
    annotation.add(1000, Result());
    AnnotatedGame const annotated = annotation.annotated("x");
    EXPECT_EQ(annotated.comment, "");
    EXPECT_EQ(annotated.moves.at(3).comment, "");
    EXPECT_FALSE(annotation.judgement(3).known);
    EXPECT_EQ(annotation.fen(game.moves.size()).substr(0, 8), "1n1Rkb1r");
}

TEST(AnnotationTest, IsReadBackByTheReader) {
    std::vector<ReadGame> const read = read_games(at_depth_four().text());
    ASSERT_EQ(read.size(), 3U);
    for (std::size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(read[i].reason, "");
        EXPECT_EQ(read[i].moves(), at_depth_four().read[i].moves());
        EXPECT_EQ(read[i].game.start_fen, at_depth_four().read[i].game.start_fen);
        EXPECT_EQ(read[i].game.tag("Annotator"), "Orvelin 1.0");
        EXPECT_EQ(read[i].game.result, at_depth_four().read[i].game.result);
    }
    EXPECT_EQ(read[0].game.tag("White"), "one");
}

TEST(AnnotationTest, IsReadBackByPgnExtract) {
    std::string const witness = "/usr/games/pgn-extract";
    ASSERT_TRUE(std::filesystem::exists(witness))
        << witness << " is missing: apt-get install pgn-extract";
    orvelin::test::TemporaryDirectory const directory;
    std::string const file = directory.file("games.pgn");
    std::ofstream(file) << at_depth_four().text();
    auto const result = orvelin::test::run_program(witness, {"-s", "-Wuci", file});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    std::vector<ReadGame> const read = read_games(result.output);
    ASSERT_EQ(read.size(), 3U) << result.output;
    EXPECT_EQ(read[0].moves(), at_depth_four().read[0].moves());
}

}  // namespace

}  // namespace orvelin::analyse::test
