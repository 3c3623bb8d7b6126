#include "analyse/input_files.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "support/temporary_directory.h"

namespace orvelin::analyse::test {

namespace {

input_kind kind_of(std::string const& text) {
    InputText input(fill_from(text));
    return find_kind(input);
}

TEST(InputKindTest, IsToldByTheFirstText) {
    for (std::string const text :
         {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "# a comment\n[Event \"x\"]",
          "\xEF\xBB\xBF\r\n\n 4k3/8/8/8/8/8/8/4K3 w - - bm Kd2;", "8/8/8"}) {
        EXPECT_EQ(kind_of(text), input_kind::positions) << text;
    }
    for (std::string const text :
         {"[Event \"x\"]\n", "1. e4 *", "1/2-1/2", "{a} 1. e4", "% x", "e4", "hello",
          "; x\n4k3/8/8/8/8/8/8/4K3 w - -", "a/b", "4k3/9/x/8 w"}) {
        EXPECT_EQ(kind_of(text), input_kind::games) << text;
    }
    for (std::string const& text : {std::string(), std::string(" \n\r\n\t"), std::string(5, '\0'),
                                    std::string("\xEF\xBB\xBF"), std::string(10000, '\n')}) {
        EXPECT_EQ(kind_of(text), input_kind::empty);
    }
}

TEST(InputKindTest, OnlyBlanksAreGoneOver) {
    InputText input(fill_from("\xEF\xBB\xBF\n\n[Event \"x\"]"));
    EXPECT_EQ(find_kind(input), input_kind::games);
    EXPECT_EQ(input.ahead(100), "[Event \"x\"]");
    EXPECT_EQ(input.line(), 3U);
    EXPECT_TRUE(input.at_line_start());
}

/// Puts a file in place of standard input while it lives.
class StandardInput {
 public:
    explicit StandardInput(std::string const& file) : kept_(dup(STDIN_FILENO)) {
        if (std::freopen(file.c_str(), "r", stdin) == nullptr) {
            throw std::runtime_error("cannot read " + file);
        }
    }
    ~StandardInput() {
        dup2(kept_, STDIN_FILENO);
        close(kept_);
    }
    StandardInput(StandardInput const&) = delete;
    StandardInput& operator=(StandardInput const&) = delete;

 private:
    int kept_;
};

TEST(InputFilesTest, ComeInOrder) {
    orvelin::test::TemporaryDirectory const directory;
    std::ofstream(directory.file("a.pgn")) << "\n[Event \"a\"]";
    std::ofstream(directory.file("b.epd")) << "4k3/8/8/8/8/8/8/4K3 w - -";
    std::ofstream(directory.file("c")) << "";
    StandardInput const standard(directory.file("b.epd"));
    InputFiles files({directory.file("a.pgn"), "-", directory.file("c")});
    ASSERT_TRUE(files.open_next());
    EXPECT_EQ(files.name(), directory.file("a.pgn"));
    EXPECT_EQ(files.kind(), input_kind::games);
    EXPECT_EQ(files.text().ahead(100), "[Event \"a\"]");
    EXPECT_EQ(files.text().line(), 2U);
    ASSERT_TRUE(files.open_next());
    EXPECT_EQ(files.name(), "standard input");
    EXPECT_EQ(files.kind(), input_kind::positions);
    EXPECT_EQ(files.text().line(), 1U);
    ASSERT_TRUE(files.open_next());
    EXPECT_EQ(files.kind(), input_kind::empty);
    EXPECT_FALSE(files.open_next());
    EXPECT_FALSE(files.open_next());
}

TEST(InputFilesTest, WhatCannotBeReadIsNamedAndTheNextIsRead) {
    orvelin::test::TemporaryDirectory const directory;
    std::ofstream(directory.file("a.pgn")) << "1. e4";
    InputFiles files(
        {directory.file("absent"), directory.path().string(), directory.file("a.pgn")});
    for (std::string const& name : {directory.file("absent"), directory.path().string()}) {
        try {
            files.open_next();
            ADD_FAILURE() << "nothing was thrown";
        } catch (std::runtime_error const& error) {
            EXPECT_EQ(std::string(error.what()).find("cannot read " + name + ": "), 0U)
                << error.what();
        }
    }
    ASSERT_TRUE(files.open_next());
    EXPECT_EQ(files.kind(), input_kind::games);
}

}  // namespace

}  // namespace orvelin::analyse::test
