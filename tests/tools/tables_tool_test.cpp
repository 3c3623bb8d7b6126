#include "tools/tables_tool.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "support/program.h"
#include "support/table_file_text.h"
#include "support/test_config.h"

namespace orvelin::test {

TEST_F(TablesToolTest, HelpNamesEveryCommandAndOption) {
    std::string const help = output_of({"--help"});
    for (char const* word : {"build", "eval", "stats", "check"}) {
        EXPECT_NE(help.find(word), std::string::npos) << word;
    }
    EXPECT_NE(output_of({"build", "--help"}).find("--output"), std::string::npos);
    EXPECT_NE(output_of({"eval", "--help"}).find("FEN"), std::string::npos);
    EXPECT_NE(output_of({"stats", "--help"}).find("--plot"), std::string::npos);
    EXPECT_NE(output_of({"check", "--help"}).find("KBNK, KQKR or KRKN"), std::string::npos);
}

TEST_F(TablesToolTest, RefusesBadUsage) {
    expect_error({}, 2, "orvelin-tables: A subcommand is required");
    expect_error({"burn"}, 2, "orvelin-tables: ");
    expect_error({"build"}, 2, "ENDING is required");
    expect_error({"build", "KRKN"}, 2, "--output is required");
    expect_error({"build", "KRKP", "-o", path("file")}, 2,
                 "orvelin-tables: unknown ending KRKP; it must be KBNK, KQKR or KRKN");
    expect_error({"eval", "KRKN"}, 2, "FEN is required");
    expect_error({"stats"}, 2, "SOURCE is required");
    expect_error({"check"}, 2, "SOURCE is required");
    // Found out before a build.
    expect_error({"eval", "KRKN", "8/8/8/8/8/8/8/K1k4Q b - - 0 1"}, 2,
                 "its pieces are not those of KRKN");
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

TEST_F(TablesToolTest, DoesNotBuildForATargetThatCannotBeWritten) {
    std::string const missing = path("missing/file");
    expect_error({"build", "KRKN", "-o", missing}, 1,
                 "orvelin-tables: cannot write " + missing + ": No such file or directory");
    expect_error({"build", "KRKN", "-o", directory_.path()}, 1, "not a regular file");
    expect_error({"build", "KRKN", "-o", "/proc/table"}, 1, "cannot write /proc/table: ");
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

TEST_F(TablesToolTest, RefusesFilesThatAreNoTables) {
    std::string const kings = "8/8/8/8/8/8/8/K1k5 b - - 0 1";
    expect_error({"eval", path("missing"), kings}, 1,
                 path("missing") + " is neither a file nor KBNK, KQKR or KRKN");
    expect_error({"stats", directory_.path()}, 1, "not a regular file");
    write_text(path("empty"), "");
    expect_error({"eval", path("empty"), kings}, 1,
                 "orvelin-tables: " + path("empty") + ": no table");
    write_text(path("short"), "begin{KRKN}\n254 254");
    for (lines_t const& arguments : {lines_t{"eval", path("short"), kings},
                                     {"stats", path("short")},
                                     {"check", path("short")}}) {
        expect_error(arguments, 1, path("short") + ": damaged: it ends before key 2");
    }
    // A faulty file does not hide the next one.
    expect_error({"check", path("empty"), path("missing")}, 1, path("missing"));
}

TEST_F(TablesToolTest, ALoadedFileKnowsTheMenOfItsEnding) {
    std::string const file = path("kbnk.txt");
    write_text(file, table_file_text("KBNK", [](unsigned int key) { return 6 + int(key & 1); }));
    EXPECT_EQ(output_of({"eval", file, "8/8/8/8/8/BN6/8/K1k5 b", "8/8/8/8/8/bn6/8/K1k5 b",
                         "8/8/8/8/8/b7/8/K1k5 w"}),
              "8/8/8/8/8/BN6/8/K1k5 b: White mates in 6 plies (3 moves), value 29994\n"
              "8/8/8/8/8/bn6/8/K1k5 b: Black mates in 7 plies (4 moves), value -29993\n"
              "8/8/8/8/8/b7/8/K1k5 w: Black mates in 6 plies (3 moves), value -29994\n");
    std::string const stats = output_of({"stats", file});
    EXPECT_NE(stats.find("longest win of White: 4 moves (7 plies), "), std::string::npos);
}

TEST_F(TablesToolTest, IllegalPositionsHaveNoWinnerWhateverTheColours) {
    std::string const file = path("krkn.txt");
    write_text(file, table_file_text("KRKN", [](unsigned int key) { return (key & 1) ? 254 : 0; }));
    EXPECT_EQ(output_of({"eval", file, "8/8/8/8/8/R7/8/K1k5 w", "8/8/8/8/8/r7/8/K1k5 b",
                         "8/8/8/8/8/R7/8/K1k5 b", "8/8/8/8/8/r7/8/K1k5 w"}),
              "8/8/8/8/8/R7/8/K1k5 w: illegal position, value 254\n"
              "8/8/8/8/8/r7/8/K1k5 b: illegal position, value 254\n"
              "8/8/8/8/8/R7/8/K1k5 b: Black is mated, value 30000\n"
              "8/8/8/8/8/r7/8/K1k5 w: White is mated, value -30000\n");
}

TEST_F(TablesToolTest, PlotsAsWideAsTheTerminal) {
    std::string const file = path("krkn.txt");
    write_text(file, table_file_text("KRKN", [](unsigned int key) { return int(key % 50); }));
    program_result_t const result =
        run_program("/usr/bin/env", {"COLUMNS=66", tables_binary, "stats", file, "--plot"});
    EXPECT_EQ(result.status, 0) << result.errors;
    std::size_t longest = 0;
    for (std::string const& line : lines_of(result.output)) {
        if (line.ends_with('#')) {
            longest = std::max(longest, line.size());
        }
    }
    EXPECT_EQ(longest, 66U);
    EXPECT_EQ(output_of({"stats", file}).find('#'), std::string::npos);
}

}  // namespace orvelin::test
