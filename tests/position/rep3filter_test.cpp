#include "position/rep3filter.h"

#include <gtest/gtest.h>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

const std::string no_verdict = "*";
const std::string draw_verdict = "1/2-1/2 {Draw by threefold repetition}";

Move quiet_move() {
    return Move(Square("g1"), Square("f3"), normal_move, Piece(2), Piece());
}

Move pawn_move() {
    return Move(Square("e2"), Square("e4"), normal_move, Piece(1), Piece());
}

Move black_pawn_move() {
    return Move(Square("e7"), Square("e5"), normal_move, Piece(9), Piece());
}

Move capture() {
    return Move(Square("f3"), Square("e5"), normal_move, Piece(2), Piece(9));
}

Rep3filter record_of(std::initializer_list<std::uint64_t> keys) {
    Rep3filter filter;
    for (const std::uint64_t key : keys) {
        filter.add(quiet_move(), key);
    }
    return filter;
}

TEST(Rep3filter, StartsEmptyWithoutRepetition) {
    const Rep3filter filter;
    EXPECT_FALSE(filter.repetition());
    EXPECT_EQ(filter.result(), no_verdict);
    EXPECT_TRUE(filter == Rep3filter());
}

TEST(Rep3filter, InitKeepsOneKeyOnly) {
    Rep3filter filter = record_of({5, 6, 7});
    filter.init(9);
    EXPECT_TRUE(filter == record_of({9}));
}

TEST(Rep3filter, OneEntryIsNoRepetition) {
    EXPECT_FALSE(record_of({5}).repetition());
}

TEST(Rep3filter, OneEarlierOccurrenceIsARepetition) {
    EXPECT_TRUE(record_of({5, 6, 7, 5}).repetition());
    EXPECT_FALSE(record_of({5, 6, 7, 8}).repetition());
}

TEST(Rep3filter, LooksAtEveryEarlierEntry) {
    EXPECT_TRUE(record_of({5, 5}).repetition());
    EXPECT_TRUE(record_of({5, 6, 7, 6}).repetition());
}

TEST(Rep3filter, KeysBeforeAPawnMoveAreOutOfReach) {
    for (Move const& irreversible : {pawn_move(), black_pawn_move(), capture()}) {
        Rep3filter filter = record_of({5, 6});
        filter.add(irreversible, 7);
        filter.add(quiet_move(), 5);
        EXPECT_FALSE(filter.repetition());
        filter.add(quiet_move(), 7);
        EXPECT_TRUE(filter.repetition());
    }
}

TEST(Rep3filter, WallBelowTheTopGivesFalseAtOnce) {
    Rep3filter filter = record_of({5, 6});
    filter.add(pawn_move(), 6);
    EXPECT_FALSE(filter.repetition());
}

TEST(Rep3filter, NullMoveCountsAsReversible) {
    Rep3filter filter = record_of({5});
    filter.add(Move(), 6);
    filter.add(Move(), 5);
    EXPECT_TRUE(filter.repetition());
}

TEST(Rep3filter, RemoveUndoesACapture) {
    Rep3filter filter = record_of({5, 6});
    filter.add(capture(), 7);
    EXPECT_TRUE(filter == [] {
        Rep3filter expected = record_of({5, 6});
        expected.add(quiet_move(), 0);
        expected.add(quiet_move(), 7);
        return expected;
    }());
    filter.remove();
    EXPECT_TRUE(filter == record_of({5, 6}));
}

TEST(Rep3filter, RemoveUndoesAQuietMoveOnly) {
    Rep3filter filter = record_of({5});
    filter.add(pawn_move(), 6);
    const Rep3filter before = filter;
    filter.add(quiet_move(), 7);
    EXPECT_TRUE(filter != before);
    filter.remove();
    EXPECT_TRUE(filter == before);
}

TEST(Rep3filter, RemoveOfTheOnlyEntryEmptiesTheRecord) {
    Rep3filter filter = record_of({5});
    filter.remove();
    EXPECT_TRUE(filter == Rep3filter());
    EXPECT_FALSE(filter.repetition());
    EXPECT_EQ(filter.result(), no_verdict);
    filter.remove();
    EXPECT_TRUE(filter == Rep3filter());
}

TEST(Rep3filter, AddOfACaptureOnAnEmptyRecordIsUndone) {
    Rep3filter filter;
    filter.add(capture(), 7);
    EXPECT_TRUE(filter == record_of({0, 7}));
    filter.remove();
    EXPECT_TRUE(filter == Rep3filter());
}

TEST(Rep3filter, ResultNeedsThreeOccurrences) {
    EXPECT_EQ(record_of({5, 6, 5}).result(), no_verdict);
    EXPECT_EQ(record_of({5, 6, 5, 7, 5}).result(), draw_verdict);
}

TEST(Rep3filter, ResultCountsTheEntryUnderTheTopToo) {
    EXPECT_EQ(record_of({5, 6, 5, 7, 5, 8}).result(), draw_verdict);
    EXPECT_EQ(record_of({5, 6, 5, 7, 5, 8, 9}).result(), no_verdict);
}

TEST(Rep3filter, ResultNeedsThreeEntries) {
    EXPECT_EQ(record_of({5, 5}).result(), no_verdict);
    EXPECT_EQ(record_of({5, 5, 5}).result(), draw_verdict);
}

TEST(Rep3filter, ResultCountsKeysBeforeAWall) {
    Rep3filter filter = record_of({5, 6, 5});
    filter.add(pawn_move(), 7);
    filter.add(quiet_move(), 5);
    EXPECT_EQ(filter.result(), draw_verdict);
}

TEST(Rep3filter, ResultDoesNotCountWalls) {
    Rep3filter filter = record_of({5});
    filter.add(pawn_move(), 6);
    filter.add(pawn_move(), 7);
    filter.add(pawn_move(), 8);
    EXPECT_EQ(filter.result(), no_verdict);
}

TEST(Rep3filter, ComparesElementByElement) {
    EXPECT_TRUE(record_of({5, 6}) == record_of({5, 6}));
    EXPECT_TRUE(record_of({5, 6}) != record_of({6, 5}));
    EXPECT_TRUE(record_of({5, 6}) != record_of({5}));
}

class DrawRules : public ::testing::Test {
 protected:
    ChessPosition position{test::shared_tables()};
};

TEST_F(DrawRules, TwoNullMovesRepeatThePosition) {
    position.newgame();
    position.make_move(Move());
    EXPECT_FALSE(position.draw_by_threefold_repetition());
    position.make_move(Move());
    EXPECT_TRUE(position.draw_by_threefold_repetition());
    EXPECT_EQ(position.repetition_filter().repetition(), true);
}

TEST_F(DrawRules, TwoNullMovesFromAPositionWithEnPassantDoNot) {
    position.fen("4k3/8/8/8/4pP2/8/8/4K3 b - f3 0 1");
    position.make_move(Move());
    position.make_move(Move());
    EXPECT_FALSE(position.draw_by_threefold_repetition());
}

TEST_F(DrawRules, KnightsOutAndBackRepeatAtTheFirstRecurrence) {
    position.newgame();
    for (char const* text : {"g1f3", "g8f6", "f3g1", "f6g8"}) {
        EXPECT_FALSE(position.draw_by_threefold_repetition());
        position.make_move(position.convert_to_move(std::string(text)));
    }
    EXPECT_TRUE(position.draw_by_threefold_repetition());
    EXPECT_EQ(position.repetition_filter().result(), no_verdict);
}

TEST_F(DrawRules, FiftyMoveRuleStartsAtOneHundredHalfMoves) {
    position.fen("4k3/8/8/8/8/8/8/R3K3 w - - 99 80");
    EXPECT_FALSE(position.draw_by_fifty_move_rule());
    position.make_move(position.convert_to_move("a1a2"));
    EXPECT_EQ(position.get_dfz(), 100);
    EXPECT_TRUE(position.draw_by_fifty_move_rule());
}

TEST_F(DrawRules, FenAndClearStartANewRecord) {
    position.newgame();
    position.make_move(position.convert_to_move("g1f3"));
    position.fen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    Rep3filter expected;
    expected.init(position.get_hash());
    EXPECT_TRUE(position.repetition_filter() == expected);
    position.clear();
    expected.init(position.get_hash());
    EXPECT_TRUE(position.repetition_filter() == expected);
}

}  // namespace
}  // namespace orvelin
