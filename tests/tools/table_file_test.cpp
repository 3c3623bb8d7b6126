#include "tables/table_file.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>

#include "endgame/egt4_pieces.h"
#include "position/piece.h"
#include "support/file_size_limit.h"
#include "support/shared_tables.h"
#include "support/table_file_text.h"
#include "support/temporary_directory.h"

namespace orvelin::test {

namespace {

namespace fs = std::filesystem;

/// What a function throws; empty when it does not.
std::string fault_of(std::function<void()> const& function) {
    try {
        function();
    } catch (std::runtime_error const& error) {
        return error.what();
    }
    return "";
}

std::string mated_text() {
    return table_file_text("KRKN", [](unsigned int) { return 0; });
}

class TableFileTest : public testing::Test {
 protected:
    std::string write(std::string const& text) const {
        write_text(path_, text);
        return path_;
    }
    std::string load_fault() {
        return fault_of([&] { tools::load_table(path_, values_); });
    }
    std::ptrdiff_t files() const {
        return std::distance(fs::directory_iterator(directory_.path()), {});
    }

    TemporaryDirectory directory_;
    std::string path_ = directory_.file("table.txt");
    Egt4Pieces values_{shared_tables().attacks, white_rook, black_knight};
};

/// A change to the text of a whole file, and what is said about the file then.
struct damage_t {
    char const* name;
    std::function<void(std::string&)> apply;
    std::string fault;
};

void PrintTo(damage_t const& damage, std::ostream* stream) {
    *stream << damage.name;
}

/// Puts another word in the place of the number of key 2.
damage_t word_damage(char const* name, std::string const& word, std::string const& shown) {
    return {name, [word](std::string& text) { text.replace(text.find('\n') + 5, 1, word); },
            "damaged: \"" + shown + "\" at key 2 is no value of a table"};
}

damage_t first_word_damage(char const* name, std::string const& word, std::string const& fault) {
    return {name, [word](std::string& text) { text.replace(0, text.find('\n'), word); }, fault};
}

damage_t last_word_damage(char const* name, std::string const& word, std::string const& fault) {
    return {
        name,
        [word](std::string& text) { text.replace(text.rfind('\n') + 1, std::string::npos, word); },
        fault};
}

std::string const no_table =
    "no table file: it does not begin with \"begin{\" and the name of an ending";

class DamagedTableFileTest : public TableFileTest, public testing::WithParamInterface<damage_t> {};

}  // namespace

TEST_P(DamagedTableFileTest, IsRefusedAndChangesNothing) {
    std::string text = mated_text();
    GetParam().apply(text);
    write(text);
    EXPECT_EQ(load_fault(), path_ + ": " + GetParam().fault);
    EXPECT_EQ(values_.progress(), -1);
    EXPECT_EQ(values_[0], Egt4Pieces::unknown);
}

INSTANTIATE_TEST_SUITE_P(
    Damages, DamagedTableFileTest,
    testing::Values(
        damage_t{"empty", [](std::string& text) { text.clear(); }, no_table},
        damage_t{"only_the_first_word", [](std::string& text) { text.resize(text.find('\n')); },
                 "damaged: it ends before key 0"},
        damage_t{"truncated",
                 [](std::string& text) { text.resize(text.find('\n') + 1 + 33 * 1000); },
                 "damaged: it ends before key 16000"},
        first_word_damage("another_word", "KRKN", no_table),
        first_word_damage("a_word_like_begin", "begin", no_table),
        first_word_damage("an_open_name", "begin{KRKN", no_table),
        first_word_damage("an_unknown_ending", "begin{KRKP}",
                          "a table of the unknown ending \"KRKP\"; it must be KBNK, KQKR or KRKN"),
        first_word_damage("an_ending_in_small_letters", "begin{krkn}",
                          "a table of the unknown ending \"krkn\"; it must be KBNK, KQKR or KRKN"),
        first_word_damage("more_than_an_ending", "begin{KRKNKQKR}",
                          "a table of the unknown ending \"KRKNKQKR\"; it must be KBNK, KQKR or "
                          "KRKN"),
        word_damage("a_letter", "x", "x"), word_damage("a_number_and_a_letter", "1x", "1x"),
        word_damage("a_fraction", "1.5", "1.5"), word_damage("a_sign", "-1", "-1"),
        word_damage("a_plus", "+1", "+1"), word_damage("no_distance_of_white", "101", "101"),
        word_damage("no_distance_at_all", "127", "127"),
        word_damage("no_distance_of_black", "229", "229"), word_damage("252", "252", "252"),
        word_damage("not_yet_known", "255", "255"), word_damage("no_byte", "256", "256"),
        word_damage("more_than_an_int", "99999999999", "99999999999"),
        word_damage("more_than_any_number", "99999999999999999999999", "99999999999999999999..."),
        word_damage("no_text", "\x01\xff\x1b[0m", "???[0m"),
        word_damage("the_end_early", "end{KRKN}", "end{KRKN}"),
        last_word_damage("no_end", "", "damaged: \"\" stands behind the last key, not end{KRKN}"),
        last_word_damage("a_cut_end", "end{KR",
                         "damaged: \"end{KR\" stands behind the last key, not end{KRKN}"),
        last_word_damage("the_end_of_another", "end{KBNK}",
                         "damaged: \"end{KBNK}\" stands behind the last key, not end{KRKN}"),
        last_word_damage("a_key_too_many", "0 end{KRKN}",
                         "damaged: \"0\" stands behind the last key, not end{KRKN}"),
        last_word_damage("something_behind", "end{KRKN} \n x",
                         "damaged: something stands behind end{KRKN}")),
    [](auto const& damage) { return std::string(damage.param.name); });

TEST_F(TableFileTest, AWholeFileIsLoaded) {
    write(table_file_text("KRKN", [](unsigned int key) { return key == 3 ? 228 : 100; }));
    EXPECT_EQ(load_fault(), "");
    EXPECT_TRUE(values_.ready());
    EXPECT_EQ(values_[2], 100);
    EXPECT_EQ(values_[3], 228);
    EXPECT_EQ(values_[table_keys - 1], 100);
}

TEST_F(TableFileTest, BlanksOfOtherKindsDoNotMatter) {
    std::string text = mated_text();
    for (std::size_t at = text.find('\n'); at < 4000; at = text.find('\n', at + 3)) {
        text.replace(at, 1, "\r\n\t");
    }
    write("\n" + text + "\r\n");
    EXPECT_EQ(load_fault(), "");
    EXPECT_EQ(values_[table_keys - 1], 0);
}

TEST_F(TableFileTest, TheFirstWordTellsTheEnding) {
    EXPECT_STREQ(tools::ending_of_file(write("begin{KBNK}")).name, "KBNK");
    EXPECT_STREQ(tools::ending_of_file(write("begin{KQKR}\n254 ")).name, "KQKR");
    EXPECT_STREQ(tools::ending_of_file(write(" begin{KRKN} ?")).name, "KRKN");
    EXPECT_EQ(fault_of([&] { tools::ending_of_file(write(std::string(1000, 'b'))); }),
              path_ + ": " + no_table);
}

TEST_F(TableFileTest, ASourceIsAnEndingBeforeItIsAFile) {
    EXPECT_STREQ(tools::ending_of_source("kQkR").name, "KQKR");
    EXPECT_STREQ(tools::ending_of_source(write("begin{KRKN}")).name, "KRKN");
    std::string const missing = directory_.file("missing");
    EXPECT_EQ(fault_of([&] { tools::ending_of_source(missing); }),
              missing + " is neither a file nor KBNK, KQKR or KRKN");
}

TEST_F(TableFileTest, WhatIsNoRegularFileIsNotRead) {
    for (std::string const& path : {directory_.path().string(), std::string("/dev/zero")}) {
        EXPECT_EQ(fault_of([&] { tools::ending_of_file(path); }),
                  path + ": cannot be read: not a regular file");
        EXPECT_EQ(fault_of([&] { tools::load_table(path, values_); }),
                  path + ": cannot be read: not a regular file");
    }
}

TEST_F(TableFileTest, AMissingFileIsTold) {
    EXPECT_EQ(load_fault(), path_ + ": cannot be read: No such file or directory");
}

TEST_F(TableFileTest, AFileFarTooLargeIsRefused) {
    write("begin{KRKN}\n");
    fs::resize_file(path_, 70U << 20U);
    EXPECT_EQ(load_fault(), path_ + ": too large for a table file");
}

TEST_F(TableFileTest, SavesWhatItLoads) {
    std::string const text = mated_text();
    write(text);
    ASSERT_EQ(load_fault(), "");
    std::string const copy = directory_.file("copy.txt");
    tools::save_table(values_, copy);
    std::ifstream file(copy, std::ios::binary);
    EXPECT_TRUE(std::string(std::istreambuf_iterator<char>(file), {}) == text);
    EXPECT_EQ(files(), 2);
}

TEST_F(TableFileTest, ASaveThatFailsLeavesTheOldFile) {
    write("old");
    {
        FileSizeLimit const limit(100000);
        EXPECT_EQ(fault_of([&] { tools::save_table(values_, path_); }),
                  "cannot write " + path_ + ": the write failed");
    }
    EXPECT_EQ(files(), 1);
    std::ifstream file(path_);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "old");
}

TEST_F(TableFileTest, ASaveIntoAMissingFolderIsAFault) {
    std::string const target = directory_.file("missing/table.txt");
    EXPECT_EQ(fault_of([&] { tools::save_table(values_, target); }),
              "cannot write " + target + ": No such file or directory");
}

}  // namespace orvelin::test
