#include "position/move_list.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <gtest/gtest.h>
#include <malloc.h>

namespace orvelin {
namespace {

Move numbered(int number) {
    return Move(Square(number & 63), Square(number >> 6), normal_move, Piece(4), Piece());
}

MoveList filled(int size) {
    MoveList list;
    for (int i = 0; i < size; ++i) {
        list[i] = numbered(i);
    }
    list.set_size(size);
    return list;
}

TEST(MoveList, OwningListStartsEmptyAndZeroed) {
    MoveList list;
    EXPECT_EQ(list.size(), 0U);
    EXPECT_EQ(list.begin(), list.end());
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(list[i].word(), 0U);
    }
}

TEST(MoveList, Holds256Moves) {
    const MoveList list = filled(256);
    EXPECT_EQ(list.size(), 256U);
    EXPECT_EQ(list[255], numbered(255));
    EXPECT_EQ(list.end() - list.begin(), 256);
    EXPECT_EQ(*(list.cend() - 1), numbered(255));
    EXPECT_EQ(*list.cbegin(), numbered(0));
}

TEST(MoveList, ClearLeavesTheArray) {
    MoveList list = filled(3);
    list.clear();
    EXPECT_EQ(list.size(), 0U);
    EXPECT_EQ(list[2], numbered(2));
}

TEST(MoveList, ListOverAnArrayWritesThereAndDoesNotFreeIt) {
    std::array<Move, 4> moves{};
    {
        MoveList list(moves.data());
        EXPECT_EQ(list.size(), 0U);
        list[1] = numbered(7);
        list.set_size(2);
        EXPECT_EQ(list.begin(), moves.data());
    }
    EXPECT_EQ(moves[1], numbered(7));
}

TEST(MoveList, CopyOfAListOverAnArrayOwnsItsMoves) {
    std::array<Move, 4> moves{};
    MoveList over(moves.data());
    over[0] = numbered(5);
    over.set_size(1);
    // A leak of the copy's array is what the address sanitizer builds look for.
    MoveList copy(over);
    EXPECT_NE(copy.begin(), moves.data());
    EXPECT_EQ(copy.size(), 1U);
    copy[200] = numbered(9);
    moves[0] = numbered(6);
    EXPECT_EQ(copy[0], numbered(5));
    EXPECT_EQ(copy[200], numbered(9));
}

TEST(MoveList, CopyHasRoomForAllMovesHoweverFewItCopies) {
    const std::size_t room = 256 * sizeof(Move);
    const MoveList empty;
    EXPECT_GE(malloc_usable_size(MoveList(empty).begin()), room);
    EXPECT_GE(malloc_usable_size(MoveList(filled(1)).begin()), room);
    std::array<Move, 4> moves{};
    const MoveList over(moves.data());
    EXPECT_GE(malloc_usable_size(MoveList(over).begin()), room);
}

TEST(MoveList, AssignmentCopiesIntoTheArrayThatIsThere) {
    std::array<Move, 4> moves{};
    MoveList over(moves.data());
    over = filled(3);
    EXPECT_EQ(over.size(), 3U);
    EXPECT_EQ(over.begin(), moves.data());
    EXPECT_EQ(moves[2], numbered(2));
    EXPECT_EQ(moves[3].word(), 0U);
}

TEST(MoveList, AssignmentLeavesTheOwnershipOfTheTarget) {
    std::array<Move, 4> moves{};
    MoveList over(moves.data());
    over[0] = numbered(1);
    over.set_size(1);
    MoveList owning = filled(2);
    Move* const array = owning.begin();
    owning = over;
    EXPECT_EQ(owning.begin(), array);
    EXPECT_EQ(owning.size(), 1U);
    moves[0] = numbered(8);
    EXPECT_EQ(owning[0], numbered(1));
    // Both destructors now run: only the owning list frees, and only its own array.
    over = owning;
    EXPECT_EQ(over.begin(), moves.data());
}

TEST(MoveList, AssignmentToItselfChangesNothing) {
    MoveList list = filled(2);
    MoveList const& same = list;
    list = same;
    EXPECT_EQ(list.size(), 2U);
    EXPECT_EQ(list[1], numbered(1));
}

TEST(MoveList, SortsAsAPlainRange) {
    MoveList list = filled(4);
    list[3].xcode(hashtable_move);
    std::sort(list.begin(), list.end());
    EXPECT_EQ(list[0], numbered(3));
}

}  // namespace
}  // namespace orvelin
