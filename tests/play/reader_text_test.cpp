#include "play/reader_text.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <string_view>

namespace orvelin::play::test {

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

TEST(ReaderText, WordsAreCutAtBlanksAndNotAtNul) {
    auto const words = words_of(std::string_view(" \ta\0b  c\r\n", 10));
    ASSERT_EQ(words.size(), 2U);
    EXPECT_EQ(words[0], std::string_view("a\0b", 3));
    EXPECT_EQ(words[1], "c");
    EXPECT_TRUE(words_of(" \t ").empty());
}

TEST(ReaderText, FirstWordStandsBetweenBlanks) {
    EXPECT_EQ(first_word(" \tgo depth 3"), "go");
    EXPECT_EQ(first_word("go"), "go");
    EXPECT_TRUE(first_word(" \r ").empty());
    EXPECT_TRUE(first_word("").empty());
}

TEST(ReaderText, TrimmedKeepsTheBlanksInside) {
    EXPECT_EQ(trimmed("  a  b \n"), "a  b");
    EXPECT_EQ(trimmed("   "), "");
}

TEST(ReaderText, ShownIsCutAfterFortyCharacters) {
    EXPECT_EQ(shown(std::string(40, 'x')), '"' + std::string(40, 'x') + '"');
    EXPECT_EQ(shown(std::string(1'000'000, 'x')), '"' + std::string(40, 'x') + "...\"");
}

TEST(ReaderText, ShownReplacesWhatCannotBePrinted) {
    EXPECT_EQ(shown(std::string_view("a\0\x1b\xc3z", 5)), "\"a???z\"");
}

TEST(ReaderText, ShownByteHasItsCodeWhenItCannotBePrinted) {
    EXPECT_EQ(shown('x'), "\"x\"");
    EXPECT_EQ(shown('\0'), "the byte 0x00");
    EXPECT_EQ(shown('\xfe'), "the byte 0xfe");
}

TEST(ReaderText, LowerCaseChangesLettersOnly) {
    EXPECT_EQ(lower_case("UCI_Elo @[ 9"), "uci_elo @[ 9");
}

TEST(ReaderText, NumbersHaveSignsAndFractions) {
    EXPECT_EQ(read_number("42")->value, 42);
    EXPECT_EQ(read_number("+42")->value, 42);
    EXPECT_EQ(read_number("-42")->value, -42);
    EXPECT_FALSE(read_number("42")->had_fraction);
    EXPECT_EQ(read_number("42.75")->value, 42);
    EXPECT_TRUE(read_number("42.75")->had_fraction);
}

TEST(ReaderText, NumbersBeyondTheTypeAreItsLimits) {
    EXPECT_EQ(read_number("9223372036854775807")->value, largest);
    EXPECT_EQ(read_number("9223372036854775806")->value, largest - 1);
    EXPECT_EQ(read_number("9223372036854775808")->value, largest);
    EXPECT_EQ(read_number(std::string(1'000'000, '9'))->value, largest);
    EXPECT_EQ(read_number('-' + std::string(100, '9'))->value, -largest);
}

TEST(ReaderText, OtherTextsAreNoNumbers) {
    for (char const* text : {"", "-", "+", ".5", "--1", "1e3", "0x10", "12a", "1.2.3", "1 2"}) {
        EXPECT_FALSE(read_number(text)) << text;
    }
}

TEST(ReaderText, RemarksBeyondTheMostAreCounted) {
    Remarks remarks;
    for (std::size_t i = 0; i < Remarks::most + 3; ++i) {
        remarks.add("remark");
    }
    auto const all = remarks.take();
    ASSERT_EQ(all.size(), Remarks::most + 1);
    EXPECT_EQ(all.back(), "3 more of this kind");
    EXPECT_TRUE(remarks.take().empty());
}

}  // namespace

}  // namespace orvelin::play::test
