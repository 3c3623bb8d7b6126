#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "generation/tables.h"
#include "search/action.h"
#include "support/analysis_probe.h"
#include "support/data_file.h"
#include "support/engine_fixture.h"
#include "support/shared_tables.h"
#include "support/text_pattern.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;

class EngineReportTest : public EngineFixture {
 protected:
    /// All lines of a search of the position, to `bestmove`.
    lines_t search(std::string const& position_fen, std::string const& go) {
        command("position fen " + position_fen);
        command(go);
        return search_to_end();
    }

    /// The last `info depth` line.
    static std::string last_info(lines_t const& lines) {
        std::string last;
        for (std::string const& line : lines) {
            if (line.starts_with("info depth ")) {
                last = line;
            }
        }
        return last;
    }

    /// Ends a search that nobody waits for, when reports are due.
    void search_silently() {
        engine->analysis().set_depth(1);
        engine->analysis().set_action(think_action);
        ASSERT_TRUE(wait_for_status(finished_status));
        ASSERT_TRUE(wait_for_report_time());
    }

    /// Reports a line of this one move as found by a search that has ended.
    void report_line(ChessPosition const& root, std::string const& move, int score) {
        ChessPosition position = root;
        PrincipalVariation line;
        line[0] = position.convert_to_move(move);
        line.set_score(score);
        AnalysisProbe(engine->analysis()).lines().clear();
        AnalysisProbe(engine->analysis()).lines().add(line);
        engine->to_console();
    }
};

std::uint64_t number_behind(std::string const& line, std::string const& word) {
    std::size_t const at = line.find(" " + word + " ");
    return at == std::string::npos ? 0 : std::stoull(line.substr(at + word.size() + 2));
}

/// The two words behind "score".
std::string score_of(std::string const& line) {
    std::vector<std::string> const words = split_words(line);
    auto const score = std::find(words.begin(), words.end(), "score");
    return words.end() - score < 3 ? "" : score[1] + " " + score[2];
}

TEST_F(EngineReportTest, NothingIsSaidWhileTheSearchHasNothingToReport) {
    engine->to_console();
    EXPECT_EQ(replies(), lines_t{});
    command("go infinite depth 4");
    ASSERT_TRUE(wait_for_status(finished_status));
    ASSERT_TRUE(wait_for_report_time());
    ASSERT_GT(engine->analysis().mpv_version(), 0);
    engine->analysis().set_status(ready_status);
    engine->to_console();
    EXPECT_EQ(replies(), lines_t{});
}

TEST_F(EngineReportTest, InfoLinesHaveTheirFixedFormAndATrailingBlank) {
    lines_t const lines = search(start_fen, "go depth 7");
    std::string const form(
        "info depth \\d+ seldepth \\d+ score cp -?\\d+ time \\d+ nodes \\d+ nps \\d+ "
        "pv ([a-h][1-8][a-h][1-8] )+");
    ASSERT_GE(lines.size(), 3U);
    for (std::size_t i = 0; i + 2 < lines.size(); ++i) {
        EXPECT_TRUE(matches(lines[i], form)) << lines[i];
    }
    EXPECT_TRUE(matches(lines[lines.size() - 2], ("info hashfull \\d+")));
    EXPECT_TRUE(matches(lines.back(), ("bestmove [a-h1-8]{4} ponder [a-h1-8]{4}")));
}

TEST_F(EngineReportTest, TheFiguresOfTheLastInfoAreThoseOfTheSearch) {
    std::string const line = last_info(search(start_fen, "go depth 7"));
    Analysis& analysis = engine->analysis();
    EXPECT_TRUE(line.starts_with("info depth 7 seldepth " +
                                 std::to_string(analysis.get_seldepth()) + " score cp " +
                                 std::to_string(analysis.eval()) + " time "))
        << line;
    EXPECT_EQ(number_behind(line, "nodes"), analysis.get_node_count());
    std::uint64_t const time = number_behind(line, "time");
    ASSERT_GT(time, 0U);
    EXPECT_EQ(number_behind(line, "nps"), analysis.get_node_count() / time * 1000);
    PrincipalVariation const best = analysis.pv();
    std::string moves;
    for (Move const& move : best) {
        moves += move.algebraic(false) + " ";
    }
    EXPECT_TRUE(line.ends_with(" pv " + moves)) << line;
}

TEST_F(EngineReportTest, AllReportsGoToTheLogBehindAnArrow) {
    open_log();
    command("position startpos");
    command("go depth 5");
    std::string expected = "engine <- position startpos\nengine <- go depth 5\n";
    for (std::string const& line : search_to_end()) {
        expected += "engine -> " + line + "\n";
    }
    EXPECT_EQ(log_text(), expected);
}

TEST_F(EngineReportTest, TheReportedVersionMovesUpByOneATick) {
    command("go infinite");
    ASSERT_TRUE(wait_for([&] { return engine->analysis().mpv_version() >= 5; }));
    ASSERT_TRUE(wait_for_report_time());
    ASSERT_EQ(engine->analysis().get_status(), searching_status);
    for (int tick = 0; tick < 5; ++tick) {
        engine->to_console();
        lines_t const lines = replies();
        ASSERT_EQ(lines.size(), 1U) << "tick " << tick;
        // Already the first report shows the newest line: the fifth version is of iteration 3.
        EXPECT_GE(number_behind(lines[0], "depth"), 3U);
    }
}

TEST_F(EngineReportTest, AtTheEndTheLastLinesGoOutOnce) {
    command("go infinite depth 6");
    ASSERT_TRUE(wait_for_status(finished_status));
    ASSERT_TRUE(wait_for_report_time());
    ASSERT_GE(engine->analysis().mpv_version(), 6);
    engine->to_console();
    lines_t const lines = replies();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(number_behind(lines[0], "depth"), 6U);
    engine->to_console();
    EXPECT_EQ(replies(), lines_t{});
}

TEST_F(EngineReportTest, ASearchThatNobodyWaitsForIsReportedWithoutBestmove) {
    engine->analysis().set_depth(5);
    engine->analysis().set_action(think_action);
    ASSERT_TRUE(wait_for_status(finished_status));
    ASSERT_TRUE(wait_for_report_time());
    engine->to_console();
    lines_t const lines = replies();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0].starts_with("info depth 5 "));
    EXPECT_EQ(engine->analysis().get_status(), finished_status);
}

TEST_F(EngineReportTest, HashfullGoesOutOnceAheadOfBestmove) {
    lines_t const lines = search(start_fen, "go depth 6");
    int count = 0;
    for (std::string const& line : lines) {
        count += line.starts_with("info hashfull ") ? 1 : 0;
    }
    EXPECT_EQ(count, 1);
    EXPECT_EQ(lines[lines.size() - 2],
              "info hashfull " + std::to_string(engine->analysis().get_hashfull()));
}

TEST_F(EngineReportTest, MultiPvNumbersItsLines) {
    engine->analysis().set_multipv(3);
    command("go infinite depth 5");
    ASSERT_TRUE(wait_for_status(finished_status));
    ASSERT_TRUE(wait_for_report_time());
    engine->to_console();
    lines_t const lines = replies();
    ASSERT_EQ(lines.size(), 3U);
    MultiPV const ranked = engine->analysis().mpv();
    for (int i = 0; i < 3; ++i) {
        std::string const& line = lines[static_cast<std::size_t>(i)];
        EXPECT_EQ(number_behind(line, "multipv"), static_cast<std::uint64_t>(i + 1));
        EXPECT_NE(line.find(" multipv " + std::to_string(i + 1) + " score "), std::string::npos);
        EXPECT_EQ(score_of(line), "cp " + std::to_string(ranked[i].score()));
        EXPECT_NE(line.find(" pv " + ranked[i][0].algebraic(false) + " "), std::string::npos);
        EXPECT_TRUE(line.starts_with("info depth 5 "));
    }
    EXPECT_EQ(number_behind(lines[0], "nodes"), number_behind(lines[2], "nodes"));
}

TEST_F(EngineReportTest, ASingleLineIsNumberedWhenMoreAreWanted) {
    engine->analysis().set_multipv(3);
    search_silently();
    report_line(engine->position(), "e2e4", 5);
    std::string const line = last_info(replies());
    EXPECT_NE(line.find(" multipv 1 "), std::string::npos) << line;
}

TEST_F(EngineReportTest, ScoresAreMatesBeyondTheOrdinaryOnes) {
    struct {
        int score;
        std::string text;
    } const cases[] = {
        {29897, "cp 29897"},   {29898, "mate 52"},   {29999, "mate 1"},  {30000, "mate 1"},
        {-29897, "cp -29897"}, {-29898, "mate -51"}, {-29999, "mate 0"}, {-30000, "mate 0"},
    };
    search_silently();
    for (auto const& item : cases) {
        report_line(engine->position(), "e2e4", item.score);
        EXPECT_EQ(score_of(last_info(replies())), item.text);
    }
}

TEST_F(EngineReportTest, CastlingIsToldInTheNotationOfTheOption) {
    command("position fen r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
    search_silently();
    ChessPosition const root = engine->position();
    for (bool const chess960 : {false, true}) {
        command(std::string("setoption name UCI_Chess960 value ") + (chess960 ? "true" : "false"));
        report_line(root, "e1g1", 5);
        std::string const line = last_info(replies());
        EXPECT_TRUE(line.ends_with(chess960 ? " pv e1h1 " : " pv e1g1 ")) << line;
    }
}

TEST_F(EngineReportTest, ThePonderMoveIsToldInTheNotationOfTheOption) {
    for (bool const chess960 : {false, true}) {
        command(std::string("setoption name UCI_Chess960 value ") + (chess960 ? "true" : "false"));
        command("position fen r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
        ChessPosition position = engine->position();
        Move const best = position.convert_to_move("e1g1");
        position.make_move(best);
        AnalysisProbe(engine->analysis()).best_moves(best, position.convert_to_move("e8g8"));
        engine->analysis().set_status(finished_status);
        command("ponderhit");
        engine->to_console();
        EXPECT_EQ(replies().back(),
                  chess960 ? "bestmove e1h1 ponder e8h8" : "bestmove e1g1 ponder e8g8");
    }
}

TEST_F(EngineReportTest, OneLineIsNotNumbered) {
    EXPECT_EQ(last_info(search(start_fen, "go depth 5")).find("multipv"), std::string::npos);
}

TEST_F(EngineReportTest, MateScoresAreToldInMoves) {
    struct {
        std::string fen;
        int score;
        std::string text;
    } const cases[] = {
        {"7k/8/5K2/8/8/8/8/R7 w - - 0 1", 29997, "mate 2"},
        {"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", 29999, "mate 1"},
        {"7k/R7/6K1/8/8/8/8/8 b - - 0 1", -29998, "mate -1"},
        {"7k/8/5K2/8/8/8/8/R7 b - - 0 1", -29996, "mate -2"},
    };
    for (auto const& item : cases) {
        command("ucinewgame");
        command("position fen " + item.fen);
        command("go infinite depth 8");
        ASSERT_TRUE(wait_for_status(finished_status));
        ASSERT_TRUE(wait_for_report_time());
        EXPECT_EQ(engine->analysis().eval(), item.score) << item.fen;
        engine->to_console();
        EXPECT_EQ(score_of(last_info(replies())), item.text) << item.fen;
        command("stop");
        replies();
    }
}

TEST_F(EngineReportTest, ScoresAreFromTheSideToMove) {
    for (std::string const fen :
         {"3qk3/8/8/8/8/8/3PP3/4K3 b - - 0 1", "4k3/3pp3/8/8/8/8/8/3QK3 w - - 0 1"}) {
        std::string const score = score_of(last_info(search(fen, "go depth 8")));
        ASSERT_TRUE(score.starts_with("cp ")) << score;
        EXPECT_GT(std::stoi(score.substr(3)), 0);
    }
}

TEST_F(EngineReportTest, WithoutALegalMoveTheEmptyMoveIsAnsweredAndPassesTheTurn) {
    lines_t const stalemate = search("7k/8/6QK/8/8/8/8/8 b - - 0 1", "go depth 3");
    EXPECT_EQ(stalemate, (lines_t{"info hashfull 0", "bestmove 0000"}));
    EXPECT_EQ(fen(), "7k/8/6QK/8/8/8/8/8 w - - 1 2");
    lines_t const mate = search("7k/6Q1/6K1/8/8/8/8/8 b - - 0 1", "go depth 3");
    EXPECT_EQ(mate, (lines_t{"info hashfull 0", "bestmove 0000"}));
    EXPECT_EQ(fen(), "7k/6Q1/6K1/8/8/8/8/8 w - - 1 2");
}

TEST_F(EngineReportTest, AnEmptyPonderMoveIsLeftOut) {
    lines_t const lines = search("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "go depth 3");
    EXPECT_EQ(lines.back(), "bestmove a1a8");
}

TEST_F(EngineReportTest, ThePositionLineGrowsByEachBestmove) {
    command("position startpos moves e2e4");
    std::string expected = "position startpos moves e2e4";
    for (int i = 0; i < 3; ++i) {
        std::string const line = best_move_of("go depth 2");
        expected += " " + line.substr(9, 4);
        EXPECT_EQ(engine->position_line(), expected);
    }
}

TEST_F(EngineReportTest, TheVersionIsNotResetBetweenSearches) {
    search(start_fen, "go depth 4");
    int const version = engine->analysis().mpv_version();
    EXPECT_GE(version, 4);
    search(start_fen, "go depth 1");
    EXPECT_GT(engine->analysis().mpv_version(), version);
}

TEST_F(EngineReportTest, NoInfoIsSentInTheFirstMillisecond) {
    search(start_fen, "go depth 4");
    Tables& tables = shared_tables();
    ChessPosition position(tables);
    position.newgame();
    Analysis other(position, tables);

    // Catches a search of another object in its first millisecond. Only an attempt that the clock
    // brackets is one: the time was 0 after the call, and so it was 0 in it.
    bool caught = false;
    for (int attempt = 0; attempt < 200 && !caught; ++attempt) {
        other.init(position);
        other.set_depth(1);
        std::thread searcher([&] { other.iterative_search(); });
        auto const deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(20);
        while (other.get_running_time() != 0 && std::chrono::steady_clock::now() < deadline) {
        }
        engine->send_info(other);
        bool const first_millisecond = other.get_running_time() == 0;
        lines_t const lines = replies();
        searcher.join();
        if (first_millisecond) {
            caught = true;
            EXPECT_EQ(lines, lines_t{});
        }
    }
    EXPECT_TRUE(caught);
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
    engine->send_info(other);
    EXPECT_EQ(replies().size(), 1U);
}

}  // namespace
}  // namespace orvelin::test
