#include <cstdio>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "evaluation/evaluation.h"
#include "support/fresh_evaluation.h"
#include "support/positions.h"

namespace orvelin {
namespace {

using test::FreshEvaluation;

std::string expected_report(Evaluation const& evaluation) {
    std::string text;
    int total = 0;
    Weight const weight;
    for (std::size_t i = 0; i < term::count; ++i) {
        float const v = evaluation.variable_vector()[i];
        float const volatile mg = v * weight.mg[i];
        float const volatile eg = v * weight.eg[i];
        char line[128];
        std::snprintf(line, sizeof(line), "%-30s%20g     %20g\n", weight.names[i].c_str(),
                      static_cast<double>(mg), static_cast<double>(eg));
        text += line;
        float const volatile mg_part = mg * evaluation.mg_phase();
        float const volatile eg_part = eg * evaluation.eg_phase();
        float volatile sum = static_cast<float>(total) + mg_part;
        sum = sum + eg_part;
        total = static_cast<int>(sum);
    }
    double const bishops =
        static_cast<double>(evaluation.variable_vector()[term::opposite_colored_bishops]);
    return text + "\n\nTotal score: " + std::to_string(static_cast<int>(total / (bishops + 1.0))) +
           "     (white's point of view)\n";
}

TEST(EvaluationReportTest, ShowsEveryTermWithBothWeights) {
    for (char const* fen :
         {positions::start, positions::kiwipete, "4k3/2b2ppp/8/8/8/8/2B1PPPP/4K3 b - - 0 1"}) {
        FreshEvaluation at(fen);
        at.score();
        EXPECT_EQ(at.evaluation().report(), expected_report(at.evaluation())) << fen;
    }
}

TEST(EvaluationReportTest, ReadsLikeThis) {
    FreshEvaluation at("4k3/pppp4/8/8/8/8/PPPPP3/4K3 w - - 0 1");
    at.score();
    std::string const report = at.evaluation().report();
    EXPECT_EQ(report.substr(0, report.find('\n') + 1),
              "material                                   362.715                  298.548\n");
    EXPECT_NE(report.find("\nstm                                             14     "
                          "                  14\n\n\nTotal score: "),
              std::string::npos);
}

TEST(EvaluationReportTest, DoesNotEvaluate) {
    FreshEvaluation at("4k3/pppp4/8/8/8/8/PPPPP3/4K3 w - - 0 1");
    std::string const report = at.evaluation().report();
    EXPECT_EQ(at.evaluation().total_evals(), 0U);
    EXPECT_NE(report.find("Total score: 0     (white's point of view)\n"), std::string::npos);
}

TEST(EvaluationReportTest, BlanksDoNotAccumulate) {
    FreshEvaluation at(positions::start);
    at.score();
    std::string const first = at.evaluation().report();
    std::string const second = at.evaluation().report();
    EXPECT_EQ(second, first);
    std::istringstream lines(second);
    std::string line;
    for (std::size_t i = 0; i < term::count; ++i) {
        ASSERT_TRUE(std::getline(lines, line));
        EXPECT_EQ(line.size(), 75U);
    }
}

// A bare king ending is replaced by its function in the score, but not in the report.
TEST(EvaluationReportTest, ShowsNeitherEndgameNorSideToMove) {
    FreshEvaluation white("8/8/8/3k4/8/8/3PK3/8 w - - 0 1");
    FreshEvaluation black("8/8/8/3k4/8/8/3PK3/8 b - - 0 1");
    white.score();
    black.score();
    EXPECT_EQ(white.evaluation().report(), expected_report(white.evaluation()));
    EXPECT_EQ(black.evaluation().report(), expected_report(black.evaluation()));
}

TEST(EvaluationReportTest, StatsIsOneLine) {
    FreshEvaluation at(positions::start);
    EXPECT_EQ(at.evaluation().stats(),
              "Evaluation::stats)  missed pht reads: 0   total evals: 0\n");
    at.score();
    at.score();
    EXPECT_EQ(at.evaluation().stats(),
              "Evaluation::stats)  missed pht reads: 1   total evals: 2\n");
}

}  // namespace
}  // namespace orvelin
