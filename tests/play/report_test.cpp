#include "play/report.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "play/position_reader.h"
#include "play/win_chance.h"
#include "search/score.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

class ReportTest : public testing::Test {
 protected:
    ReportTest() : position_(orvelin::test::shared_tables()) { position_.newgame(); }

    Move move(std::string const& text) {
        return find_legal_move(position_, orvelin::test::shared_tables(), text);
    }

    ReportStyle engine_style() const {
        ReportStyle style;
        style.engine_units = true;
        return style;
    }

    SearchUse use_{9, 5000, milliseconds(20), 7};

 private:
    ChessPosition position_;
};

TEST_F(ReportTest, TellsTheScoreInBothUnits) {
    EXPECT_EQ(score_text(123, engine_style()), "score cp 123");
    EXPECT_EQ(score_text(-123, {}), "score cp " + std::to_string(to_centipawns(-123)));
    EXPECT_EQ(score_text(0, {}), "score cp 0");
}

TEST_F(ReportTest, TellsAMateInMoves) {
    EXPECT_EQ(score_text(mate_score - 1, {}), "score mate 1");
    EXPECT_EQ(score_text(mate_score - 2, {}), "score mate 1");
    EXPECT_EQ(score_text(mate_score - 3, {}), "score mate 2");
    EXPECT_EQ(score_text(-mate_score, {}), "score mate 0");
    EXPECT_EQ(score_text(2 - mate_score, {}), "score mate -1");
    EXPECT_EQ(score_text(4 - mate_score, {}), "score mate -2");
    EXPECT_EQ(score_text(min_mate_score, engine_style()), "score mate 51");
    EXPECT_EQ(score_text(max_ordinary_score, engine_style()), "score cp 29897");
}

TEST_F(ReportTest, TellsChancesWhenWanted) {
    ReportStyle style;
    style.show_wdl = true;
    EXPECT_EQ(score_text(mate_score - 1, style), "score mate 1 wdl 1000 0 0");
}

TEST_F(ReportTest, TellsADrawnGameWhateverTheSearchSays) {
    ReportStyle style = engine_style();
    style.drawn = true;
    EXPECT_EQ(score_text(500, style), "score cp 0");
    style.show_wdl = true;
    EXPECT_EQ(score_text(mate_score - 1, style), "score cp 0 wdl 0 1000 0");
    EXPECT_EQ(bound_text(3, 10, bound::lower, use_, style).find("bound"), std::string::npos);
}

TEST_F(ReportTest, TellsTheUseWithoutADivisionByZero) {
    EXPECT_EQ(use_text(use_), " nodes 5000 nps 250000 hashfull 7 time 20");
    EXPECT_EQ(use_text({0, 12, milliseconds(0), 0}), " nodes 12 nps 12000 hashfull 0 time 0");
}

TEST_F(ReportTest, NumbersSeveralLinesOnly) {
    ReportedLine const line{4, 50, {move("e2e4")}};
    ReportStyle style = engine_style();
    EXPECT_EQ(line_text(line, 0, use_, style),
              "info depth 4 seldepth 9 score cp 50 nodes 5000 nps 250000 hashfull 7 time 20 pv "
              "e2e4");
    style.lines = 2;
    EXPECT_EQ(line_text(line, 1, use_, style),
              "info depth 4 seldepth 9 multipv 2 score cp 50 nodes 5000 nps 250000 hashfull 7 "
              "time 20 pv e2e4");
}

TEST_F(ReportTest, NeverTellsLessThanTheDepthForTheDeepestLine) {
    ReportedLine const line{12, 50, {}};
    EXPECT_TRUE(line_text(line, 0, use_, {}).starts_with("info depth 12 seldepth 12 "));
}

TEST_F(ReportTest, NamesTheSideOfABound) {
    EXPECT_NE(bound_text(3, 10, bound::lower, use_, {}).find(" lowerbound nodes"),
              std::string::npos);
    EXPECT_NE(bound_text(3, 10, bound::upper, use_, {}).find(" upperbound nodes"),
              std::string::npos);
    ReportedLine const line{4, 50, {move("e2e4")}, bound::lower};
    EXPECT_NE(line_text(line, 0, use_, engine_style()).find(" cp 50 lowerbound nodes"),
              std::string::npos);
}

TEST_F(ReportTest, AnswersWithTheExpectedReply) {
    EXPECT_EQ(bestmove_text({}, false), "bestmove 0000");
    EXPECT_EQ(bestmove_text({move("e2e4")}, false), "bestmove e2e4");
    EXPECT_EQ(bestmove_text({move("e2e4"), move("d2d4")}, false), "bestmove e2e4 ponder d2d4");
}

}  // namespace

}  // namespace orvelin::play::test
