#include "play/line_buffer.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvelin::play::test {

namespace {

using namespace std::string_view_literals;

/// The commands that come of the bytes, each line in brackets and behind it the remark.
std::vector<std::string> read(std::vector<std::string_view> const& pieces,
                              std::size_t longest = LineBuffer::longest_line) {
    CommandQueue queue;
    LineBuffer lines(queue, longest);
    for (std::string_view const piece : pieces) {
        lines.take(piece);
    }
    lines.end();
    std::vector<std::string> commands;
    while (std::optional<Command> const command = queue.pop(std::nullopt)) {
        commands.push_back('[' + command->line + ']' + command->remark);
    }
    EXPECT_TRUE(queue.ended());
    return commands;
}

using texts = std::vector<std::string>;

TEST(LineBuffer, CutsBytesIntoLines) {
    EXPECT_EQ(read({"uci\nis", "rea", "dy\nq"}), (texts{"[uci]", "[isready]", "[q]"}));
}

TEST(LineBuffer, TakesBothLineEndsAndLeavesOutEmptyLines) {
    EXPECT_EQ(read({"a\r\n\n\r\nb\n"}), (texts{"[a]", "[b]"}));
}

TEST(LineBuffer, TakesNulsForBlanksAndTells) {
    std::string const remark = "NUL characters in a line are taken for blanks";
    EXPECT_EQ(read({"is\0ready\nuci\n"sv}), (texts{"[is ready]" + remark, "[uci]"}));
}

// As editors put it before the text of a file.
TEST(LineBuffer, SkipsAByteOrderMarkBeforeTheFirstLineOnly) {
    EXPECT_EQ(read({"\xEF\xBB", "\xBFuci\n\xEF\xBB\xBFuci\n"}),
              (texts{"[uci]", "[\xEF\xBB\xBFuci]"}));
}

TEST(LineBuffer, DropsALineThatIsTooLong) {
    std::string const remark = "a line of more than 4 characters is ignored";
    EXPECT_EQ(read({"abcd\nab", "cdefg\n\0bcde\nab\n"sv}, 4),
              (texts{"[abcd]", "[]" + remark, "[]" + remark, "[ab]"}));
}

TEST(LineBuffer, TakesAMegabyte) {
    std::string const line(LineBuffer::longest_line, 'x');
    EXPECT_EQ(read({line, "\n"}), (texts{'[' + line + ']'}));
    EXPECT_EQ(read({line, "x\n"}).at(0).substr(0, 3), "[]a");
}

}  // namespace

}  // namespace orvelin::play::test
