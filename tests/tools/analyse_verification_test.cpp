#include <gtest/gtest.h>
#include <string>

#include "analyse/record_reader.h"
#include "analyse/verification.h"
#include "tools/analyse_files.h"
#include "tools/analyse_records.h"

namespace orvelin::test::analysis {

namespace {

std::string replaced(std::string text, std::string const& from, std::string const& to) {
    std::size_t const at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

/// What PlainAnswerer says, as a line without its end.
std::string plain_line() {
    tools::Asked asked;
    asked.number = 2;
    asked.fen = CountingSource::fen(3);
    asked.source.file = "here";
    analyse::Record record = PlainAnswerer().answer(asked, tools::Request());
    std::string line = json_of(record);
    line.pop_back();
    return line;
}

std::optional<std::string> difference(std::string const& line) {
    return tools::Verification(std::make_unique<PlainAnswerer>()).difference(line);
}

std::string refusal(std::string const& line) {
    return reason_from([&line] { difference(line); });
}

}  // namespace

TEST(AnalyseVerification, FindsTheFirstDifference) {
    std::string const line = plain_line();
    EXPECT_EQ(difference(line), std::nullopt);
    EXPECT_EQ(difference(replaced(line, "\"depth\":9,\"score\"", "\"depth\":8,\"score\"")),
              "depth is 8, computed again it is 9");
    EXPECT_EQ(difference(replaced(line, "\"san\":\"Ka2 Kc2\"", "\"san\":\"Ka2 Kc3\"")),
              "lines[0].san is Ka2 Kc3, computed again it is Ka2 Kc2");
    EXPECT_EQ(difference(replaced(line, "\"mark\":\"?\"", "\"mark\":\"??\"")),
              "played.judgement.mark is ??, computed again it is ?");
    EXPECT_EQ(tools::first_difference("{\"b\":[1,2]}", "{\"a\":1,\"b\":[1,2]}"), "a is missing");
    EXPECT_EQ(tools::first_difference("{\"b\":[1,2]}", "{\"b\":[1,3]}"),
              "b[1] is 2, computed again it is 3");
    EXPECT_EQ(tools::first_difference("{\"b\":[1]}", "{\"b\":[1,3]}"),
              "b is 1 element, computed again it is 2 elements");
    EXPECT_EQ(difference(replaced(line, "\"nodes\":", "\"more\":1,\"nodes\":")),
              "more is not known");
    EXPECT_EQ(difference(replaced(line, "\"number\":2,", "\"number\": 2,")),
              "the fields are equal, but not written alike");
    // The last bit of a float.
    EXPECT_EQ(difference(replaced(line, "\"fading\":0.98", "\"fading\":0.98000005")),
              "lines[0].leaf.fading is 0.98000005, computed again it is 0.98");
}

TEST(AnalyseVerification, RefusesTheRecordsOfAnotherProgram) {
    std::string const line = plain_line();
    EXPECT_EQ(refusal(line), "");
    EXPECT_NE(refusal(replaced(line, "\"version\":\"", "\"version\":\"9")).find("version 9"),
              std::string::npos);
    EXPECT_NE(refusal(replaced(line, "\"signature\":\"", "\"signature\":\"9")).find("signature 9"),
              std::string::npos);
    EXPECT_NE(refusal(replaced(line, "\"schema\":1", "\"schema\":3")).find("schema 3"),
              std::string::npos);
    EXPECT_NE(refusal(replaced(line, "depth=10", "depth=101")).find("receipt.limit"),
              std::string::npos);
    EXPECT_NE(refusal(replaced(line, "\"lines\":1", "\"lines\":0")).find("receipt.lines"),
              std::string::npos);
    EXPECT_NE(refusal(replaced(line, "K1k5 w", "K1k5 x")).find("field fen"), std::string::npos);
    EXPECT_NE(refusal(replaced(line, "K1k5 w", "KK6 w")).find("field fen"), std::string::npos);
    EXPECT_NE(
        refusal(replaced(line, "\"taken\":\"nb3\"", "\"taken\":\"kb3\"")).find("played.taken"),
        std::string::npos);
    EXPECT_NE(refusal("").find("no JSON"), std::string::npos);
}

TEST(AnalyseVerification, ASampleHasItsShareOfTheRecords) {
    int taken = 0;
    for (std::uint64_t number = 1; number <= 100000; ++number) {
        taken += tools::in_sample(number, 0.01) ? 1 : 0;
        ASSERT_TRUE(tools::in_sample(number, 1.0));
        ASSERT_FALSE(tools::in_sample(number, 0.0));
        // A smaller sample is part of a larger one.
        ASSERT_LE(tools::in_sample(number, 0.01), tools::in_sample(number, 0.1));
    }
    EXPECT_GT(taken, 800);
    EXPECT_LT(taken, 1200);
}

}  // namespace orvelin::test::analysis
