// Weaker play: a level is the same on every machine.

#include <atomic>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

#include "play/play_process.h"
#include "support/referee.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::Referee;
using orvelin::test::short_tests;
using clock = PlayProcess::clock;

/// Of each game.
int plies() {
    if (!short_tests) {
        return 10;
    }
    return orvelin::test::whole_tests() ? 4 : 2;
}

/// Below five seconds no move is held back, and the last move before new time may take them all, so
/// that the budget of nodes ends each search.
constexpr char const* clock_limit = "go wtime 4900 btime 4900 movestogo 1";

/// Lets a process run for a quarter of the time, as on a slow machine.
class Brake {
 public:
    explicit Brake(pid_t process) : process_(process), thread_([this] { work(); }) {}
    ~Brake() {
        ended_ = true;
        thread_.join();
    }
    Brake(Brake const&) = delete;
    Brake& operator=(Brake const&) = delete;

    int stops() const { return stops_; }

 private:
    void work() {
        while (!ended_) {
            ::kill(process_, SIGSTOP);
            std::this_thread::sleep_for(milliseconds(3));
            ::kill(process_, SIGCONT);
            std::this_thread::sleep_for(milliseconds(1));
            ++stops_;
        }
    }

    pid_t process_;
    std::atomic<bool> ended_ = false;
    std::atomic<int> stops_ = 0;
    std::thread thread_;
};

/// The moves of a game against itself, of that process.
std::string game_of(PlayProcess& process, int elo, int hash, std::string const& go) {
    process.set_option("UCI_LimitStrength", "true");
    process.set_option("UCI_Elo", std::to_string(elo));
    process.set_option("Hash", std::to_string(hash));
    Referee referee;
    std::string moves;
    for (int i = 0; i < plies(); ++i) {
        process.send("position startpos" + (moves.empty() ? "" : " moves" + moves));
        std::string const move = best_move(process.ask(go));
        if (!referee.play(move)) {
            ADD_FAILURE() << move << " behind" << moves;
            return "";
        }
        moves += ' ' + move;
    }
    return moves;
}

/// The same, in a process of its own.
std::string game(int elo, int hash, std::string const& go) {
    PlayProcess process;
    return game_of(process, elo, hash, go);
}

class ProcessPlayLevels : public testing::TestWithParam<int> {};

TEST_P(ProcessPlayLevels, PlayTheSameWhateverTheHashAndTheLimit) {
    int const elo = GetParam();
    std::string const expected = game(elo, 16, clock_limit);
    EXPECT_EQ(game(elo, 1, clock_limit), expected);
    EXPECT_EQ(game(elo, 256, clock_limit), expected);
    EXPECT_EQ(game(elo, 16, "go nodes 100000000"), expected);
    EXPECT_EQ(game(elo, 256, "go depth 60"), expected);
    EXPECT_EQ(game(elo, 1, "go depth 4"), game(elo, 256, "go depth 4"));
}

TEST(ProcessPlayLevelsSpeed, PlayTheSameOnAQuarterOfAProcessor) {
    for (int const elo : {800, 1400}) {
        PlayProcess process;
        Brake const brake(process.id());
        EXPECT_EQ(game_of(process, elo, 16, clock_limit), game(elo, 16, clock_limit)) << elo;
        EXPECT_GT(brake.stops(), 0);
    }
}

TEST_P(ProcessPlayLevels, AnswerWithinTheClock) {
    PlayProcess process;
    process.set_option("UCI_LimitStrength", "true");
    process.set_option("UCI_Elo", std::to_string(GetParam()));
    process.send("position startpos");
    for (std::string const go :
         {"go wtime 60 btime 60", "go wtime 1 btime 1", "go movetime 20", "go depth 2",
          "go nodes 20", "go wtime 20000 btime 20000", "go mate 2"}) {
        clock::time_point const begin = clock::now();
        std::vector<std::string> const answer = process.ask(go);
        EXPECT_LT(clock::now() - begin, milliseconds(1500)) << go;
        EXPECT_TRUE(Referee().legal(best_move(answer))) << go;
        EXPECT_TRUE(latest_first_line(answer)) << go;
    }
}

INSTANTIATE_TEST_SUITE_P(play, ProcessPlayLevels, testing::Values(800, 1400, 1800),
                         testing::PrintToStringParamName());

TEST_P(ProcessPlayLevels, ShowTheMoveThatTheyPlay) {
    for (std::string const lines : {"1", "3"}) {
        PlayProcess process;
        process.set_option("UCI_LimitStrength", "true");
        process.set_option("UCI_Elo", std::to_string(GetParam()));
        process.set_option("MultiPV", lines);
        Referee referee;
        std::string moves;
        for (int i = 0; i < 12; ++i) {
            process.send("position startpos" + (moves.empty() ? "" : " moves" + moves));
            std::vector<std::string> const answer = process.ask("go depth 4");
            auto const first = latest_first_line(answer);
            ASSERT_TRUE(first);
            EXPECT_EQ(first->moves[0], best_move(answer)) << moves;
            ASSERT_TRUE(referee.play(best_move(answer)));
            moves += ' ' + best_move(answer);
        }
    }
}

TEST(ProcessPlayLevelsAnalysis, WaitForStopAndPonderhit) {
    PlayProcess process;
    process.set_option("UCI_LimitStrength", "true");
    process.set_option("UCI_Elo", "800");
    process.send_all({"position startpos", "go infinite"});
    for (auto const& line : process.read_for(milliseconds(200))) {
        EXPECT_FALSE(line.text.starts_with("bestmove"));
    }
    EXPECT_FALSE(best_move(process.ask("stop")).empty());
    process.send("go ponder wtime 1000 btime 1000");
    for (auto const& line : process.read_for(milliseconds(200))) {
        EXPECT_FALSE(line.text.starts_with("bestmove"));
    }
    EXPECT_FALSE(best_move(process.ask("ponderhit")).empty());
}

}  // namespace

}  // namespace orvelin::play::test
