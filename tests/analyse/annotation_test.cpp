#include "analyse/annotation.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "analyse/pgn_reader_fixture.h"
#include "analyse/record_fixture.h"
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
            annotated.push_back(annotated_game(search, limit, game.game));
        }
    }

    AnnotatedGame annotated_game(PositionSearch& search, std::string const& limit,
                                 Game const& game) {
        GameAnnotation annotation(shared_tables(), game);
        ChessPosition position(shared_tables());
        position.fen(game.start_fen);
        Move previous;
        for (std::size_t ply = 0; ply < game.moves.size(); ++ply) {
            annotation.add(ply, record(search, limit, position.fen(), game.moves[ply], previous));
            previous = game.moves[ply];
            position.make_move(previous);
        }
        return annotation.annotated("Orvelin 1.0");
    }

    Record record(PositionSearch& search, std::string const& limit, std::string const& fen,
                  Move const& played, Move const& previous) {
        Question asked = question(fen, limit, 2);
        asked.played = played;
        Result const result = search.answer(asked);
        MoveInGame const move{fen, played, taken_by(previous), &result};
        Record const record = record_of(move);
        std::string const& text = record.played->judgement.value().sentence;
        for (std::string const& fault : faults_of_sentence(text, move, shared_tables())) {
            ADD_FAILURE() << fen << '\n' << text << '\n' << fault;
        }
        ++sentences;
        return record;
    }

    std::string text() const {
        std::ostringstream out;
        for (AnnotatedGame const& game : annotated) {
            write_pgn(out, game, shared_tables());
        }
        return out.str();
    }
};

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

TEST(AnnotationTest, WhatIsMissingIsLeftOut) {
    std::vector<ReadGame> const read = read_games(games);
    Game const& game = read.at(0).game;
    GameAnnotation annotation(shared_tables(), game);
    annotation.add(3, Record());
    Record record;
    record.fen = game.start_fen;
    record.played.emplace();
    annotation.add(4, record);
    record.played->judgement = {move_mark::blunder, 300, 20.0, "Words."};
    annotation.add(1000, record);
    AnnotatedGame const annotated = annotation.annotated("x");
    EXPECT_EQ(annotated.comment, "");
    EXPECT_EQ(annotated.moves.at(3).comment, "");
    EXPECT_EQ(annotated.moves.at(4).comment, "");
}

// A file may hold what no program would write.
TEST(AnnotationTest, LinesThatCannotBePlayedEndWhereTheyCan) {
    std::vector<ReadGame> const read = read_games(games);
    Game const& game = read.at(0).game;
    GameAnnotation annotation(shared_tables(), game);
    Record record;
    record.fen = game.start_fen;
    record.played.emplace();
    record.played->move = "e2e4";
    record.played->judgement = {move_mark::blunder, 300, 20.0, "Words."};
    annotation.add(0, record);
    for (char const* const moves : {"", "e2e4 e7e5", "e2e5", "d2d4 e7e5 e2e5 a7a6"}) {
        RecordLine line;
        line.moves = moves;
        record.lines = {line};
        GameAnnotation other(shared_tables(), game);
        other.add(0, record);
        std::size_t const shown = std::string(moves).starts_with("d2d4") ? 2 : 0;
        auto const variations = other.annotated("").moves.at(0).variations;
        EXPECT_EQ(variations.empty() ? 0 : variations[0].moves.size(), shown) << moves;
    }
    // The first record counts.
    record.played->judgement->sentence = "Others.";
    annotation.add(0, record);
    EXPECT_EQ(annotation.annotated("").moves.at(0).comment, "Words.");
    EXPECT_EQ(annotation.accuracy(true).count(move_mark::blunder), 1);
    EXPECT_EQ(annotation.accuracy(true).percent(), 20.0);
}

void expect_scores_and_sentences(Annotated const& all) {
    EXPECT_EQ(all.sentences, 33 + 14 + 5);
    for (AnnotatedGame const& game : all.annotated) {
        for (AnnotatedMove const& move : game.moves) {
            bool const mates = move.comment.ends_with("is mate.");
            EXPECT_EQ(move.comment.starts_with("[%eval "), !mates) << move.comment;
            EXPECT_TRUE(move.comment.ends_with('.')) << move.comment;
        }
    }
}

void expect_best_lines_at_marks(Annotated const& all) {
    AnnotatedGame const& game = all.annotated.at(1);
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

void expect_the_reader_reads_it(Annotated const& all) {
    std::vector<ReadGame> const read = read_games(all.text());
    ASSERT_EQ(read.size(), 3U);
    for (std::size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(read[i].reason, "");
        EXPECT_EQ(read[i].moves(), all.read[i].moves());
        EXPECT_EQ(read[i].game.start_fen, all.read[i].game.start_fen);
        EXPECT_EQ(read[i].game.tag("Annotator"), "Orvelin 1.0");
        EXPECT_EQ(read[i].game.result, all.read[i].game.result);
    }
    EXPECT_EQ(read[0].game.tag("White"), "one");
}

void expect_pgn_extract_reads_it(Annotated const& all) {
    std::string const witness = "/usr/games/pgn-extract";
    ASSERT_TRUE(std::filesystem::exists(witness))
        << witness << " is missing: apt-get install pgn-extract";
    orvelin::test::TemporaryDirectory const directory;
    std::string const file = directory.file("games.pgn");
    std::ofstream(file) << all.text();
    auto const result = orvelin::test::run_program(witness, {"-s", "-Wuci", file});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    std::vector<ReadGame> const read = read_games(result.output);
    ASSERT_EQ(read.size(), 3U) << result.output;
    EXPECT_EQ(read[0].moves(), all.read[0].moves());
}

// Together: the search of all moves takes longer than all else, and tests that share it would each
// do it in a process of their own.
TEST(AnnotationTest, WholeGamesAreAnnotatedAndReadBack) {
    Annotated const all("depth=4");
    expect_scores_and_sentences(all);
    expect_best_lines_at_marks(all);
    expect_the_reader_reads_it(all);
    expect_pgn_extract_reads_it(all);
}

}  // namespace

}  // namespace orvelin::analyse::test
