#include <algorithm>
#include <array>
#include <cstddef>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "endgame/egt4_pieces.h"
#include "support/data_file.h"
#include "support/lent_table.h"
#include "support/session_reader.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

using counts_t = std::array<unsigned int, 256>;

/// An ending whose table is built, the moves that its longest win takes, and a position with the
/// one that the best capture in it leads to.
struct ending_t {
    std::string name;
    piece_t piece1;
    piece_t piece2;
    int longest_win;
    std::string before;
    std::string after;
};

void PrintTo(ending_t const& ending, std::ostream* stream) {
    *stream << ending.name;
}

/// Building one takes seconds, under sanitizers many of them.
std::vector<ending_t> endings_to_build() {
    ending_t const krkn = {
        "KRKN", white_rook, black_knight, 40, "8/7n/8/k7/7R/8/8/K7 w", "8/7R/8/k7/8/8/8/K7 b"};
    if (short_tests) {
        return {krkn};
    }
    return {
        {"KBNK", white_knight, white_bishop, 33, "7k/6N1/8/8/8/8/K7/1B6 b",
         "8/6k1/8/8/8/8/K7/1B6 w"},
        {"KQKR", white_queen, black_rook, 35, "4Q3/8/6r1/8/8/8/8/K6k w", "8/8/6Q1/8/8/8/8/K6k b"},
        krkn};
}

/// The recorded session of the table of the ending.
session_t session_of(ending_t const& ending) {
    std::string const command =
        "egt " + std::to_string(ending.piece1) + " " + std::to_string(ending.piece2);
    for (session_t const& session : read_sessions("tables.txt")) {
        if (session.commands.at(0).text == command) {
            return session;
        }
    }
    ADD_FAILURE() << "no session " << command;
    return {{{command, {}}}};
}

counts_t counts_of(Egt4Pieces const& table) {
    counts_t counts{};
    for (unsigned int key = 0; key < table.size(); ++key) {
        ++counts.at(table[key]);
    }
    return counts;
}

std::vector<std::string> lines_of(counts_t const& counts) {
    std::vector<std::string> lines;
    for (std::size_t value = 0; value < counts.size(); ++value) {
        if (counts.at(value) == 0) {
            continue;
        }
        lines.push_back("byte " + std::to_string(value) + ' ' + std::to_string(counts.at(value)));
    }
    return lines;
}

/// Keys that hold kings and at most a knight or bishop, which win nothing.
bool is_dead(Egt4Pieces const& table, unsigned int key) {
    if (!Egt4Pieces::is_legal_key(key) || table[key] == Egt4Pieces::illegal) {
        return false;
    }
    unsigned int const black_king = key >> 13 & 63;
    bool const without1 = (key >> 1 & 63) == black_king;
    bool const without2 = (key >> 7 & 63) == black_king;
    auto const minor = [](piece_t id) { return (id & 7) <= white_bishop; };
    return (without1 || minor(table.piece1_id())) && (without2 || minor(table.piece2_id())) &&
           (without1 || without2);
}

/// Bytes of the positions that nobody can win, each counted once.
std::vector<unsigned char> dead_bytes(Egt4Pieces const& table) {
    std::array<bool, 256> seen{};
    for (unsigned int key = 0; key < table.size(); ++key) {
        if (is_dead(table, key)) {
            seen.at(table[key]) = true;
        }
    }
    std::vector<unsigned char> bytes;
    for (std::size_t value = 0; value < seen.size(); ++value) {
        if (seen.at(value)) {
            bytes.push_back(static_cast<unsigned char>(value));
        }
    }
    return bytes;
}

/// Runs the slices up to the finished table and watches the states on the way.
void build(Egt4Pieces& table) {
    ASSERT_EQ(table.progress(), -1);
    ASSERT_FALSE(table.create());
    ASSERT_EQ(table.progress(), 0);
    unsigned int const stalemates = counts_of(table)[Egt4Pieces::drawn];
    std::vector<unsigned char> const dead = dead_bytes(table);
    EXPECT_GT(stalemates, 0U);
    EXPECT_EQ(dead.back(), Egt4Pieces::unknown);
    for (int pass = 1; pass < 100; ++pass) {
        ASSERT_FALSE(table.create()) << pass;
        ASSERT_EQ(table.progress(), pass);
        ASSERT_TRUE(table.busy() && !table.ready()) << pass;
    }
    EXPECT_EQ(counts_of(table)[Egt4Pieces::drawn], stalemates);
    EXPECT_EQ(dead_bytes(table), dead);
    ASSERT_TRUE(table.create()) << "the pass of distance 99 completes the table";
    EXPECT_EQ(table.progress(), 100);
    EXPECT_TRUE(table.busy() && !table.ready());
    counts_t const complete = counts_of(table);
    EXPECT_EQ(complete[Egt4Pieces::unknown], 0U);
    EXPECT_EQ(dead_bytes(table), (std::vector<unsigned char>{253}));
    ASSERT_TRUE(table.create());
    EXPECT_EQ(table.progress(), 101);
    EXPECT_TRUE(!table.busy() && table.ready());
    ASSERT_TRUE(table.create()) << "a finished table stays finished";
    EXPECT_EQ(table.progress(), 101);
    EXPECT_EQ(counts_of(table), complete);
}

void expect_session(Egt4Pieces& table, ending_t const& ending) {
    session_t const session = session_of(ending);
    EXPECT_EQ(lines_of(counts_of(table)), session.commands.at(0).answer);
    for (std::size_t i = 1; i < session.commands.size(); ++i) {
        session_command_t const& probe = session.commands.at(i);
        std::string const fen = join_words(split_words(probe.text), 1);
        EXPECT_EQ("eval " + std::to_string(table.eval(fen)), probe.answer.at(0)) << fen;
    }
}

/// Moves that White needs at most when he moves first and wins.
int longest_win(Egt4Pieces const& table) {
    int longest = 0;
    for (unsigned int key = 1; key < table.size(); key += 2) {
        if (table[key] <= 100) {
            longest = std::max(longest, (table[key] + 1) / 2);
        }
    }
    return longest;
}

/// Positions with the white king on the diagonal whose reflection has another value.
unsigned int unequal_reflections(Egt4Pieces const& table) {
    unsigned int unequal = 0;
    for (unsigned int const index : {0U, 4U, 7U, 9U}) {
        for (unsigned int key = index << 19; key < (index + 1) << 19; ++key) {
            if (table[key] != table[Egt4Pieces::get_mirror_key(key)]) {
                ++unequal;
            }
        }
    }
    return unequal;
}

/// The distance goes on across the capture, in the same table.
void expect_capture(Egt4Pieces& table, ending_t const& ending) {
    int const before = table.eval(ending.before);
    int const after = table.eval(ending.after);
    EXPECT_EQ(after, before == 0 ? 0 : before + 1) << before;
    EXPECT_EQ(before > 29900, ending.name != "KBNK") << before;
}

void expect_consistency(LentTable& lent) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(lent.table().is_consistent());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    auto const first_win =
        std::find(lent.bytes(), lent.bytes() + lent.table().size(), static_cast<unsigned char>(9));
    ASSERT_NE(first_win, lent.bytes() + lent.table().size());
    ++*first_win;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(lent.table().is_consistent());
    EXPECT_NE(testing::internal::GetCapturedStderr().find("orig fen: "), std::string::npos);
    --*first_win;
}

}  // namespace

class BuiltTable : public testing::TestWithParam<ending_t> {};

TEST_P(BuiltTable, HoldsTheRecordedDistances) {
    ending_t const& ending = GetParam();
    LentTable lent(ending.piece1, ending.piece2, 77);
    Egt4Pieces& table = lent.table();
    ASSERT_NO_FATAL_FAILURE(build(table));
    EXPECT_EQ(table.name(), ending.name);
    EXPECT_TRUE(lent.guards_whole());
    EXPECT_EQ(table[key_of(table, ending.after)], lent.byte(ending.after));
    EXPECT_GT(table.moves_made(), 0U);
    expect_session(table, ending);
    expect_capture(table, ending);
    EXPECT_EQ(longest_win(table), ending.longest_win);
    EXPECT_EQ(unequal_reflections(table), 0U);
    expect_consistency(lent);
}

INSTANTIATE_TEST_SUITE_P(Endings, BuiltTable, testing::ValuesIn(endings_to_build()),
                         [](testing::TestParamInfo<ending_t> const& known) {
                             return known.param.name;
                         });

TEST(Egt4PiecesCreate, AllocatesMemoryOfItsOwnAndGivesItBack) {
    Egt4Pieces table(shared_attacks(), white_rook, black_knight);
    EXPECT_FALSE(table.create());
    EXPECT_EQ(table.progress(), 0);
    EXPECT_EQ(table.eval("k7/8/1K6/8/8/8/8/7R w"), 255) << "not reached yet";
    EXPECT_EQ(table.eval("k6R/8/1K6/8/8/8/8/8 b"), 30000);
    EXPECT_EQ(table[0], Egt4Pieces::illegal);
    table.clear();
    EXPECT_EQ(table.progress(), -1);
    EXPECT_EQ(table[0], Egt4Pieces::unknown);
    EXPECT_EQ(table.eval("k6R/8/1K6/8/8/8/8/8 b"), 255);
}

}  // namespace orvelin::test
