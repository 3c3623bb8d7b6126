#include <gtest/gtest.h>
#include <string>

#include "analyse/position_files.h"
#include "support/positions.h"
#include "support/temporary_directory.h"
#include "tools/analyse_files.h"

namespace orvelin::test::analysis {

namespace {

class AnalysePositionFiles : public testing::Test {
 protected:
    std::string file(std::string const& name, std::string const& bytes) {
        put_bytes(directory_.file(name), bytes);
        return directory_.file(name);
    }
    tools::PositionFiles files(std::vector<std::string> const& names, tools::Plies plies = {}) {
        return {{names, plies, false}, nullptr, [](std::string const&) {}};
    }

    TemporaryDirectory directory_;
    tools::Asked asked_;
};

std::string const start = std::string(positions::start) + '\n';
std::string const game = "[Event \"A\"]\n\n1. e4 e5 2. Nf3 Nc6 *\n\n";

}  // namespace

// A file as short as this is read in one go.
TEST_F(AnalysePositionFiles, TheNumberOfPositionsIsToldBeforeTheyAreGiven) {
    auto games = files({file("games.pgn", game + game + game + game)});
    EXPECT_LT(games.estimated_positions(), 0);
    for (int given = 1; given <= 20; ++given) {
        ASSERT_TRUE(games.next(asked_));
        EXPECT_NEAR(games.estimated_positions(), 20, 2) << given;
    }
    EXPECT_NEAR(games.estimated_positions(), 20, 0.5);
    EXPECT_FALSE(games.next(asked_));
    auto lines = files({file("one.fen", start), file("two.fen", start + start)});
    for (int given = 1; given <= 3; ++given) {
        ASSERT_TRUE(lines.next(asked_));
        EXPECT_NEAR(lines.estimated_positions(), 3, 0.1) << given;
    }
}

TEST_F(AnalysePositionFiles, OfGamesThosePositionsCountThatAreAskedFor) {
    auto some = files({file("games.pgn", game)}, {1, 3});
    ASSERT_TRUE(some.next(asked_));
    EXPECT_NEAR(some.estimated_positions(), 3, 0.2);
    auto end = files({file("games.pgn", game)}, {4, 90});
    ASSERT_TRUE(end.next(asked_));
    EXPECT_NEAR(end.estimated_positions(), 1, 0.1);
}

TEST_F(AnalysePositionFiles, OfWhatHasNoSizeNothingIsTold) {
    auto none = files({file("games.pgn", game), "/dev/null"});
    ASSERT_TRUE(none.next(asked_));
    EXPECT_LT(none.estimated_positions(), 0);
}

}  // namespace orvelin::test::analysis
