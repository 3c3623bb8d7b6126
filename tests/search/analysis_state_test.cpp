// Limits, options and clearing of the search object.

#include <string>
#include <utility>

#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

constexpr std::uint64_t no_limit = std::uint64_t{1} << 62;

using AnalysisStateTest = AnalysisFixture;

}  // namespace

TEST_F(AnalysisStateTest, ResetLeavesTheNodeLimit) {
    set(start_fen);
    analysis_.set_depth(7);
    analysis_.set_nodes(1234);
    analysis_.set_movetime(5);
    analysis_.set_searchmoves({move("e2e4")});
    analysis_.reset();
    EXPECT_EQ(probe_.depth_limit(), 101);
    EXPECT_EQ(probe_.max_nodes(), 1234U);
    EXPECT_TRUE(probe_.searchmoves().empty());
    EXPECT_EQ(analysis_.time_manager().soft_budget(), TimeManager().soft_budget());
    analysis_.reset_max_nodes();
    EXPECT_EQ(probe_.max_nodes(), no_limit);
}

TEST_F(AnalysisStateTest, DepthAndMateWriteOneLimit) {
    analysis_.set_depth(12);
    EXPECT_EQ(probe_.depth_limit(), 12);
    analysis_.set_mate(4);
    EXPECT_EQ(probe_.depth_limit(), 4);
    analysis_.set_max_nodes(99);
    EXPECT_EQ(probe_.max_nodes(), 99U);
}

TEST_F(AnalysisStateTest, TimesGoToTheTimeManager) {
    set("7k/8/8/8/8/8/8/K2R4 b - - 0 1");
    TimeManager expected;
    expected.set_wtime(1000);
    expected.set_btime(90000);
    expected.set_winc(10);
    expected.set_binc(700);
    expected.set_white_to_move(false);
    expected.set_movestogo(12);
    analysis_.set_wtime(1000);
    analysis_.set_btime(90000);
    analysis_.set_winc(10);
    analysis_.set_binc(700);
    analysis_.set_movestogo(12);
    EXPECT_EQ(analysis_.time_manager().hard_limit(), expected.hard_limit());
    EXPECT_EQ(analysis_.time_manager().soft_budget(), expected.soft_budget());
    // A negative clock is sign-extended and becomes enormous.
    analysis_.set_btime(-1);
    expected.set_btime(~std::uint64_t{0});
    EXPECT_EQ(analysis_.time_manager().hard_limit(), expected.hard_limit());
    // The side comes from the position, a number below 1 means 30.
    position_.fen("7k/8/8/8/8/8/8/K2R4 w - - 0 1");
    analysis_.set_movestogo(0);
    expected.set_white_to_move(true);
    expected.set_movestogo(30);
    EXPECT_EQ(analysis_.time_manager().hard_limit(), expected.hard_limit());
}

TEST_F(AnalysisStateTest, MovetimeLagAndFlags) {
    set(start_fen);
    analysis_.set_movetime(0);
    EXPECT_EQ(analysis_.time_manager().soft_budget(), 1U);
    analysis_.set_movetime(1000);
    EXPECT_FALSE(analysis_.time_manager().time_to_move(799));
    EXPECT_TRUE(analysis_.time_manager().time_to_move(800));
    analysis_.set_lag(500);
    EXPECT_TRUE(analysis_.time_manager().time_to_move(500));
    analysis_.set_lag(200);
    analysis_.set_infinite(true);
    EXPECT_FALSE(analysis_.time_manager().time_to_move(5000));
    analysis_.set_infinite(false);
    analysis_.set_pondering(true);
    EXPECT_FALSE(analysis_.time_manager().time_to_move(5000));
    analysis_.ponderhit();
    EXPECT_TRUE(analysis_.time_manager().time_to_move(5000));
}

TEST_F(AnalysisStateTest, NumberOfLinesAndThreadsAreClamped) {
    for (auto const& [given, kept] :
         {std::pair{0U, 1}, {1U, 1}, {7U, 7}, {50U, 50}, {51U, 50}, {4000000000U, 50}}) {
        analysis_.set_multipv(given);
        EXPECT_EQ(probe_.number_of_lines(), kept) << given;
    }
    for (auto const& [given, kept] : {std::pair{0U, 1U}, {1U, 1U}, {2U, 2U}, {3U, 2U}}) {
        analysis_.set_max_threads(given);
        EXPECT_EQ(probe_.max_threads(), kept) << given;
    }
}

TEST_F(AnalysisStateTest, StrengthIsToldAsItWasSet) {
    analysis_.set_uci_elo(1650);
    analysis_.set_uci_limitstrength(true);
    EXPECT_TRUE(probe_.limit_strength());
    EXPECT_EQ(analysis_.elo(), 1650);
    EXPECT_EQ(analysis_.strength_depth(), 4);
    EXPECT_EQ(analysis_.strength_margin(), 140);
    analysis_.set_uci_limitstrength(false);
    EXPECT_FALSE(probe_.limit_strength());
    EXPECT_EQ(analysis_.strength_depth(), 102);
}

TEST_F(AnalysisStateTest, TableSizeAndSwitch) {
    set(start_fen);
    analysis_.set_hash_size(8);
    EXPECT_EQ(probe_.table().get_size(), 8);
    analysis_.hashtable_enabled(false);
    store(exact_value, 3, 17);
    analysis_.hashtable_enabled(true);
    EXPECT_EQ(record(), nullptr);
    analysis_.set_hash_size(6);
    EXPECT_EQ(probe_.table().get_size(), 4);
}

TEST_F(AnalysisStateTest, PlainSettersAndCounters) {
    analysis_.set_id(42);
    EXPECT_EQ(analysis_.get_id(), 42);
    analysis_.set_aspiration(false);
    EXPECT_FALSE(probe_.aspiration());
    analysis_.clear_node_count();
    analysis_.add_node_count(70);
    analysis_.add_node_count(7);
    EXPECT_EQ(node_count(), 77U);
    analysis_.clear_node_count();
    EXPECT_EQ(node_count(), 0U);
}

TEST_F(AnalysisStateTest, ClearEmptiesTablesAndNodeCount) {
    set(start_fen);
    Move const opening = move("e2e4");
    store(exact_value, 3, 17);
    probe_.history().increment(opening, 4);
    probe_.counter_moves().increment(opening, opening, 4);
    probe_.killers().set_killer(0, opening);
    analysis_.add_node_count(5);
    EXPECT_EQ(analysis_.historytable().value(opening), 16);
    EXPECT_EQ(analysis_.countermove().value(opening, opening), 16);
    analysis_.clear_eval();
    EXPECT_NE(record(), nullptr);
    analysis_.clear();
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(analysis_.historytable().value(opening), 0);
    EXPECT_EQ(analysis_.countermove().value(opening, opening), 0);
    EXPECT_EQ(probe_.killers().get_killerA(0), Move());
    EXPECT_EQ(node_count(), 0U);
}

TEST_F(AnalysisStateTest, ForgetLeavesTheStateOfANewObject) {
    set("4k3/8/8/3P4/8/8/8/4K3 w - - 0 1");
    Move const advance = move("d5d6");
    store(exact_value, 3, 17);
    probe_.history().increment(advance, 4);
    probe_.counter_moves().increment(advance, advance, 4);
    probe_.killers().set_killer(0, advance);
    probe_.table().set_threshold_buckets(5);
    probe_.date(7);
    analysis_.add_node_count(5);
    analysis_.static_eval();
    ASSERT_TRUE(analysis_.evaluation().passed_pawns());
    ASSERT_TRUE(analysis_.evaluation().mobility_maps().white_king_battlefield());
    analysis_.forget();
    EXPECT_EQ(record(), nullptr);
    EXPECT_EQ(analysis_.historytable().value(advance), 0);
    EXPECT_EQ(analysis_.countermove().value(advance, advance), 0);
    EXPECT_EQ(probe_.killers().get_killerA(0), Move());
    EXPECT_EQ(node_count(), 0U);
    EXPECT_EQ(probe_.date(), 0);
    EXPECT_EQ(probe_.table().threshold_buckets(), 0U);
    EXPECT_FALSE(analysis_.evaluation().passed_pawns());
    EXPECT_FALSE(analysis_.evaluation().mobility_maps().white_king_battlefield());
    EXPECT_EQ(analysis_.evaluation().mobility_maps().safe_mobility(), 0);
}

}  // namespace orvelin::test
