#include "analyse/input_text.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace orvelin::analyse::test {

namespace {

TEST(InputTextTest, AnyBlocksGiveTheSameText) {
    std::string const text = std::string("one\ntwo\r\n\n") + '\0' + "\xFF{three}";
    for (std::size_t const block : {std::size_t{1}, std::size_t{2}, std::size_t{7}, text.size()}) {
        InputText input(fill_from(text, block));
        std::string read;
        while (!input.at_end()) {
            read += input.next();
            input.skip(1);
        }
        EXPECT_EQ(read, text);
        EXPECT_EQ(input.line(), 4U);
    }
}

TEST(InputTextTest, LooksAheadBeyondABlock) {
    InputText input(fill_from("abcdefgh", 3));
    EXPECT_EQ(input.ahead(1), "abc");
    EXPECT_EQ(input.ahead(5), "abcdef");
    input.skip_letters(4);
    EXPECT_EQ(input.ahead(100), "efgh");
    input.skip_letters(4);
    EXPECT_TRUE(input.at_end());
    EXPECT_EQ(input.ahead(1), "");
}

TEST(InputTextTest, KnowsTheBeginOfALine) {
    InputText input(fill_from("a\nb"));
    EXPECT_EQ(input.ahead(3), "a\nb");
    EXPECT_TRUE(input.at_line_start());
    input.skip_letter();
    EXPECT_FALSE(input.at_line_start());
    input.skip(1);
    EXPECT_TRUE(input.at_line_start());
    input.skip_mark(1);
    EXPECT_TRUE(input.at_line_start());
}

TEST(InputTextTest, SkipsToALetter) {
    InputText input(fill_from("a\nb\nc}d", 2));
    EXPECT_TRUE(input.skip_to('}'));
    EXPECT_EQ(input.next(), '}');
    EXPECT_EQ(input.line(), 3U);
    EXPECT_FALSE(input.skip_to('\n'));
    EXPECT_TRUE(input.at_end());
}

TEST(InputTextTest, DescriptorThatCannotBeReadIsTold) {
    InputText input(fill_from(-1));
    EXPECT_THROW(input.at_end(), std::runtime_error);
}

}  // namespace

}  // namespace orvelin::analyse::test
