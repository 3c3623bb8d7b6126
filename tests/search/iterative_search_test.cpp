#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/analysis_fixture.h"
#include "support/positions.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

std::string const kiwipete = positions::kiwipete;
std::string const stalemate = "7k/8/8/8/8/8/5q2/7K w - - 0 1";
std::string const mated = "6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1";
constexpr int infinity = 32000;

/// One return of the root search.
struct root_return_t {
    int iteration;
    int alpha;
    int beta;
    int score;
    std::uint64_t leafs;
};

class IterativeSearch : public AnalysisFixture {
 protected:
    ~IterativeSearch() override {
        analysis_.set_uci_limitstrength(false);
        analysis_.set_multipv(1);
    }

    /// Searches and notes the returns of the root.
    std::vector<root_return_t> search(int depth) {
        analysis_.set_depth(depth);
        std::vector<root_return_t> returns;
        analysis_.iterative_search([&](int alpha, int beta, int score) {
            returns.push_back(
                {analysis_.get_iteration(), alpha, beta, score, analysis_.leaf_count()});
        });
        return returns;
    }

    static std::vector<int> iterations(std::vector<root_return_t> const& returns) {
        std::vector<int> numbers;
        for (root_return_t const& entry : returns) {
            numbers.push_back(entry.iteration);
        }
        return numbers;
    }
};

int opened_alpha(int alpha) {
    return alpha < -500 ? -infinity : alpha;
}

int opened_beta(int beta) {
    return beta > 500 ? infinity : beta;
}

/// What must follow a return: the next iteration and its window.
root_return_t expected_after(root_return_t const& last) {
    root_return_t next = last;
    if (last.score <= last.alpha && last.alpha != -infinity) {
        next.alpha = opened_alpha(last.alpha - (last.beta - last.alpha));
    } else if (last.score >= last.beta && last.beta != infinity) {
        next.beta = opened_beta(last.beta + (last.beta - last.alpha));
    } else {
        next.alpha = opened_alpha(last.score - 25);
        next.beta = opened_beta(last.score + 25);
        ++next.iteration;
    }
    return next;
}

}  // namespace

TEST_F(IterativeSearch, DepthLimitOfOneRunsTheFirstIterationOnly) {
    set(start_fen);
    EXPECT_EQ(iterations(search(1)), std::vector<int>{1});
    EXPECT_EQ(analysis_.get_iteration(), 1);
    EXPECT_NE(analysis_.best_move(), Move());
}

TEST_F(IterativeSearch, DepthLimitOfZeroRunsNone) {
    set(start_fen);
    search(1);
    for (int const depth : {0, -3}) {
        EXPECT_TRUE(search(depth).empty());
        EXPECT_EQ(analysis_.get_iteration(), 0);
        EXPECT_EQ(analysis_.best_move(), Move());
        EXPECT_EQ(analysis_.pondermove(), Move());
        EXPECT_EQ(node_count(), 0U);
    }
}

TEST_F(IterativeSearch, MateNoLongerThanTheIterationEndsTheLoop) {
    set(start_fen);
    analysis_.set_depth(50);
    for (int const sign : {1, -1}) {
        probe_.best_score(sign * 29998);
        probe_.iteration(3);
        EXPECT_FALSE(probe_.iteration_wanted());
        probe_.iteration(2);
        EXPECT_FALSE(probe_.iteration_wanted());
        probe_.iteration(1);
        EXPECT_TRUE(probe_.iteration_wanted());
    }
    probe_.best_score(29990);
    probe_.iteration(9);
    EXPECT_TRUE(probe_.iteration_wanted());
    probe_.iteration(10);
    EXPECT_FALSE(probe_.iteration_wanted());
}

TEST_F(IterativeSearch, SearchEndsByItselfOnceTheMateIsFound) {
    struct row_t {
        char const* fen;
        int score;
    };
    for (row_t const& row : {row_t{"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1", 29999},
                             row_t{"7k/8/5K2/6Q1/8/8/8/8 w - - 0 1", 29999},
                             row_t{"k7/8/2K5/8/8/8/8/7R w - - 0 1", 29997},
                             row_t{"k7/8/1K6/8/8/8/8/7R b - - 0 1", -29998}}) {
        set(row.fen);
        analysis_.set_infinite(true);
        std::vector<root_return_t> const returns = search(60);
        EXPECT_EQ(analysis_.eval(), row.score) << row.fen;
        EXPECT_EQ(analysis_.get_action(), no_action) << row.fen;
        // The last iteration is the first that is as long as the mate.
        EXPECT_GE(std::abs(analysis_.eval()), 30000 - returns.back().iteration) << row.fen;
        for (std::size_t i = 0; i + 1 < returns.size(); ++i) {
            bool const inside =
                returns[i].score > returns[i].alpha && returns[i].score < returns[i].beta;
            EXPECT_FALSE(inside && std::abs(returns[i].score) >= 30000 - returns[i].iteration)
                << row.fen;
        }
    }
}

TEST_F(IterativeSearch, DepthBeyondTheLargestIterationEndsAfter101) {
    set(stalemate);
    std::vector<root_return_t> const returns = search(150);
    EXPECT_EQ(returns.size(), 101U);
    EXPECT_EQ(analysis_.get_iteration(), 101);
}

TEST_F(IterativeSearch, RootWithoutMovesRunsAllIterations) {
    for (std::string const& fen : {stalemate, mated}) {
        set(fen);
        std::vector<root_return_t> const returns = search(9);
        EXPECT_EQ(returns.back().iteration, 9);
        EXPECT_EQ(returns.back().score, fen == mated ? -30000 : 0);
        EXPECT_EQ(analysis_.mpv().size(), 0);
        EXPECT_EQ(analysis_.best_move(), Move());
        EXPECT_EQ(analysis_.pondermove(), Move());
        EXPECT_EQ(analysis_.eval(), 0);
        EXPECT_EQ(analysis_.root_line().size(), 0);
    }
}

TEST_F(IterativeSearch, WindowBehindAScoreInside) {
    struct row_t {
        int score;
        int alpha;
        int beta;
    };
    for (row_t const& row :
         {row_t{40, 15, 65}, row_t{0, -25, 25}, row_t{490, 465, infinity}, row_t{475, 450, 500},
          row_t{476, 451, infinity}, row_t{-480, -infinity, -455}, row_t{-475, -500, -450},
          row_t{-476, -infinity, -451}, row_t{29990, 29965, infinity}}) {
        SearchWindow window;
        probe_.iteration(5);
        EXPECT_FALSE(probe_.aspiration_retry(window, row.score));
        EXPECT_EQ(window.alpha, row.alpha) << row.score;
        EXPECT_EQ(window.beta, row.beta) << row.score;
        EXPECT_EQ(analysis_.get_iteration(), 5);
    }
}

TEST_F(IterativeSearch, FailLowDoublesTheWindowDownward) {
    SearchWindow window{15, 65};
    probe_.iteration(6);
    for (int const alpha : {-35, -135, -335, -infinity}) {
        EXPECT_TRUE(probe_.aspiration_retry(window, window.alpha));
        EXPECT_EQ(window.alpha, alpha);
        EXPECT_EQ(window.beta, 65);
        EXPECT_EQ(analysis_.get_iteration(), 5);
        probe_.iteration(6);
    }
    // An open bound is never failed.
    EXPECT_FALSE(probe_.aspiration_retry(window, -infinity));
    EXPECT_EQ(analysis_.get_iteration(), 6);
}

TEST_F(IterativeSearch, FailHighDoublesTheWindowUpward) {
    SearchWindow window{-65, -15};
    probe_.iteration(6);
    for (int const beta : {35, 135, 335, infinity}) {
        EXPECT_TRUE(probe_.aspiration_retry(window, window.beta));
        EXPECT_EQ(window.beta, beta);
        EXPECT_EQ(window.alpha, -65);
        EXPECT_EQ(analysis_.get_iteration(), 5);
        probe_.iteration(6);
    }
    EXPECT_FALSE(probe_.aspiration_retry(window, infinity));
}

TEST_F(IterativeSearch, BoundOfExactlyFiveHundredIsKept) {
    SearchWindow window{-300, -100};
    probe_.iteration(6);
    EXPECT_TRUE(probe_.aspiration_retry(window, -300));
    EXPECT_EQ(window.alpha, -500);
    window = {100, 300};
    EXPECT_TRUE(probe_.aspiration_retry(window, 300));
    EXPECT_EQ(window.beta, 500);
    window = {100, 301};
    EXPECT_TRUE(probe_.aspiration_retry(window, 301));
    EXPECT_EQ(window.beta, infinity);
}

TEST_F(IterativeSearch, NoAspirationWhenSwitchedOffStoppedOrWithSeveralLines) {
    SearchWindow window{15, 65};
    probe_.iteration(6);
    auto const untouched = [&] {
        bool const retried = probe_.aspiration_retry(window, 0);
        return !retried && window.alpha == 15 && window.beta == 65 &&
               analysis_.get_iteration() == 6;
    };
    analysis_.set_aspiration(false);
    EXPECT_TRUE(untouched());
    analysis_.set_aspiration(true);
    analysis_.set_action(stop_action);
    EXPECT_TRUE(untouched());
    analysis_.set_action(no_action);
    analysis_.set_multipv(2);
    EXPECT_TRUE(untouched());
    analysis_.set_multipv(1);
    EXPECT_FALSE(untouched());
}

TEST_F(IterativeSearch, WindowsOfRealSearchesFollowTheRule) {
    int low = 0;
    int high = 0;
    int opened = 0;
    for (std::string const& fen :
         {start_fen, kiwipete, std::string(positions::last_of_bench),
          std::string(positions::rook_ending),
          std::string("r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1BN2/PP3PPP/R2QKB1R w KQ - 0 9"),
          std::string("4k3/8/8/3q4/8/8/3R4/3QK3 w - - 0 1")}) {
        set(fen);
        std::vector<root_return_t> const returns = search(short_tests ? 6 : 8);
        ASSERT_FALSE(returns.empty());
        EXPECT_EQ(returns[0].iteration, 1);
        EXPECT_EQ(returns[0].alpha, -infinity);
        EXPECT_EQ(returns[0].beta, infinity);
        for (std::size_t i = 1; i < returns.size(); ++i) {
            root_return_t const next = expected_after(returns[i - 1]);
            EXPECT_EQ(returns[i].iteration, next.iteration) << fen << ' ' << i;
            EXPECT_EQ(returns[i].alpha, next.alpha) << fen << ' ' << i;
            EXPECT_EQ(returns[i].beta, next.beta) << fen << ' ' << i;
            bool const retry = returns[i].iteration == returns[i - 1].iteration;
            low += retry && returns[i].alpha < returns[i - 1].alpha ? 1 : 0;
            high += retry && returns[i].beta > returns[i - 1].beta ? 1 : 0;
            opened += returns[i].beta == infinity || returns[i].alpha == -infinity ? 1 : 0;
        }
    }
    // The searches do show what the rule is about.
    EXPECT_GT(low, 0);
    EXPECT_GT(high, 0);
    EXPECT_GT(opened, 0);
}

TEST_F(IterativeSearch, WithoutAspirationTheWindowStaysOpen) {
    for (bool const several : {false, true}) {
        set(kiwipete);
        // Several lines switch it off by themselves.
        analysis_.set_aspiration(several);
        analysis_.set_multipv(several ? 2 : 1);
        for (root_return_t const& entry : search(3)) {
            EXPECT_EQ(entry.alpha, -infinity);
            EXPECT_EQ(entry.beta, infinity);
        }
    }
}

TEST_F(IterativeSearch, BranchingFactorIsTheRootOfTheLeafs) {
    set(kiwipete);
    std::vector<root_return_t> const returns = search(5);
    // A retry's leaves are part of the iteration's count, which starts again behind it.
    float const exponent = 1.0F / 5.0F;
    EXPECT_EQ(analysis_.get_ebf(),
              static_cast<float>(std::pow(static_cast<double>(returns.back().leafs),
                                          static_cast<double>(exponent))));
    EXPECT_GT(analysis_.get_ebf(), 1.0F);
    EXPECT_EQ(analysis_.leaf_count(), 0U);
    probe_.iteration(3);
    probe_.leaf_count(1000);
    probe_.close_iteration();
    EXPECT_NEAR(analysis_.get_ebf(), 10.0F, 0.001F);
    // A stopped iteration leaves the factor and forgets its leaves.
    probe_.leaf_count(64);
    analysis_.set_action(stop_action);
    probe_.close_iteration();
    EXPECT_NEAR(analysis_.get_ebf(), 10.0F, 0.001F);
    EXPECT_EQ(analysis_.leaf_count(), 0U);
}

TEST_F(IterativeSearch, StartOfASearchAgesAndForgets) {
    set(start_fen);
    Move const opening = move("e2e4");
    Move const other = move("d2d4");
    for (int i = 0; i < 2; ++i) {
        probe_.history().increment(opening, 5);
    }
    probe_.history().decrement(other, 0);
    probe_.counter_moves().increment(opening, other, 6);
    probe_.counter_moves().decrement(opening, opening, 0);
    probe_.killers().set_killer(9, opening);
    probe_.mate_attack_count(-4);
    probe_.seldepth(30);
    probe_.best_score(99);
    analysis_.add_node_count(7);
    probe_.date(255);
    search(0);
    EXPECT_EQ(probe_.history().value(opening), 64 / 8);
    EXPECT_EQ(probe_.history().value(other), -1);
    EXPECT_EQ(probe_.counter_moves().value(opening, other), 64 / 8);
    EXPECT_EQ(probe_.counter_moves().value(opening, opening), -1);
    EXPECT_EQ(probe_.killers().get_killerA(9), Move());
    EXPECT_EQ(analysis_.mate_attack_count(), 0);
    EXPECT_EQ(analysis_.get_seldepth(), 0);
    EXPECT_EQ(analysis_.eval(), 0);
    EXPECT_EQ(node_count(), 0U);
    EXPECT_EQ(probe_.date(), 0);
    EXPECT_EQ(analysis_.root_line().size(), 0);
    search(0);
    EXPECT_EQ(probe_.date(), 1);
}

TEST_F(IterativeSearch, StartOfASearchRebuildsTheSums) {
    set(start_fen);
    position_.fen(kiwipete);
    search(0);
    EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
}

TEST_F(IterativeSearch, BestAndPonderMoveComeFromTheFirstLine) {
    set(kiwipete);
    search(4);
    PrincipalVariation const best = analysis_.pv();
    ASSERT_GE(best.size(), 2);
    EXPECT_EQ(analysis_.best_move(), best[0]);
    EXPECT_EQ(analysis_.pondermove(), best[1]);
    EXPECT_EQ(best.depth(), 4);
    EXPECT_EQ(best.score(), analysis_.eval());
    // A mate in one leaves nothing to ponder on.
    set("6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1");
    search(4);
    EXPECT_EQ(analysis_.best_move(), move("a1a8"));
    EXPECT_EQ(analysis_.pondermove(), Move());
}

#if !ORVELIN_SHORT_TESTS
TEST_F(IterativeSearch, LongSearchRanksHistoryValuesThatWrapped) {
    // A blocked ending is searched so deep that values beyond 32 bits are ranked.
    set("8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - - 0 1");
    analysis_.set_hash_size(128);
    search(40);
    analysis_.set_hash_size(6);
    EXPECT_EQ(node_count(), 3889691U);
}
#endif

TEST_F(IterativeSearch, SearchesAreReproducible) {
    set(kiwipete);
    search(5);
    std::uint64_t const nodes = node_count();
    set(kiwipete);
    search(5);
    EXPECT_EQ(node_count(), nodes);
}

}  // namespace orvelin::test
