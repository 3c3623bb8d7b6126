#include <algorithm>
#include <string>
#include <utility>

#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

/// Queen moves to f3 and h5 threaten mate by taking on f7.
std::string const threat = "r1bqkbnr/pppp1ppp/2n5/4p3/2B1P3/8/PPPP1PPP/RNBQK1NR w KQkq - 0 1";

class MoveOrdering : public AnalysisFixture {
 protected:
    void raise(std::string const& text, unsigned int depth) {
        probe_.history().increment(move(text), depth);
    }
    /// Raises the counter value of an answer to the last move.
    void raise_counter(std::string const& text, int depth) {
        probe_.counter_moves().increment(position_.last_move(), move(text), depth);
    }
    /// Raises the counter value of a move after the own move before.
    void raise_own_counter(std::string const& text, int depth) {
        probe_.counter_moves().increment(position_.history().end()[-2].last_move, move(text),
                                         depth);
    }
    /// Texts of the moves of a class, in the sorted order.
    texts_t of_class(xmove_t wanted) {
        std::vector<Move> chosen;
        for (Move const& candidate : sorted_moves()) {
            if (candidate.xcode() == wanted) {
                chosen.push_back(candidate);
            }
        }
        return texts_of(chosen);
    }
};

}  // namespace

TEST_F(MoveOrdering, HistoryOfZeroOrLessGivesNoClass) {
    set(start_fen);
    probe_.history().decrement(move("e2e4"), 5);
    probe_.history().decrement(move("g1f3"), 1);
    for (Move const& candidate : sorted_moves()) {
        EXPECT_EQ(candidate.xcode(), xnormal_move);
    }
}

TEST_F(MoveOrdering, ThreeBestOfHistoryGetTheirClasses) {
    set(start_fen);
    raise("a2a3", 3);
    raise("e2e4", 6);
    raise("h2h3", 4);
    raise("d2d4", 5);
    EXPECT_EQ(class_of("e2e4"), historical_move1);
    EXPECT_EQ(class_of("d2d4"), historical_move2);
    EXPECT_EQ(class_of("h2h3"), historical_move3);
    EXPECT_EQ(class_of("a2a3"), xnormal_move);
    texts_t const order = texts_of(sorted_moves());
    EXPECT_EQ((texts_t{order.begin(), order.begin() + 3}), (texts_t{"e2e4", "d2d4", "h2h3"}));
}

TEST_F(MoveOrdering, EarlierOfTwoEqualHistoryValuesGoesFirst) {
    set(start_fen);
    for (char const* const text : {"h2h4", "b2b3", "g1f3", "d2d3"}) {
        raise(text, 4);
    }
    EXPECT_EQ(class_of("g1f3"), historical_move1);
    EXPECT_EQ(class_of("b2b3"), historical_move2);
    EXPECT_EQ(class_of("d2d3"), historical_move3);
    EXPECT_EQ(class_of("h2h4"), xnormal_move);
}

TEST_F(MoveOrdering, RunningHistoryValuesAreKeptInThirtyTwoBits) {
    set(start_fen);
    // 2^32 is above 0 and takes the first place, but leaves a running value of 0 there.
    raise("b1a3", 32);
    raise("b1c3", 0);
    EXPECT_EQ(class_of("b1c3"), historical_move1);
    EXPECT_EQ(class_of("b1a3"), historical_move2);
}

TEST_F(MoveOrdering, ValueOfZeroOrLessTakesNoPlaceBesideARunningValueThatWrapped) {
    // 2^31 is above 0, and its running value in 32 bits is below every other.
    set(start_fen, {"e2e4", "e7e5"});
    raise("b1c3", 31);
    probe_.history().decrement(move("g1f3"), 3);
    EXPECT_EQ(of_class(historical_move1), texts_t{"b1c3"});
    EXPECT_EQ(of_class(historical_move2), texts_t{});
    raise_own_counter("a2a3", 31);
    EXPECT_EQ(of_class(counter_move), texts_t{"a2a3"});
    // A value above 0 goes ahead of it.
    raise("g1h3", 0);
    EXPECT_EQ(of_class(historical_move1), texts_t{"g1h3"});
    EXPECT_EQ(of_class(historical_move2), texts_t{"b1c3"});
}

TEST_F(MoveOrdering, EqualMovesOfARootListGetTheSameClass) {
    set(start_fen, {"e2e4", "e7e5"});
    raise_counter("g1f3", 5);
    raise_own_counter("f1c4", 5);
    raise("b1c3", 6);
    raise("d2d4", 5);
    raise("a2a3", 4);
    std::vector<Move> repeated;
    for (char const* const text : {"g1f3", "h2h3", "f1c4", "b1c3", "d2d4", "a2a3"}) {
        repeated.insert(repeated.end(), 3, move(text));
    }
    MoveList list;
    list.set_size(static_cast<int>(repeated.size()));
    std::copy(repeated.begin(), repeated.end(), list.begin());
    analysis_.localsort(list, 1, true, Move());
    // The three copies of the best move take all places of the history.
    std::vector<xmove_t> classes;
    for (Move const& candidate : list) {
        classes.push_back(candidate.xcode());
        bool const is_counter = candidate == move("g1f3") || candidate == move("f1c4");
        EXPECT_EQ(candidate.xcode() == counter_move, is_counter) << candidate.algebraic(true);
        EXPECT_EQ(candidate.xcode() == historical_move1, candidate == move("b1c3"));
    }
    EXPECT_EQ(std::count(classes.begin(), classes.end(), counter_move), 6);
    EXPECT_EQ(std::count(classes.begin(), classes.end(), historical_move1), 3);
    EXPECT_EQ(std::count(classes.begin(), classes.end(), xnormal_move), 9);
}

TEST_F(MoveOrdering, CapturesTakePartInTheHistoryRanking) {
    set("7k/8/8/3p4/4P3/8/8/K7 w - - 0 1");
    raise("e4d5", 9);
    raise("a1b1", 3);
    EXPECT_EQ(class_of("e4d5"), good_capture);
    EXPECT_EQ(class_of("a1b1"), historical_move2);
    EXPECT_EQ(of_class(historical_move1), texts_t{});
}

TEST_F(MoveOrdering, PawnTakingAKnightIsAGoodCapture) {
    set("7k/8/4p3/3n4/4P3/8/8/K7 w - - 0 1");
    EXPECT_EQ(class_of("e4d5"), good_capture);
}

TEST_F(MoveOrdering, EqualPiecesAreAGoodCapture) {
    set("7k/8/4p3/3r4/8/8/3R4/K7 w - - 0 1");
    EXPECT_EQ(class_of("d2d5"), good_capture);
    // A lesser piece takes a greater one: the exchange is not looked at.
    set("7k/8/4p3/3q4/8/8/3R4/K7 w - - 0 1");
    EXPECT_EQ(class_of("d2d5"), good_capture);
}

TEST_F(MoveOrdering, QueenTakingADefendedPawnIsALosingCapture) {
    set("7k/8/2p5/3p4/4Q3/8/8/K7 w - - 0 1");
    EXPECT_EQ(class_of("e4d5"), losing_capture);
    EXPECT_EQ(texts_of(sorted_moves()).back(), "e4d5");
    set("7k/8/8/3p4/4Q3/8/8/K7 w - - 0 1");
    EXPECT_EQ(class_of("e4d5"), good_capture);
    EXPECT_EQ(texts_of(sorted_moves()).front(), "e4d5");
}

TEST_F(MoveOrdering, SafeQueenPromotionHasItsOwnClass) {
    set("8/P6k/8/8/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(class_of("a7a8q"), promotion);
    set("1n6/P6k/8/8/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(class_of("a7a8q"), promotion);
    EXPECT_EQ(class_of("a7b8q"), good_capture);
}

TEST_F(MoveOrdering, LosingQueenPromotionIsAQuietMove) {
    set("7r/P6k/8/8/8/8/8/K7 w - - 0 1");
    ASSERT_LT(analysis_.see(move("a7a8q")), 0);
    EXPECT_EQ(class_of("a7a8q"), xnormal_move);
    raise("a7a8q", 4);
    EXPECT_EQ(class_of("a7a8q"), historical_move1);
    probe_.killers().set_killer(0, move("a7a8q"));
    EXPECT_EQ(class_of("a7a8q"), killer);
}

TEST_F(MoveOrdering, UnderPromotionIsNeverOfClassPromotion) {
    set("8/P6k/8/8/8/8/8/K7 w - - 0 1");
    for (char const* const text : {"a7a8r", "a7a8b", "a7a8n"}) {
        EXPECT_GT(analysis_.see(move(text)), 0);
        EXPECT_EQ(class_of(text), xnormal_move) << text;
    }
}

TEST_F(MoveOrdering, PiecesDislikeSquaresOfEnemyPawns) {
    set("7k/8/4p3/8/2P5/2N5/8/K7 w - - 0 1");
    EXPECT_EQ(class_of("c3d5"), bad_move);
    EXPECT_EQ(class_of("c3e4"), xnormal_move);
    EXPECT_EQ(class_of("c4c5"), xnormal_move);
    set("7k/8/4p3/8/3P4/2N5/8/K7 w - - 0 1");
    EXPECT_EQ(class_of("d4d5"), xnormal_move);
    set("k7/8/2n5/2p5/4P3/8/8/7K b - - 0 1");
    EXPECT_EQ(class_of("c6d4"), xnormal_move);
    set("k7/8/2n5/2p5/8/2P5/8/7K b - - 0 1");
    EXPECT_EQ(class_of("c6d4"), bad_move);
    EXPECT_EQ(class_of("c5c4"), xnormal_move);
    set("k7/8/2n5/3p4/8/2P5/8/7K b - - 0 1");
    EXPECT_EQ(class_of("d5d4"), xnormal_move);
}

TEST_F(MoveOrdering, PawnAttacksDoNotRunRoundTheEdge) {
    // A black pawn on a5 does not look at h-file squares, nor one on h5 at the a-file.
    set("7k/8/8/p7/8/8/6R1/K7 w - - 0 1");
    EXPECT_EQ(class_of("g2g4"), xnormal_move);
    EXPECT_EQ(class_of("g2h2"), xnormal_move);
    set("7k/8/8/p7/8/7R/8/K7 w - - 0 1");
    EXPECT_EQ(class_of("h3h4"), xnormal_move);
    set("7k/8/8/7p/8/R7/8/1K6 w - - 0 1");
    EXPECT_EQ(class_of("a3a4"), xnormal_move);
    set("7k/8/8/8/p7/6R1/8/K7 w - - 0 1");
    EXPECT_EQ(class_of("g3h3"), xnormal_move);
}

TEST_F(MoveOrdering, CastlingCountsAsAMoveToTheRooksSquare) {
    // The pawn on g2 attacks h1, where the rook stands; the king castles to g1 all the same.
    set("4k3/8/8/8/8/8/6p1/6KR w H - 0 1");
    EXPECT_EQ(class_of("g1h1"), bad_move);
    set("4k3/8/8/8/8/8/1p6/4K2R w K - 0 1");
    EXPECT_EQ(class_of("e1h1"), xnormal_move);
}

TEST_F(MoveOrdering, SingleMoveKeepsItsClass) {
    // The queen's capture would be classed; alone it is not.
    set("6k1/5ppp/8/8/8/8/5PPP/3r1QK1 w - - 0 1");
    MoveList list;
    probe_.generator().generate_moves(position_, list);
    list.set_size(1);
    Move const only = list[0];
    ASSERT_NE(only.capture_id(), 0);
    probe_.killers().set_killer(0, only);
    EXPECT_EQ(nodes_of([&] { analysis_.localsort(list, 9, true, only); }), 0U);
    EXPECT_EQ(list[0].xcode(), xnormal_move);
    EXPECT_EQ(analysis_.extend(list, list[0]), 1);
}

TEST_F(MoveOrdering, EmptyListIsLeftAlone) {
    set(start_fen);
    MoveList list;
    analysis_.localsort(list, 9, true, Move());
    EXPECT_EQ(list.size(), 0U);
}

TEST_F(MoveOrdering, HashMoveComesFirst) {
    set(start_fen);
    Move hash_move = move("a2a4");
    hash_move.xcode(losing_capture);
    probe_.killers().set_killer(0, hash_move);
    std::vector<Move> const list = sorted_moves(1, true, hash_move);
    EXPECT_EQ(list[0], hash_move);
    EXPECT_EQ(list[0].xcode(), hashtable_move);
}

TEST_F(MoveOrdering, KillersOfThisPlyOnly) {
    set(start_fen);
    probe_.killers().set_killer(2, move("a2a3"));
    probe_.killers().set_killer(2, move("h2h3"));
    probe_.killers().set_killer(3, move("g2g3"));
    probe_.ply(2);
    EXPECT_EQ(class_of("a2a3"), killer);
    EXPECT_EQ(class_of("h2h3"), killer);
    EXPECT_EQ(class_of("g2g3"), xnormal_move);
}

TEST_F(MoveOrdering, KillerGoesBeforeCounterAndHistory) {
    set(start_fen, {"e2e4", "e7e5"});
    probe_.killers().set_killer(0, move("g1f3"));
    for (char const* const text : {"g1f3", "f1c4"}) {
        raise_counter(text, 7);
        raise(text, 7);
    }
    raise("b1c3", 3);
    EXPECT_EQ(class_of("g1f3"), killer);
    EXPECT_EQ(class_of("f1c4"), counter_move);
    // The two hold the first places of the history and do not use them.
    EXPECT_EQ(class_of("b1c3"), historical_move3);
}

TEST_F(MoveOrdering, CaptureThatIsAKillerStaysACapture) {
    set("7k/8/2p5/3p4/4Q3/8/8/K7 w - - 0 1");
    probe_.killers().set_killer(0, move("e4d5"));
    EXPECT_EQ(class_of("e4d5"), losing_capture);
    set("7k/8/8/3p4/4P3/8/8/K7 w - - 0 1");
    probe_.killers().set_killer(0, move("e4d5"));
    EXPECT_EQ(class_of("e4d5"), good_capture);
}

TEST_F(MoveOrdering, TwoCountersOfEachEarlierMove) {
    set(start_fen, {"e2e4", "e7e5"});
    raise_counter("g1f3", 3);
    raise_counter("a2a3", 5);
    raise_counter("h2h3", 4);
    raise_own_counter("d2d4", 6);
    raise_own_counter("d2d3", 6);
    raise_own_counter("f1c4", 6);
    texts_t counters = of_class(counter_move);
    std::sort(counters.begin(), counters.end());
    // Among equals the first two of the list: f1c4 is generated ahead of the pawns.
    EXPECT_EQ(counters, (texts_t{"a2a3", "d2d3", "f1c4", "h2h3"}));
    EXPECT_EQ(class_of("g1f3"), xnormal_move);
    EXPECT_EQ(class_of("d2d4"), xnormal_move);
}

TEST_F(MoveOrdering, CountersOfZeroOrLessTakeNoPlace) {
    set(start_fen, {"e2e4", "e7e5"});
    for (Move const& candidate : moves()) {
        probe_.counter_moves().decrement(position_.last_move(), candidate, 3);
    }
    EXPECT_EQ(of_class(counter_move), texts_t{});
}

TEST_F(MoveOrdering, OnlyTheFirstCounterPairIsCutToThirtyTwoBits) {
    set(start_fen, {"e2e4", "e7e5"});
    raise_counter("g1f3", 32);
    EXPECT_EQ(of_class(counter_move), texts_t{});
    raise_own_counter("g1f3", 32);
    EXPECT_EQ(of_class(counter_move), texts_t{"g1f3"});
}

TEST_F(MoveOrdering, OwnMoveBeforeANullMoveStillCounts) {
    set(start_fen, {"e2e4"});
    analysis_.make_nullmove();
    raise_own_counter("g1f3", 4);
    EXPECT_EQ(position_.last_move(), Move());
    EXPECT_EQ(class_of("g1f3"), counter_move);
    analysis_.unmake_nullmove();
}

TEST_F(MoveOrdering, NoCountersAtTheStartOfTheGame) {
    set(start_fen);
    probe_.counter_moves().increment(Move(), move("e2e4"), 9);
    EXPECT_EQ(class_of("e2e4"), xnormal_move);
}

TEST_F(MoveOrdering, MateThreatsAreFoundFromDepthFiveOn) {
    set(threat);
    EXPECT_EQ(class_of("d1h5", 4, true), xnormal_move);
    EXPECT_EQ(class_of("d1h5", 5, true), mate_attack);
    EXPECT_EQ(class_of("d1f3", 5, true), mate_attack);
    EXPECT_EQ(class_of("a2a3", 5, true), xnormal_move);
}

TEST_F(MoveOrdering, MateThreatsAreLookedForNearTheRootOnly) {
    set(threat);
    probe_.ply(5);
    EXPECT_EQ(nodes_of([&] { EXPECT_EQ(class_of("d1h5", 5, false), xnormal_move); }), 0U);
    EXPECT_EQ(class_of("d1h5", 5, true), mate_attack);
    probe_.ply(3);
    EXPECT_EQ(class_of("d1h5", 5, false), xnormal_move);
    probe_.ply(2);
    EXPECT_EQ(class_of("d1h5", 5, false), mate_attack);
}

TEST_F(MoveOrdering, MateThreatReplacesAnyClassButTheHashMove) {
    set(threat);
    probe_.killers().set_killer(0, move("d1h5"));
    EXPECT_EQ(class_of("d1h5", 4, true), killer);
    EXPECT_EQ(class_of("d1h5", 5, true), mate_attack);
    EXPECT_EQ(class_of("d1h5", 5, true, move("d1h5")), hashtable_move);
}

TEST_F(MoveOrdering, ChecksAreNotTestedForThreats) {
    // The queen can mate at once on f7, so that any move would leave that threat.
    set("r1bqkbnr/pppp1ppp/2n5/7Q/2B5/8/PPPP1PPP/RNB2R1K w kq - 0 1");
    ASSERT_TRUE(move("f1e1").check());
    EXPECT_EQ(class_of("h2h3", 5, true), mate_attack);
    EXPECT_EQ(class_of("f1e1", 5, true), xnormal_move);
}

TEST_F(MoveOrdering, MarkedMovesLetTheCountDriftBelowZero) {
    set(threat);
    std::vector<Move> const list = sorted_moves(5, true);
    auto const marked = std::count_if(list.begin(), list.end(), [](Move const& candidate) {
        return candidate.xcode() == mate_attack;
    });
    EXPECT_GE(marked, 2);
    EXPECT_EQ(analysis_.mate_attack_count(), -marked);
    EXPECT_EQ(analysis_.ply(), 0);
}

TEST_F(MoveOrdering, SortIsTheUnstableExchangeSort) {
    set(positions::kiwipete);
    raise("a2a3", 3);
    probe_.killers().set_killer(0, move("e5d3"));
    std::vector<Move> expected = moves();
    for (Move& candidate : expected) {
        candidate.xcode(class_of(candidate.algebraic(true)));
    }
    std::vector<Move> stable = expected;
    std::stable_sort(stable.begin(), stable.end(),
                     [](Move const& a, Move const& b) { return a.xcode() < b.xcode(); });
    for (std::size_t i = 0; i < expected.size(); ++i) {
        for (std::size_t j = i + 1; j < expected.size(); ++j) {
            if (expected[i].xcode() > expected[j].xcode()) {
                std::swap(expected[i], expected[j]);
            }
        }
    }
    EXPECT_EQ(texts_of(sorted_moves()), texts_of(expected));
    EXPECT_NE(texts_of(sorted_moves()), texts_of(stable));
}

TEST_F(MoveOrdering, StateComesBack) {
    set(threat);
    ChessPosition const before = position_;
    sorted_moves(6, true);
    EXPECT_EQ(position_, before);
    EXPECT_EQ(position_.get_hash(), before.get_hash());
    EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
}

}  // namespace orvelin::test
