#include <string>
#include <vector>

#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

class Searchmoves : public AnalysisFixture {};

}  // namespace

TEST_F(Searchmoves, ClearTheTableAlsoWhenEmpty) {
    set(start_fen);
    store(exact_value, 3, 17);
    analysis_.set_searchmoves({move("e2e4"), move("d2d4")});
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(probe_.searchmoves().size(), 2U);
    store(exact_value, 3, 17);
    analysis_.set_searchmoves({});
    EXPECT_EQ(record(), nullptr);
    EXPECT_TRUE(probe_.searchmoves().empty());
}

TEST_F(Searchmoves, FilterInTheOrderOfTheList) {
    set(start_fen);
    analysis_.set_searchmoves({move("h2h4"), move("b1c3"), move("a2a3")});
    MoveList list = list_of({"b1a3", "b1c3", "a2a3", "a2a4", "h2h4"});
    list[1].xcode(killer);
    analysis_.select_searchmoves(list);
    EXPECT_EQ(texts_of(list), (texts_t{"b1c3", "a2a3", "h2h4"}));
    // The list's word is kept, with its class.
    EXPECT_EQ(list[0].xcode(), killer);
}

TEST_F(Searchmoves, MatchWhateverTheClass) {
    set(start_fen);
    Move wanted = move("a2a3");
    wanted.xcode(mate_attack);
    analysis_.set_searchmoves({wanted});
    MoveList list = list_of({"a2a4", "a2a3"});
    analysis_.select_searchmoves(list);
    ASSERT_EQ(texts_of(list), texts_t{"a2a3"});
    EXPECT_EQ(list[0].xcode(), xnormal_move);
}

TEST_F(Searchmoves, MoveEnteredTwiceComesOutTwice) {
    set(start_fen);
    analysis_.set_searchmoves({move("a2a3"), move("b1c3"), move("a2a3")});
    MoveList list = list_of({"b1c3", "a2a3"});
    analysis_.select_searchmoves(list);
    EXPECT_EQ(texts_of(list), (texts_t{"b1c3", "a2a3", "a2a3"}));
}

TEST_F(Searchmoves, WithoutAMatchEmptyTheList) {
    set(start_fen);
    analysis_.set_searchmoves({move("h2h4")});
    MoveList list = list_of({"b1c3", "a2a3"});
    analysis_.select_searchmoves(list);
    EXPECT_EQ(list.size(), 0U);
}

TEST_F(Searchmoves, BeyondTheListAreLeftOut) {
    set(start_fen);
    std::vector<Move> wanted(300, move("a2a3"));
    wanted.push_back(move("b1c3"));
    analysis_.set_searchmoves(wanted);
    MoveList list = list_of({"a2a3", "b1c3"});
    analysis_.select_searchmoves(list);
    ASSERT_EQ(list.size(), static_cast<std::size_t>(MoveList::capacity));
    for (Move const& chosen : list) {
        EXPECT_EQ(chosen, wanted.front());
    }
}

TEST_F(Searchmoves, DoNothingAwayFromTheRootOrWhenUnset) {
    set(start_fen);
    MoveList list = list_of({"b1c3", "a2a3"});
    analysis_.select_searchmoves(list);
    EXPECT_EQ(list.size(), 2U);
    analysis_.set_searchmoves({move("a2a3")});
    probe_.ply(1);
    analysis_.select_searchmoves(list);
    EXPECT_EQ(list.size(), 2U);
    probe_.ply(0);
    analysis_.select_searchmoves(list);
    EXPECT_EQ(list.size(), 1U);
    MoveList empty;
    analysis_.select_searchmoves(empty);
    EXPECT_EQ(empty.size(), 0U);
}

TEST_F(Searchmoves, RemoveClosesTheGapAndKeepsTheOrder) {
    set(start_fen);
    MoveList list = list_of({"b1c3", "a2a3", "h2h4", "a2a3", "g1f3"});
    Move wanted = move("a2a3");
    wanted.xcode(killer);
    analysis_.remove(wanted, list);
    EXPECT_EQ(texts_of(list), (texts_t{"b1c3", "h2h4", "a2a3", "g1f3"}));
    analysis_.remove(move("e2e4"), list);
    EXPECT_EQ(texts_of(list), (texts_t{"b1c3", "h2h4", "a2a3", "g1f3"}));
    analysis_.remove(move("g1f3"), list);
    analysis_.remove(move("b1c3"), list);
    EXPECT_EQ(texts_of(list), (texts_t{"h2h4", "a2a3"}));
    analysis_.remove(Move(), list);
    EXPECT_EQ(list.size(), 2U);
    MoveList empty;
    analysis_.remove(wanted, empty);
    EXPECT_EQ(empty.size(), 0U);
}

}  // namespace orvelin::test
