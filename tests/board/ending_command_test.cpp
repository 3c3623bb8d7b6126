#include <gtest/gtest.h>
#include <string>

#include "board/board_fixture.h"
#include "board/ending_tables.h"
#include "generation/tables.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

namespace orvelin::board::test {
namespace {

std::string name_of(std::string const& fen) {
    auto const found = EndingTables::find(fen);
    return found ? analyse::endings[*found].name : "";
}

TEST(BoardEnding, WhichTableKnowsAPosition) {
    EXPECT_EQ(name_of("8/8/8/8/8/2k5/8/KBN5 w - - 0 1"), "KBNK");
    EXPECT_EQ(name_of("8/8/8/8/8/2K5/8/kbn5 w - - 0 1"), "KBNK");
    EXPECT_EQ(name_of("8/8/8/8/8/2k5/4r3/KQ6 w - - 0 1"), "KQKR");
    EXPECT_EQ(name_of("8/8/8/8/8/2k5/4n3/KR6 b - - 3 9"), "KRKN");
    // Fewer pieces, in either colour.
    EXPECT_EQ(name_of("8/8/8/8/8/2k5/8/KQ6 w - - 0 1"), "KQKR");
    EXPECT_EQ(name_of("8/8/8/8/8/2k5/4q3/K7 w - - 0 1"), "KQKR");
    EXPECT_EQ(name_of("8/8/8/8/8/2k5/4r3/K7 w - - 0 1"), "KQKR");
    EXPECT_EQ(name_of(positions::white_short_castling), "");
    EXPECT_EQ(name_of("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"), "");
    EXPECT_EQ(name_of("8/8/8/8/8/2k2r2/4r3/KQ6 w - - 0 1"), "");
    EXPECT_EQ(name_of(positions::start), "");
    EXPECT_TRUE(ask("'ask':'ending'").is_null("ending"));
}

TEST(BoardEnding, ATableIsBuiltStepByStep) {
    BoardCore core;
    std::string const request = R"({"ask":"ending","start":"8/8/8/8/8/2k5/4n3/KR6 w - - 0 1"})";
    double before = 0;
    for (int step = 0; step < 3; ++step) {
        Answer const ending = Answer(core.answer(request)).part("ending");
        EXPECT_EQ(ending.text("name"), "KRKN");
        EXPECT_TRUE(ending.is_null("result"));
        EXPECT_GT(ending.real("progress"), before);
        EXPECT_LT(ending.real("progress"), 0.1);
        before = ending.real("progress");
    }
}

/// Under the sanitizers a whole table would take too long: there it is begun.
TEST(BoardEnding, AWholeTableTellsTheWay) {
    constexpr int most_steps = orvelin::test::short_tests ? 1 : 200;
    BoardCore core;
    // White mates in one, and Black has nothing better than the longest way.
    std::string const winning = R"({"ask":"ending","start":"4k3/8/4K3/8/8/8/n7/7R w - - 0 1"})";
    Answer ending = Answer(core.answer(winning)).part("ending");
    for (int step = 0; step < most_steps && ending.real("progress") < 1; ++step) {
        ending = Answer(core.answer(winning)).part("ending");
    }
    if (orvelin::test::short_tests) {
        EXPECT_LT(ending.real("progress"), 1);
        return;
    }
    ASSERT_EQ(ending.real("progress"), 1);
    EXPECT_EQ(ending.text("result"), "1-0");
    EXPECT_EQ(ending.number("plies"), 1);
    ASSERT_GT(ending.size("moves"), 10U);
    EXPECT_EQ(ending.element("moves", 0).text("san"), "Rh8#");
    EXPECT_EQ(ending.element("moves", 0).text("result"), "1-0");
    EXPECT_EQ(ending.element("moves", 0).number("plies"), 0);
    // The same with the colours exchanged.
    Answer const black =
        Answer(core.answer(R"({"ask":"ending","start":"7r/N7/8/8/8/4k3/8/4K3 b - - 0 1"})"))
            .part("ending");
    EXPECT_EQ(black.text("result"), "0-1");
    EXPECT_EQ(black.element("moves", 0).text("san"), "Rh1#");
    // The knight takes the rook: bare kings and a knight are a draw, which is the best move.
    Answer const drawn =
        Answer(core.answer(R"({"ask":"ending","start":"8/8/8/8/5k2/8/4n3/K1R5 b - - 0 1"})"))
            .part("ending");
    EXPECT_EQ(drawn.text("result"), "1/2-1/2");
    EXPECT_TRUE(drawn.is_null("plies"));
    EXPECT_EQ(drawn.element("moves", 0).text("result"), "1/2-1/2");
}

}  // namespace
}  // namespace orvelin::board::test
