// How limits, stops and weakened play end an iterative search.

#include <algorithm>
#include <chrono>
#include <set>
#include <string>
#include <sys/resource.h>
#include <utility>
#include <vector>

#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

std::string const kiwipete = positions::kiwipete;

class IterativeSearchLimits : public AnalysisFixture {
 protected:
    ~IterativeSearchLimits() override {
        analysis_.set_uci_limitstrength(false);
        analysis_.set_multipv(1);
    }

    /// The iterations of a search; `at_return` is called at each return of the root.
    template <typename Function>
    std::vector<int> search(Function at_return) {
        std::vector<int> iterations;
        analysis_.iterative_search([&](int, int, int) {
            iterations.push_back(analysis_.get_iteration());
            at_return();
        });
        return iterations;
    }

    bool is_legal(Move const& wanted) {
        std::vector<Move> const list = moves();
        return std::find(list.begin(), list.end(), wanted) != list.end();
    }
};

}  // namespace

TEST_F(IterativeSearchLimits, OneNodeStillGivesTheFirstMove) {
    set(start_fen);
    analysis_.set_nodes(1);
    analysis_.iterative_search();
    EXPECT_EQ(node_count(), 1U);
    EXPECT_EQ(analysis_.get_iteration(), 1);
    EXPECT_EQ(analysis_.get_action(), stop_action);
    EXPECT_EQ(analysis_.best_move(), moves()[0]);
    EXPECT_EQ(analysis_.pondermove(), Move());
    EXPECT_EQ(analysis_.mpv().size(), 0);
}

TEST_F(IterativeSearchLimits, NodeLimitIsMetExactlyWhateverTheClockSays) {
    // The hard stop falls due after a millisecond, the soft one much later.
    auto const search_with_little_time = [&] {
        set(kiwipete);
        analysis_.set_movetime(100000);
        analysis_.set_lag(99999);
        analysis_.set_nodes(40000);
    };
    search_with_little_time();
    analysis_.iterative_search();
    EXPECT_EQ(node_count(), 40000U);
    EXPECT_EQ(analysis_.get_action(), stop_action);
    EXPECT_TRUE(is_legal(analysis_.best_move()));
    // Without the limit the clock ends the search, at one of its polls.
    search_with_little_time();
    analysis_.reset_max_nodes();
    analysis_.iterative_search();
    EXPECT_EQ(node_count() % 16384, 0U);
    EXPECT_EQ(analysis_.get_action(), stop_action);
}

TEST_F(IterativeSearchLimits, TimeLimitDoesNotDisableTheDepthLimit) {
    set(start_fen);
    analysis_.set_movetime(100000000);
    analysis_.set_depth(3);
    EXPECT_EQ(search([] {}).back(), 3);
    EXPECT_EQ(analysis_.get_action(), no_action);
}

TEST_F(IterativeSearchLimits, TimeLimitEndsADeepSearch) {
    set(kiwipete);
    // 200 of these are kept back.
    analysis_.set_movetime(260);
    auto const begin = std::chrono::steady_clock::now();
    analysis_.iterative_search();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60));
    EXPECT_GE(analysis_.get_running_time(), 60U);
    EXPECT_EQ(analysis_.get_action(), stop_action);
    EXPECT_TRUE(is_legal(analysis_.best_move()));
}

TEST_F(IterativeSearchLimits, StoppedIterationKeepsTheLineOfTheOneBefore) {
    set(start_fen);
    analysis_.set_aspiration(false);
    PrincipalVariation finished;
    std::vector<int> const iterations = search([&] {
        if (analysis_.get_iteration() == 4 && analysis_.get_action() == no_action) {
            finished = analysis_.pv();
            // The very next node stops.
            analysis_.set_nodes(node_count());
        }
    });
    EXPECT_EQ(iterations.back(), 5);
    PrincipalVariation const published = analysis_.pv();
    EXPECT_EQ(published.depth(), 4);
    EXPECT_EQ(published.score(), finished.score());
    EXPECT_EQ(published.str(), finished.str());
    EXPECT_EQ(analysis_.best_move(), finished[0]);
    EXPECT_EQ(analysis_.eval(), finished.score());
}

TEST_F(IterativeSearchLimits, StopAsksForNoRetry) {
    // Left alone, the second iteration falls out of its window.
    set(start_fen);
    analysis_.set_depth(2);
    EXPECT_EQ(search([] {}), (std::vector<int>{1, 2, 2, 2}));
    set(start_fen);
    EXPECT_EQ(search([&] {
                  if (analysis_.get_iteration() == 2) {
                      analysis_.set_action(stop_action);
                  }
              }),
              (std::vector<int>{1, 2}));
}

TEST_F(IterativeSearchLimits, AnyStopLeavesThePositionAsItWas) {
    set(kiwipete);
    ChessPosition const before = position_;
    for (std::uint64_t limit : {2U, 50U, 333U, 1000U, 4321U}) {
        analysis_.reset();
        analysis_.set_action(no_action);
        analysis_.set_nodes(limit);
        analysis_.iterative_search();
        EXPECT_EQ(node_count(), limit);
        EXPECT_EQ(position_, before) << limit;
        EXPECT_EQ(position_.get_hash(), before.get_hash()) << limit;
        EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score()) << limit;
        EXPECT_TRUE(is_legal(analysis_.best_move())) << limit;
    }
}

TEST_F(IterativeSearchLimits, SearchmovesRestrictTheFirstLine) {
    set(start_fen);
    analysis_.set_searchmoves({move("a2a3"), move("h2h4")});
    analysis_.set_depth(4);
    search([&] {
        std::string const best = analysis_.root_line()[0].algebraic(false);
        EXPECT_TRUE(best == "a2a3" || best == "h2h4") << best;
    });
    EXPECT_EQ(analysis_.mpv().size(), 1);
}

TEST_F(IterativeSearchLimits, SearchmovesGivenTwiceAreSearchedTwiceInTheSameClass) {
    set(start_fen, {"e2e4", "e7e5", "g1f3", "b8c6"});
    std::vector<Move> wanted;
    for (auto const& [text, times] :
         {std::pair{"f1b5", 4}, std::pair{"f1c4", 2}, std::pair{"d2d4", 3}, std::pair{"b1c3", 4}}) {
        wanted.insert(wanted.end(), static_cast<std::size_t>(times), move(text));
    }
    analysis_.set_searchmoves(wanted);
    analysis_.set_depth(6);
    analysis_.iterative_search();
    EXPECT_EQ(node_count(), 24241U);
    EXPECT_EQ(analysis_.best_move(), move("d2d4"));
}

TEST_F(IterativeSearchLimits, SearchmovesWithoutALegalMoveActLikeStalemate) {
    set(start_fen);
    analysis_.set_searchmoves(
        {Move(Square("e2"), Square("e5"), normal_move, white_pawn, no_piece)});
    analysis_.set_depth(4);
    EXPECT_EQ(search([] {}), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(analysis_.best_move(), Move());
    EXPECT_EQ(analysis_.mpv().size(), 0);
}

TEST_F(IterativeSearchLimits, SearchmovesWithOneMoveAndTwoLinesLeaveTheSecondFree) {
    set(start_fen);
    analysis_.set_multipv(2);
    analysis_.set_searchmoves({move("a2a4")});
    analysis_.set_depth(3);
    analysis_.iterative_search();
    MultiPV const lines = analysis_.mpv();
    ASSERT_EQ(lines.size(), 2);
    std::set<std::string> const firsts = {lines[0][0].algebraic(false),
                                          lines[1][0].algebraic(false)};
    EXPECT_EQ(firsts.count("a2a4"), 1U);
    EXPECT_EQ(firsts.size(), 2U);
}

TEST_F(IterativeSearchLimits, ThreeLinesOfTwoMovesAreTwo) {
    set("k7/8/8/8/8/8/7p/7K w - - 0 1");
    ASSERT_EQ(moves().size(), 2U);
    analysis_.set_multipv(3);
    analysis_.set_depth(6);
    search([&] { EXPECT_EQ(analysis_.mpv().size(), 2); });
}

TEST_F(IterativeSearchLimits, StopWithSeveralLinesNamesAMateOfOneMove) {
    set(kiwipete);
    analysis_.set_multipv(2);
    Move best;
    analysis_.set_depth(5);
    std::vector<int> const iterations = search([&] {
        if (analysis_.get_iteration() == 3) {
            best = analysis_.root_line()[0];
            analysis_.set_nodes(node_count());
        }
    });
    EXPECT_EQ(iterations.back(), 4);
    MultiPV const lines = analysis_.mpv();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].score(), 29999);
    EXPECT_EQ(lines[0].depth(), 4);
    EXPECT_EQ(lines[0].size(), 1);
    // The first of the generated moves that is left.
    std::vector<Move> const list = moves();
    Move const first = list[0] == best ? list[1] : list[0];
    EXPECT_EQ(lines[0][0], first);
    EXPECT_EQ(analysis_.best_move(), first);
    EXPECT_EQ(analysis_.pondermove(), Move());
    EXPECT_EQ(lines[1][0], best);
    EXPECT_EQ(lines[1].depth(), 3);
}

TEST_F(IterativeSearchLimits, StrengthDepthOfTwoSearchesThreeIterations) {
    set(start_fen);
    analysis_.set_uci_elo(1500);
    analysis_.set_uci_limitstrength(true);
    analysis_.set_infinite(true);
    std::vector<int> const iterations = search([&] {
        if (analysis_.get_iteration() == 3) {
            // Time is up a millisecond after the start; the soft stop is far away.
            analysis_.set_infinite(false);
            analysis_.set_movetime(1000000);
            analysis_.set_lag(999999);
        }
    });
    EXPECT_EQ(iterations.back(), 3);
    EXPECT_EQ(std::set<int>(iterations.begin(), iterations.end()), (std::set<int>{1, 2, 3}));
    EXPECT_EQ(analysis_.get_action(), no_action);
    EXPECT_TRUE(is_legal(analysis_.best_move()));
    EXPECT_EQ(analysis_.pondermove(), Move());
}

TEST_F(IterativeSearchLimits, WeakenedPlaySpendsItsTime) {
    set(start_fen);
    analysis_.set_uci_elo(1500);
    analysis_.set_uci_limitstrength(true);
    analysis_.set_depth(1);
    analysis_.set_movetime(1000000);
    analysis_.set_lag(1000000 - 120);
    analysis_.iterative_search();
    EXPECT_GE(analysis_.get_running_time(), 120U);
    EXPECT_EQ(analysis_.get_action(), no_action);
    // A stop ends the waiting at once.
    analysis_.set_lag(0);
    search([&] { analysis_.set_action(stop_action); });
    EXPECT_LT(analysis_.get_running_time(), 100000U);
}

TEST_F(IterativeSearchLimits, WeakenedPlayWaitsInStepsOfFiftyMilliseconds) {
    set(start_fen);
    analysis_.set_uci_elo(1500);
    analysis_.set_uci_limitstrength(true);
    analysis_.set_depth(1);
    analysis_.set_movetime(1000000);
    analysis_.set_lag(1000000 - 600);
    rusage before{};
    rusage after{};
    // What is counted is that the thread gives the processor away: once for each sleep.
    ASSERT_EQ(getrusage(RUSAGE_THREAD, &before), 0);
    analysis_.iterative_search();
    ASSERT_EQ(getrusage(RUSAGE_THREAD, &after), 0);
    analysis_.set_lag(200);
    std::int64_t const steps = after.ru_nvcsw - before.ru_nvcsw;
    std::int64_t const waited = static_cast<std::int64_t>(analysis_.get_running_time());
    EXPECT_LE(steps, waited / 50 + 2);
    EXPECT_GE(steps, waited / 125);
}

TEST_F(IterativeSearchLimits, WeakenedPlayStartsEveryIterationWithoutHash) {
    for (bool const weakened : {false, true}) {
        set(start_fen);
        analysis_.set_uci_elo(2200);
        analysis_.set_uci_limitstrength(weakened);
        analysis_.set_depth(3);
        analysis_.set_infinite(weakened);
        TTrecord mark;
        mark.set_key(12345);
        bool seen = false;
        search([&] {
            seen = seen || probe_.table().find(12345) != nullptr;
            probe_.table().write(mark);
            if (weakened && analysis_.get_iteration() == 3) {
                analysis_.set_action(stop_action);
            }
        });
        EXPECT_EQ(seen, !weakened);
    }
}

TEST_F(IterativeSearchLimits, WeakenedPlayChoosesAmongLinesInsideItsMargin) {
    std::set<std::string> chosen;
    for (int i = 0; i < 40 && chosen.size() < 2; ++i) {
        set(start_fen);
        analysis_.set_multipv(4);
        analysis_.set_uci_elo(1500);
        analysis_.set_uci_limitstrength(true);
        analysis_.set_depth(1);
        analysis_.set_movetime(201);
        analysis_.iterative_search();
        MultiPV const lines = analysis_.mpv();
        int best = lines[0].score();
        for (PrincipalVariation const& line : lines) {
            best = std::max(best, line.score());
        }
        EXPECT_EQ(analysis_.best_move(), lines[0][0]);
        EXPECT_EQ(analysis_.pondermove(), Move());
        EXPECT_GE(lines[0].score(), best - 200);
        chosen.insert(lines[0][0].algebraic(false));
    }
    EXPECT_GE(chosen.size(), 2U);
}

TEST_F(IterativeSearchLimits, WeakenedPlayWithoutAMoveStaysEmpty) {
    set("7k/8/8/8/8/8/5q2/7K w - - 0 1");
    analysis_.set_uci_elo(1500);
    analysis_.set_uci_limitstrength(true);
    analysis_.set_movetime(201);
    EXPECT_EQ(search([] {}), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(analysis_.best_move(), Move());
}

}  // namespace orvelin::test
