// Where records are written, and how an output is resumed.

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>

#include "analyse/csv_output.h"
#include "analyse/json_output.h"
#include "analyse/sqlite_output.h"
#include "support/file_size_limit.h"
#include "support/temporary_directory.h"
#include "tools/analyse_files.h"
#include "tools/analyse_records.h"

namespace orvelin::test::analysis {

namespace {

using tools::open_mode;

enum class output_kind { json, csv };

std::unique_ptr<tools::RecordOutput> open_output(output_kind kind, std::string const& name,
                                                 open_mode mode) {
    if (kind == output_kind::json) {
        return std::make_unique<tools::JsonOutput>(name, mode);
    }
    return std::make_unique<tools::CsvOutput>(name, mode);
}

void add(tools::RecordOutput& output, std::uint64_t first, std::uint64_t last) {
    for (std::uint64_t number = first; number <= last; ++number) {
        std::string text;
        output.render(full_record(number), text);
        output.write({{full_record(number), nullptr}}, text);
    }
}

class AnalyseTextOutput : public testing::TestWithParam<output_kind> {
 protected:
    std::unique_ptr<tools::RecordOutput> open(open_mode mode) {
        return open_output(GetParam(), name_, mode);
    }
    std::string written(std::uint64_t last) {
        std::string const name = directory_.file("whole");
        add(*open_output(GetParam(), name, open_mode::replace), 1, last);
        return bytes_of(name);
    }

    TemporaryDirectory directory_;
    std::string name_ = directory_.file("out");
};

}  // namespace

// Wherever a kill cuts the file.
TEST_P(AnalyseTextOutput, IsResumedAtAnyByteToWhatItWouldBe) {
    std::string const whole = written(4);
    std::string const three = written(3);
    for (std::size_t size = 0; size <= whole.size(); size += size % 211 == 0 ? 1 : 97) {
        put_bytes(name_, whole.substr(0, size));
        {
            auto const output = open(open_mode::resume);
            add(*output, output->last().number + 1, 4);
        }
        ASSERT_EQ(bytes_of(name_), whole) << size;
    }
    put_bytes(name_, three);
    auto const output = open(open_mode::resume);
    EXPECT_EQ(output->last().number, 3U);
    EXPECT_EQ(output->last().fen, full_record(3).fen);
    EXPECT_EQ(output->last().receipt, full_record(3).receipt);
}

TEST_P(AnalyseTextOutput, WhatIsThereIsNotWrittenAgain) {
    add(*open(open_mode::create), 1, 3);
    add(*open(open_mode::resume), 1, 5);
    EXPECT_EQ(bytes_of(name_), written(5));
}

TEST_P(AnalyseTextOutput, AFileThatIsThereIsNotTakenByMistake) {
    put_bytes(name_, "precious\n");
    EXPECT_NE(reason_from([&] { open(open_mode::create); }).find("is there already"),
              std::string::npos);
    EXPECT_NE(reason_from([&] { open(open_mode::resume); }).find("cannot resume"),
              std::string::npos);
    EXPECT_NE(reason_from([&] { open(open_mode::replace); }).find("cannot overwrite"),
              std::string::npos);
    EXPECT_EQ(bytes_of(name_), "precious\n");
    // Without the end of a line it is no record that was not written to its end.
    put_bytes(name_, "precious");
    EXPECT_NE(reason_from([&] { open(open_mode::resume); }).find("cannot resume"),
              std::string::npos);
    EXPECT_EQ(bytes_of(name_), "precious");
    for (std::string const& there : {written(3), written(1).substr(0, 5), std::string()}) {
        put_bytes(name_, there);
        add(*open(open_mode::replace), 1, 2);
        EXPECT_EQ(bytes_of(name_), written(2));
    }
}

TEST_P(AnalyseTextOutput, OnlyOneWritesAFileAtATime) {
    auto const first = open(open_mode::create);
    EXPECT_NE(reason_from([&] { open(open_mode::resume); }).find("another process"),
              std::string::npos);
    EXPECT_NE(reason_from([&] { open(open_mode::replace); }).find("another process"),
              std::string::npos);
}

TEST_P(AnalyseTextOutput, ARunThatIsTakenUpWaitsForTheEndOfTheLastOne) {
    auto last = open(open_mode::create);
    add(*last, 1, 2);
    std::thread ending([&last] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        last.reset();
    });
    EXPECT_EQ(reason_from([&] { open(open_mode::resume); }), "");
    ending.join();
}

TEST_P(AnalyseTextOutput, AFullDiskLeavesWholeRecords) {
    add(*open(open_mode::create), 1, 2);
    std::string const two = bytes_of(name_);
    {
        auto const output = open(open_mode::resume);
        FileSizeLimit const limit(two.size() + 100);
        EXPECT_NE(reason_from([&] { add(*output, 3, 3); }).find("cannot write"), std::string::npos);
    }
    EXPECT_EQ(bytes_of(name_), two);
}

INSTANTIATE_TEST_SUITE_P(AnalyseOutput, AnalyseTextOutput,
                         testing::Values(output_kind::json, output_kind::csv),
                         [](testing::TestParamInfo<output_kind> const& tested) {
                             return tested.param == output_kind::json ? "Json" : "Csv";
                         });

TEST(AnalyseOutput, TellsWhyAFileCannotBeWritten) {
    TemporaryDirectory const directory;
    auto const reason = [](std::string const& name, open_mode mode) {
        return reason_from([&] { tools::JsonOutput(name, mode); });
    };
    EXPECT_NE(reason(directory.file("no/such"), open_mode::create).find("No such file"),
              std::string::npos);
    EXPECT_NE(reason(directory.path(), open_mode::create).find("cannot write"), std::string::npos);
    EXPECT_NE(reason("/dev/null", open_mode::resume).find("not a file"), std::string::npos);
    EXPECT_EQ(reason("/dev/null", open_mode::create), "");
    put_bytes(directory.file("lines"), "{}\n");
    EXPECT_NE(reason(directory.file("lines"), open_mode::resume).find("not of this kind"),
              std::string::npos);
    put_bytes(directory.file("lines"), "{\"schema\":1}\n");
    EXPECT_NE(reason(directory.file("lines"), open_mode::resume).find("last line is no record"),
              std::string::npos);
}

TEST(AnalyseSqlite, HoldsAllThatARecordSays) {
    TemporaryDirectory const directory;
    std::string const name = directory.file("out.db");
    {
        tools::SqliteOutput output(name, open_mode::create);
        add(output, 1, 3);
        output.finish();
    }
    tools::Database database(name, 0);
    auto const number = [&database](std::string const& query) {
        tools::Statement statement(database, query);
        EXPECT_TRUE(statement.step()) << query;
        return statement.number(0);
    };
    EXPECT_EQ(number("SELECT count(*) FROM positions"), 3);
    EXPECT_EQ(number("SELECT count(*) FROM games"), 1);
    EXPECT_EQ(number("SELECT count(*) FROM lines WHERE position = 2"), 4);
    EXPECT_EQ(number("SELECT score FROM lines WHERE position = 2 AND line = 2"), 29990);
    EXPECT_EQ(number("SELECT mate FROM lines WHERE position = 2 AND line = 2"), 5);
    EXPECT_EQ(number("SELECT score FROM lines WHERE position = 2 AND line = -1"), -123);
    EXPECT_EQ(number("SELECT score FROM lines WHERE position = 2 AND line = -2"), -321);
    EXPECT_EQ(number("SELECT count(*) FROM terms WHERE position = 2"), 4);
    EXPECT_EQ(number("SELECT count(*) FROM receipt"), 1);
    analyse::Record const record = full_record(2);
    tools::Statement played(database,
                            "SELECT played, taken, mark, lost, accuracy, sentence FROM positions "
                            "WHERE number = 2");
    ASSERT_TRUE(played.step());
    EXPECT_EQ(played.text(0), "a1a2");
    EXPECT_EQ(played.text(1), "nb3");
    EXPECT_EQ(played.text(2), "?");
    EXPECT_EQ(played.real(3), 123.5);
    EXPECT_EQ(played.real(4), 59.9);
    EXPECT_EQ(played.text(5), record.played->judgement->sentence);
    tools::Statement terms(database, "SELECT * FROM terms WHERE position = 2 AND line = 0");
    ASSERT_TRUE(terms.step());
    ASSERT_EQ(terms.columns(), 2 + static_cast<int>(record.terms.size()));
    for (std::size_t i = 0; i < record.terms.size(); ++i) {
        EXPECT_EQ(static_cast<float>(terms.real(2 + static_cast<int>(i))), record.terms[i]) << i;
    }
    tools::Statement game(database, "SELECT file, white, event FROM games");
    ASSERT_TRUE(game.step());
    EXPECT_EQ(game.text(0), record.source.file);
    EXPECT_EQ(game.text(1), record.source.white);
    EXPECT_EQ(game.text(2), record.source.event);
}

TEST(AnalyseSqlite, IsResumedBehindTheLastTransaction) {
    TemporaryDirectory const directory;
    std::string const name = directory.file("out.db");
    {
        tools::SqliteOutput output(name, open_mode::create);
        add(output, 1, 3);
        output.finish();
    }
    {
        tools::SqliteOutput output(name, open_mode::resume);
        EXPECT_EQ(output.last().number, 3U);
        EXPECT_EQ(output.last().receipt, full_record(1).receipt);
        EXPECT_EQ(output.last().fen, full_record(3).fen);
        // Not finished: as if it were killed.
        add(output, 4, 5);
    }
    tools::SqliteOutput output(name, open_mode::resume);
    EXPECT_EQ(output.last().number, 3U);
    add(output, 1, 6);
    output.finish();
    tools::Database database(name, 0);
    tools::Statement count(database, "SELECT count(*), max(number) FROM positions");
    ASSERT_TRUE(count.step());
    EXPECT_EQ(count.number(0), 6);
    EXPECT_EQ(count.number(1), 6);
    tools::Statement games(database, "SELECT count(*) FROM games");
    ASSERT_TRUE(games.step());
    EXPECT_EQ(games.number(0), 1);
}

TEST(AnalyseSqlite, AFileThatIsThereIsNotTakenByMistake) {
    TemporaryDirectory const directory;
    std::string const name = directory.file("out.db");
    put_bytes(name, std::string(5000, 'x'));
    for (open_mode const mode : {open_mode::create, open_mode::resume, open_mode::replace}) {
        EXPECT_NE(reason_from([&] { tools::SqliteOutput(name, mode); }), "");
    }
    EXPECT_EQ(bytes_of(name), std::string(5000, 'x'));
    put_bytes(name, "");
    tools::SqliteOutput(name, open_mode::replace).finish();
    EXPECT_TRUE(bytes_of(name).starts_with("SQLite format 3"));
    tools::SqliteOutput(name, open_mode::replace).finish();
}

TEST(AnalyseSqlite, ACacheIsLeftAsItIs) {
    TemporaryDirectory const directory;
    std::string const name = directory.file("cache");
    tools::Database(name, 0).run("CREATE TABLE answers (key TEXT); INSERT INTO answers VALUES (1)");
    std::string const bytes = bytes_of(name);
    for (open_mode const mode : {open_mode::resume, open_mode::replace}) {
        EXPECT_NE(reason_from([&] { tools::SqliteOutput(name, mode); }).find("other tables"),
                  std::string::npos);
        EXPECT_EQ(bytes_of(name), bytes);
    }
}

}  // namespace orvelin::test::analysis
