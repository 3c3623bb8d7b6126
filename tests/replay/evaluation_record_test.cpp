#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "evaluation/evaluation.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "support/position_record.h"
#include "support/shared_tables.h"

namespace orvelin::test {

namespace {

std::string float_text(float value) {
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.9g", static_cast<double>(value));
    return buffer.data();
}

class EvaluationRecords : public testing::TestWithParam<char const*> {
 protected:
    /// Evaluates each position of the file with a new evaluation, because the last pawn
    /// structure seen has an effect, and compares one line of its record.
    template <typename Text>
    void compare(std::string const& line, Text text_of) {
        Tables& tables = shared_tables();
        ChessPosition position(tables);
        for (PositionRecord const& record : read_position_records(GetParam())) {
            position.fen(record.fen());
            Evaluation evaluation(position, tables);
            int const score = evaluation.static_eval();
            EXPECT_EQ(text_of(evaluation, score), record.value(line)) << record.fen();
        }
    }
};

TEST_P(EvaluationRecords, TermsToTheLastDigit) {
    compare("terms", [](Evaluation const& evaluation, int) {
        std::string text;
        for (const float term : evaluation.variable_vector()) {
            if (!text.empty()) {
                text += ' ';
            }
            text += float_text(term);
        }
        return text;
    });
}

TEST_P(EvaluationRecords, Phase) {
    compare("phase", [](Evaluation const& evaluation, int) {
        return float_text(evaluation.mg_phase()) + ' ' + float_text(evaluation.eg_phase());
    });
}

TEST_P(EvaluationRecords, Score) {
    compare("score", [](Evaluation const&, int score) { return std::to_string(score); });
}

INSTANTIATE_TEST_SUITE_P(replay, EvaluationRecords, testing::Values("positions.txt", "endings.txt"),
                         [](testing::TestParamInfo<char const*> const& file) {
                             return std::string(file.param, std::string(file.param).find('.'));
                         });

}  // namespace

}  // namespace orvelin::test
