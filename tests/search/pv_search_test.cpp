#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "search/tt_move.h"
#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

std::string const knights = "4k3/pp3p2/2n5/8/8/2N5/PP3P2/4K3 w - - 0 1";
/// White takes a queen for nothing.
std::string const free_queen = "6k1/5ppp/8/3q4/4P3/8/5PPP/6K1 w - - ";
constexpr int infinity = 32000;
constexpr int high = 20000;

class PvSearch : public AnalysisFixture {
 protected:
    int search(int depth, int alpha = -infinity, int beta = infinity) {
        return analysis_.pv_search(depth, alpha, beta, line_);
    }
    std::string line_text() const {
        std::string text;
        for (Move const& made : line_) {
            text += made.algebraic(true) + ' ';
        }
        return text;
    }

    PrincipalVariation line_;
};

}  // namespace

TEST_F(PvSearch, RootThatIsARepetitionIsSearched) {
    set(start_fen, {"g1f3", "g8f6", "f3g1", "f6g8"});
    ASSERT_TRUE(position_.draw_by_threefold_repetition());
    int const score = search(2);
    EXPECT_NE(score, 0);
    EXPECT_EQ(line_.size(), 2);
    EXPECT_EQ(analysis_.eval(), score);
}

TEST_F(PvSearch, RepetitionAwayFromTheRootIsADrawBeforeTheLine) {
    set(start_fen, {"g1f3", "g8f6", "f3g1", "f6g8"});
    probe_.ply(1);
    line_[0] = move("e2e4");
    EXPECT_EQ(search(2), 0);
    EXPECT_EQ(line_text(), "e2e4 ");
    EXPECT_EQ(analysis_.get_seldepth(), 0);
    EXPECT_EQ(node_count(), 1U);
    EXPECT_EQ(record(), nullptr);
}

TEST_F(PvSearch, FiftyMoveCounterOfHundredIsSearchedAndOneMoreIsADraw) {
    set(free_queen + "100 80");
    probe_.ply(1);
    EXPECT_GT(search(1), 300);
    EXPECT_EQ(line_text(), "e4d5 ");
    set(free_queen + "101 80");
    probe_.ply(1);
    line_[0] = move("g1f1");
    EXPECT_EQ(search(1), 0);
    EXPECT_EQ(line_text(), "g1f1 ");
    EXPECT_EQ(analysis_.get_seldepth(), 0);
    // At the root the counter does not matter.
    probe_.ply(0);
    EXPECT_GT(search(1), 300);
}

TEST_F(PvSearch, LeafFadesWithTheFiftyMoveCounter) {
    struct row_t {
        int counter;
        int value;
        int faded;
    };
    for (row_t const& row :
         {row_t{0, 333, 333}, row_t{50, 333, 333}, row_t{51, 333, 326}, row_t{51, -333, -326},
          row_t{75, 333, 166}, row_t{75, -333, -166}, row_t{60, 29990, 23992}, row_t{99, 333, 6},
          row_t{100, 333, 0}, row_t{100, -29990, 0}, row_t{110, 333, -66}, row_t{110, -333, 66}}) {
        set("4k3/8/8/8/8/8/8/R3K3 w - - " + std::to_string(row.counter) + " 90");
        EXPECT_EQ(probe_.fade(row.value), row.faded) << row.counter << ' ' << row.value;
    }
    set("4k3/8/8/8/8/8/8/R3K3 w - - 75 90");
    int const value = eval();
    EXPECT_EQ(search(0), value / 2);
}

TEST_F(PvSearch, LeafCountsAndSelectiveDepth) {
    set(knights);
    probe_.ply(4);
    search(0);
    search(-2);
    EXPECT_EQ(analysis_.leaf_count(), 2U);
    EXPECT_EQ(analysis_.get_seldepth(), 4);
    probe_.ply(102);
    search(20);
    EXPECT_EQ(analysis_.leaf_count(), 3U);
    EXPECT_EQ(analysis_.get_seldepth(), 102);
    // A node nearer to the root leaves it.
    probe_.ply(7);
    search(0);
    EXPECT_EQ(analysis_.get_seldepth(), 102);
}

TEST_F(PvSearch, PlyOf101IsTheLargestWithMoves) {
    set(knights);
    probe_.ply(101);
    std::size_t const children = moves().size();
    search(1);
    // A move that raises alpha is searched twice.
    EXPECT_GE(node_count(), 1 + children);
    EXPECT_EQ(analysis_.leaf_count(), node_count() - 1);
    EXPECT_NE(record(), nullptr);
    set(knights);
    probe_.ply(102);
    search(1);
    EXPECT_EQ(node_count(), 1U);
    EXPECT_EQ(analysis_.leaf_count(), 1U);
    EXPECT_EQ(record(), nullptr);
}

TEST_F(PvSearch, MatedAndStalematedRoot) {
    set("6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1");
    EXPECT_EQ(search(4), -30000);
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(line_.size(), 0);
    set("7k/8/8/8/8/8/5q2/7K w - - 0 1");
    EXPECT_EQ(search(4), 0);
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(analysis_.best_move(), Move());
    set("6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1");
    probe_.ply(5);
    EXPECT_EQ(search(4), 5 - 30000);
}

TEST_F(PvSearch, BetaIsReturnedExactlyAndStored) {
    set(free_queen + "0 1");
    EXPECT_EQ(search(2, -50, 100), 100);
    ASSERT_NE(record(), nullptr);
    EXPECT_TRUE(record()->is_lowerbound());
    EXPECT_EQ(record()->get_score(0), 100);
    EXPECT_EQ(record()->get_draft(), 2);
    EXPECT_EQ(record()->get_move(), TTmove(move("e4d5")));
    // Neither the line nor the root nor the ordering tables learn of it.
    EXPECT_EQ(line_.size(), 0);
    EXPECT_EQ(analysis_.root_line().size(), 0);
    EXPECT_EQ(probe_.killers().get_killerA(0), Move());
}

TEST_F(PvSearch, ChildBeyondBetaGivesBetaAllTheSame) {
    // The draw by repetition is far above beta.
    set("2k5/8/8/8/8/7q/8/K7 w - - 0 1", {"a1b1", "c8b8", "b1a1", "b8c8"});
    store(upper_bound, 0, 0, move("a1b1"));
    EXPECT_EQ(search(2, -3000, -100), -100);
    EXPECT_TRUE(record()->is_lowerbound());
    EXPECT_EQ(record()->get_score(0), -100);
}

TEST_F(PvSearch, ScoreInsideTheWindowIsExact) {
    set(free_queen + "0 1");
    int const score = search(2);
    ASSERT_NE(record(), nullptr);
    EXPECT_TRUE(record()->is_exact_value());
    EXPECT_EQ(record()->get_score(0), score);
    EXPECT_EQ(record()->get_move(), TTmove(move("e4d5")));
    EXPECT_EQ(line_[0], move("e4d5"));
    EXPECT_EQ(line_.depth(), 2);
    EXPECT_EQ(line_.score(), score);
    EXPECT_EQ(analysis_.root_line()[0], move("e4d5"));
    EXPECT_EQ(analysis_.root_line().depth(), 2);
    EXPECT_EQ(analysis_.eval(), score);
    EXPECT_EQ(analysis_.best_move(), move("e4d5"));
}

TEST_F(PvSearch, RootMembersAreWrittenAtPlyZeroOnly) {
    set(free_queen + "0 1");
    probe_.root_line().clear();
    probe_.best_score(-7);
    probe_.ply(2);
    search(2);
    EXPECT_EQ(line_[0], move("e4d5"));
    EXPECT_EQ(line_.depth(), 0);
    EXPECT_EQ(analysis_.root_line().size(), 0);
    EXPECT_EQ(analysis_.eval(), -7);
}

TEST_F(PvSearch, FailLowKeepsTheHashMove) {
    set(knights);
    store(upper_bound, 0, 0, move("c3a4"));
    EXPECT_EQ(search(2, high, high + 10), high);
    EXPECT_TRUE(record()->is_upperbound());
    EXPECT_EQ(record()->get_score(0), high);
    EXPECT_EQ(record()->get_draft(), 2);
    EXPECT_EQ(record()->get_move(), TTmove(move("c3a4")));
    EXPECT_EQ(line_.size(), 0);
}

TEST_F(PvSearch, TableNeverCutsOffAnOpenWindow) {
    set(knights);
    int const expected = search(2);
    for (bound_t const bound : {upper_bound, lower_bound, exact_value}) {
        set(knights);
        store(bound, 90, 4444);
        EXPECT_EQ(search(2), expected);
        EXPECT_GT(node_count(), 1U);
    }
}

TEST_F(PvSearch, MateDistanceNarrowsTheWindow) {
    set(knights);
    probe_.ply(10);
    line_[0] = move("a2a4");
    EXPECT_EQ(search(3, 29990, infinity), 29990);
    EXPECT_EQ(search(3, 29995, infinity), 29990);
    EXPECT_EQ(search(3, -infinity, -29990), -29990);
    EXPECT_EQ(search(3, -infinity, -29995), -29990);
    EXPECT_EQ(node_count(), 4U);
    EXPECT_EQ(line_text(), "a2a4 ");
}

TEST_F(PvSearch, FirstIterationSetsABestMoveBeforeSorting) {
    set(free_queen + "0 1");
    std::vector<Move> const list = moves();
    probe_.iteration(1);
    // The window is far above, so that no move raises alpha.
    search(1, high, high + 1);
    EXPECT_EQ(analysis_.best_move(), list[0]);
    set(knights);
    store(upper_bound, 0, 0, move("e1e2"));
    probe_.iteration(1);
    search(1, high, high + 1);
    EXPECT_EQ(analysis_.best_move(), moves()[0]);
    EXPECT_NE(moves()[0], move("e1e2"));
    Move const kept = analysis_.best_move();
    set(start_fen);
    probe_.iteration(2);
    search(1, high, high + 1);
    EXPECT_EQ(analysis_.best_move(), kept);
}

TEST_F(PvSearch, StopReturnsAlphaAndStoresNothing) {
    set(knights);
    line_[0] = move("a2a4");
    analysis_.set_action(stop_action);
    EXPECT_EQ(search(3, -44, 44), -44);
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(node_count(), 1U);
    // The line is emptied before the stop is looked at.
    EXPECT_EQ(line_.size(), 0);
}

TEST_F(PvSearch, StopInTheMiddleDropsTheMoveAndRestores) {
    set(start_fen);
    ChessPosition const before = position_;
    analysis_.set_nodes(300);
    EXPECT_EQ(search(7, -44, 44), -44);
    EXPECT_EQ(analysis_.get_action(), stop_action);
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(position_, before);
    EXPECT_EQ(position_.get_hash(), before.get_hash());
    EXPECT_EQ(analysis_.ply(), 0);
    EXPECT_EQ(analysis_.mate_attack_count(), 0);
    EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
}

TEST_F(PvSearch, NewBestMoveLateInTheBudgetStopsTheSearch) {
    set(knights);
    analysis_.set_movetime(10);
    probe_.start_clock();
    std::this_thread::sleep_for(std::chrono::milliseconds(8));
    search(1);
    EXPECT_EQ(analysis_.get_action(), stop_action);
    EXPECT_EQ(analysis_.best_move(), analysis_.root_line()[0]);
    // The stop drops the rest of the node.
    EXPECT_EQ(record(), nullptr);
    // Not while pondering, and not with time left.
    set(knights);
    analysis_.set_movetime(10);
    analysis_.set_pondering(true);
    probe_.start_clock();
    std::this_thread::sleep_for(std::chrono::milliseconds(8));
    search(1);
    EXPECT_EQ(analysis_.get_action(), no_action);
    set(knights);
    analysis_.set_movetime(1000000);
    probe_.start_clock();
    search(1);
    EXPECT_EQ(analysis_.get_action(), no_action);
}

TEST_F(PvSearch, ChildThatLeavesEarlyKeepsItsSiblingsMovesBehindIt) {
    // White is lost and can repeat by Kb1. The table puts another king move first.
    set("2k5/8/8/8/8/7q/8/K7 w - - 0 1", {"a1b1", "c8b8", "b1a1", "b8c8"});
    store(upper_bound, 0, 0, move("a1a2"));
    EXPECT_EQ(search(2), 0);
    ASSERT_GE(line_.size(), 2);
    EXPECT_EQ(line_[0], move("a1b1"));
    // Black's answer belongs to the line of the first move.
    Move const answer = line_[1];
    set("2k5/8/8/8/8/7q/8/K7 w - - 0 1", {"a1b1", "c8b8", "b1a1", "b8c8"});
    Move const first = move("a1a2");
    analysis_.make_move(first);
    PrincipalVariation sibling;
    analysis_.pv_search(1, -infinity, infinity, sibling);
    analysis_.unmake_move(first);
    ASSERT_GE(sibling.size(), 1);
    EXPECT_EQ(answer, sibling[0]);
}

TEST_F(PvSearch, StateComesBack) {
    for (std::string const& fen :
         {start_fen, std::string("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - "
                                 "0 1")}) {
        set(fen);
        ChessPosition const before = position_;
        search(4);
        EXPECT_EQ(position_, before);
        EXPECT_EQ(position_.get_hash(), before.get_hash());
        EXPECT_EQ(position_.history().size(), before.history().size());
        EXPECT_EQ(analysis_.ply(), 0);
        EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
    }
}

}  // namespace orvelin::test
