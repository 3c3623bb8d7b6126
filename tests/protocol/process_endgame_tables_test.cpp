// Endgame tables that the engine builds in its thinking time, seen from outside.

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "support/data_file.h"
#include "support/engine_process.h"
#include "support/referee.h"
#include "support/test_config.h"

namespace orvelin::test {
namespace {

using namespace std::chrono_literals;
using lines_t = std::vector<std::string>;

std::string const bishop_and_knight = "8/8/8/7k/8/8/BN6/K7 w - - 0 1";
std::string const with_a_pawn = "8/p7/8/7k/8/8/BN6/K7 w - - 0 1";
std::string const queen_and_rook = "8/r7/8/7k/8/8/Q7/K7 w - - 0 1";

/// A game played by the engine on both sides, each position told whole.
class ProcessEndgameTablesTest : public testing::Test {
 protected:
    void set_hash(int megabytes) {
        engine_.send("setoption name Hash value " + std::to_string(megabytes));
    }

    void set_position(std::string const& fen) {
        referee_.emplace(fen);
        position_line_ = "position fen " + fen;
        engine_.send(position_line_);
    }

    /// Notes the engine's move and plays it; it must be legal.
    void take_move(std::string const& best_move_line) {
        ASSERT_TRUE(best_move_line.starts_with("bestmove ")) << best_move_line;
        std::string const move = split_words(best_move_line).at(1);
        ASSERT_TRUE(referee_->play(move)) << best_move_line;
        position_line_ += (position_line_.find(" moves") == std::string::npos ? " moves " : " ");
        position_line_ += move;
    }

    /// Lets the engine move, and tells it the position after that. Returns the lines it wrote.
    lines_t move(std::string const& go) {
        engine_.send(go);
        lines_t lines;
        for (auto const& line : engine_.read_until("bestmove")) {
            lines.push_back(line.text);
        }
        if (lines.empty()) {
            lines.emplace_back();
        }
        take_move(lines.back());
        engine_.send(position_line_);
        return lines;
    }

    /// A search that is stopped after its first report, and its move not played. Returns the time
    /// in the report, in milliseconds.
    int time_of_first_report(std::string const& go) {
        engine_.send(go);
        std::vector<std::string> const words = split_words(engine_.find("info depth"));
        engine_.send("stop");
        EXPECT_TRUE(engine_.find("bestmove").starts_with("bestmove "));
        engine_.send(position_line_);
        auto const time = std::find(words.begin(), words.end(), "time");
        return words.end() - time < 2 ? -1 : std::stoi(time[1]);
    }

    /// Starts a search and gives it the time to begin with its table, of which nothing is heard.
    void begin_building(std::string const& go) {
        engine_.send_all({go, "isready"});
        EXPECT_EQ(engine_.find("readyok"), "readyok");
        EXPECT_TRUE(engine_.read_for(200ms).empty());
    }

    /// Use of the hash in a search of this depth, per mille.
    int hashfull(int depth) {
        lines_t const lines = move("go depth " + std::to_string(depth));
        if (lines.size() < 2 || !lines[lines.size() - 2].starts_with("info hashfull ")) {
            ADD_FAILURE() << "no hashfull before the move";
            return -1;
        }
        return std::stoi(split_words(lines[lines.size() - 2]).at(2));
    }

    std::optional<Referee> referee_;
    std::string position_line_;
    EngineProcess engine_;
};

}  // namespace

// In the sanitizer builds the table is not finished, and the later moves build on.
TEST_F(ProcessEndgameTablesTest, AGameWithALongClockBuildsAndMovesInTime) {
    std::string const clock = short_tests ? "3000" : "60000";
    set_position(bishop_and_knight);
    auto const start = EngineProcess::clock::now();
    move("go wtime " + clock + " btime " + clock);
    EXPECT_LT(EngineProcess::clock::now() - start, 60s);
    for (int ply = 0; ply < 8; ++ply) {
        move("go wtime 2200 btime 2200");
    }
    set_position(with_a_pawn);
    move("go wtime 2200 btime 2200");
}

// A search begins only after the building: its first report tells how long that took.
#if !ORVELIN_SHORT_TESTS
TEST_F(ProcessEndgameTablesTest, AFinishedTableTakesNoMoreTimeUntilAPawnEndsIt) {
    set_position(bishop_and_knight);
    int const building = time_of_first_report("go wtime 60000 btime 60000");
    EXPECT_GT(building, 0);
    int const built = time_of_first_report("go wtime 60000 btime 60000");
    EXPECT_LT(built, building / 2);
    set_position(bishop_and_knight);
    EXPECT_LT(time_of_first_report("go wtime 60000 btime 60000"), building / 2);

    set_position(with_a_pawn);
    EXPECT_LT(time_of_first_report("go wtime 60000 btime 60000"), building / 2);
    set_position(bishop_and_knight);
    EXPECT_GT(time_of_first_report("go wtime 3000 btime 3000"), std::min(building, 1000) / 2);
}
#endif

TEST_F(ProcessEndgameTablesTest, TheHashFigureShowsTheBucketsKeptOut) {
    set_hash(8);
    // The figure comes from the first 1000 buckets, which are all out of use.
    set_position(bishop_and_knight);
    EXPECT_EQ(hashfull(9), 0);
    set_position(queen_and_rook);
    EXPECT_EQ(hashfull(7), 0);
    set_position(with_a_pawn);
    EXPECT_GT(hashfull(10), 0);
    // Too small for a table, the hash is all the search's.
    set_hash(6);
    set_position(bishop_and_knight);
    EXPECT_GT(hashfull(10), 0);
    set_position(queen_and_rook);
    EXPECT_GT(hashfull(10), 0);
    set_hash(8);
    set_position(queen_and_rook);
    EXPECT_EQ(hashfull(7), 0);
}

TEST_F(ProcessEndgameTablesTest, TheHashSizeMayChangeBetweenTheMovesOfAGame) {
    set_hash(8);
    set_position(bishop_and_knight);
    EXPECT_GT(time_of_first_report("go wtime 2300 btime 2300"), 100);
    set_hash(6);
    time_of_first_report("go wtime 60000 btime 60000");
    move("go wtime 2300 btime 2300");
    set_position(with_a_pawn);
    move("go wtime 2300 btime 2300");
    set_position(queen_and_rook);
    time_of_first_report("go wtime 60000 btime 60000");
    move("go wtime 4300 btime 4300 movestogo 100");
    set_hash(16);
    EXPECT_GT(time_of_first_report("go wtime 4300 btime 4300"), 100);
    set_hash(1);
    move("go depth 6");
}

TEST_F(ProcessEndgameTablesTest, ASecondTableFollowsAFirst) {
    set_position(bishop_and_knight);
    EXPECT_GT(time_of_first_report("go wtime 2300 btime 2300"), 100);
    set_position(queen_and_rook);
    EXPECT_GT(time_of_first_report("go wtime 4300 btime 4300"), 100);
    if (whole_tests()) {
        // The first goes on with the bytes of the second: by design, nothing reads them.
        set_position(bishop_and_knight);
        move("go wtime 2300 btime 2300");
    }
    set_position(with_a_pawn);
    move("go depth 6");
}

TEST_F(ProcessEndgameTablesTest, AStopWaitsForTheTimeFloor) {
    set_position(queen_and_rook);
    auto const start = EngineProcess::clock::now();
    begin_building("go wtime 5000 btime 5000");
    engine_.send("stop");
    // The search itself has not begun.
    EXPECT_EQ(engine_.find("bestmove"), "bestmove 0000");
    EXPECT_GT(EngineProcess::clock::now() - start, 500ms);
    set_position(queen_and_rook);
    move("go depth 6");
}

TEST_F(ProcessEndgameTablesTest, AQuitDuringTheBuildingEndsTheProcess) {
    set_position(queen_and_rook);
    begin_building("go wtime 5000 btime 5000");
    engine_.send("quit");
    auto const end = engine_.wait();
    ASSERT_TRUE(end.has_value());
    EXPECT_EQ(end->signal, 0);
    EXPECT_EQ(end->status, 0);
}

}  // namespace orvelin::test
