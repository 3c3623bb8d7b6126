#include <algorithm>
#include <string>

#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

/// No capture and no check for White.
std::string const quiet = "6k1/5ppp/8/8/3N4/8/5PPP/6K1 w - - 0 1";
/// One capture: a knight takes a knight that a pawn defends. The exchange is even.
std::string const even_capture = "6k1/5ppp/2p5/3n4/8/2N5/5PPP/6K1 w - - 0 1";
/// One capture: a rook takes a pawn that a pawn defends.
std::string const losing = "6k1/5ppp/2p5/3p4/8/8/3R1PPP/6K1 w - - 0 1";
/// One capture: a pawn takes a knight, and the answer loses a queen.
std::string const winning = "6k1/5ppp/8/3n4/4P3/8/5PPP/6K1 w - - 0 1";
/// White is in check by a rook and has no way out.
std::string const mated = "6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1";

class Quiescence : public AnalysisFixture {
 protected:
    static constexpr int infinity = 32000;

    std::uint64_t nodes(int qdepth) {
        return nodes_of([&] { analysis_.quiescence(-infinity, infinity, qdepth); });
    }
};

}  // namespace

TEST_F(Quiescence, WithoutCapturesItIsTheEvaluationInsideTheWindow) {
    set(quiet);
    int const value = eval();
    EXPECT_EQ(analysis_.quiescence(value - 10, value + 10, 0), value);
    EXPECT_EQ(analysis_.quiescence(value + 5, value + 10, 0), value + 5);
    EXPECT_EQ(analysis_.quiescence(value - 10, value, 0), value);
    EXPECT_EQ(analysis_.quiescence(value - 10, value - 5, 0), value - 5);
}

TEST_F(Quiescence, OnlyLevelsBelowZeroCountTheirNode) {
    set(quiet);
    EXPECT_EQ(nodes(0), 0U);
    EXPECT_EQ(nodes(-1), 1U);
}

TEST_F(Quiescence, MatedNodeIsWorthItsPly) {
    set(mated);
    probe_.ply(6);
    EXPECT_EQ(analysis_.quiescence(-infinity, infinity, 0), 6 - 30000);
    // Beta at or below that value is met by the stand-pat score already.
    EXPECT_EQ(analysis_.quiescence(-infinity, 6 - 30000, 0), 6 - 30000);
    EXPECT_EQ(analysis_.quiescence(-infinity, 5 - 30000, 0), 5 - 30000);
    EXPECT_EQ(analysis_.quiescence(-infinity, -31000, 0), -31000);
    // A mate is told even below alpha.
    EXPECT_EQ(analysis_.quiescence(100, 101, 0), 6 - 30000);
}

TEST_F(Quiescence, CheckIsAnsweredWithAllMovesAtAnyLevel) {
    set("6k1/5pp1/8/8/8/8/5PP1/3r2K1 w - - 0 1");
    EXPECT_EQ(moves().size(), 1U);
    EXPECT_GE(nodes(0), 1U);
    set("6k1/5pp1/8/8/8/8/5P2/3r2K1 w - - 0 1");
    std::uint64_t const evasions = moves().size();
    EXPECT_EQ(evasions, 2U);
    // Each evasion is a quiet king move with an exchange value of 0.
    EXPECT_GE(nodes(-9), 1 + evasions);
    EXPECT_GE(nodes(-40), 1 + evasions);
}

TEST_F(Quiescence, EvenCaptureIsSearchedAtMinusEightAndSkippedBelow) {
    set(even_capture);
    ASSERT_EQ(analysis_.see(move("c3d5")), 0);
    EXPECT_GT(nodes(-8), 1U);
    EXPECT_EQ(nodes(-9), 1U);
}

TEST_F(Quiescence, LosingCaptureIsSearchedOnTheFirstNineLevels) {
    set(losing);
    ASSERT_LT(analysis_.see(move("d2d5")), 0);
    EXPECT_GT(nodes(0), 0U);
    EXPECT_GT(nodes(-8), 1U);
    EXPECT_EQ(nodes(-9), 1U);
}

TEST_F(Quiescence, WinningCaptureIsSearchedAtAnyLevel) {
    set(winning);
    ASSERT_GT(analysis_.see(move("e4d5")), 0);
    EXPECT_EQ(nodes(-9), 2U);
    EXPECT_EQ(nodes(-100), 2U);
    set(winning);
    int const stand_pat = eval();
    EXPECT_GT(analysis_.quiescence(-infinity, infinity, 0), stand_pat + 300);
}

TEST_F(Quiescence, CaptureScoreIsTheNegatedReply) {
    set(winning);
    Move const capture = move("e4d5");
    analysis_.make_move(capture);
    int const reply = eval();
    analysis_.unmake_move(capture);
    EXPECT_EQ(analysis_.quiescence(-infinity, infinity, 0), std::max(-reply, eval()));
    // At or above beta exactly beta comes back.
    EXPECT_EQ(analysis_.quiescence(-infinity, -reply, 0), -reply);
    EXPECT_EQ(analysis_.quiescence(-infinity, -reply - 7, 0), -reply - 7);
}

TEST_F(Quiescence, MateByCaptureIsDiscountedTwice) {
    set("6k1/5ppp/8/8/8/8/5PPP/r2R2K1 b - - 0 1");
    Move const mate = move("a1d1");
    ASSERT_TRUE(mate.check());
    // The mated node at ply 1 is worth 1 - 30000; its ply is taken off once more on the way up.
    EXPECT_EQ(analysis_.quiescence(-infinity, infinity, 0), 30000 - 1 - 1);
    probe_.ply(10);
    EXPECT_EQ(analysis_.quiescence(-infinity, infinity, 0), 30000 - 11 - 11);
}

TEST_F(Quiescence, MateSeenDeeperIsDiscountedAtEachLevel) {
    // Queen takes with check, the king has one square, queen takes and mates at ply 3.
    set("6k1/5p1p/8/6N1/8/3Q4/8/7K w - - 0 1");
    EXPECT_EQ(analysis_.quiescence(-infinity, infinity, 0), 30000 - 3 - 3 - 2 - 1);
}

TEST_F(Quiescence, StopReturnsTheStandPatScore) {
    set(winning);
    int const value = eval();
    analysis_.set_action(stop_action);
    EXPECT_EQ(analysis_.quiescence(-infinity, infinity, 0), value);
    EXPECT_EQ(analysis_.quiescence(value + 50, infinity, 0), value + 50);
    EXPECT_EQ(analysis_.quiescence(-infinity, value - 50, 0), value - 50);
}

TEST_F(Quiescence, NoLegalLineComesNearThePlyAtWhichItIsCut) {
    // The main search ends at ply 102, and thirty captures with the checks between them are all
    // that can follow. Boards with several kings, whose checks need no answer, meet the end.
    for (int const ply : {102, 300, 499, 500, 501}) {
        set(winning);
        int const stand_pat = eval();
        probe_.ply(ply);
        int const value = analysis_.quiescence(-infinity, infinity, 0);
        EXPECT_EQ(value > stand_pat, ply < 500) << ply;
    }
}

TEST_F(Quiescence, StateComesBack) {
    set(positions::kiwipete);
    probe_.ply(3);
    ChessPosition const before = position_;
    analysis_.quiescence(-infinity, infinity, 0);
    EXPECT_EQ(position_, before);
    EXPECT_EQ(position_.get_hash(), before.get_hash());
    EXPECT_EQ(analysis_.ply(), 3);
    EXPECT_EQ(analysis_.mate_attack_count(), 0);
    EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
}

TEST_F(Quiescence, NeitherReadsNorWritesTheTable) {
    set(winning);
    int const value = analysis_.quiescence(-infinity, infinity, 0);
    EXPECT_EQ(record(), nullptr);
    store(exact_value, 50, value + 1000);
    EXPECT_EQ(analysis_.quiescence(-infinity, infinity, 0), value);
}

}  // namespace orvelin::test
