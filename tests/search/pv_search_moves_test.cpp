// Order and reduction of the moves in the open-window search.

#include <string>
#include <vector>

#include "search/lmr_table.h"
#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

std::string const knights = "4k3/pp3p2/2n5/8/8/2N5/PP3P2/4K3 w - - 0 1";
/// White takes a queen for nothing.
std::string const free_queen = "6k1/5ppp/8/3q4/4P3/8/5PPP/6K1 w - - ";
constexpr int infinity = 32000;
constexpr int high = 20000;

class PvSearchMoves : public AnalysisFixture {
 protected:
    int search(int depth, int alpha = -infinity, int beta = infinity) {
        return analysis_.pv_search(depth, alpha, beta, line_);
    }
    MoveList sorted_list(int depth) {
        MoveList list;
        probe_.generator().generate_moves(position_, list);
        analysis_.localsort(list, depth, true, Move());
        return list;
    }

    PrincipalVariation line_;
};

}  // namespace

TEST_F(PvSearchMoves, FirstMoveIsNeverReduced) {
    set(start_fen);
    Move const first = sorted_list(3)[0];
    search(3);
    ASSERT_NE(record_behind(first), nullptr);
    EXPECT_EQ(record_behind(first)->get_draft(), 2);
    for (int depth = 0; depth < 120; ++depth) {
        EXPECT_EQ(search_tables().lmr_table.pv_value(depth, 0), 0) << depth;
    }
}

TEST_F(PvSearchMoves, LateQuietMovesAreReduced) {
    // At depth 3 the moves from index 13 on give up one ply.
    set(knights);
    MoveList const list = sorted_list(3);
    search(3, high, high + 1);
    for (int index = 1; index < 17; ++index) {
        TTrecord const* const found = record_behind(list[index]);
        ASSERT_NE(found, nullptr) << index;
        EXPECT_EQ(found->get_draft(), index < 13 ? 2 : 1) << index;
    }
}

TEST_F(PvSearchMoves, ReducedMoveThatBeatsAlphaIsSearchedInFullBeforeItsWindowOpens) {
    set(knights);
    int const late = 13;
    MoveList const list = sorted_list(3);
    for (Move const& candidate : list) {
        store_behind(candidate, exact_value, 9, 5000);
    }
    // Good enough for the reduced search, too shallow for the full one.
    store_behind(list[late], exact_value, 1, -5000);
    int const alpha = eval() + 2500;
    EXPECT_EQ(search(3, alpha, alpha + 1000), alpha);
    ASSERT_NE(record_behind(list[late]), nullptr);
    EXPECT_EQ(record_behind(list[late])->get_draft(), 2);
    // Only a null window learns from the answer that refutes the move.
    EXPECT_NE(probe_.killers().get_killerA(1), Move());
}

TEST_F(PvSearchMoves, LateCheckIsNotReduced) {
    // The capture loses the queen: it comes last and is not extended, but it gives check.
    set("4k3/3p4/8/8/3Q4/8/PPP5/K7 w - - 0 1");
    MoveList const list = sorted_list(3);
    Move const last = list[static_cast<int>(list.size()) - 1];
    ASSERT_EQ(last, move("d4d7"));
    ASSERT_TRUE(last.check());
    ASSERT_GT(list.size(), 14U);
    search(3, high, high + 1);
    ASSERT_NE(record_behind(last), nullptr);
    EXPECT_EQ(record_behind(last)->get_draft(), 2);
}

TEST_F(PvSearchMoves, ReorderingGivesTheOtherMovesAQuiescenceSearchAtDepthFour) {
    set(knights);
    MoveList list = sorted_list(4);
    texts_t before;
    for (Move const& candidate : list) {
        before.push_back(candidate.algebraic(true));
    }
    analysis_.iidsort(list, 4, high, high + 1);
    EXPECT_EQ(node_count(), list.size() - 1);
    EXPECT_EQ(analysis_.leaf_count(), list.size() - 1);
    // No move beats alpha: the order stays.
    texts_t after;
    for (Move const& candidate : list) {
        after.push_back(candidate.algebraic(true));
    }
    EXPECT_EQ(after, before);
}

TEST_F(PvSearchMoves, ReorderingSearchesDeeperAtDepthSix) {
    set(knights);
    MoveList list = sorted_list(4);
    analysis_.iidsort(list, 5, high, high + 1);
    EXPECT_EQ(node_count(), list.size() - 1);
    analysis_.iidsort(list, 6, high, high + 1);
    EXPECT_GT(node_count(), 3 * (list.size() - 1));
    EXPECT_EQ(record_behind(list[1])->get_draft(), 1);
}

TEST_F(PvSearchMoves, ReorderingNeedsDepthFourAndTwoMoves) {
    set(knights);
    MoveList list = sorted_list(3);
    analysis_.iidsort(list, 3, high, high + 1);
    EXPECT_EQ(node_count(), 0U);
    list.set_size(1);
    analysis_.iidsort(list, 8, high, high + 1);
    EXPECT_EQ(node_count(), 0U);
}

TEST_F(PvSearchMoves, ReorderingBringsTheFirstMoveThatBeatsAlphaToTheSecondPlace) {
    // Only the capture of the queen beats alpha; it is put last by hand.
    set(free_queen + "0 1");
    MoveList list = sorted_list(4);
    Move const capture = move("e4d5");
    analysis_.remove(capture, list);
    int const size = static_cast<int>(list.size());
    list.set_size(size + 1);
    list[size] = capture;
    std::vector<Move> const before(list.begin(), list.end());
    analysis_.iidsort(list, 4, eval() + 200, infinity);
    EXPECT_EQ(list[0], before[0]);
    EXPECT_EQ(list[1], capture);
    for (int i = 2; i < size + 1; ++i) {
        EXPECT_EQ(list[i], before[static_cast<std::size_t>(i - 1)]);
    }
    EXPECT_GE(node_count(), static_cast<std::uint64_t>(size));
    EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
}

TEST_F(PvSearchMoves, FailLowOfTheFirstMoveReordersFromDepthFourOn) {
    // The steps of the node by hand, on an equal state, must count the same nodes.
    set(knights);
    search(4, high, high + 1);
    std::uint64_t const whole = node_count();
    set(knights);
    analysis_.new_node();
    MoveList list = sorted_list(4);
    PrincipalVariation child;
    for (int i = 0; i < static_cast<int>(list.size()); ++i) {
        Move const candidate = list[i];
        int const reduction = search_tables().lmr_table.pv_value(4, static_cast<unsigned int>(i));
        analysis_.make_move(candidate);
        if (i == 0) {
            analysis_.pv_search(3, -high - 1, -high, child);
        } else {
            analysis_.nullwindow_search(3 - reduction, -high - 1, -high);
        }
        analysis_.unmake_move(candidate);
        if (i == 0) {
            analysis_.iidsort(list, 4, high, high + 1);
        }
    }
    EXPECT_EQ(node_count(), whole);
}

TEST_F(PvSearchMoves, HashMoveIsSearchedFirst) {
    set(knights);
    Move const hash_move = move("a2a4");
    store(upper_bound, 0, 0, hash_move);
    // The first move's child gets the full window, all others a window one wide.
    search(2, -infinity, infinity);
    ASSERT_NE(record_behind(hash_move), nullptr);
    EXPECT_TRUE(record_behind(hash_move)->is_exact_value());
    // A word that is no move of the list has no effect.
    set(knights);
    std::uint64_t const plain = nodes_of([&] { search(3); });
    set(knights);
    store(upper_bound, 0, 0, Move(Square("c3"), Square("c7"), normal_move, white_knight, no_piece));
    EXPECT_EQ(nodes_of([&] { search(3); }), plain);
}

}  // namespace orvelin::test
