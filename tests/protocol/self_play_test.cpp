#include "support/self_play.h"

#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "support/test_config.h"

namespace orvelin::test {
namespace {

constexpr int game_count = short_tests ? 12 : 120;
constexpr int pair_count = short_tests ? 2 : 6;

TEST(SelfPlayTest, EveryGameIsLegalAndEndsByTheRules) {
    std::vector<game_start_t> const starts = varied_starts(game_count);
    std::map<std::string, int> verdicts;
    int plies = 0;
    for (game_record_t const& record : play_games(starts, pair_count)) {
        EXPECT_EQ(record.fault, "") << record.start;
        EXPECT_NE(record.verdict, "") << record.start;
        ++verdicts[record.verdict];
        plies += record.plies;
    }
    EXPECT_GT(verdicts["checkmate"], 0);
    EXPECT_GT(plies, game_count);
    std::cout << plies << " plies;";
    for (auto const& [verdict, count] : verdicts) {
        std::cout << ' ' << verdict << ' ' << count;
    }
    std::cout << '\n';
}

TEST(SelfPlayTest, TheStartsAreVaried) {
    std::map<std::string, int> count;
    int with_moves = 0;
    for (game_start_t const& start : varied_starts(game_count)) {
        ++count[start.fen];
        with_moves += start.moves.empty() ? 0 : 1;
    }
    EXPECT_GT(count.size(), static_cast<std::size_t>(game_count / 3));
    EXPECT_GT(with_moves, game_count / 3);
}

}  // namespace
}  // namespace orvelin::test
