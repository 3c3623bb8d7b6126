#include <string>

#include "search/score.h"
#include "support/analysis_fixture.h"

namespace orvelin::test {

namespace {

/// More queens than chess allows: worth more than a mate. Nobody is in check.
std::string const queens =
    "kppppppp/pppppppp/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/KQQQQQQQ ";
std::string const winning = queens + "w - - 0 1";
std::string const losing = queens + "b - - 0 1";

constexpr int beyond_all = 1000000;

/// What each kind of node makes of an evaluation that says mate. None of them goes on.
class MateSizedEvaluation : public AnalysisFixture {
 protected:
    /// Sets up a node at ply 4.
    void set_node(std::string const& fen) {
        set(fen);
        probe_.ply(4);
    }
};

}  // namespace

TEST_F(MateSizedEvaluation, TheScalesMeet) {
    set(winning);
    EXPECT_GT(eval(), infinite_score);
    set(losing);
    EXPECT_LT(eval(), -infinite_score);
}

TEST_F(MateSizedEvaluation, IsReturnedAsItIsByANullWindowNode) {
    for (std::string const& fen : {winning, losing}) {
        set_node(fen);
        int const value = eval();
        int score = 0;
        EXPECT_EQ(nodes_of([&] { score = analysis_.nullwindow_search(3, 0, 1); }), 1U) << fen;
        EXPECT_EQ(score, value) << fen;
        EXPECT_EQ(record(), nullptr) << fen;
    }
}

TEST_F(MateSizedEvaluation, IsReturnedAsItIsByAnOpenWindowNode) {
    for (std::string const& fen : {winning, losing}) {
        set_node(fen);
        int const value = eval();
        PrincipalVariation line;
        int score = 0;
        EXPECT_EQ(nodes_of([&] { score = analysis_.pv_search(3, -100, 100, line); }), 1U) << fen;
        EXPECT_EQ(score, value) << fen;
        EXPECT_EQ(line.size(), 0) << fen;
        EXPECT_EQ(record(), nullptr) << fen;
    }
}

// As a real mate's it is told from the root on. The stop keeps the captures out.
TEST_F(MateSizedEvaluation, LosesThePlyInQuiescence) {
    set_node(winning);
    int const win = eval();
    analysis_.set_action(stop_action);
    EXPECT_EQ(analysis_.quiescence(-beyond_all, beyond_all, 0), win - 4);
    EXPECT_EQ(analysis_.quiescence(0, 1, 0), 1);

    set_node(losing);
    int const loss = eval();
    analysis_.set_action(stop_action);
    EXPECT_EQ(analysis_.quiescence(-beyond_all, beyond_all, 0), loss + 4);
    EXPECT_EQ(analysis_.quiescence(0, 1, 0), 0);
}

}  // namespace orvelin::test
