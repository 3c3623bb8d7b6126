#include "play/win_chance.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <sstream>
#include <string>

#include "search/score.h"
#include "support/data_file.h"

namespace orvelin::play::test {

namespace {

/// Games with a position of one score, as White sees them.
struct counts_t {
    double won = 0;
    double drawn = 0;
    double lost = 0;
};

/// The games that the constants are fitted to.
std::map<int, counts_t> read_games() {
    std::map<int, counts_t> games;
    auto const blocks = orvelin::test::read_data_blocks("../../tools/fit_win_chance/games.csv");
    for (std::string line : blocks.at(0)) {
        if (line.front() == '#' || line.front() == 's') {
            continue;
        }
        for (char& letter : line) {
            letter = letter == ',' ? ' ' : letter;
        }
        std::istringstream fields(line);
        int score = 0;
        int group = 0;
        counts_t counts;
        fields >> score >> group >> counts.won >> counts.drawn >> counts.lost;
        games[score].won += counts.won;
        games[score].drawn += counts.drawn;
        games[score].lost += counts.lost;
    }
    return games;
}

double chance(double score, double a, double b) {
    return 1.0 / (1.0 + std::exp((a - score) / b));
}

double log_likelihood(std::map<int, counts_t> const& games, double a, double b) {
    double sum = 0;
    for (auto const& [score, counts] : games) {
        double const win = chance(score, a, b);
        double const loss = chance(-score, a, b);
        sum += counts.won * std::log(win) + counts.drawn * std::log(1.0 - win - loss) +
               counts.lost * std::log(loss);
    }
    return sum;
}

}  // namespace

// Newton's step from the constants to the top of the likelihood is no longer than what rounding
// them to a tenth explains.
TEST(WinChance, ConstantsAreTheFitOfTheGames) {
    auto const games = read_games();
    ASSERT_GT(games.size(), 100U);
    double const a = even_chance_score;
    double const b = chance_spread;
    double const h = 0.5;
    auto const at = [&](double da, double db) {
        return log_likelihood(games, a + da * h, b + db * h);
    };
    double const by_a = (at(1, 0) - at(-1, 0)) / (2 * h);
    double const by_b = (at(0, 1) - at(0, -1)) / (2 * h);
    double const by_aa = (at(1, 0) - 2 * at(0, 0) + at(-1, 0)) / (h * h);
    double const by_bb = (at(0, 1) - 2 * at(0, 0) + at(0, -1)) / (h * h);
    double const by_ab = (at(1, 1) - at(1, -1) - at(-1, 1) + at(-1, -1)) / (4 * h * h);
    double const determinant = by_aa * by_bb - by_ab * by_ab;
    ASSERT_LT(by_aa, 0);
    ASSERT_GT(determinant, 0);
    EXPECT_NEAR((by_ab * by_b - by_bb * by_a) / determinant, 0, 0.06);
    EXPECT_NEAR((by_ab * by_a - by_aa * by_b) / determinant, 0, 0.06);
}

TEST(WinChance, HundredCentipawnsWinEverySecondGame) {
    int const even = static_cast<int>(std::lround(even_chance_score));
    EXPECT_NEAR(to_centipawns(even), 100, 1);
    EXPECT_NEAR(win_draw_loss(even).win, 500, 3);
    // A spread further on, or back, the chance is that of the logistic curve at 1.
    EXPECT_NEAR(win_draw_loss(static_cast<int>(std::lround(even_chance_score + chance_spread))).win,
                731, 3);
    EXPECT_NEAR(win_draw_loss(static_cast<int>(std::lround(even_chance_score - chance_spread))).win,
                269, 3);
}

TEST(WinChance, ChancesAreThoseOfTheModelRounded) {
    for (int score = -1000; score <= 1000; ++score) {
        double const win = 1000.0 * chance(score, even_chance_score, chance_spread);
        ASSERT_NEAR(win_draw_loss(score).win, win, 0.5 + 1e-9) << score;
        ASSERT_NEAR(win_draw_loss(-score).loss, win, 0.5 + 1e-9) << score;
    }
}

TEST(WinChance, CentipawnsAreMonotoneAndOdd) {
    EXPECT_EQ(to_centipawns(0), 0);
    for (int score = 1; score <= infinite_score; ++score) {
        ASSERT_GE(to_centipawns(score), to_centipawns(score - 1)) << score;
        ASSERT_EQ(to_centipawns(-score), -to_centipawns(score)) << score;
    }
    EXPECT_GT(to_centipawns(1000), to_centipawns(900));
}

TEST(WinChance, ScoresBeyondAllAreTheLargest) {
    EXPECT_EQ(to_centipawns(std::numeric_limits<int>::max()), to_centipawns(infinite_score));
    EXPECT_EQ(to_centipawns(std::numeric_limits<int>::min()), to_centipawns(-infinite_score));
    EXPECT_EQ(win_draw_loss(std::numeric_limits<int>::max()).win, 1000);
    EXPECT_EQ(win_draw_loss(std::numeric_limits<int>::min()).loss, 1000);
}

TEST(WinChance, ChancesAddUpAndAreSymmetric) {
    for (int score = -infinite_score; score <= infinite_score; ++score) {
        auto const [win, draw, loss] = win_draw_loss(score);
        auto const mirrored = win_draw_loss(-score);
        ASSERT_EQ(win + draw + loss, 1000) << score;
        ASSERT_GE(win, 0) << score;
        ASSERT_GE(draw, 0) << score;
        ASSERT_GE(loss, 0) << score;
        ASSERT_EQ(mirrored.win, loss) << score;
        ASSERT_EQ(mirrored.draw, draw) << score;
    }
}

TEST(WinChance, MoreScoreWinsMore) {
    for (int score = -infinite_score + 1; score <= infinite_score; ++score) {
        ASSERT_GE(win_draw_loss(score).win, win_draw_loss(score - 1).win) << score;
        ASSERT_LE(win_draw_loss(score).loss, win_draw_loss(score - 1).loss) << score;
    }
    EXPECT_GT(win_draw_loss(100).win, win_draw_loss(0).win + 50);
}

TEST(WinChance, MateIsCertain) {
    for (int const score : {min_mate_score, mate_score - 1, mate_score}) {
        EXPECT_EQ(win_draw_loss(score).win, 1000);
        EXPECT_EQ(win_draw_loss(-score).loss, 1000);
    }
}

}  // namespace orvelin::play::test
