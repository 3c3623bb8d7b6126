#include "play/eval_text.h"

#include <gtest/gtest.h>
#include <string>

namespace orvelin::play::test {

namespace {

TEST(EvalText, RoundsUnderHeadings) {
    std::string const text = eval_text(
        "material                -12.3456     1.23e-07\nspace   -0.04   9.96\n\n\n"
        "Total score: 5     (white's point of view)\n");
    EXPECT_TRUE(
        text.starts_with("Term                            Middle game     End game\n"
                         "material                              -12.3          0.0\n"
                         "space                                   0.0         10.0\n"
                         "\n\nTotal score: 5     (white's point of view)\n"))
        << text;
    EXPECT_NE(text.find("unit"), std::string::npos);
}

}  // namespace

}  // namespace orvelin::play::test
