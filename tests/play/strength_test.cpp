#include "play/strength.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <vector>

#include "search/score.h"

namespace orvelin::play::test {

namespace {

constexpr std::uint64_t many_keys = 4000;

/// Different moves with these scores; the squares are of no meaning.
std::vector<Candidate> lines(std::vector<int> const& scores) {
    std::vector<Candidate> candidates;
    for (int const score : scores) {
        int const place = static_cast<int>(candidates.size());
        candidates.push_back(
            {Move(Square(place), Square(place + 16), normal_move, white_knight, no_piece), score});
    }
    return candidates;
}

/// How often each line is chosen, over many keys.
std::vector<int> choices(std::vector<Candidate> const& candidates, int elo) {
    std::vector<int> counts(candidates.size());
    for (std::uint64_t key = 0; key < many_keys; ++key) {
        ++counts.at(choose(candidates, key, elo));
    }
    return counts;
}

/// The lowest level that sees mates.
int first_mate_aware_elo() {
    int elo = min_elo;
    while (level_of(elo).margin > mate_aware_margin) {
        ++elo;
    }
    return elo;
}

double average_loss(std::vector<Candidate> const& candidates, int elo) {
    double sum = 0;
    std::vector<int> const counts = choices(candidates, elo);
    for (std::size_t i = 0; i < counts.size(); ++i) {
        sum += static_cast<double>(counts[i]) * (candidates.front().score - candidates[i].score);
    }
    return sum / static_cast<double>(many_keys);
}

GoLimits clock_of(milliseconds clock, milliseconds increment = milliseconds{0}) {
    GoLimits limits;
    limits.wtime = clock;
    limits.btime = clock;
    limits.winc = increment;
    limits.binc = increment;
    return limits;
}

milliseconds longest_pause(GoLimits const& limits) {
    milliseconds longest{0};
    for (std::uint64_t key = 0; key < many_keys; ++key) {
        longest = std::max(longest, thinking_pause(limits, true, key));
    }
    return longest;
}

}  // namespace

TEST(Strength, MoreEloSearchesMoreAndErrsLess) {
    for (int elo = min_elo + 1; elo <= max_elo; ++elo) {
        Level const weaker = level_of(elo - 1);
        Level const level = level_of(elo);
        ASSERT_GT(level.nodes, weaker.nodes) << elo;
        ASSERT_LE(level.margin, weaker.margin) << elo;
        ASSERT_LE(level.lines, weaker.lines) << elo;
        ASSERT_GE(level.margin, 0) << elo;
        ASSERT_GE(level.lines, 1) << elo;
    }
    EXPECT_LE(level_of(min_elo).nodes, 1000U);
    EXPECT_EQ(level_of(min_elo).lines, 8);
    EXPECT_GE(level_of(min_elo).margin, 300);
    EXPECT_GE(level_of(max_elo).nodes, 100000U);
    EXPECT_EQ(level_of(max_elo).lines, 1);
    EXPECT_EQ(level_of(max_elo).margin, 0);
}

TEST(Strength, EveryLineHasNodesToSearch) {
    for (int elo = min_elo; elo <= max_elo; ++elo) {
        Level const level = level_of(elo);
        ASSERT_GE(level.nodes / static_cast<unsigned>(level.lines), 100U) << elo;
    }
}

TEST(Strength, EloIsPutIntoRange) {
    EXPECT_EQ(level_of(std::numeric_limits<int>::min()).nodes, level_of(min_elo).nodes);
    EXPECT_EQ(level_of(std::numeric_limits<int>::max()).nodes, level_of(max_elo).nodes);
    auto const candidates = lines({0, -10, -20, -30});
    for (std::uint64_t key = 0; key < many_keys; ++key) {
        ASSERT_EQ(choose(candidates, key, min_elo - 500), choose(candidates, key, min_elo));
    }
}

TEST(Strength, SameChoiceForTheSame) {
    // Numbers that hold on every machine.
    auto const candidates = lines({40, 20, 0, -30, -60, -100});
    std::vector<std::size_t> chosen;
    for (std::uint64_t key = 0; key < 12; ++key) {
        chosen.push_back(choose(candidates, key, 1000));
    }
    EXPECT_EQ(chosen, (std::vector<std::size_t>{1, 1, 2, 2, 1, 1, 1, 0, 2, 3, 2, 2}));
}

TEST(Strength, KeyAndLevelChangeTheChoice) {
    auto const candidates = lines({0, 0, 0, 0, 0, 0});
    std::set<std::size_t> by_key;
    std::set<std::size_t> by_elo;
    for (int i = 0; i < 200; ++i) {
        by_key.insert(choose(candidates, static_cast<std::uint64_t>(i), 1000));
        by_elo.insert(choose(candidates, 7, 1000 + i));
    }
    EXPECT_EQ(by_key.size(), candidates.size());
    EXPECT_EQ(by_elo.size(), candidates.size());
}

TEST(Strength, ChoiceGoesByTheMoveAndNotByItsPlace) {
    auto const candidates = lines({0, 0, 0, 0});
    auto const reversed = std::vector<Candidate>(candidates.rbegin(), candidates.rend());
    for (std::uint64_t key = 0; key < 100; ++key) {
        ASSERT_EQ(choose(candidates, key, 1000), 3 - choose(reversed, key, 1000)) << key;
    }
}

TEST(Strength, CheckBitAndClassAreNoPartOfTheMove) {
    auto const candidates = lines({0, 0, 0, 0});
    auto marked = candidates;
    for (Candidate& candidate : marked) {
        candidate.move.check(true);
        candidate.move.xcode(hashtable_move);
    }
    for (std::uint64_t key = 0; key < 100; ++key) {
        ASSERT_EQ(choose(candidates, key, 1000), choose(marked, key, 1000)) << key;
    }
}

TEST(Strength, EveryLineIsPossibleAndBetterOnesMoreOften) {
    auto const counts = choices(lines({0, -60, -120, -180}), 1000);
    for (std::size_t i = 0; i + 1 < counts.size(); ++i) {
        EXPECT_GT(counts[i], counts[i + 1] + 50) << i;
    }
    EXPECT_GT(counts.back(), 0);
}

TEST(Strength, WorseOfTwoLinesIsChosenAsTheMarginSays) {
    int const margin = level_of(1000).margin;
    EXPECT_NEAR(choices(lines({0, -margin}), 1000)[1], many_keys * 0.184, many_keys * 0.025);
    EXPECT_NEAR(choices(lines({0, -margin / 2}), 1000)[1], many_keys * 0.303, many_keys * 0.03);
    EXPECT_NEAR(choices(lines({0, 0}), 1000)[1], many_keys * 0.5, many_keys * 0.03);
}

TEST(Strength, LowerLevelErrsMore) {
    auto const candidates = lines({30, 10, -20, -60, -100, -180, -250, -400});
    for (int elo = min_elo; level_of(elo).margin > 0; elo += 200) {
        EXPECT_GT(average_loss(candidates, elo), average_loss(candidates, elo + 200)) << elo;
    }
    EXPECT_GT(average_loss(candidates, min_elo), 30);
    EXPECT_LT(average_loss(candidates, max_elo), 5);
}

TEST(Strength, HighestLevelPlaysTheFirstLine) {
    EXPECT_EQ(choices(lines({0, 0, 50, 100}), max_elo)[0], static_cast<int>(many_keys));
}

TEST(Strength, WithoutChoiceTheFirst) {
    EXPECT_EQ(choose({}, 1, min_elo), 0U);
    EXPECT_EQ(choose(lines({-500}), 1, min_elo), 0U);
}

TEST(Strength, NoMateIsWalkedIntoWhereMatesAreSeen) {
    auto const candidates = lines({-2900, -mate_score + 12, -mate_score + 2});
    int const first = first_mate_aware_elo();
    for (int elo = first; elo <= max_elo; elo += 50) {
        EXPECT_EQ(choices(candidates, elo)[0], static_cast<int>(many_keys)) << elo;
    }
    EXPECT_LT(choices(candidates, first - 1)[0], static_cast<int>(many_keys));
}

TEST(Strength, NoMateIsThrownAwayWhereMatesAreSeen) {
    auto const candidates = lines({mate_score - 9, 2900, 2800, -mate_score + 2});
    int const first = first_mate_aware_elo();
    for (int elo = first; elo <= max_elo; elo += 50) {
        EXPECT_EQ(choices(candidates, elo)[0], static_cast<int>(many_keys)) << elo;
    }
    EXPECT_LT(choices(candidates, first - 1)[0], static_cast<int>(many_keys));
}

TEST(Strength, AmongMatesThereIsStillAChoice) {
    auto const mates =
        choices(lines({mate_score - 3, mate_score - 5, 800}), first_mate_aware_elo());
    EXPECT_GT(mates[0], mates[1]);
    EXPECT_GT(mates[1], 0);
    auto const mated = choices(lines({-mate_score + 8, -mate_score + 6}), first_mate_aware_elo());
    EXPECT_GT(mated[0], mated[1]);
    EXPECT_GT(mated[1], 0);
}

TEST(Strength, SoonMatesAreFeltEvenByTheWeakest) {
    auto const counts = choices(lines({mate_score - 1, 0, 0, 0, 0, 0, 0, 0}), min_elo);
    EXPECT_GT(counts[0], static_cast<int>(many_keys) * 96 / 100);
}

TEST(Strength, PauseStaysWithinItsBounds) {
    for (int const clock : {5000, 6000, 10000, 60000, 180000, 3600000}) {
        for (int const increment : {0, 100, 1000, 30000}) {
            auto const longest =
                longest_pause(clock_of(milliseconds{clock}, milliseconds{increment}));
            auto const most = std::min(clock / 50 + increment / 2, 2000);
            EXPECT_LE(longest.count(), most) << clock << '+' << increment;
            EXPECT_GE(longest.count(), most * 9 / 10) << clock << '+' << increment;
        }
    }
}

TEST(Strength, PauseDiffersFromPositionToPosition) {
    std::set<milliseconds> pauses;
    for (std::uint64_t key = 0; key < 100; ++key) {
        auto const pause = thinking_pause(clock_of(milliseconds{60000}), true, key);
        ASSERT_GE(pause.count(), 1200 / 4);
        ASSERT_EQ(pause, thinking_pause(clock_of(milliseconds{60000}), true, key));
        pauses.insert(pause);
    }
    EXPECT_GT(pauses.size(), 50U);
}

TEST(Strength, NoPauseWithoutAClockOfItsOwn) {
    GoLimits limits;
    EXPECT_EQ(longest_pause(limits).count(), 0);
    limits.btime = milliseconds{60000};
    EXPECT_EQ(longest_pause(limits).count(), 0);
    EXPECT_GT(thinking_pause(limits, false, 1).count(), 0);
}

TEST(Strength, PauseGoesByTheOwnClockAndIncrement) {
    GoLimits limits = clock_of(milliseconds{60000});
    limits.btime = milliseconds{4000};
    EXPECT_GT(thinking_pause(limits, true, 1).count(), 0);
    EXPECT_EQ(thinking_pause(limits, false, 1).count(), 0);
    limits.btime = limits.wtime;
    limits.binc = milliseconds{1000};
    EXPECT_LT(thinking_pause(limits, true, 1), thinking_pause(limits, false, 1));
}

TEST(Strength, NoPauseOnAShortClock) {
    for (int const clock : {-100, 0, 1, 4999}) {
        EXPECT_EQ(longest_pause(clock_of(milliseconds{clock}, milliseconds{60000})).count(), 0)
            << clock;
    }
}

TEST(Strength, NoPauseWhereNoneIsWanted) {
    GoLimits const limits = clock_of(milliseconds{60000});
    ASSERT_GT(longest_pause(limits).count(), 0);
    std::array<GoLimits, 4> others{limits, limits, limits, limits};
    others[0].movetime = milliseconds{1000};
    others[1].infinite = true;
    others[2].ponder = true;
    others[3].perft = 3;
    for (GoLimits const& other : others) {
        EXPECT_EQ(longest_pause(other).count(), 0);
    }
}

TEST(Strength, NegativeIncrementCountsAsNone) {
    EXPECT_GT(longest_pause(clock_of(milliseconds{60000}, milliseconds{-100000})).count(), 0);
}

// With the increments given back, a clock that is only ever paused on never comes to its end.
TEST(Strength, PausesAloneNeverEmptyAClock) {
    milliseconds clock{60000};
    for (std::uint64_t key = 0; key < 1000; ++key) {
        clock -= thinking_pause(clock_of(clock), true, key);
    }
    EXPECT_GT(clock.count(), 4500);
}

}  // namespace orvelin::play::test
