#include "analyse/position_lines.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::analyse::test {

namespace {

struct read_line_t {
    PositionLine position;
    std::string reason;
    std::size_t remarks = 0;
};

std::vector<read_line_t> read_lines(std::string const& text, std::size_t block = 65536) {
    InputText input(fill_from(text, block));
    PositionLines lines(input, orvelin::test::shared_tables());
    std::vector<read_line_t> all;
    read_line_t read;
    for (auto outcome = lines.next(read.position); outcome != PositionLines::outcome::end;
         outcome = lines.next(read.position)) {
        read.reason = lines.reason();
        read.remarks = lines.remarks().size();
        EXPECT_EQ(read.reason.empty(), outcome == PositionLines::outcome::position);
        all.push_back(read);
    }
    return all;
}

read_line_t read_line(std::string const& text) {
    std::vector<read_line_t> const all = read_lines(text);
    EXPECT_EQ(all.size(), 1U) << text;
    return all.empty() ? read_line_t() : all.front();
}

TEST(PositionLinesTest, ReadsFenLines) {
    std::string const fen = positions::kiwipete;
    std::vector<read_line_t> const all =
        read_lines("\xEF\xBB\xBF" + fen + "\r\n\n  \n# a comment\n \t" + fen + "  \n" +
                   std::string(2, '\0') + "8/8/8/2k5/3Pp3/8/8/4K3 b - d3 5 42");
    ASSERT_EQ(all.size(), 3U);
    std::vector<std::uint64_t> const lines{1, 5, 6};
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].reason, "");
        EXPECT_EQ(all[i].position.fen, i < 2 ? fen : "8/8/8/2k5/3Pp3/8/8/4K3 b - d3 5 42");
        EXPECT_EQ(all[i].position.number, i + 1);
        EXPECT_EQ(all[i].position.line, lines[i]);
        EXPECT_TRUE(all[i].position.operations.empty());
        EXPECT_FALSE(all[i].position.chess960);
        EXPECT_EQ(all[i].remarks, 0U);
    }
}

TEST(PositionLinesTest, ReadsOperations) {
    PositionLine const read =
        read_line("4k3/8/8/8/8/8/4P3/4K3 w - - bm e4 Kd2; am Kf1; id \"a; \"; c0 ; ;ce 12")
            .position;
    EXPECT_EQ(read.fen, "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    EXPECT_EQ(read.operations.size(), 5U);
    EXPECT_EQ(read.operation("bm"), "e4 Kd2");
    EXPECT_EQ(read.operation("am"), "Kf1");
    EXPECT_EQ(read.operation("id"), "a; ");
    EXPECT_EQ(read.operation("c0"), "");
    EXPECT_EQ(read.operation("ce"), "12");
    EXPECT_EQ(read.operation("no"), "");
    PositionLine const fen = read_line("4k3/8/8/8/8/8/4P3/4K3 w - - 7 20 ;D1 6 ;D2 30").position;
    EXPECT_EQ(fen.fen, "4k3/8/8/8/8/8/4P3/4K3 w - - 7 20");
    EXPECT_EQ(fen.operation("D2"), "30");
    EXPECT_EQ(read_line("4k3/8/8/8/8/8/4P3/4K3 w - - hmvc 9; fmvn 33;").position.fen,
              "4k3/8/8/8/8/8/4P3/4K3 w - - 9 33");
    EXPECT_EQ(read_line("4k3/8/8/8/8/8/4P3/4K3 w - - hmvc x; id \"open").position.fen,
              "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
}

TEST(PositionLinesTest, KnowsChess960ByItsRights) {
    EXPECT_TRUE(read_line("qrkr4/pppppppp/8/8/8/8/PPPPPPPP/QRKR4 w KQkq - 0 1").position.chess960);
    EXPECT_TRUE(read_line("4k3/8/8/8/8/8/8/4K1R1 w G -").position.chess960);
    EXPECT_FALSE(read_line("4k3/8/8/8/8/8/8/4K2R w H -").position.chess960);
}

TEST(PositionLinesTest, TellsWhatIsWrongAndGoesOn) {
    std::string const good = std::string(positions::start) + "\n";
    std::string const longest(PositionLines::longest_line, ' ');
    for (auto const& [line, reason] : std::vector<std::pair<std::string, std::string>>{
             {"4k3/8/8/8/8/8/8/8 w - -", "line 2: FEN field 1 (pieces): "},
             {"4k3/8/8/8/8/8/8/4K3", "line 2: FEN field 2 (side to move): is missing"},
             {"4k3/8/8/8/8/8/8/4K3 w - - -1x 3", "line 2: FEN field 5 (half-move clock): \"-1x\""},
             {"hello", "line 2: FEN field 1 (pieces): "},
             {longest + " x", "line 2: is longer than 65536 bytes"},
             {longest + longest + longest + longest + longest + longest,
              "line 2: is longer than 65536 bytes"}}) {
        std::vector<read_line_t> const all = read_lines(good + line + "\n" + good);
        ASSERT_EQ(all.size(), 3U) << line;
        EXPECT_EQ(all[1].reason.substr(0, reason.size()), reason);
        EXPECT_EQ(all[2].reason, "");
        EXPECT_EQ(all[2].position.fen, positions::start);
        EXPECT_EQ(all[2].position.number, 3U);
        EXPECT_EQ(all[2].position.line, 3U);
    }
}

TEST(PositionLinesTest, TellsWhatWasPutRight) {
    read_line_t const read = read_line("4k3/8/8/8/8/8/8/4K3 w KQ - 0 1");
    EXPECT_EQ(read.reason, "");
    EXPECT_EQ(read.position.fen, "4k3/8/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(read.remarks, 2U);
}

}  // namespace

}  // namespace orvelin::analyse::test
