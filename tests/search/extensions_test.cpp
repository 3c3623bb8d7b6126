#include <string>

#include "support/analysis_fixture.h"

namespace orvelin::test {

namespace {

class Extensions : public AnalysisFixture {
 protected:
    int extend(std::string const& text, int list_size = 2) { return extend(move(text), list_size); }
    int extend(Move const& candidate, int list_size = 2) {
        MoveList list;
        list.set_size(list_size);
        return analysis_.extend(list, candidate);
    }

    bool in_battlefield(std::string const& square) {
        Mobility const& maps = analysis_.evaluation().mobility_maps();
        BitBoard const& field =
            position_.stm() == 1 ? maps.black_king_battlefield() : maps.white_king_battlefield();
        return static_cast<bool>(Square(square.c_str()).bitboard() & field);
    }

    bool passed(std::string const& square) {
        return static_cast<bool>(Square(square.c_str()).bitboard() &
                                 analysis_.evaluation().passed_pawns());
    }
};

}  // namespace

TEST_F(Extensions, NothingPastEightPliesBeyondTheIteration) {
    set("3q3k/8/8/8/8/8/8/K2QR3 w - - 0 1");
    Move const check = move("e1h1");
    ASSERT_TRUE(check.check());
    probe_.iteration(3);
    probe_.ply(3 + 8);
    EXPECT_EQ(extend(check), 1);
    EXPECT_EQ(extend("e1e2", 1), 1);
    probe_.ply(3 + 9);
    EXPECT_EQ(extend(check), 0);
    EXPECT_EQ(extend("e1e2", 1), 0);
}

TEST_F(Extensions, CheckThatLosesMaterialIsNotExtended) {
    set("3q3k/8/8/8/8/8/8/K2QR3 w - - 0 1");
    // The queen on d4 gives check and is lost to the black one.
    Move const losing = move("d1d4");
    ASSERT_TRUE(losing.check());
    ASSERT_LT(analysis_.see(losing), 0);
    EXPECT_EQ(extend(losing), 0);
    // An even exchange is extended.
    set("3q2k1/8/8/8/8/8/8/K2Q4 w - - 0 1");
    Move const even = move("d1g1");
    ASSERT_TRUE(even.check());
    ASSERT_EQ(analysis_.see(even), 0);
    EXPECT_EQ(extend(even), 1);
    EXPECT_EQ(extend("d1e2"), 0);
}

TEST_F(Extensions, SingleReplyIsExtended) {
    set("3q2k1/8/8/8/8/8/8/K2QR3 w - - 0 1");
    EXPECT_EQ(extend("e1e2", 2), 0);
    EXPECT_EQ(extend("e1e2", 1), 1);
    // An empty list is what a move from the table comes with.
    EXPECT_EQ(extend("e1e2", 0), 0);
}

TEST_F(Extensions, WhitePawnOnTheEighthRankIsExtended) {
    set("3q2k1/P7/1P6/8/8/8/8/K2QR3 w - - 0 1");
    for (char const* const text : {"a7a8q", "a7a8r", "a7a8b", "a7a8n"}) {
        EXPECT_EQ(extend(move(text)), 1) << text;
    }
    EXPECT_EQ(extend("b6b7"), 0);
}

TEST_F(Extensions, BlackPawnOnTheThirdRankIsExtendedAndAPromotionIsNot) {
    set("k2qr3/8/8/8/p6p/8/1p6/3Q2K1 b - - 0 1");
    EXPECT_EQ(extend("a4a3"), 1);
    EXPECT_EQ(extend("h4h3"), 1);
    EXPECT_EQ(extend("b2b1r"), 0);
    EXPECT_EQ(extend("b2b1n"), 0);
    set("k2qr3/8/1p6/8/8/2p5/8/3Q2K1 b - - 0 1");
    EXPECT_EQ(extend("c3c2"), 0);
    EXPECT_EQ(extend("b6b5"), 0);
    set("k2qr3/8/8/pp5p/8/8/8/3Q2K1 b - - 0 1");
    EXPECT_EQ(extend("a5a4"), 0);
    EXPECT_EQ(extend("b5b4"), 0);
    EXPECT_EQ(extend("h5h4"), 0);
    // White pawns are not extended for the sixth rank, where Black's third rank mirrors to.
    set("3q2k1/8/8/1P6/8/8/8/K2QR3 w - - 0 1");
    EXPECT_EQ(extend("b5b6"), 0);
    set("3q2k1/8/8/8/8/8/1P6/K2QR3 w - - 0 1");
    EXPECT_EQ(extend("b2b3"), 0);
}

TEST_F(Extensions, MateAttackIsExtendedByItsClass) {
    set("3q2k1/8/8/8/8/8/8/K2QR3 w - - 0 1");
    for (int xcode = hashtable_move; xcode <= losing_capture; ++xcode) {
        Move candidate = move("e1e2");
        candidate.xcode(static_cast<xmove_t>(xcode));
        EXPECT_EQ(extend(candidate), xcode == mate_attack ? 1 : 0) << xcode;
    }
}

TEST_F(Extensions, RecaptureNearTheEnemyKingIsExtended) {
    set("3q2k1/6p1/5n2/8/3R4/8/5QB1/K5NR b - - 0 1", {"d8d4"});
    eval();
    Move const recapture = move("f2d4");
    ASSERT_FALSE(recapture.check());
    // Far from the king nothing is added.
    ASSERT_FALSE(in_battlefield("d4"));
    EXPECT_EQ(extend(recapture), 0);

    set("3q2k1/6p1/5N2/8/8/8/5QB1/K5NR b - - 0 1", {"g7f6"});
    eval();
    ASSERT_TRUE(in_battlefield("f6"));
    EXPECT_EQ(extend("f2f6"), 1);
    // Any other capture or move gets nothing.
    EXPECT_EQ(extend("f2f5"), 0);
}

TEST_F(Extensions, RecaptureThatGivesASafeCheckIsExtendedByTwo) {
    set("3q2k1/5p2/6N1/8/8/8/6Q1/K5R1 b - - 0 1", {"f7g6"});
    eval();
    ASSERT_TRUE(in_battlefield("g6"));
    Move const recapture = move("g2g6");
    ASSERT_TRUE(recapture.check());
    ASSERT_GE(analysis_.see(recapture), 0);
    EXPECT_EQ(extend(recapture), 2);
    Move other = move("g2g3");
    EXPECT_EQ(extend(other), 0);
}

TEST_F(Extensions, RecaptureNeedsACaptureBeforeIt) {
    set("3q2k1/3n4/8/8/8/8/5QB1/K5NR b - - 0 1", {"d7f6"});
    eval();
    Move const capture = move("f2f6");
    ASSERT_FALSE(capture.check());
    ASSERT_TRUE(in_battlefield("f6"));
    EXPECT_EQ(extend(capture), 0);
    // At the start of a game there is no move to answer.
    set("3q2k1/8/5n2/8/8/8/5QB1/K5NR w - - 0 1");
    eval();
    EXPECT_EQ(extend("f2f6"), 0);
}

TEST_F(Extensions, BattlefieldIsThatOfTheLastEvaluation) {
    std::string const fen = "3q2k1/6p1/5N2/8/8/8/5QB1/K5NR b - - 0 1";
    set(fen, {"g7f6"});
    eval();
    EXPECT_EQ(extend("f2f6"), 1);
    // Another position is evaluated, its king far away; then the first comes back unevaluated.
    set("1k1q4/6p1/5N2/8/8/8/5QB1/K5NR b - - 0 1", {"g7f6"});
    eval();
    set(fen, {"g7f6"});
    EXPECT_EQ(extend("f2f6"), 0);
}

TEST_F(Extensions, PassedPawnIsExtendedInAnEndingOnly) {
    set("3r2k1/8/8/8/1P6/8/8/3R2K1 w - - 0 1");
    ASSERT_EQ(position_.nobelmen(), 1000);
    eval();
    ASSERT_TRUE(passed("b4"));
    EXPECT_EQ(extend("b4b5"), 1);
    EXPECT_EQ(extend("g1g2"), 0);
    // One step above in material.
    set("3r2k1/8/8/8/1P6/8/8/2BN2K1 w - - 0 1");
    ASSERT_EQ(position_.nobelmen(), 1100);
    eval();
    ASSERT_TRUE(passed("b4"));
    EXPECT_EQ(extend("b4b5"), 0);
    set("3r2k1/8/8/1p6/8/8/8/3R2K1 b - - 0 1");
    eval();
    ASSERT_TRUE(passed("b5"));
    EXPECT_EQ(extend("b5b4"), 1);
}

TEST_F(Extensions, OriginOfThePawnHasToBePassed) {
    std::string const fen = "6k1/8/8/8/1P6/8/8/6K1 w - - 0 1";
    set("6k1/8/8/1P6/8/8/8/6K1 w - - 0 1");
    eval();
    ASSERT_TRUE(passed("b5"));
    // Those passed pawns stay until the next evaluation: the pawn goes to the square of one.
    set(fen);
    EXPECT_EQ(extend("b4b5"), 0);
    eval();
    EXPECT_EQ(extend("b4b5"), 1);
}

TEST_F(Extensions, PassedPawnsAreThoseOfTheLastEvaluation) {
    std::string const fen = "6k1/8/8/8/1P6/8/8/6K1 w - - 0 1";
    set(fen);
    eval();
    EXPECT_EQ(extend("b4b5"), 1);
    set("6k1/8/1p6/8/1P6/8/8/6K1 w - - 0 1");
    eval();
    set(fen);
    EXPECT_EQ(extend("b4b5"), 0);
}

TEST_F(Extensions, StateComesBack) {
    set("3q2k1/8/8/8/8/8/8/K2QR3 w - - 0 1");
    ChessPosition const before = position_;
    for (Move const& candidate : moves()) {
        extend(candidate);
    }
    EXPECT_EQ(position_, before);
    EXPECT_TRUE(position_.board().consistent());
}

}  // namespace orvelin::test
