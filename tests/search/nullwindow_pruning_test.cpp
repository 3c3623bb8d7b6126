// Null move, reduced search, hash move and learning of the null-window search.

#include <string>
#include <vector>

#include "search/tt_move.h"
#include "support/analysis_fixture.h"

namespace orvelin::test {

namespace {

/// No sliders: nobody makes a null move.
std::string const knights = "4k3/pp3p2/2n5/8/8/2N5/PP3P2/4K3 w - - 0 1";
/// One rook each, nothing under attack.
std::string const rooks = "r3k3/pp3p2/8/8/8/8/PP3P2/4K2R w - - 0 1";
/// A black pawn attacks the white queen.
std::string const hanging = "3qk3/8/8/2p5/3Q4/8/5PPP/6K1 w - - 0 1";
constexpr int high = 20000;

class NullWindowPruning : public AnalysisFixture {
 protected:
    int search(int depth, int alpha) {
        return analysis_.nullwindow_search(depth, alpha, alpha + 1);
    }
    /// Whether a side may make a null move behind a king move of the other.
    bool allowed(std::string const& fen, std::string const& king_move) {
        set(fen, {king_move});
        probe_.ply(1);
        return analysis_.nullmove_allowed();
    }
    std::int64_t history(Move const& move) { return probe_.history().value(move); }
};

}  // namespace

TEST_F(NullWindowPruning, NullMoveNeedsABishopRookOrQueen) {
    EXPECT_TRUE(allowed("4k3/8/8/8/8/8/8/2B1K3 b - - 0 1", "e8e7"));
    EXPECT_TRUE(allowed("4k3/8/8/8/8/8/8/R3K3 b - - 0 1", "e8e7"));
    EXPECT_TRUE(allowed("4k3/8/8/8/8/8/8/Q3K3 b - - 0 1", "e8e7"));
    EXPECT_FALSE(allowed("4k3/8/8/8/8/8/PPPP4/NN2K3 b - - 0 1", "e8e7"));
    // The opponent's pieces do not count.
    EXPECT_FALSE(allowed("rq2k3/8/8/8/8/8/PPPP4/NN2K3 b - - 0 1", "e8e7"));
    EXPECT_TRUE(allowed("2b1k3/8/8/8/8/8/8/4K3 w - - 0 1", "e1e2"));
    EXPECT_TRUE(allowed("r3k3/8/8/8/8/8/8/4K3 w - - 0 1", "e1e2"));
    EXPECT_TRUE(allowed("q3k3/8/8/8/8/8/8/4K3 w - - 0 1", "e1e2"));
    EXPECT_FALSE(allowed("nn2k3/pppp4/8/8/8/8/8/RQ2K3 w - - 0 1", "e1e2"));
}

TEST_F(NullWindowPruning, NoNullMoveAtTheRootInCheckOrTwiceInARow) {
    set(rooks);
    EXPECT_FALSE(analysis_.nullmove_allowed());
    // Without a move before, the last move's code is that of a null move.
    probe_.ply(1);
    EXPECT_FALSE(analysis_.nullmove_allowed());
    set(rooks, {"e1e2", "e8e7"});
    EXPECT_FALSE(analysis_.nullmove_allowed());
    probe_.ply(1);
    EXPECT_TRUE(analysis_.nullmove_allowed());
    analysis_.make_nullmove();
    EXPECT_FALSE(analysis_.nullmove_allowed());
    set("4k3/8/8/8/8/r7/8/R3K3 b - - 0 1", {"a3e3"});
    probe_.ply(1);
    ASSERT_TRUE(position_.check());
    EXPECT_FALSE(analysis_.nullmove_allowed());
}

TEST_F(NullWindowPruning, NullMoveThatHoldsBetaEndsTheNode) {
    set(rooks, {"e1e2", "e8e7"});
    probe_.ply(2);
    int const alpha = eval() - 150;
    EXPECT_EQ(search(4, alpha), alpha + 1);
    // The node and the leaf behind the null move; nothing is stored.
    EXPECT_EQ(node_count(), 2U);
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(analysis_.ply(), 2);
}

TEST_F(NullWindowPruning, KnightsAndPawnsMakeNoNullMoveHoweverHighTheScore) {
    set("4k3/8/8/8/8/8/PPPPP3/1NN1K3 w - - 0 1", {"e1f2", "e8e7"});
    probe_.ply(2);
    int const alpha = eval() - 1000;
    EXPECT_EQ(search(3, alpha), alpha + 1);
    EXPECT_GT(node_count(), 2U);
    // With a bishop more it does.
    set("4k3/8/8/8/8/8/PPPPP3/1NN1KB2 w - - 0 1", {"e1f2", "e8e7"});
    probe_.ply(2);
    EXPECT_EQ(search(3, eval() - 1000), eval() - 999);
    EXPECT_EQ(node_count(), 2U);
}

TEST_F(NullWindowPruning, DepthBehindANullMove) {
    struct row_t {
        int depth;
        int behind;
    };
    for (row_t const& row : {row_t{5, 0}, row_t{6, 1}, row_t{8, 3}, row_t{9, 4}, row_t{10, 4},
                             row_t{11, 5}, row_t{1, 0}, row_t{-3, 0}}) {
        set(knights);
        // The entry answers up to its draft.
        analysis_.make_nullmove();
        store(exact_value, row.behind, 4567);
        analysis_.unmake_nullmove();
        ChessPosition const before = position_;
        int const score = analysis_.nullmove_search(row.depth, 0, 1);
        EXPECT_EQ(position_, before);
        EXPECT_EQ(analysis_.ply(), 0);
        if (row.behind == 0) {
            EXPECT_EQ(node_count(), 1U) << row.depth;
            EXPECT_EQ(analysis_.leaf_count(), 1U) << row.depth;
        } else {
            EXPECT_EQ(score, -4567) << row.depth;
            set(knights);
            analysis_.make_nullmove();
            store(exact_value, row.behind - 1, 4567);
            analysis_.unmake_nullmove();
            EXPECT_NE(analysis_.nullmove_search(row.depth, 0, 1), -4567) << row.depth;
        }
    }
}

TEST_F(NullWindowPruning, RefutedNullMoveDeepensTheNode) {
    // An exact entry behind the null move says that the opponent wins by far.
    for (int const draft : {6, 7}) {
        set(rooks, {"e1e2", "e8e7"});
        probe_.ply(2);
        int const alpha = eval() - 1;
        store(exact_value, draft, 1234);
        analysis_.make_nullmove();
        store(exact_value, 1, 5000);
        analysis_.unmake_nullmove();
        int const score = search(6, alpha);
        EXPECT_EQ(score == 1234, draft == 7);
        ASSERT_NE(record(), nullptr);
        EXPECT_EQ(record()->get_draft(), 7);
    }
}

TEST_F(NullWindowPruning, NullMoveBehindWhichTheFadeTakesTwoHundredDeepensDepthThreeToFour) {
    // The leaf behind the null move fades to less than the threat window's alpha.
    std::string const fen = "4k3/pp3p2/8/8/8/7R/PP3P2/4K3 w - - 70 90";
    for (int const draft : {3, 4}) {
        set(fen, {"e1e2", "e8e7"});
        probe_.ply(2);
        int const alpha = eval() - 1;
        ASSERT_GT(alpha, 300);
        ASSERT_LT(analysis_.nullmove_search(3, alpha - 200, alpha - 199), alpha - 200);
        store(exact_value, draft, 1234);
        EXPECT_EQ(search(3, alpha) == 1234, draft == 4);
        ASSERT_NE(record(), nullptr);
        EXPECT_EQ(record()->get_draft(), 4);
    }
}

TEST_F(NullWindowPruning, NullMoveRefutedInsideTheWindowDoesNotDeepen) {
    // The queen is lost behind the null move, but a fail-hard search tells no less than its alpha.
    set(hanging, {"g1h1", "e8e7"});
    probe_.ply(2);
    int const alpha = eval() - 1;
    EXPECT_EQ(analysis_.nullmove_search(3, alpha - 200, alpha - 199), alpha - 200);
    store(exact_value, 3, 1234);
    EXPECT_EQ(search(3, alpha), 1234);
}

TEST_F(NullWindowPruning, SlightlyRefutedNullMoveDoesNotDeepen) {
    set(rooks, {"e1e2", "e8e7"});
    probe_.ply(2);
    int const alpha = eval() - 1;
    // A null move costs the move, but far less than 200.
    ASSERT_LT(analysis_.nullmove_search(3, alpha, alpha + 1), alpha + 1);
    ASSERT_GE(analysis_.nullmove_search(3, alpha - 200, alpha - 199), alpha - 200);
    store(exact_value, 3, 1234);
    EXPECT_EQ(search(3, alpha), 1234);
}

TEST_F(NullWindowPruning, ReducedSearchEndsANodeFarAboveBeta) {
    set(knights);
    int const value = eval();
    probe_.ply(1);
    EXPECT_EQ(search(5, value - 201), value - 200);
    // Only the node of the reduced search has left an entry.
    EXPECT_TRUE(record() == nullptr || record()->get_draft() == 1);
    set(knights);
    probe_.ply(1);
    EXPECT_EQ(search(5, value - 200), value - 199);
    ASSERT_NE(record(), nullptr);
    EXPECT_EQ(record()->get_draft(), 5);
    // Not at depth 4.
    set(knights);
    probe_.ply(1);
    EXPECT_EQ(search(4, value - 500), value - 499);
    ASSERT_NE(record(), nullptr);
    EXPECT_EQ(record()->get_draft(), 4);
}

TEST_F(NullWindowPruning, ReducedSearchIsTriedFromTwoHundredAboveBeta) {
    // An entry of depth 1 lets any reduced search hold.
    for (int const margin : {199, 200}) {
        set(knights);
        int const alpha = eval() - margin - 1;
        probe_.ply(1);
        store(exact_value, 1, 9000);
        EXPECT_EQ(search(5, alpha), alpha + 1);
        EXPECT_EQ(node_count() == 2, margin == 200);
    }
}

TEST_F(NullWindowPruning, ReducedSearchNeedsACountOfExactlyZero) {
    for (int const count : {-1, 1}) {
        set(knights);
        int const value = eval();
        probe_.ply(1);
        probe_.mate_attack_count(count);
        EXPECT_EQ(search(5, value - 500), value - 499);
        ASSERT_NE(record(), nullptr);
        EXPECT_EQ(record()->get_draft(), 5);
        EXPECT_EQ(analysis_.mate_attack_count(), count);
    }
}

TEST_F(NullWindowPruning, HashMoveIsSearchedFirstAndInFull) {
    set(knights);
    Move const hash_move = move("c3a4");
    store(upper_bound, 0, 0, hash_move);
    store_behind(hash_move, exact_value, 3, -5000);
    EXPECT_EQ(search(4, 100), 101);
    EXPECT_EQ(node_count(), 2U);
    ASSERT_NE(record(), nullptr);
    EXPECT_TRUE(record()->is_lowerbound());
    EXPECT_EQ(record()->get_draft(), 4);
    EXPECT_EQ(record()->get_score(0), 101);
    EXPECT_EQ(record()->get_move(), TTmove(hash_move));
    // This cut-off teaches nothing.
    EXPECT_EQ(history(hash_move), 0);
    EXPECT_EQ(probe_.killers().get_killerA(0), Move());
}

TEST_F(NullWindowPruning, HashMoveIsNotReduced) {
    set(knights);
    Move const hash_move = move("c3a4");
    store(upper_bound, 0, 0, hash_move);
    store_behind(hash_move, exact_value, 2, -5000);
    int const alpha = eval() + 2500;
    EXPECT_EQ(search(4, alpha), alpha);
    EXPECT_EQ(record_behind(hash_move)->get_draft(), 3);
}

TEST_F(NullWindowPruning, CastlingFromTheTableIsNotSearchedAgain) {
    // The move table knows no castling: the move stays in the list and is passed over there.
    set("4k3/8/8/8/8/8/5PPP/4K2R w K - 0 1");
    Move const hash_move = move("e1h1");
    store(upper_bound, 0, 0, hash_move);
    std::vector<Move> const list = moves();
    for (Move const& candidate : list) {
        store_behind(candidate, exact_value, 9, 5000);
    }
    EXPECT_EQ(search(4, 3000), 3000);
    EXPECT_EQ(node_count(), 1 + list.size());
}

TEST_F(NullWindowPruning, HashMoveIsNotSearchedAgain) {
    set(knights);
    Move const hash_move = move("c3a4");
    store(upper_bound, 0, 0, hash_move);
    std::vector<Move> const list = moves();
    for (Move const& candidate : list) {
        store_behind(candidate, exact_value, 9, 5000);
    }
    EXPECT_EQ(search(4, 100), 100);
    EXPECT_EQ(node_count(), 1 + list.size());
    EXPECT_TRUE(record()->is_upperbound());
    EXPECT_EQ(record()->get_move(), TTmove(hash_move));
}

TEST_F(NullWindowPruning, HashMoveThatPromotesTakesAllFourOutOfTheList) {
    std::string const fen = "8/P7/7k/8/8/8/8/6K1 w - - 0 1";
    set(fen);
    search(2, high);
    EXPECT_NE(record_behind(move("a7a8q")), nullptr);
    set(fen);
    store(upper_bound, 0, 0, move("a7a8n"));
    search(2, high);
    EXPECT_NE(record_behind(move("a7a8n")), nullptr);
    for (char const* const text : {"a7a8q", "a7a8r", "a7a8b"}) {
        EXPECT_EQ(record_behind(move(text)), nullptr) << text;
    }
}

TEST_F(NullWindowPruning, QuietCutRaisesItselfAndLowersAllBefore) {
    set(knights, {"e1e2", "e8e7"});
    Move const previous = position_.last_move();
    Move const own = position_.history().end()[-2].last_move;
    std::vector<Move> const list = sorted_moves();
    for (std::size_t i = 0; i < 3; ++i) {
        store_behind(list[i], exact_value, 9, 5000);
    }
    store_behind(list[3], exact_value, 9, -5000);
    probe_.ply(2);
    EXPECT_EQ(search(4, 100), 101);
    for (std::size_t i = 0; i < list.size(); ++i) {
        std::int64_t const wanted = i < 3 ? -16 : i == 3 ? 16 : 0;
        EXPECT_EQ(history(list[i]), wanted) << i;
        EXPECT_EQ(probe_.counter_moves().value(previous, list[i]), wanted) << i;
        EXPECT_EQ(probe_.counter_moves().value(own, list[i]), wanted) << i;
    }
    EXPECT_EQ(probe_.killers().get_killerA(2), list[3]);
    EXPECT_EQ(probe_.killers().get_killerB(2), Move());
    EXPECT_TRUE(record()->is_lowerbound());
    EXPECT_EQ(record()->get_draft(), 4);
    EXPECT_EQ(record()->get_score(2), 101);
    EXPECT_EQ(record()->get_move(), TTmove(list[3]));
}

TEST_F(NullWindowPruning, PrunedMovesAreLoweredToo) {
    // The rook's mate is the only move that futility leaves.
    set("6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1");
    std::vector<Move> const list = sorted_moves();
    Move const mate = move("a1a8");
    std::size_t index = 0;
    while (list[index] != mate) {
        ++index;
    }
    ASSERT_GT(index, 2U);
    EXPECT_EQ(search(1, high), high + 1);
    for (std::size_t i = 0; i < list.size(); ++i) {
        EXPECT_EQ(history(list[i]), i < index ? -2 : i == index ? 2 : 0) << i;
    }
}

TEST_F(NullWindowPruning, CaptureThatCutsTeachesNothing) {
    set("6k1/8/8/3p4/4P3/8/8/6K1 w - - 0 1", {"g1g2", "g8g7"});
    Move const capture = move("e4d5");
    store_behind(capture, exact_value, 9, -5000);
    EXPECT_EQ(search(4, 100), 101);
    EXPECT_EQ(history(capture), 0);
    EXPECT_EQ(probe_.counter_moves().value(position_.last_move(), capture), 0);
    EXPECT_EQ(probe_.killers().get_killerA(0), Move());
    EXPECT_EQ(record()->get_move(), TTmove(capture));
}

TEST_F(NullWindowPruning, QuietPromotionThatCutsIsLearnt) {
    set("8/P7/7k/8/8/8/8/6K1 w - - 0 1");
    Move const promoting = move("a7a8q");
    store_behind(promoting, exact_value, 9, -5000);
    EXPECT_EQ(search(4, 100), 101);
    EXPECT_EQ(history(promoting), 16);
    EXPECT_EQ(probe_.killers().get_killerA(0), promoting);
}

TEST_F(NullWindowPruning, AfterANullMoveOnlyHistoryAndKillersLearn) {
    set(knights, {"e1e2"});
    analysis_.make_nullmove();
    Move const before = position_.history().end()[-2].last_move;
    Move const cut = sorted_moves()[0];
    store_behind(cut, exact_value, 9, -5000);
    EXPECT_EQ(search(3, 100), 101);
    EXPECT_EQ(history(cut), 8);
    // The move before the null move is no earlier move here.
    EXPECT_EQ(probe_.counter_moves().value(before, cut), 0);
    EXPECT_EQ(probe_.killers().get_killerA(1), cut);
}

TEST_F(NullWindowPruning, ReducedMoveThatBeatsAlphaIsSearchedInFull) {
    set(knights);
    Move const first = sorted_moves()[0];
    // Good enough for the reduced search, too shallow for the full one.
    store_behind(first, exact_value, 2, -5000);
    probe_.ply(0);
    int const alpha = eval() + 2500;
    EXPECT_EQ(search(4, alpha), alpha);
    ASSERT_NE(record_behind(first), nullptr);
    EXPECT_EQ(record_behind(first)->get_draft(), 3);
}

}  // namespace orvelin::test
