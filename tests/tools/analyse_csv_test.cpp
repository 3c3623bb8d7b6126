// Records as rows of CSV.

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "analyse/csv_rows.h"
#include "analyse/record_csv.h"
#include "tools/analyse_records.h"

namespace orvelin::test::analysis {

namespace {

using fields_t = std::vector<std::string>;

fields_t header() {
    std::string text;
    analyse::append_csv_header(text);
    return tools::fields_of_row(text);
}

std::string field_of(analyse::Record const& record, std::string const& name) {
    std::string text;
    analyse::append_csv(text, record);
    fields_t const names = header();
    fields_t const fields = tools::fields_of_row(text);
    EXPECT_EQ(fields.size(), names.size());
    auto const found = std::find(names.begin(), names.end(), name);
    EXPECT_NE(found, names.end()) << name;
    return fields.at(static_cast<std::size_t>(found - names.begin()));
}

}  // namespace

TEST(AnalyseCsv, HasANamedColumnForEachField) {
    analyse::Record const record = full_record(5);
    EXPECT_EQ(field_of(record, "number"), "5");
    EXPECT_EQ(field_of(record, "file"), record.source.file);
    EXPECT_EQ(field_of(record, "event"), "Cup, 3rd");
    EXPECT_EQ(field_of(record, "fen"), record.fen);
    EXPECT_EQ(field_of(record, "score"), "-123");
    EXPECT_EQ(field_of(record, "mate"), "");
    EXPECT_EQ(field_of(record, "best"), "a1a2");
    EXPECT_EQ(field_of(record, "best_san"), "Ka2");
    EXPECT_EQ(field_of(record, "line_moves"), "a1a2 c1c2");
    EXPECT_EQ(field_of(record, "leaf_score"), "-124");
    EXPECT_EQ(field_of(record, "unexplained"), "");
    EXPECT_EQ(field_of(record, "played_san"), "Ka2");
    EXPECT_EQ(field_of(record, "taken"), "nb3");
    EXPECT_EQ(field_of(record, "played_score"), "-123");
    EXPECT_EQ(field_of(record, "rest"), "a1a2");
    EXPECT_EQ(field_of(record, "rest_san"), "Ka2");
    EXPECT_EQ(field_of(record, "rest_score"), "-321");
    EXPECT_EQ(field_of(record, "rest_asked"), "1");
    EXPECT_EQ(field_of(record, "mark"), "?");
    EXPECT_EQ(field_of(record, "lost"), "123.5");
    EXPECT_EQ(field_of(record, "accuracy"), "59.9");
    EXPECT_EQ(field_of(record, "sentence"), record.played->judgement->sentence);
    EXPECT_EQ(field_of(record, "played_asked"), "1");
    EXPECT_EQ(field_of(record, "limit"), "depth=9");
    EXPECT_EQ(field_of(record, "material"), "-0");
    EXPECT_EQ(field_of(record, "bishop_mobility"), "-3.4028235e+38");
    EXPECT_EQ(field_of(record, "stm"), "0.6903448");
}

TEST(AnalyseCsv, LeavesFieldsEmptyThatThereAreNot) {
    analyse::Record record = full_record(5);
    record.source.game = 0;
    record.lines.clear();
    record.played.reset();
    record.rest.reset();
    for (char const* const name :
         {"game", "ply", "best", "line_san", "leaf_fen", "leaf_score", "unexplained", "rest",
          "rest_san", "rest_score", "played", "taken", "played_score", "mark", "lost", "accuracy",
          "sentence"}) {
        EXPECT_EQ(field_of(record, name), "") << name;
    }
}

TEST(AnalyseCsv, RowsAreFoundWhateverStandsInTheirFields) {
    std::string const text = "a,\"b\r\n\"\"c\"\r\n1,2\r\n\"\",\"\"\"\"\r\nend";
    for (std::size_t const block : {1U, 2U, 5U, 100U}) {
        tools::CsvRows rows;
        fields_t found;
        for (std::size_t at = 0; at < text.size(); at += block) {
            rows.add(std::string_view(text).substr(at, block),
                     [&](std::uint64_t begin, std::uint64_t end) {
                         found.push_back(text.substr(begin, end - begin));
                     });
        }
        EXPECT_EQ(found, (fields_t{"a,\"b\r\n\"\"c\"\r\n", "1,2\r\n", "\"\",\"\"\"\"\r\n"}));
    }
    EXPECT_EQ(tools::fields_of_row("a,\"b\r\n\"\"c\"\r\n"), (fields_t{"a", "b\r\n\"c"}));
    EXPECT_EQ(tools::fields_of_row("\"\",\"\"\"\""), (fields_t{"", "\""}));
    EXPECT_EQ(tools::fields_of_row(""), fields_t{""});
}

}  // namespace orvelin::test::analysis
