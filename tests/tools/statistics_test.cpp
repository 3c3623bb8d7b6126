#include "tables/statistics.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "support/table_file_text.h"
#include "support/temporary_directory.h"
#include "tables/ending.h"
#include "tables/ending_table.h"

namespace orvelin::test {

namespace {

/// The first key with the kings on a1 and h8, White to move, and no pieces.
constexpr unsigned int bare_kings = 1U | 63U << 1U | 63U << 7U | 63U << 13U;

/// A made-up table with few values and one won position that is a position at all.
int made_up_byte(unsigned int key) {
    if (key < 300) {
        return 3;
    }
    if (key < 304) {
        return 130;
    }
    if (key == 304) {
        return 0;
    }
    if (key < 310) {
        return 253;
    }
    return key == bare_kings ? 5 : 254;
}

std::string const distances =
    "plies to mate   White to move Black to move\n"
    "White wins\n"
    "  0                         0             1\n"
    "  3                       150           150\n"
    "  5                         1             0\n"
    "Black wins\n"
    "  2                         2             2\n"
    "draws                       3             2\n"
    "illegal keys          2621284       2621285\n";

std::string const histogram =
    "\n"
    "White wins, by moves to mate\n"
    "    0        1 #\n"
    "    1        0\n"
    "    2      300 #########################\n"
    "    3        1 #\n"
    "\n"
    "Black wins, by moves to mate\n"
    "    0        0\n"
    "    1        4 #########################\n";

class StatisticsTest : public testing::Test {
 protected:
    template <typename ByteOf>
    void load(ByteOf byte_of) {
        write_text(path_, table_file_text("KRKN", byte_of));
        table_.load(path_);
    }

    template <typename Print>
    static std::string printed(Print print) {
        std::ostringstream out;
        print(out);
        return out.str();
    }

    TemporaryDirectory directory_;
    std::string path_ = directory_.file("table.txt");
    tools::EndingTable table_{*tools::find_ending("KRKN")};
};

int width_for(char const* columns) {
    setenv("COLUMNS", columns, 1);
    return tools::terminal_width();
}

}  // namespace

TEST_F(StatisticsTest, CountsKeysByWinnerDistanceAndSideToMove) {
    load(made_up_byte);
    tools::Statistics const statistics(table_);
    EXPECT_EQ(printed([&](std::ostream& out) { statistics.print_distances(out); }), distances);
    EXPECT_EQ(printed([&](std::ostream& out) { statistics.print_histogram(out, 40); }), histogram);
    EXPECT_EQ(printed([&](std::ostream& out) { statistics.print_longest_wins(out, table_); }),
              "\n"
              "longest win of White: 3 moves (5 plies), 7k/8/8/8/8/8/8/K7 w - - 0 1\n"
              "longest win of Black: 1 move (2 plies), " +
                  table_.fen(300) + "\n");
}

TEST_F(StatisticsTest, ATableWithoutWinsHasNoBars) {
    load([](unsigned int) { return 253; });
    tools::Statistics const statistics(table_);
    EXPECT_EQ(printed([&](std::ostream& out) { statistics.print_histogram(out, 80); }), "");
    EXPECT_EQ(printed([&](std::ostream& out) { statistics.print_longest_wins(out, table_); }),
              "\nlongest win of White: none\nlongest win of Black: none\n");
}

TEST_F(StatisticsTest, NoLineIsLongerThanTheTerminal) {
    load([](unsigned int key) { return static_cast<int>(key % 101); });
    tools::Statistics const statistics(table_);
    for (int const width : {40, 61, 80, 400}) {
        std::istringstream lines(
            printed([&](std::ostream& out) { statistics.print_histogram(out, width); }));
        std::size_t longest = 0;
        for (std::string line; std::getline(lines, line);) {
            longest = std::max(longest, line.size());
        }
        EXPECT_EQ(longest, static_cast<std::size_t>(width));
    }
}

TEST(TerminalWidth, ComesFromTheEnvironment) {
    unsetenv("COLUMNS");
    EXPECT_EQ(tools::terminal_width(), 80);
    EXPECT_EQ(width_for("100"), 100);
    EXPECT_EQ(width_for(""), 80);
    EXPECT_EQ(width_for("wide"), 80);
    EXPECT_EQ(width_for("100x"), 80);
    EXPECT_EQ(width_for("99999999999999"), 80);
    EXPECT_EQ(width_for("1"), 40);
    EXPECT_EQ(width_for("-5"), 40);
    EXPECT_EQ(width_for("100000"), 400);
}

}  // namespace orvelin::test
