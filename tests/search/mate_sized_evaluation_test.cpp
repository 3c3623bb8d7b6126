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

TEST_F(MateSizedEvaluation, BeginsBehind29898ForNodesAndBehind29897ForQuiescence) {
    struct row_t {
        char const* fen;
        int value;
        bool ends_node;
        int in_quiescence;
    };
    for (row_t const& row :
         {row_t{"kppppppp/ppppppp1/1N1Q3R/2Q5/7Q/QQQ5/1R2N3/Q1QQNQ1K w - - 0 1", 29897, false,
                29897},
          row_t{"kppppppp/ppppppp1/1N6/2RRR2R/1Q2QR2/3R3Q/1RQQ2Q1/2QQ3K w - - 0 1", 29898, false,
                29894},
          row_t{"kppppppp/ppppppp1/1QQ4Q/4QQ2/QN4Q1/3Q4/Q4QQ1/Q6K w - - 0 1", 29899, true, 29895},
          row_t{"kppppppp/ppppppp1/Q1Q1NQQQ/Q7/Q7/7N/N3Q1Q1/R1NQ2NK b - - 0 1", -29897, false,
                -29897},
          row_t{"kppppppp/ppppppp1/1Q2R2N/Q1R1Q2Q/6N1/Q4Q2/1QRQ1Q2/5Q1K b - - 0 1", -29898, false,
                -29894},
          row_t{"kppppppp/ppppppp1/Q7/Q3QQ2/6Q1/Q3NQQR/N2Q3Q/4Q2K b - - 0 1", -29899, true,
                -29895}}) {
        set_node(row.fen);
        ASSERT_EQ(eval(), row.value);
        PrincipalVariation line;
        EXPECT_EQ(
            nodes_of([&] { analysis_.pv_search(1, -infinite_score, infinite_score, line); }) == 1,
            row.ends_node)
            << row.value;
        set_node(row.fen);
        EXPECT_EQ(nodes_of([&] { analysis_.nullwindow_search(1, 20000, 20001); }) == 1,
                  row.ends_node)
            << row.value;
        set_node(row.fen);
        analysis_.set_action(stop_action);
        EXPECT_EQ(analysis_.quiescence(-beyond_all, beyond_all, 0), row.in_quiescence);
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
