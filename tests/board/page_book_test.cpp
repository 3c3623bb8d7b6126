#include "board/page_book.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "board/board_fixture.h"
#include "board/request.h"
#include "position/chess_position.h"
#include "support/book_file.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::board::test {
namespace {

using orvelin::test::book_bytes;
using orvelin::test::book_entry;

std::uint64_t key_of(std::string const& fen) {
    ChessPosition position(orvelin::test::shared_tables());
    position.fen(fen);
    return position.get_hash();
}

/// A move word of a book by its squares.
constexpr int word(int from, int to) {
    return from << 6 | to;
}
constexpr int e2e4 = word(12, 28);
constexpr int d2d4 = word(11, 27);
constexpr int e2e5 = word(12, 36);
/// As the format writes it: the king takes his rook.
constexpr int short_castling = word(4, 7);

TEST(PageBook, EntriesOfAPosition) {
    PageBook book;
    book.take(book_bytes({book_entry(1, e2e4, 5), book_entry(7, e2e4, 4), book_entry(7, d2d4, 3),
                          book_entry(9, d2d4, 2)}));
    EXPECT_EQ(book.size(), 4U);
    std::vector<Book_record> const entries = book.entries_of(7);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].get_weight(), 4);
    EXPECT_EQ(entries[1].get_weight(), 3);
    EXPECT_EQ(book.entries_of(1).size(), 1U);
    EXPECT_EQ(book.entries_of(9).size(), 1U);
    EXPECT_TRUE(book.entries_of(8).empty());
    EXPECT_TRUE(book.entries_of(10).empty());
}

TEST(PageBook, WhatIsNoBookIsRefusedAndLeavesNone) {
    PageBook book;
    std::string const good = book_bytes({book_entry(1, e2e4, 5), book_entry(7, e2e4, 4)});
    for (std::string const& bytes :
         {std::string(), good.substr(1), good + "x",
          book_bytes({book_entry(7, e2e4, 4), book_entry(1, e2e4, 5)})}) {
        book.take(good);
        EXPECT_THROW(book.take(bytes), RequestError);
        EXPECT_EQ(book.size(), 0U);
        EXPECT_TRUE(book.entries_of(1).empty());
    }
}

TEST(BoardBook, MovesWithTheirWeights) {
    BoardCore core;
    std::string const start = R"({"ask":"book"})";
    EXPECT_EQ(Answer(core.answer(start)).error(), "there is no book");
    std::uint64_t const key = key_of(positions::start);
    EXPECT_EQ(Answer(core.take_book(book_bytes({book_entry(key, e2e4, 40), book_entry(key, e2e5, 9),
                                                book_entry(key, d2d4, 30)})))
                  .number("entries"),
              3);
    Answer const answer(core.answer(start));
    // What is not legal is left out.
    ASSERT_EQ(answer.size("moves"), 2U);
    EXPECT_EQ(answer.element("moves", 0).text("uci"), "e2e4");
    EXPECT_EQ(answer.element("moves", 0).text("san"), "e4");
    EXPECT_EQ(answer.element("moves", 0).number("weight"), 40);
    EXPECT_EQ(answer.element("moves", 1).text("uci"), "d2d4");
    EXPECT_EQ(Answer(core.answer(R"({"ask":"book","moves":["e2e4"]})")).size("moves"), 0U);
    EXPECT_EQ(Answer(core.take_book("x")).error(), "this is no book in the Polyglot format");
    EXPECT_EQ(Answer(core.answer(start)).error(), "there is no book");
}

TEST(BoardBook, Castling) {
    BoardCore core;
    core.take_book(
        book_bytes({book_entry(key_of(positions::white_short_castling), short_castling, 1)}));
    Answer const answer(core.answer(R"({"ask":"book","start":")" +
                                    std::string(positions::white_short_castling) + "\"}"));
    ASSERT_EQ(answer.size("moves"), 1U);
    EXPECT_EQ(answer.element("moves", 0).text("uci"), "e1g1");
    EXPECT_EQ(answer.element("moves", 0).text("san"), "O-O");
}

}  // namespace
}  // namespace orvelin::board::test
