#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "play/clock.h"

namespace orvelin::play::test {
namespace {

/// A generator that costs next to nothing and gives the same numbers everywhere.
class Draw {
 public:
    explicit Draw(std::uint64_t seed) : state_(seed) {}

    std::uint64_t word() {
        state_ += 0x9e3779b97f4a7c15U;
        std::uint64_t mixed = (state_ ^ (state_ >> 30)) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebU;
        return mixed ^ (mixed >> 31);
    }
    double real(double least, double most) {
        return least + (most - least) * static_cast<double>(word() >> 11) * 0x1p-53;
    }
    int whole(int least, int most) {
        return least + static_cast<int>(word() % static_cast<std::uint64_t>(most - least + 1));
    }
    bool chance(double part) { return real(0.0, 1.0) < part; }
    /// Small and large ones of a range that spans powers of ten are drawn alike.
    double scaled(double least, double most) {
        return std::exp(real(std::log(least), std::log(most)));
    }

 private:
    std::uint64_t state_;
};

/// The clock of a game in milliseconds; without moves to go it is for the whole game.
struct TimeControl {
    double base = 0.0;
    double increment = 0.0;
    int moves_to_go = 0;
    int overhead = 0;
};

/// What a game is made of that the clock does not know. Times are in milliseconds.
struct Conditions {
    int moves = 60;
    /// What a move loses between engine and GUI lies between these.
    double least_latency = 0.0;
    double most_latency = 2.0;
    /// The first iteration takes between these parts of the most that the move may take.
    double least_start = 0.0005;
    double most_start = 0.01;
    double least_growth = 1.5;
    double most_growth = 2.7;
    /// How often an iteration changes the best move, and how often it lowers the score.
    double change_chance = 0.2;
    double drop_chance = 0.15;
    /// How long after its time a search that was stopped may end.
    double stop_time = 1.0;
};

struct Outcome {
    bool flag = false;
    int moves = 0;
    double used = 0.0;
    double given = 0.0;
    double left = 0.0;
};

/// What a simulated search takes until its move stands.
double search_time(TimePlan const& plan, Conditions const& conditions, Draw& draw) {
    auto const maximum = static_cast<double>(plan.maximum.count());
    SearchProgress progress;
    progress.moves = draw.chance(0.03) ? 1 : 30;
    double iteration = maximum * draw.real(conditions.least_start, conditions.most_start);
    double elapsed = 0.0;
    for (;;) {
        if (elapsed + iteration >= maximum) {
            return maximum + draw.real(0.0, conditions.stop_time);
        }
        elapsed += iteration;
        ++progress.depth;
        progress.elapsed = milliseconds(static_cast<std::int64_t>(elapsed));
        progress.last_iteration = milliseconds(static_cast<std::int64_t>(iteration));
        bool const changed = draw.chance(conditions.change_chance);
        progress.stable_iterations = changed ? 1 : progress.stable_iterations + 1;
        progress.score_drop = draw.chance(conditions.drop_chance) ? draw.whole(0, 150) : 0;
        if (!begin_next_iteration(plan, progress)) {
            return elapsed;
        }
        iteration *= draw.real(conditions.least_growth, conditions.most_growth);
    }
}

/// Plays one side of a game against its clock.
Outcome play(TimeControl const& control, Conditions const& conditions, Draw& draw) {
    Outcome outcome;
    GoLimits limits;
    limits.winc = milliseconds(static_cast<std::int64_t>(control.increment));
    double clock = control.base;
    outcome.given = control.base;
    while (outcome.moves < conditions.moves) {
        limits.wtime = milliseconds(static_cast<std::int64_t>(clock));
        if (control.moves_to_go > 0) {
            limits.movestogo = control.moves_to_go - outcome.moves % control.moves_to_go;
        }
        TimePlan const plan =
            plan_time(limits, true, 2 * outcome.moves, milliseconds(control.overhead));
        double const thought = search_time(plan, conditions, draw);
        clock -= thought + draw.real(conditions.least_latency, conditions.most_latency);
        outcome.used += thought;
        ++outcome.moves;
        if (clock <= 0.0) {
            outcome.flag = true;
            break;
        }
        outcome.left = clock;
        double gained = control.increment;
        if (control.moves_to_go > 0 && outcome.moves % control.moves_to_go == 0) {
            gained += control.base;
        }
        clock += gained;
        outcome.given += outcome.moves < conditions.moves ? gained : 0.0;
    }
    return outcome;
}

/// So much of the clock may be lost to latencies alone in a game that is to be kept within time.
constexpr double sensible_part = 0.5;
constexpr int longest_game = 200;
/// Longer than any move takes that is answered at once.
constexpr double shortest_move = 3.0;

/// Lowers the overhead until the clock can pay for it in a game of 200 moves.
int sensible_overhead(TimeControl const& control, int overhead) {
    double const moves = control.moves_to_go > 0 ? control.moves_to_go : longest_game;
    double const of_a_move = control.base * sensible_part / moves + control.increment;
    double const most = std::min(of_a_move, control.base * sensible_part) - shortest_move;
    return std::clamp(static_cast<int>(most), 0, overhead);
}

TimeControl draw_control(Draw& draw) {
    TimeControl control;
    control.base = std::floor(draw.scaled(1000.0, 7200000.0));
    if (draw.chance(0.6)) {
        control.increment = std::floor(draw.scaled(10.0, 60000.0));
    }
    if (draw.chance(0.4)) {
        control.moves_to_go = draw.whole(1, 60);
    }
    int const wanted = draw.chance(0.1)   ? 0
                       : draw.chance(0.1) ? draw.whole(0, 5000)
                                          : draw.whole(0, 100);
    control.overhead = sensible_overhead(control, wanted);
    return control;
}

Conditions draw_conditions(TimeControl const& control, Draw& draw) {
    Conditions conditions;
    conditions.moves = draw.chance(0.1) ? longest_game : draw.whole(20, 80);
    conditions.most_latency = control.overhead;
    conditions.least_latency = draw.chance(0.5) ? conditions.most_latency : 0.0;
    // The short iterations before matter to no clock. Some searches are stopped in each move.
    bool const always_stopped = draw.chance(0.05);
    conditions.least_start = always_stopped ? 1.0 : 0.01;
    conditions.most_start = always_stopped ? 1.0 : 0.5;
    conditions.least_growth = 1.3;
    conditions.most_growth = 4.0;
    conditions.change_chance = draw.real(0.0, 0.8);
    conditions.drop_chance = draw.real(0.0, 0.6);
    conditions.stop_time = 2.0;
    return conditions;
}

std::string describe(TimeControl const& control, Conditions const& conditions) {
    std::ostringstream text;
    text << control.base << '+' << control.increment << " ms, moves to go " << control.moves_to_go
         << ", overhead " << control.overhead << ", latency from " << conditions.least_latency
         << ", a game of " << conditions.moves << " moves";
    return text.str();
}

/// The mean part of its time that one side uses in games of so many moves; no game is lost.
double mean_use(TimeControl const& control, int moves) {
    constexpr int games = 200;
    Draw draw(7);
    Conditions conditions;
    conditions.moves = moves;
    double sum = 0.0;
    for (int game = 0; game < games; ++game) {
        Outcome const outcome = play(control, conditions, draw);
        EXPECT_FALSE(outcome.flag) << describe(control, conditions);
        sum += outcome.used / outcome.given;
    }
    return sum / games;
}

TEST(ClockSimulation, ManyGamesWithoutAFlag) {
    Draw draw(20);
    int moves = 0;
    for (int game = 0; game < 100000; ++game) {
        TimeControl const control = draw_control(draw);
        Conditions const conditions = draw_conditions(control, draw);
        Outcome const outcome = play(control, conditions, draw);
        ASSERT_FALSE(outcome.flag)
            << describe(control, conditions) << ", flag at move " << outcome.moves;
        moves += outcome.moves;
    }
    EXPECT_GT(moves, 5000000);
}

TEST(ClockSimulation, TheCornersOfAllClocksWithoutAFlag) {
    Draw draw(30);
    for (double const base : {1000.0, 10000.0, 7200000.0}) {
        for (double const increment : {0.0, 10.0, 100.0, 60000.0}) {
            for (int const moves_to_go : {0, 1, 2, 60}) {
                for (int const overhead : {0, 1, 10, 30, 100, 5000}) {
                    TimeControl control{base, increment, moves_to_go, 0};
                    control.overhead = sensible_overhead(control, overhead);
                    Conditions conditions = draw_conditions(control, draw);
                    conditions.moves = longest_game;
                    conditions.least_latency = conditions.most_latency;
                    Outcome const outcome = play(control, conditions, draw);
                    EXPECT_FALSE(outcome.flag)
                        << describe(control, conditions) << ", flag at move " << outcome.moves;
                }
            }
        }
    }
}

TEST(ClockSimulation, NoOverheadNeedsNoLatency) {
    Draw draw(40);
    for (int game = 0; game < 1000; ++game) {
        TimeControl control = draw_control(draw);
        control.overhead = 0;
        Conditions conditions = draw_conditions(control, draw);
        ASSERT_EQ(conditions.most_latency, 0.0);
        conditions.moves = longest_game;
        ASSERT_FALSE(play(control, conditions, draw).flag) << describe(control, conditions);
    }
}

TEST(ClockSimulation, AnOverheadThatIsTooSmallLosesGames) {
    Draw draw(50);
    TimeControl const control{1000.0, 10.0, 0, 0};
    Conditions conditions;
    conditions.moves = longest_game;
    conditions.least_latency = conditions.most_latency = 30.0;
    EXPECT_TRUE(play(control, conditions, draw).flag);
}

TEST(ClockSimulation, MostOfTheTimeIsUsed) {
    struct Row {
        TimeControl control;
        int moves;
        double least;
        double most;
    };
    for (Row const& row : {
             Row{{10000.0, 100.0, 0, 30}, 40, 0.70, 0.90},
             Row{{10000.0, 100.0, 0, 30}, 60, 0.80, 0.95},
             Row{{10000.0, 100.0, 0, 30}, 120, 0.90, 1.0},
             Row{{60000.0, 600.0, 0, 30}, 40, 0.75, 0.90},
             Row{{60000.0, 600.0, 0, 30}, 60, 0.85, 0.98},
             Row{{180000.0, 2000.0, 0, 30}, 60, 0.85, 0.98},
             Row{{60000.0, 0.0, 0, 30}, 60, 0.70, 0.90},
             Row{{300000.0, 0.0, 0, 30}, 60, 0.80, 0.95},
             Row{{60000.0, 0.0, 40, 30}, 40, 0.90, 1.0},
             Row{{1000.0, 10.0, 0, 5}, 60, 0.65, 0.90},
         }) {
        double const used = mean_use(row.control, row.moves);
        Conditions conditions;
        conditions.moves = row.moves;
        EXPECT_GT(used, row.least) << describe(row.control, conditions);
        EXPECT_LT(used, row.most) << describe(row.control, conditions);
    }
}

TEST(ClockSimulation, EarlyMovesOfAControlLeaveTimeForTheLast) {
    // Half of the moves take about half of the time.
    double const used = mean_use({60000.0, 0.0, 40, 30}, 20);
    EXPECT_GT(used, 0.40);
    EXPECT_LT(used, 0.65);
}

}  // namespace
}  // namespace orvelin::play::test
