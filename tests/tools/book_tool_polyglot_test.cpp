// Books of orvelin-book as Debian's polyglot reads and writes them.

#include <gtest/gtest.h>
#include <string>

#include "support/program.h"
#include "support/temporary_directory.h"
#include "tools/book_tool.h"

namespace orvelin::test {

namespace {

/// Castling of both sides in both directions, a promotion, en passant, and squares passed by a pawn
/// with and without an enemy pawn beside it.
constexpr char const* lines =
    "e2e4 e7e5 g1f3 b8c6 f1b5 a7a6 e1g1 g8f6\n"
    "d2d4 d7d5 b1c3 b8c6 c1f4 c8f5 d1d2 d8d7 e1c1 e8c8\n"
    "e2e4 a7a6 e4e5 d7d5 e5d6 h7h6 d6c7 h6h5 c7b8n a8b8\n"
    "e2e4 g8f6 e4e5 d7d5 h2h3 f6d7 e5e6 f7e6 h3h4 g7g5 h4g5 h7h5\n"
    "e2e4 g8f6 e4e5 f6g8 g1f3 g7g6 f1e2 f8g7 b1c3 g8f6 a2a3 e8g8\n";

/// The same games. Each is a draw, for which the program counts one for every move.
constexpr char const* games =
    "[Result \"1/2-1/2\"]\n\n1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. O-O Nf6 1/2-1/2\n\n"
    "[Result \"1/2-1/2\"]\n\n1. d4 d5 2. Nc3 Nc6 3. Bf4 Bf5 4. Qd2 Qd7 5. O-O-O O-O-O 1/2-1/2\n\n"
    "[Result \"1/2-1/2\"]\n\n1. e4 a6 2. e5 d5 3. exd6 h6 4. dxc7 h5 5. cxb8=N Rxb8 1/2-1/2\n\n"
    "[Result \"1/2-1/2\"]\n\n1. e4 Nf6 2. e5 d5 3. h3 Nfd7 4. e6 fxe6 5. h4 g5 6. hxg5 h5 "
    "1/2-1/2\n\n"
    "[Result \"1/2-1/2\"]\n\n1. e4 Nf6 2. e5 Ng8 3. Nf3 g6 4. Be2 Bg7 5. Nc3 Nf6 6. a3 O-O "
    "1/2-1/2\n\n";

class BookToolPolyglotTest : public testing::Test {
 protected:
    std::string file(std::string const& name) const { return directory_.file(name); }

    /// Writes the book of a text of lines.
    void make(std::string const& text, std::string const& book) const {
        EXPECT_EQ(lines_of({"make", "-", "-o", file(book)}, text).size(), 1U);
    }

    void polyglot(texts_t const& arguments) const {
        program_result_t const result =
            run_program("/usr/games/polyglot", arguments, {.directory = directory_.path()});
        EXPECT_EQ(result.status, 0) << result.output << result.errors;
        EXPECT_EQ(result.signal, 0);
    }

    /// The entries of a book in an order of their own.
    texts_t entries(std::string const& book) const {
        return sorted(lines_of({"print", file(book)}));
    }

    /// The lines of play that polyglot finds in a book for a colour.
    texts_t lines_of_play(std::string const& book, std::string const& colour) const {
        polyglot({"dump-book", "-bin", file(book), "-color", colour, "-out", file("dump.txt")});
        texts_t dumped = split_lines(read_bytes(file("dump.txt")));
        EXPECT_FALSE(dumped.empty());
        if (!dumped.empty()) {
            dumped.erase(dumped.begin());
        }
        return dumped;
    }

 private:
    TemporaryDirectory directory_;
};

}  // namespace

TEST_F(BookToolPolyglotTest, ReadsTheLinesWithTheirWeights) {
    make(
        "e2e4=80 e7e5=75 g1f3 b8c6 f1b5 a7a6 e1g1 g8f6\n"
        "e2e4 c7c5=25\n"
        "d2d4=20 d7d5 b1c3 b8c6 c1f4 c8f5 d1d2 d8d7 e1c1 e8c8\n",
        "book.bin");
    EXPECT_EQ(lines_of_play("book.bin", "white"),
              (texts_t{"1: 1. e4{80%} e5 2. Nf3{100%} Nc6 3. Bb5{100%} a6 4. O-O{100%} ",
                       "2: 1. d4{20%} d5 2. Nc3{100%} Nc6 3. Bf4{100%} Bf5 4. Qd2{100%} Qd7 "
                       "5. O-O-O{100%} "}));
    EXPECT_EQ(lines_of_play("book.bin", "black"),
              (texts_t{"1: 1. d4 d5{100%} 2. Nc3 Nc6{100%} 3. Bf4 Bf5{100%} 4. Qd2 Qd7{100%} "
                       "5. O-O-O O-O-O{100%} ",
                       "2: 1. e4 e5{75%} 2. Nf3 Nc6{100%} 3. Bb5 a6{100%} 4. O-O Nf6{100%} ",
                       "3: 1. e4 c5{25%} "}));
}

TEST_F(BookToolPolyglotTest, ReadsPromotionAndEnPassant) {
    make("e2e4 a7a6 e4e5 d7d5 e5d6 h7h6 d6c7 h6h5 c7b8n a8b8\n", "book.bin");
    EXPECT_EQ(lines_of_play("book.bin", "white"),
              texts_t{"1: 1. e4{100%} a6 2. e5{100%} d5 3. exd6{100%} h6 4. dxc7{100%} h5 "
                      "5. cxb8=N{100%} "});
}

TEST_F(BookToolPolyglotTest, FindsNoPositionOffTheLines) {
    make(lines, "book.bin");
    program_result_t const result =
        run_program("/usr/games/polyglot", {"info-book", "-bin", file("book.bin")});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.output.find("Isolated positions             :        0"), std::string::npos)
        << result.output;
}

TEST_F(BookToolPolyglotTest, MakesTheSameEntriesOfTheSameGames) {
    make(lines, "ours.bin");
    write_bytes(file("games.pgn"), games);
    polyglot(
        {"make-book", "-pgn", file("games.pgn"), "-bin", file("theirs.bin"), "-min-game", "1"});
    EXPECT_EQ(entries("ours.bin"), entries("theirs.bin"));
    EXPECT_EQ(lines_of({"verify", file("theirs.bin")}), lines_of({"verify", file("ours.bin")}));
}

TEST_F(BookToolPolyglotTest, LeavesOutTheSameRareMovesAndLaterPlies) {
    EXPECT_EQ(
        lines_of({"make", "-", "-o", file("ours.bin"), "--min-count", "2", "--max-ply", "3"}, lines)
            .size(),
        1U);
    write_bytes(file("games.pgn"), games);
    polyglot({"make-book", "-pgn", file("games.pgn"), "-bin", file("theirs.bin"), "-min-game", "2",
              "-max-ply", "3"});
    EXPECT_EQ(entries("ours.bin"), entries("theirs.bin"));
    EXPECT_EQ(entries("ours.bin").size(), 3U);
}

TEST_F(BookToolPolyglotTest, MergesTwoBooksToTheSameEntries) {
    make(lines, "first.bin");
    make("7: e2e4 c7c5\n2: e2e4 e7e5 g1f3\n4: c2c4\nd2d4 d7d5 b1c3", "second.bin");
    EXPECT_EQ(
        lines_of({"merge", file("first.bin"), file("second.bin"), "-o", file("ours.bin")}).size(),
        1U);
    polyglot({"merge-book", "-in1", file("first.bin"), "-in2", file("second.bin"), "-out",
              file("theirs.bin")});
    EXPECT_EQ(entries("ours.bin"), entries("theirs.bin"));
}

}  // namespace orvelin::test
