// The opening book at `go`, in an engine in this process.

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "protocol/book_fixture.h"
#include "search/action.h"
#include "support/analysis_probe.h"
#include "support/engine_fixture.h"
#include "support/installed_book.h"
#include "support/positions.h"
#include "support/working_directory.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;

std::string const castling_fen = positions::all_castlings;

/// Knights that go out and back: after four moves the start position is on the board again.
std::string knight_moves(int count) {
    static char const* const cycle[] = {" g1f3", " g8f6", " f3g1", " f6g8"};
    std::string line = "position startpos moves";
    for (int i = 0; i < count; ++i) {
        line += cycle[i % 4];
    }
    return line;
}

class EngineBookTest : protected WorkingDirectory, public EngineFixture {
 protected:
    void SetUp() override { ASSERT_FALSE(installed_book_in_sight()) << book_in_the_way; }

    /// Starts the engine again with a book of these entries, sorted, and the book in use.
    void use(std::vector<Book_record> entries) {
        std::stable_sort(entries.begin(), entries.end());
        restart(book_bytes(entries));
    }

    /// The same with any bytes as book.
    void restart(std::string const& bytes) {
        write_book("Orvelin.bin", bytes);
        command("quit");
        engine = std::make_unique<Engine>(communicator, log);
        command("setoption name OwnBook value true");
    }

    /// What is queued at once after the command, before any search is looked at.
    lines_t answer(std::string const& line) {
        command(line);
        return replies();
    }
};

TEST_F(EngineBookTest, TheMoveIsAnsweredAtOnceAndAlone) {
    use({book_line(start_fen, "e2e4")});
    command("position startpos");
    for (char const* const go : {"go", "go wtime 1000 btime 1000", "go infinite", "go ponder",
                                 "go depth 0", "go searchmoves d2d4", "go nonsense"}) {
        EXPECT_EQ(answer(go), lines_t{"bestmove e2e4"}) << go;
    }
}

TEST_F(EngineBookTest, NothingChangesBeforeTheAnswer) {
    use({book_line(start_fen, "e2e4")});
    command("position startpos");
    EXPECT_EQ(answer("go infinite"), lines_t{"bestmove e2e4"});
    EXPECT_EQ(fen(), start_fen);
    EXPECT_EQ(engine->position().history().size(), 1U);
    EXPECT_EQ(engine->position_line(), "position startpos");
    EXPECT_EQ(engine->engine_state(), 0);
    EXPECT_EQ(engine->analysis().get_action(), no_action);
    EXPECT_EQ(engine->analysis().get_status(), ready_status);
    EXPECT_EQ(engine->analysis().get_node_count(), 0U);
    EXPECT_EQ(engine->analysis().best_move(), Move());
    engine->to_console();
    EXPECT_EQ(replies(), lines_t{});
}

TEST_F(EngineBookTest, TheAnswerIsNotLogged) {
    use({book_line(start_fen, "e2e4")});
    open_log();
    command("position startpos");
    EXPECT_EQ(answer("go depth 3"), lines_t{"bestmove e2e4"});
    EXPECT_EQ(log_text(), "engine <- position startpos\nengine <- go depth 3\n");
}

TEST_F(EngineBookTest, TheRestOfTheQueueIsWorkedOn) {
    use({book_line(start_fen, "e2e4")});
    communicator.to_engine("go");
    communicator.to_engine("isready");
    communicator.to_engine("go");
    engine->from_console();
    EXPECT_EQ(replies(), (lines_t{"bestmove e2e4", "readyok", "bestmove e2e4"}));
}

TEST_F(EngineBookTest, TheLimitsAreResetAllTheSame) {
    use({book_line(start_fen, "e2e4")});
    AnalysisProbe probe(engine->analysis());
    command("position startpos");
    engine->analysis().set_depth(3);
    engine->analysis().set_nodes(77);
    EXPECT_EQ(answer("go depth 5 nodes 99"), lines_t{"bestmove e2e4"});
    EXPECT_EQ(probe.depth_limit(), 102);
    EXPECT_EQ(probe.max_nodes(), SearchLimits::no_node_limit);
}

TEST_F(EngineBookTest, TheNextPositionBringsTheMoveIn) {
    std::string const after = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2";
    use({book_line(start_fen, "e2e4"), book_line(after, "g1f3")});
    command("position startpos");
    EXPECT_EQ(answer("go"), lines_t{"bestmove e2e4"});
    command("position startpos moves e2e4 e7e5");
    EXPECT_EQ(fen(), after);
    EXPECT_EQ(answer("go"), lines_t{"bestmove g1f3"});
}

TEST_F(EngineBookTest, APositionThatTheBookLacksIsSearched) {
    use({book_line(start_fen, "e2e4"), book_line(castling_fen, "e1h1")});
    command("position startpos moves d2d4");
    command("go depth 2");
    lines_t const lines = search_to_end();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_TRUE(lines[lines.size() - 2].starts_with("info hashfull "));
}

TEST_F(EngineBookTest, WithoutTheOptionTheSearchAnswers) {
    use({book_line(start_fen, "a2a3")});
    for (char const* const value : {"false", "True", "1", ""}) {
        command("setoption name OwnBook value true");
        command(std::string("setoption name OwnBook value ") + value);
        command("position startpos");
        ASSERT_EQ(answer("go depth 2"), lines_t{}) << value;
        EXPECT_NE(search_to_end().back().substr(0, 14), "bestmove a2a3") << value;
    }
    command("setoption name OwnBook value true");
    command("setoption name OwnBook");
    command("position startpos");
    EXPECT_EQ(answer("go"), lines_t{"bestmove a2a3"});
}

TEST_F(EngineBookTest, WithoutABookTheOptionStaysFalseWithoutAWord) {
    EXPECT_EQ(answer("setoption name OwnBook value true"), lines_t{});
    // A book that comes later is not looked for.
    write_book("Orvelin.bin", book_bytes({book_line(start_fen, "a2a3")}));
    EXPECT_EQ(answer("setoption name OwnBook value true"), lines_t{});
    command("position startpos");
    ASSERT_EQ(answer("go depth 2"), lines_t{});
    EXPECT_NE(search_to_end().back().substr(0, 14), "bestmove a2a3");
}

TEST_F(EngineBookTest, TheFileStaysOpen) {
    use({book_line(start_fen, "a2a3")});
    std::filesystem::remove(file("Orvelin.bin"));
    command("position startpos");
    EXPECT_EQ(answer("go"), lines_t{"bestmove a2a3"});
}

TEST_F(EngineBookTest, TwentyThreeMovesPlayedGiveTheBookAndNoMore) {
    std::string const last_fen = "rnbqkb1r/pppppppp/5n2/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 23 12";
    use({book_line(start_fen, "e2e4"), book_line(last_fen, "e7e5")});
    command(knight_moves(23));
    ASSERT_EQ(fen(), last_fen);
    EXPECT_EQ(engine->position().history().size(), 24U);
    EXPECT_EQ(answer("go"), lines_t{"bestmove e7e5"});
    command(knight_moves(20));
    EXPECT_EQ(answer("go"), lines_t{"bestmove e2e4"});
    // The same position and key, but too late in the game.
    command(knight_moves(24));
    EXPECT_EQ(engine->position().get_hash(), book_key(start_fen));
    ASSERT_EQ(answer("go depth 1"), lines_t{});
    EXPECT_TRUE(search_to_end().back().starts_with("bestmove "));
    // A set-up position counts as one record, however late its move number.
    command("position fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 30 90");
    EXPECT_EQ(answer("go"), lines_t{"bestmove e2e4"});
}

TEST_F(EngineBookTest, CastlingIsWrittenAsTheOptionSays) {
    std::string const black_fen = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1";
    std::string const other_fen = "4k3/8/8/8/8/8/8/1R3KR1 w GB - 0 1";
    struct {
        std::string fen;
        char const* entry;
        char const* standard;
    } const rows[] = {
        {castling_fen, "e1h1", "e1g1"}, {castling_fen, "e1a1", "e1c1"}, {black_fen, "e8h8", "e8g8"},
        {black_fen, "e8a8", "e8c8"},    {other_fen, "f1g1", "f1g1"},    {other_fen, "f1b1", "f1b1"},
    };
    for (auto const& row : rows) {
        use({book_line(row.fen, row.entry)});
        command("position fen " + row.fen);
        EXPECT_EQ(answer("go"), lines_t{std::string("bestmove ") + row.standard}) << row.entry;
        command("setoption name UCI_Chess960 value true");
        EXPECT_EQ(answer("go"), lines_t{std::string("bestmove ") + row.entry}) << row.entry;
        command("setoption name UCI_Chess960 value false");
        EXPECT_EQ(answer("go"), lines_t{std::string("bestmove ") + row.standard}) << row.entry;
    }
}

TEST_F(EngineBookTest, AMoveIsPrintedAsItStandsLegalOrNot) {
    std::string const promotion_fen = "8/P7/8/8/8/8/7k/K7 w - - 0 1";
    struct {
        std::string fen;
        char const* move;
    } const rows[] = {
        {start_fen, "e2e5"},      {start_fen, "e4e5"},     {start_fen, "e7e5"},
        {start_fen, "a1a8"},      {start_fen, "e1g1"},     {promotion_fen, "a7a8q"},
        {promotion_fen, "a7a8n"}, {promotion_fen, "a7a8"}, {promotion_fen, "a1a2r"},
        {start_fen, "e1e8"},
    };
    for (auto const& row : rows) {
        use({book_line(row.fen, row.move)});
        command("position fen " + row.fen);
        EXPECT_EQ(answer("go"), lines_t{std::string("bestmove ") + row.move});
    }
}

TEST_F(EngineBookTest, AKeyWithoutAMoveOrWeightIsSearched) {
    for (auto const& entry :
         {book_line(start_fen, "a2a3", 0), book_entry(book_key(start_fen), 0, 5)}) {
        use({entry});
        command("position startpos");
        ASSERT_EQ(answer("go depth 2"), lines_t{});
        EXPECT_NE(search_to_end().back().substr(0, 14), "bestmove a2a3");
    }
}

TEST_F(EngineBookTest, EveryListedMoveIsPlayedAndTheFirstOneMostOften) {
    use({book_line(start_fen, "e2e4", 2), book_line(start_fen, "d2d4", 2),
         book_line(start_fen, "c2c4", 2)});
    command("position startpos");
    std::map<std::string, int> counts;
    for (int i = 0; i < 2000; ++i) {
        lines_t const lines = answer("go");
        ASSERT_EQ(lines.size(), 1U);
        ++counts[lines[0]];
    }
    EXPECT_EQ(counts.size(), 3U);
    EXPECT_GT(counts["bestmove d2d4"], 0);
    EXPECT_GT(counts["bestmove c2c4"], 0);
    EXPECT_GT(counts["bestmove e2e4"], counts["bestmove d2d4"]);
    EXPECT_GT(counts["bestmove d2d4"], counts["bestmove c2c4"]);
}

TEST_F(EngineBookTest, AThinkingEngineAnswersAndThinksOn) {
    use({book_line(start_fen, "a2a3")});
    open_log();
    command("setoption name OwnBook value false");
    command("position startpos");
    command("go wtime 6000000 btime 6000000");
    ASSERT_TRUE(wait_for_iteration(3));
    command("setoption name OwnBook value true");
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(answer("go depth 1"), lines_t{"bestmove a2a3"});
    }
    EXPECT_EQ(engine->engine_state(), 1);
    EXPECT_EQ(engine->analysis().get_status(), searching_status);
    EXPECT_EQ(log_text().find("Error"), std::string::npos);
    command("stop");
    lines_t const lines = replies();
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(lines.back().starts_with("bestmove "));
    // The move made is the one of the search.
    EXPECT_NE(fen(), start_fen);
    EXPECT_EQ(engine->position().history().size(), 2U);
}

TEST_F(EngineBookTest, AHeldBackSearchGoesOnBehindTheAnswer) {
    for (std::string const held : {"go infinite", "go ponder"}) {
        use({book_line(start_fen, "a2a3")});
        command("setoption name OwnBook value false");
        command("position startpos");
        command(held);
        int const state = engine->engine_state();
        ASSERT_TRUE(wait_for_iteration(2)) << held;
        command("setoption name OwnBook value true");
        EXPECT_EQ(answer("go"), lines_t{"bestmove a2a3"}) << held;
        EXPECT_EQ(engine->engine_state(), state) << held;
        EXPECT_EQ(engine->analysis().get_action(), no_action) << held;
        command("stop");
        EXPECT_TRUE(replies().back().starts_with("bestmove ")) << held;
    }
}

}  // namespace
}  // namespace orvelin::test
