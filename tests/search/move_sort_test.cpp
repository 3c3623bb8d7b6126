#include "search/move_sort.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <utility>
#include <vector>

#include "position/move.h"
#include "position/move_list.h"
#include "position/square.h"

namespace orvelin::test {

namespace {

/// A list of moves that can be told apart, with the given classes.
std::vector<Move> moves_of(std::vector<int> const& classes) {
    std::vector<Move> moves;
    int number = 0;
    for (int const xcode : classes) {
        Move move(Square(number & 63), Square(number >> 6), normal_move, white_knight, no_piece);
        move.xcode(static_cast<xmove_t>(xcode));
        moves.push_back(move);
        ++number;
    }
    return moves;
}

/// The procedure in its plainest form: each place is compared with all places behind it, and
/// exchanged with each that has a lower class.
void exchange_sort(MoveList& list) {
    int const size = static_cast<int>(list.size());
    for (int i = 0; i < size; ++i) {
        for (int j = i + 1; j < size; ++j) {
            if (list[i].xcode() > list[j].xcode()) {
                std::swap(list[i], list[j]);
            }
        }
    }
}

std::vector<std::uint32_t> words_after(std::vector<Move> moves, void (*sort)(MoveList&)) {
    MoveList list(moves.data());
    list.set_size(static_cast<int>(moves.size()));
    sort(list);
    std::vector<std::uint32_t> words;
    for (Move const& move : list) {
        words.push_back(move.word());
    }
    return words;
}

}  // namespace

TEST(MoveSort, ExchangesAreNotStable) {
    std::vector<Move> const moves = moves_of({9, 9, 3});
    std::vector<std::uint32_t> const expected{moves[2].word(), moves[1].word(), moves[0].word()};
    EXPECT_EQ(words_after(moves, MoveSort::sort_by_class), expected);
    EXPECT_EQ(words_after(moves, exchange_sort), expected);
}

TEST(MoveSort, EmptyAndShortListsStay) {
    EXPECT_TRUE(words_after({}, MoveSort::sort_by_class).empty());
    std::vector<Move> const one = moves_of({11});
    EXPECT_EQ(words_after(one, MoveSort::sort_by_class), std::vector<std::uint32_t>{one[0].word()});
}

// 64 moves fill the masks to the last bit; longer lists go the plain way.
TEST(MoveSort, LeavesWhatTheExchangesLeaveForAnyLengthAndClasses) {
    std::mt19937 random(7);
    for (std::size_t length = 0; length <= 70; ++length) {
        for (int round = 0; round < 60; ++round) {
            std::vector<int> classes(length);
            std::uint64_t const kinds = 1U + random() % (no_xmove_t + 1U);
            for (int& xcode : classes) {
                xcode = static_cast<int>(random() % kinds);
            }
            std::vector<Move> const moves = moves_of(classes);
            ASSERT_EQ(words_after(moves, MoveSort::sort_by_class),
                      words_after(moves, exchange_sort))
                << "length " << length << " round " << round;
        }
    }
}

// The search wants the moves one by one and may end behind any of them.
TEST(MoveSort, EachPlaceHoldsItsLastMoveAsSoonAsItIsFilled) {
    std::mt19937 random(8);
    for (std::size_t const length : {2U, 30U, 64U, 65U, 70U}) {
        std::vector<int> classes(length);
        for (int& xcode : classes) {
            xcode = static_cast<int>(random() % (no_xmove_t + 1U));
        }
        std::vector<Move> moves = moves_of(classes);
        std::vector<std::uint32_t> const sorted = words_after(moves, exchange_sort);
        MoveList list(moves.data());
        list.set_size(static_cast<int>(length));
        MoveSort sort(list);
        for (std::size_t place = 0; place < length; ++place) {
            sort.fill(static_cast<int>(place));
            ASSERT_EQ(list[static_cast<int>(place)].word(), sorted[place]) << place;
        }
    }
}

}  // namespace orvelin::test
