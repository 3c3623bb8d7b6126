#include <string>

#include "search/tt_move.h"
#include "support/analysis_fixture.h"

namespace orvelin::test {

namespace {

/// No sliders, so that nobody makes a null move, and nothing to capture or to give check with.
std::string const knights = "4k3/pp3p2/2n5/8/8/2N5/PP3P2/4K3 w - - 0 1";
/// The same with fewer moves for White: a king and a pawn.
std::string const pawns = "4k3/5p2/8/8/8/8/5P2/4K3 w - - 0 1";
constexpr int high = 20000;

class NullWindowSearch : public AnalysisFixture {
 protected:
    int search(int depth, int alpha) {
        return analysis_.nullwindow_search(depth, alpha, alpha + 1);
    }
    std::uint64_t nodes(int depth, int alpha) {
        return nodes_of([&] { search(depth, alpha); });
    }
    /// Number of moves whose node was searched and left an entry.
    int records_behind_moves() {
        int count = 0;
        for (Move const& candidate : moves()) {
            count += record_behind(candidate) != nullptr ? 1 : 0;
        }
        return count;
    }
    /// Nodes at depth 1 with alpha so high that futility leaves only what is never pruned.
    std::uint64_t nodes_of_unpruned(std::string const& fen) {
        set(fen);
        probe_.ply(7);
        return nodes(1, high);
    }
};

}  // namespace

TEST_F(NullWindowSearch, FutilityMarginOfDepthOne) {
    set(pawns);
    int const value = eval();
    std::uint64_t const all = 1 + moves().size();
    // Not below alpha - 99: each move is searched, and each is a leaf.
    EXPECT_EQ(nodes(1, value + 99), all);
    set(pawns);
    EXPECT_EQ(nodes(1, value + 100), 1U);
}

TEST_F(NullWindowSearch, FutilityMarginOfDepthTwo) {
    set(pawns);
    int const value = eval();
    EXPECT_EQ(nodes(2, value + 499), 1 + moves().size());
    set(pawns);
    EXPECT_EQ(nodes(2, value + 500), 1U);
}

TEST_F(NullWindowSearch, FutilityMarginOfDepthThree) {
    set(pawns);
    int const value = eval();
    EXPECT_GT(nodes(3, value + 899), moves().size());
    set(pawns);
    EXPECT_EQ(nodes(3, value + 900), 1U);
    // Depth 4 knows no futility.
    set(pawns);
    EXPECT_GT(nodes(4, high), moves().size());
}

TEST_F(NullWindowSearch, LateMovesArePrunedFromIndexSevenAtDepthTwo) {
    for (int const depth : {1, 2}) {
        set(knights);
        ASSERT_GT(moves().size(), 11U);
        std::uint64_t const all = moves().size();
        int const alpha = eval() + 99;
        probe_.ply(5);
        EXPECT_EQ(nodes(depth, alpha), 1U + 7U) << depth;
        set(knights);
        probe_.ply(4);
        EXPECT_EQ(nodes(depth, alpha), 1 + all) << depth;
    }
}

TEST_F(NullWindowSearch, LateMovesArePrunedFromIndexElevenAtDepthsThreeAndFour) {
    for (int const depth : {3, 4}) {
        set(knights);
        int const all = static_cast<int>(moves().size());
        int const alpha = eval() + 800;
        probe_.ply(5);
        EXPECT_EQ(search(depth, alpha), alpha);
        EXPECT_EQ(records_behind_moves(), 11) << depth;
        set(knights);
        probe_.ply(4);
        EXPECT_EQ(search(depth, alpha), alpha);
        // At depth 3 the moves from index 13 on are reduced into quiescence, without an entry.
        EXPECT_EQ(records_behind_moves(), depth == 3 ? 13 : all) << depth;
    }
    set(knights);
    int const all = static_cast<int>(moves().size());
    probe_.ply(5);
    EXPECT_EQ(search(5, high), high);
    EXPECT_EQ(records_behind_moves(), all);
}

TEST_F(NullWindowSearch, ChecksCapturesAndSpecialMovesAreNeverPruned) {
    EXPECT_EQ(nodes_of_unpruned(knights), 1U);
    // A quiet knight check; the knight beside has none.
    EXPECT_GT(nodes_of_unpruned("6k1/5p1p/8/8/4N3/8/5P1P/6K1 w - - 0 1"), 1U);
    EXPECT_EQ(nodes_of_unpruned("6k1/5p1p/8/8/N7/8/5P1P/6K1 w - - 0 1"), 1U);
    // A capture.
    EXPECT_GT(nodes_of_unpruned("6k1/8/8/3p4/4P3/8/8/6K1 w - - 0 1"), 1U);
    EXPECT_EQ(nodes_of_unpruned("6k1/8/8/2p5/4P3/8/8/6K1 w - - 0 1"), 1U);
    // Four promotions.
    EXPECT_GT(nodes_of_unpruned("8/P7/7k/8/8/8/8/6K1 w - - 0 1"), 4U);
    EXPECT_EQ(nodes_of_unpruned("8/8/P6k/8/8/8/8/6K1 w - - 0 1"), 1U);
    // Castling.
    EXPECT_GT(nodes_of_unpruned("8/5ppk/8/8/8/8/4PPPP/R3K3 w Q - 0 1"), 1U);
    EXPECT_EQ(nodes_of_unpruned("8/5ppk/8/8/8/8/4PPPP/R3K3 w - - 0 1"), 1U);
    // En passant.
    EXPECT_GT(nodes_of_unpruned("6k1/8/8/3pP3/8/8/8/6K1 w - d6 0 1"), 1U);
    EXPECT_EQ(nodes_of_unpruned("6k1/8/8/3pP3/8/8/8/6K1 w - - 0 1"), 1U);
}

TEST_F(NullWindowSearch, InCheckNothingIsPruned) {
    // A rook gives check; all evasions are king moves.
    set("4k3/8/8/8/7r/8/8/7K w - - 0 1");
    ASSERT_TRUE(position_.check());
    std::uint64_t const evasions = moves().size();
    ASSERT_EQ(evasions, 2U);
    probe_.ply(9);
    EXPECT_EQ(nodes(1, high), 1 + evasions);
}

TEST_F(NullWindowSearch, InCheckNothingIsReduced) {
    set("4k3/8/8/8/8/5n2/5P2/6K1 w - - 0 1");
    ASSERT_TRUE(position_.check());
    ASSERT_EQ(moves().size(), 3U);
    search(4, high);
    for (Move const& candidate : moves()) {
        ASSERT_NE(record_behind(candidate), nullptr);
        EXPECT_EQ(record_behind(candidate)->get_draft(), 3);
    }
}

TEST_F(NullWindowSearch, QuietMovesAreReducedFromTheFirstOn) {
    set(knights);
    int const alpha = eval() + 800;
    probe_.ply(5);
    search(4, alpha);
    Move const first = sorted_moves()[0];
    ASSERT_NE(record_behind(first), nullptr);
    EXPECT_EQ(record_behind(first)->get_draft(), 4 - 1 - 1);
}

TEST_F(NullWindowSearch, KillersAndGoodCapturesAreNotReduced) {
    set(knights);
    int const alpha = eval() + 800;
    probe_.ply(5);
    probe_.killers().set_killer(5, move("c3e4"));
    search(4, alpha);
    EXPECT_EQ(record_behind(move("c3e4"))->get_draft(), 3);
    EXPECT_EQ(record_behind(move("c3a4"))->get_draft(), 2);
    set("4k3/pp3p2/2n5/3p4/8/2N5/PP3P2/4K3 w - - 0 1");
    search(4, high);
    ASSERT_NE(record_behind(move("c3d5")), nullptr);
    EXPECT_EQ(record_behind(move("c3d5"))->get_draft(), 3);
    EXPECT_EQ(record_behind(move("c3a4"))->get_draft(), 2);
}

TEST_F(NullWindowSearch, ExtendedMoveIsNotReduced) {
    set("8/P7/7k/8/8/8/8/6K1 w - - 0 1");
    search(4, high);
    ASSERT_NE(record_behind(move("a7a8q")), nullptr);
    EXPECT_EQ(record_behind(move("a7a8q"))->get_draft(), 4);
    ASSERT_NE(record_behind(move("g1g2")), nullptr);
    EXPECT_EQ(record_behind(move("g1g2"))->get_draft(), 2);
}

TEST_F(NullWindowSearch, ExactEntryIsReturnedAsItIs) {
    for (int const score : {-500, 10, 777}) {
        set(pawns);
        store(exact_value, 1, score);
        EXPECT_EQ(search(1, 100), score);
        EXPECT_EQ(node_count(), 1U);
    }
    // A draft below the depth does not do.
    set(pawns);
    store(exact_value, 1, 777);
    EXPECT_EQ(search(2, high), high);
}

TEST_F(NullWindowSearch, BoundsOfTheTableCutToTheWindow) {
    struct row_t {
        bound_t bound;
        int score;
        bool cut;
        int result;
    };
    int const alpha = 3000;
    for (row_t const& row :
         {row_t{upper_bound, 2000, true, alpha}, row_t{upper_bound, alpha, true, alpha},
          row_t{upper_bound, alpha + 1, false, alpha},
          row_t{lower_bound, alpha + 900, true, alpha + 1},
          row_t{lower_bound, alpha + 1, true, alpha + 1},
          row_t{lower_bound, alpha, false, alpha}}) {
        set(pawns);
        store(row.bound, 4, row.score);
        EXPECT_EQ(search(4, alpha), row.result);
        EXPECT_EQ(node_count() == 1, row.cut) << row.score;
    }
}

TEST_F(NullWindowSearch, MateScoresOfTheTableAreMadeRelativeToThisPly) {
    set(pawns);
    probe_.ply(2);
    store(exact_value, 9, 29990);
    probe_.ply(8);
    EXPECT_EQ(search(4, 100), 29990 + 2 - 8);
    set(pawns);
    probe_.ply(2);
    store(exact_value, 9, -29990);
    probe_.ply(8);
    EXPECT_EQ(search(4, 100), -29990 - 2 + 8);
}

TEST_F(NullWindowSearch, DisabledTableIsNotAsked) {
    set(pawns);
    store(exact_value, 9, 777);
    analysis_.hashtable_enabled(false);
    EXPECT_EQ(search(4, high), high);
    analysis_.hashtable_enabled(true);
    EXPECT_EQ(search(4, high), 777);
}

TEST_F(NullWindowSearch, OnlyMoveInTheTableLeavesAnEmptyList) {
    // One legal move, known from the table: no mate or stalemate is told.
    set("7k/8/8/8/8/p7/P3q3/7K w - - 0 1");
    ASSERT_EQ(moves().size(), 1U);
    Move const only = moves()[0];
    store(upper_bound, 0, 0, only);
    EXPECT_EQ(search(2, high), high);
    ASSERT_NE(record(), nullptr);
    EXPECT_EQ(record()->get_draft(), 2);
    EXPECT_TRUE(record()->is_upperbound());
    EXPECT_EQ(record()->get_score(0), high);
    EXPECT_EQ(record()->get_move(), TTmove(only));
}

TEST_F(NullWindowSearch, MateAndStalemateAreNotStored) {
    set("6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1");
    probe_.ply(4);
    EXPECT_EQ(search(3, 0), 4 - 30000);
    EXPECT_EQ(record(), nullptr);
    set("7k/8/8/8/8/8/5q2/7K w - - 0 1");
    EXPECT_EQ(search(3, 50), 0);
    EXPECT_EQ(record(), nullptr);
}

TEST_F(NullWindowSearch, MateDistanceNarrowsTheWindow) {
    set(pawns);
    probe_.ply(10);
    EXPECT_EQ(search(4, 29990), 29990);
    EXPECT_EQ(search(4, 29995), 29990);
    EXPECT_EQ(search(4, -29991), 10 - 30000);
    EXPECT_EQ(search(4, -29999), 10 - 30000);
    EXPECT_EQ(node_count(), 4U);
    EXPECT_EQ(analysis_.get_seldepth(), 0);
}

TEST_F(NullWindowSearch, RepetitionIsADrawWithoutGeneration) {
    set("4k3/8/8/8/8/8/8/R3K3 w - - 0 1", {"a1a2", "e8e7", "a2a1", "e7e8"});
    probe_.ply(3);
    EXPECT_EQ(search(4, 100), 0);
    EXPECT_EQ(search(0, -100), 0);
    EXPECT_EQ(node_count(), 2U);
    // The deepest ply is noted before.
    EXPECT_EQ(analysis_.get_seldepth(), 3);
    EXPECT_EQ(analysis_.leaf_count(), 0U);
}

TEST_F(NullWindowSearch, FiftyMovesEndNothingHereButFadeTheLeaves) {
    set("4k3/8/8/8/8/8/8/R3K3 w - - 60 90");
    int const value = eval();
    EXPECT_EQ(search(0, value - 1), static_cast<int>(value * (1.0 - 10 * 0.02)));
    set("4k3/8/8/8/8/8/8/R3K3 w - - 110 99");
    // Past a hundred the sign turns.
    EXPECT_EQ(search(0, value - 1), static_cast<int>(value * (1.0 - 60 * 0.02)));
    EXPECT_LT(search(0, value - 1), 0);
    store(exact_value, 5, 4321);
    EXPECT_EQ(search(5, high), 4321);
}

TEST_F(NullWindowSearch, LeafCountsHandOversToQuiescence) {
    set(pawns);
    search(0, high);
    search(-3, high);
    EXPECT_EQ(analysis_.leaf_count(), 2U);
    probe_.ply(102);
    search(30, 100);
    EXPECT_EQ(analysis_.leaf_count(), 3U);
    EXPECT_EQ(node_count(), 3U);
    EXPECT_EQ(analysis_.get_seldepth(), 102);
}

TEST_F(NullWindowSearch, PlyOf101IsTheLargestWithMoves) {
    // Alpha is out of reach, so that every move is tried, and low enough that none is pruned.
    set(pawns);
    int const alpha = eval() + 90;
    std::size_t const children = moves().size();
    ASSERT_LE(children, 7U);
    probe_.ply(101);
    search(1, alpha);
    EXPECT_EQ(node_count(), 1 + children);
    EXPECT_EQ(analysis_.leaf_count(), children);
    EXPECT_NE(record(), nullptr);
    set(pawns);
    probe_.ply(102);
    search(1, alpha);
    EXPECT_EQ(node_count(), 1U);
    EXPECT_EQ(analysis_.leaf_count(), 1U);
    EXPECT_EQ(record(), nullptr);
}

TEST_F(NullWindowSearch, StopReturnsAlphaAndStoresNothing) {
    set(knights);
    analysis_.set_action(stop_action);
    EXPECT_EQ(search(5, 17), 17);
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(node_count(), 1U);
}

TEST_F(NullWindowSearch, StopInTheMiddleRestoresAndLearnsNothing) {
    set(knights);
    ChessPosition const before = position_;
    analysis_.set_nodes(500);
    probe_.ply(2);
    // Low enough for the first move to cut as soon as it comes back.
    int const alpha = eval() - 60;
    EXPECT_EQ(search(9, alpha), alpha);
    EXPECT_EQ(analysis_.get_action(), stop_action);
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(position_, before);
    EXPECT_EQ(analysis_.ply(), 2);
    EXPECT_EQ(probe_.killers().get_killerA(2), Move());
    EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
}

}  // namespace orvelin::test
