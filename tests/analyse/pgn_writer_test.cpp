#include "analyse/pgn_writer.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "analyse/pgn_lines.h"
#include "analyse/pgn_reader_fixture.h"
#include "play/position_reader.h"
#include "support/positions.h"
#include "support/program.h"
#include "support/temporary_directory.h"

namespace orvelin::analyse::test {

namespace {

/// The moves of UCI texts between blanks from a position.
std::vector<AnnotatedMove> moves_from(std::string const& fen, std::string const& texts) {
    ChessPosition position(orvelin::test::shared_tables());
    position.fen(fen);
    std::vector<AnnotatedMove> moves;
    std::istringstream words(texts);
    for (std::string word; words >> word;) {
        AnnotatedMove move;
        move.move = play::find_legal_move(position, orvelin::test::shared_tables(), word);
        position.make_move(move.move);
        moves.push_back(move);
    }
    return moves;
}

std::string written(AnnotatedGame const& game) {
    std::ostringstream out;
    write_pgn(out, game, orvelin::test::shared_tables());
    return out.str();
}

std::string const after_e4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1";

/// With everything that a game can hold.
AnnotatedGame full_game() {
    AnnotatedGame game;
    game.start_fen = positions::start;
    game.tags = {{"White", "the \"great\" one"},
                 {"ECO", "C20"},
                 {"Event", "C:\\games"},
                 {"Result", "0-1"},
                 {"bad name!", "x"},
                 {"FEN", "nonsense"},
                 {"Annotator", "line\nbreak"},
                 {"Variant", "Atomic"}};
    game.comment = "[%eval 0.17] before } all";
    game.moves = moves_from(game.start_fen, "e2e4 e7e5 g1f3 b8c6");
    game.moves[0].comment = "[%eval 0.2]";
    game.moves[1].glyphs = {2, 14};
    Variation variation{"better", moves_from(after_e4, "c7c5 g1f3")};
    variation.moves[0].variations.push_back({"", moves_from(after_e4, "c7c6 d2d4 d7d5")});
    game.moves[1].variations = {variation, {"", moves_from(after_e4, "e7e6")}};
    game.moves[3].comment = "the end";
    game.result = "1-0";
    return game;
}

constexpr char const* full_text =
    "[Event \"C:\\\\games\"]\n[Site \"?\"]\n[Date \"????.??.??\"]\n[Round \"?\"]\n"
    "[White \"the \\\"great\\\" one\"]\n[Black \"?\"]\n[Result \"1-0\"]\n[ECO \"C20\"]\n"
    "[Annotator \"line break\"]\n\n"
    "{[%eval 0.17] before ) all} 1. e4 {[%eval 0.2]} 1... e5 $2 $14 ({better} 1...\n"
    "c5 (1... c6 2. d4 d5) 2. Nf3) (1... e6) 2. Nf3 Nc6 {the end} 1-0\n\n";

TEST(PgnWriterTest, WritesAllThatIsSaid) {
    EXPECT_EQ(written(full_game()), full_text);
}

TEST(PgnWriterTest, IsReadBackByTheReader) {
    std::string const text = written(full_game());
    std::vector<ReadGame> const games = read_games(text + text);
    ASSERT_EQ(games.size(), 2U);
    for (ReadGame const& read : games) {
        EXPECT_EQ(read.reason, "");
        EXPECT_EQ(read.moves(), "e2e4 e7e5 g1f3 b8c6");
        EXPECT_EQ(read.game.tag("White"), "the \"great\" one");
        EXPECT_EQ(read.game.tag("Event"), "C:\\games");
        EXPECT_EQ(read.game.result, "1-0");
    }
}

TEST(PgnWriterTest, WritesOtherStarts) {
    AnnotatedGame game;
    game.start_fen = "qrkr4/pppppppp/8/8/8/8/PPPPPPPP/QRKR4 b KQkq - 0 7";
    game.chess960 = true;
    game.moves = moves_from(game.start_fen, "c8d8 c1d1");
    std::string const text = written(game);
    EXPECT_NE(text.find("[Variant \"Chess960\"]\n[SetUp \"1\"]\n[FEN \"" + game.start_fen +
                        "\"]\n\n"
                        "7... O-O 8. O-O *\n"),
              std::string::npos)
        << text;
    ReadGame const read = read_game(text);
    EXPECT_EQ(read.moves(), "c8d8 c1d1");
    EXPECT_TRUE(read.game.chess960);
    EXPECT_EQ(read.game.start_fen, game.start_fen);
}

TEST(PgnWriterTest, EndsALineBeforeAMoveThatIsNotLegal) {
    AnnotatedGame game;
    game.start_fen = positions::start;
    game.moves = moves_from(game.start_fen, "e2e4 e7e5");
    game.moves[1].move = game.moves[0].move;
    Variation const bad{"none", {game.moves[1]}};
    game.moves[0].variations = {{"empty", {}}};
    game.moves[1].variations = {bad};
    EXPECT_NE(written(game).find("\n1. e4 *\n"), std::string::npos) << written(game);
}

TEST(PgnLinesTest, AreShorterThan80Letters) {
    PgnLines lines;
    std::string comment;
    for (int word = 0; word < 500; ++word) {
        comment += std::string(static_cast<std::size_t>(word % 13 + 1), 'x') + "\n\t";
    }
    lines.add_comment(comment);
    lines.open('(');
    for (int word = 0; word < 300; ++word) {
        lines.add(std::string(static_cast<std::size_t>(word % 7 + 1), 'y'));
        lines.close(')');
    }
    std::istringstream text(lines.text());
    std::size_t longest = 0;
    for (std::string line; std::getline(text, line);) {
        longest = std::max(longest, line.size());
    }
    EXPECT_EQ(longest, PgnLines::longest_line);
}

TEST(PgnLinesTest, CommentsBeginNoEscapedLineAndNoTag) {
    std::string const comment(75, 'x');
    PgnLines lines;
    lines.add_comment(comment + " %escaped%escaped " + comment + " [Event \"x\"]");
    EXPECT_EQ(lines.text(),
              "{" + comment + "\n %escaped%escaped\n" + comment + "\n [Event \"x\"]}\n");
    PgnLines none;
    none.add_comment(" \n ");
    EXPECT_EQ(none.text(), "");
}

// A witness that is not ours. It repeats every move of the game and complains of what it does not
// understand.
TEST(PgnWriterTest, IsReadBackByPgnExtract) {
    std::string const witness = "/usr/games/pgn-extract";
    ASSERT_TRUE(std::filesystem::exists(witness))
        << witness << " is missing: apt-get install pgn-extract";
    AnnotatedGame ending;
    ending.start_fen = "6k1/5ppp/8/3pP3/8/8/8/R3K2R w KQ d6 0 40";
    ending.moves = moves_from(ending.start_fen, "e5d6 h7h6 e1a1 g8h7 d6d7 f7f5 d7d8q");
    ending.moves[2].glyphs = {1};
    ending.moves[2].comment = "a long comment " + std::string(200, 'x') + " % and [so] on; (yes)";
    ending.moves[3].variations = {{"", {ending.moves[3]}}};
    orvelin::test::TemporaryDirectory const directory;
    std::string const file = directory.file("games.pgn");
    std::ofstream(file) << written(full_game()) << written(ending) << written(full_game());
    auto const result = orvelin::test::run_program(witness, {"-s", "-Wuci", file});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    std::vector<ReadGame> const games = read_games(result.output);
    ASSERT_EQ(games.size(), 3U) << result.output;
    EXPECT_EQ(games[0].moves(), "e2e4 e7e5 g1f3 b8c6");
    EXPECT_EQ(games[1].moves(), "e5d6 h7h6 e1a1 g8h7 d6d7 f7f5 d7d8q");
    EXPECT_EQ(games[2].game.tag("White"), "the \"great\" one");
}

}  // namespace

}  // namespace orvelin::analyse::test
