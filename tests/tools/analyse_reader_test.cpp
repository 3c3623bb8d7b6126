// Records as lines of JSON, written and read back.

#include <bit>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "analyse/record_json.h"
#include "analyse/record_reader.h"
#include "tools/analyse_records.h"

namespace orvelin::test::analysis {

namespace {

std::string reason_of(std::string const& line) {
    try {
        tools::read_record(line);
    } catch (tools::RecordError const& error) {
        return error.what();
    }
    return "";
}

std::string replaced(std::string text, std::string const& from, std::string const& to) {
    std::size_t const at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

std::uint32_t bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

}  // namespace

TEST(AnalyseReader, ReadsBackWhatWasWrittenToTheLastBit) {
    analyse::Record const record = full_record(5);
    std::string const line = json_of(record);
    analyse::Record const read = tools::read_record(line);
    EXPECT_EQ(read, record);
    EXPECT_EQ(json_of(read), line);
    for (std::size_t i = 0; i < record.terms.size(); ++i) {
        EXPECT_EQ(bits(read.terms[i]), bits(record.terms[i])) << i;
    }
}

TEST(AnalyseReader, ReadsARecordWithoutGameLinesAndMove) {
    analyse::Record record;
    record.score.drawn = true;
    record.number = 1;
    record.source.file = "-";
    record.source.id = "first";
    record.fen = "x";
    record.receipt =
        analyse::receipt_of({analyse::Limit::kind::static_eval, 0}, 1, false, false, false);
    std::string const line = json_of(record);
    EXPECT_EQ(line.find("\"game\""), std::string::npos);
    EXPECT_EQ(tools::read_record(line), record);
}

TEST(AnalyseReader, ReadsAMoveThatIsForcedOrNotJudged) {
    analyse::Record record = full_record(1);
    record.played->taken.clear();
    record.played->judgement->accuracy.reset();
    EXPECT_NE(json_of(record).find("\"taken\":null"), std::string::npos);
    EXPECT_EQ(tools::read_record(json_of(record)), record);
    record.played->judgement.reset();
    EXPECT_NE(json_of(record).find("\"judgement\":null"), std::string::npos);
    EXPECT_EQ(tools::read_record(json_of(record)), record);
}

TEST(AnalyseReader, GivesAnyFloatBackBitForBit) {
    std::mt19937 random(1);
    analyse::Record record = full_record(1);
    for (int round = 0; round < 200; ++round) {
        for (float& term : record.terms) {
            do {
                term = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
            } while (term != term || term - term != 0.0F);
        }
        analyse::Record const read = tools::read_record(json_of(record));
        for (std::size_t i = 0; i < record.terms.size(); ++i) {
            ASSERT_EQ(bits(read.terms[i]), bits(record.terms[i]));
        }
    }
}

// The nearest double of this text lies in the middle of two floats, and would be rounded to the
// wrong one.
TEST(AnalyseReader, DoesNotRoundTwice) {
    analyse::Record const record = full_record(1);
    std::string const line = json_of(record);
    std::string const other =
        replaced(line, "\"fading\":0.98", "\"fading\":1.00000005960464477540");
    EXPECT_EQ(bits(tools::read_record(other).lines[0].leaf->fading), 0x3F800001U);
}

TEST(AnalyseReader, EscapesWhatJsonMustEscape) {
    std::string text;
    analyse::append_json_text(text, std::string("a\"\\\n\0\x1F\x7F/\xC3\xBC", 10));
    EXPECT_EQ(text, "\"a\\\"\\\\\\u000a\\u0000\\u001f\x7F/\xC3\xBC\"");
}

TEST(AnalyseReader, TellsWhatIsWrongAndWhere) {
    std::string const line = json_of(full_record(1));
    EXPECT_NE(reason_of("").find("no JSON at byte 1"), std::string::npos);
    EXPECT_NE(reason_of(line.substr(0, line.size() / 2)).find("no JSON"), std::string::npos);
    EXPECT_EQ(reason_of("[]"), "the line: an object is expected");
    EXPECT_EQ(reason_of("{}"), "no field schema");
    EXPECT_EQ(reason_of(replaced(line, "\"schema\":1", "\"schema\":2")),
              "schema 2; this program knows 1");
    EXPECT_EQ(reason_of(replaced(line, "\"depth\":9", "\"depth\":true")),
              "field depth: a number is expected");
    EXPECT_EQ(reason_of(replaced(line, "\"depth\":9", "\"depth\":99999999999")),
              "field depth: the number is too large");
    EXPECT_EQ(reason_of(replaced(line, "\"score\":-123", "\"score\":2000000000")),
              "field score: the number is too large");
    EXPECT_EQ(reason_of(replaced(line, "\"san\":\"Ka2 Kc2\"", "\"san\":null")),
              "field lines[0].san: a text is expected");
    EXPECT_EQ(reason_of(replaced(line, "\"chess960\":true", "\"chess960\":1")),
              "field chess960: true or false is expected");
    EXPECT_EQ(reason_of(replaced(line, "\"mark\":\"?\"", "\"mark\":\"!?\"")),
              "field played.judgement.mark: unknown mark");
    EXPECT_EQ(reason_of(replaced(line, "\"lost\":123.5", "\"lost\":\"much\"")),
              "field played.judgement.lost: a number is expected");
    EXPECT_EQ(reason_of(replaced(line, "\"terms\":[-0,", "\"terms\":[")), "not 47 terms but 46");
    EXPECT_EQ(reason_of(replaced(line, "\"receipt\":", "\"other\":")), "no field receipt");
}

TEST(AnalyseReader, TakesAnyDepthAndAnyBytes) {
    EXPECT_NE(reason_of(std::string(1000000, '[')), "");
    EXPECT_NE(reason_of(std::string("{\"schema\":\xFF\0}", 13)), "");
    std::string const line = json_of(full_record(1));
    for (std::size_t i = 0; i + 1 < line.size(); i += 7) {
        EXPECT_NE(reason_of(line.substr(0, i)), "") << i;
    }
}

TEST(AnalyseReader, FindsTheNumberOfALine) {
    EXPECT_EQ(tools::record_number(json_of(full_record(77))), 77U);
    EXPECT_EQ(tools::record_number("{\"schema\":1,\"number\":77"), 0U);
    EXPECT_EQ(tools::record_number("{\"schema\":1,\"number\":x,"), 0U);
    EXPECT_EQ(tools::record_number("{\"schema\":2,\"number\":77,"), 0U);
    EXPECT_EQ(tools::record_number(""), 0U);
}

}  // namespace orvelin::test::analysis
