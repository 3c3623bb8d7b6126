// Tables that the tool builds itself, held against the recorded ones.

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "support/data_file.h"
#include "support/program.h"
#include "support/progress.h"
#include "support/session_reader.h"
#include "support/table_file_text.h"
#include "support/test_config.h"
#include "support/text_pattern.h"
#include "tables/ending.h"
#include "tables/ending_table.h"
#include "tables/words.h"
#include "tools/tables_tool.h"

namespace orvelin::test {

namespace {

using words_t = std::vector<std::string>;

/// A position and its value.
struct probe_t {
    std::string fen;
    int value;
};

/// What is recorded of the table of an ending.
struct record_t {
    std::vector<probe_t> probes;
    /// By byte.
    std::vector<unsigned int> counts = std::vector<unsigned int>(256);
};

record_t record_of(tools::ending_t const& ending) {
    std::string const command =
        "egt " + std::to_string(ending.piece1) + " " + std::to_string(ending.piece2);
    record_t record;
    for (session_t const& session : read_sessions("tables.txt")) {
        if (session.commands.at(0).text != command) {
            continue;
        }
        for (std::string const& line : session.commands[0].answer) {
            words_t const words = split_words(line);
            record.counts.at(std::stoul(words.at(1))) =
                static_cast<unsigned int>(std::stoul(words.at(2)));
        }
        for (std::size_t i = 1; i < session.commands.size(); ++i) {
            words_t const words = split_words(session.commands[i].text);
            words_t const answer = split_words(session.commands[i].answer.at(0));
            record.probes.push_back({join_words(words, 1), std::stoi(answer.at(1))});
        }
    }
    EXPECT_FALSE(record.probes.empty()) << command;
    return record;
}

/// The command that evaluates the positions of the record.
words_t eval_arguments(std::string const& source, record_t const& record) {
    words_t arguments{"eval", source};
    for (probe_t const& probe : record.probes) {
        arguments.push_back(probe.fen);
    }
    return arguments;
}

words_t value_lines(record_t const& record) {
    words_t lines;
    for (probe_t const& probe : record.probes) {
        lines.push_back(probe.fen + ": " + tools::value_text(probe.value) + ", value " +
                        std::to_string(probe.value));
    }
    return lines;
}

/// The printed distances are those of the record.
void expect_counts(words_t const& printed, record_t const& record) {
    std::size_t first = 0;
    std::size_t compared = 0;
    for (std::string const& line : printed) {
        if (line == "White wins") {
            first = 0;
        }
        if (line == "Black wins") {
            first = 128;
        }
        words_t const words = split_words(line);
        std::size_t byte = 256;
        if (line.starts_with("draws")) {
            byte = 253;
        }
        if (line.starts_with("illegal keys")) {
            byte = 254;
        }
        if (line.starts_with("  ")) {
            byte = first + std::stoul(words.at(0));
        }
        if (byte == 256) {
            continue;
        }
        unsigned long const sum = std::stoul(words.at(words.size() - 2)) + std::stoul(words.back());
        EXPECT_EQ(sum, record.counts.at(byte)) << line;
        ++compared;
    }
    EXPECT_EQ(compared, static_cast<std::size_t>(
                            std::count_if(record.counts.begin(), record.counts.end(),
                                          [](unsigned int count) { return count > 0; })));
}

class TablesToolBuildTest : public TablesToolTest {
 protected:
    /// Lets the tool tell files apart that are made from a right one of KRKN.
    void check_files(std::string const& good) const;
};

/// An ending whose build takes too long under sanitizers.
words_t unless_short(char const* ending) {
    return short_tests ? words_t{} : words_t{ending};
}

class TablesToolSourceTest : public TablesToolBuildTest,
                             public testing::WithParamInterface<std::string> {};

class TablesToolPassTest : public TablesToolBuildTest,
                           public testing::WithParamInterface<std::string> {};

void TablesToolBuildTest::check_files(std::string const& good) const {
    std::string text = content(good);
    std::string const wrong = path("wrong.txt");
    std::string const cut = path("cut.txt");
    tools::EndingTable const ending(*tools::find_ending("KRKN"));
    write_text(cut, text.substr(0, text.size() / 2));
    std::size_t const at = text.find(" 253 ") + 1;
    text.replace(at, 3, "100");
    write_text(wrong, text);
    unsigned int key = 0;
    for (std::size_t i = text.find('\n'); i < at; ++i) {
        key += text[i] == ' ' ? 1 : 0;
    }

    program_result_t const result = run({"check", good, wrong, cut, "krkn"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, good + ": right\nkrkn: right\n");
    std::string const difference = wrong + ": 1 key differs from the right table, the first at " +
                                   std::to_string(key) + ", " + ending.key_text(key) +
                                   ": 100 instead of 253\n";
    EXPECT_NE(result.errors.find(difference), std::string::npos) << result.errors;
    EXPECT_NE(result.errors.find(cut + ": damaged: it ends before key "), std::string::npos)
        << result.errors;
}

}  // namespace

TEST_F(TablesToolBuildTest, BuildsAFileThatHoldsTheRightTable) {
    tools::ending_t const& ending = *tools::find_ending("KRKN");
    std::string const file = path("krkn.txt");
    write_text(file, "old");
    std::string const built = output_of({"build", "krkn", "-o", file});
    EXPECT_TRUE(
        matches(built, "KRKN: built in \\d+\\.\\d s, written to " + file + " in \\d+\\.\\d s\n"))
        << built;
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory_.path()), {}), 1);

    record_t const record = record_of(ending);
    EXPECT_EQ(lines_of(output_of(eval_arguments(file, record))), value_lines(record));
    lines_t const stats = lines_of(output_of({"stats", file}));
    EXPECT_EQ(stats.at(0), "KRKN");
    expect_counts(stats, record);
    EXPECT_TRUE(stats.at(stats.size() - 2).starts_with("longest win of White: 40 moves (80 plies)"))
        << stats.at(stats.size() - 2);
    if (!short_tests) {
        check_files(file);
    }
}

TEST_P(TablesToolSourceTest, EvaluatesByATableThatItBuilds) {
    record_t record = record_of(*tools::find_ending(GetParam()));
    for (probe_t& probe : record.probes) {
        // The class reads a lone white rook as Black's, which the tool does not.
        std::size_t const rook = probe.fen.find('R');
        if (rook != std::string::npos && probe.fen.find('q') == std::string::npos) {
            probe.fen[rook] = 'r';
        }
    }
    record.probes.push_back({"8/8/3K4/8/3k4/8/8/2r5 w - - 0 1", -29978});
    record.probes.push_back({"8/8/3k4/8/3K4/8/8/2R5 b - - 0 1", 29978});
    record.probes.push_back({"8/8/8/8/2r5/8/8/K1k4Q b - - 0 1", 29930});
    record.probes.push_back({"8/8/8/8/2R5/8/8/k1K4q w - - 0 1", -29930});
    EXPECT_EQ(lines_of(output_of(eval_arguments(GetParam(), record))), value_lines(record));
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(TablesToolSourceTest);
INSTANTIATE_TEST_SUITE_P(Ending, TablesToolSourceTest, testing::ValuesIn(unless_short("KQKR")));

TEST_P(TablesToolPassTest, TellsEachPassOfABuild) {
    tools::EndingTable table(*tools::find_ending(GetParam()));
    std::ostringstream told;
    tools::Progress progress(told, {false, milliseconds(0), milliseconds(0)});
    table.build(progress);
    lines_t const lines = lines_of(told.str());
    ASSERT_EQ(lines.size(), 102U);
    EXPECT_EQ(lines[0], "KBNK: finding the mates, 0.0 s");
    EXPECT_TRUE(matches(lines[1], "KBNK: pass 1 of 101, \\d+\\.\\d s")) << lines[1];
    EXPECT_TRUE(matches(lines[101], "KBNK: pass 101 of 101, \\d+\\.\\d s")) << lines[101];

    std::string const file = path("kbnk.txt");
    table.save(file);
    record_t const record = record_of(table.ending());
    EXPECT_EQ(lines_of(output_of(eval_arguments(file, record))), value_lines(record));
    std::string const stats = output_of({"stats", file});
    expect_counts(lines_of(stats), record);
    EXPECT_NE(stats.find("longest win of White: 33 moves (66 plies)"), std::string::npos);
    EXPECT_NE(stats.find("longest win of Black: none"), std::string::npos);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(TablesToolPassTest);
INSTANTIATE_TEST_SUITE_P(Ending, TablesToolPassTest, testing::ValuesIn(unless_short("KBNK")));

}  // namespace orvelin::test
