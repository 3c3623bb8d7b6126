// orvelin-book make.

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "support/positions.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"
#include "tools/book_tool.h"

namespace orvelin::test {

namespace {

/// The lines that print shows of the book made from a text.
texts_t made_of(std::string const& text, texts_t const& options = {}) {
    TemporaryDirectory const directory;
    std::string const book = directory.file("book.bin");
    texts_t arguments{"make", "-", "-o", book};
    arguments.insert(arguments.end(), options.begin(), options.end());
    EXPECT_EQ(lines_of(arguments, text).size(), 1U);
    EXPECT_EQ(lines_of({"verify", book}).size(), 1U);
    return lines_of({"print", book});
}

/// The entries of the start position as "move weight".
texts_t start_moves(std::string const& text, texts_t const& options = {}) {
    std::string const key = "463b96181691fc9c ";
    texts_t moves;
    for (std::string const& line : made_of(text, options)) {
        if (line.starts_with(key)) {
            moves.push_back(line.substr(key.size(), line.size() - 19));
        }
    }
    return moves;
}

/// The text makes no book, and a good one at its place stays as it was, with nothing beside it.
void expect_refused(std::string const& text, std::string const& message) {
    TemporaryDirectory const directory;
    std::string const lines = directory.file("lines.txt");
    std::string const book = directory.file("book.bin");
    write_bytes(lines, text);
    write_bytes(book, "good");
    expect_error({"make", lines, "-o", book}, 1, message);
    EXPECT_EQ(read_bytes(book), "good");
    EXPECT_EQ(file_names(directory), (texts_t{"book.bin", "lines.txt"}));
}

}  // namespace

TEST(BookToolMake, MakesAnEntryForEachMoveSortedByKey) {
    EXPECT_EQ(made_of("e2e4 e7e5 g1f3\n"),
              (texts_t{"0844931a6ef4b9a0 g1f3 1 0", "463b96181691fc9c e2e4 1 0",
                       "823c9b50fd114196 e7e5 1 0"}));
}

TEST(BookToolMake, TellsHowLargeTheBookIs) {
    TemporaryDirectory const directory;
    std::string const book = directory.file("book.bin");
    EXPECT_EQ(lines_of({"make", "-", "-o", book}, "e2e4 e7e5\ne2e4 c7c5\nd2d4"),
              texts_t{book + ": 4 entries, 2 positions"});
    EXPECT_EQ(std::filesystem::file_size(book), 64U);
    EXPECT_EQ(file_names(directory), texts_t{"book.bin"});
}

TEST(BookToolMake, WeightIsTheNumberOfLines) {
    EXPECT_EQ(start_moves("d2d4 d7d5\ne2e4\ng1f3\ne2e4 e7e5\ne2e4 c7c5\nd2d4\n"),
              (texts_t{"e2e4 3", "d2d4 2", "g1f3 1"}));
}

TEST(BookToolMake, WeightInFrontOfALineCountsAsSoMany) {
    EXPECT_EQ(start_moves("3: d2d4\n5:e2e4 e7e5\n  4 \t:  d2d4 d7d5\n000002: e2e4"),
              (texts_t{"d2d4 7", "e2e4 7"}));
}

TEST(BookToolMake, WeightBehindAMoveIsItsWeightOutright) {
    EXPECT_EQ(start_moves("100: d2d4=5\ne2e4=20 e7e5\ne2e4\n2: e2e4=20 c7c5\nc2c4=0"),
              (texts_t{"e2e4 20", "d2d4 5", "c2c4 0"}));
}

TEST(BookToolMake, MovesOfOneWeightComeInTheOrderOfTheirWords) {
    EXPECT_EQ(start_moves("e2e4\nb1c3\na2a3\nc2c4\ng1f3\n2: d2d4"),
              (texts_t{"d2d4 2", "b1c3 1", "g1f3 1", "a2a3 1", "c2c4 1", "e2e4 1"}));
}

TEST(BookToolMake, WeightsThatAreTooLargeAreScaledDownForTheirKey) {
    EXPECT_EQ(start_moves("65535: e2e4 e7e5\n65535: d2d4\ng1f3"),
              (texts_t{"d2d4 65535", "e2e4 65535", "g1f3 1"}));
    EXPECT_EQ(start_moves("131070: e2e4 e7e5\n65535: d2d4\n3: g1f3\n1: c2c4\nb1c3=0"),
              (texts_t{"e2e4 65535", "d2d4 32767", "g1f3 1", "c2c4 1", "b1c3 0"}));
    EXPECT_EQ(start_moves("1000000000: e2e4\n1000000000: e2e4\n1000000000: d2d4"),
              (texts_t{"e2e4 65535", "d2d4 32767"}));
    // Other keys keep what they have.
    EXPECT_EQ(made_of("70000: e2e4\n7: e2e4 e7e5").back(), "823c9b50fd114196 e7e5 7 0");
}

TEST(BookToolMake, MoveThatALineRepeatsInAPositionCountsOnce) {
    EXPECT_EQ(start_moves("2: g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8 e2e4"),
              (texts_t{"g1f3 2", "e2e4 2"}));
}

TEST(BookToolMake, CommentsAndEmptyLinesAreSkipped) {
    EXPECT_EQ(start_moves("# a book\n\n  \t \r\ne2e4 # 1... e7e9: \n#\n\td2d4\r\n e2e4#x\n7:\n"),
              (texts_t{"e2e4 2", "d2d4 1"}));
}

TEST(BookToolMake, MaxPlyTakesTheFirstMovesOnly) {
    std::string const text = "e2e4 e7e5 g1f3 b8c6\nd2d4 d7d5 c2c4=9\n";
    EXPECT_EQ(made_of(text, {"--max-ply", "1"}).size(), 2U);
    EXPECT_EQ(made_of(text, {"--max-ply", "2"}).size(), 4U);
    EXPECT_EQ(made_of(text, {"--max-ply", "3"}).size(), 6U);
    EXPECT_EQ(made_of(text, {"--max-ply", "99"}).size(), 7U);
    // The others must be legal nonetheless.
    TemporaryDirectory const directory;
    expect_error({"make", "-", "-o", directory.file("book.bin"), "--max-ply", "1"}, 1,
                 "standard input:1: move e7e4 is illegal", "e2e4 e7e4");
}

TEST(BookToolMake, MinCountLeavesOutWhatIsRare) {
    std::string const text = "2: e2e4 e7e5\ne2e4 c7c5\nd2d4=1\ng1f3\nb1c3\nb1c3\n";
    EXPECT_EQ(start_moves(text, {"--min-count", "1"}),
              (texts_t{"e2e4 3", "b1c3 2", "g1f3 1", "d2d4 1"}));
    EXPECT_EQ(start_moves(text, {"--min-count", "2"}), (texts_t{"e2e4 3", "b1c3 2", "d2d4 1"}));
    EXPECT_EQ(start_moves(text, {"--min-count", "4"}), texts_t{"d2d4 1"});
    EXPECT_EQ(made_of(text, {"--min-count", "2"}).size(), 4U);
}

TEST(BookToolMake, LinesBeginInThePositionOfTheFen) {
    texts_t const fen{"--fen", "4k3/P7/8/8/8/8/8/4K3 w - - 0 1"};
    texts_t const entries = made_of("a7a8q\na7a8n\na7a8r\na7a8b\n", fen);
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(entries[0].substr(16), " a7a8n 1 0");
    EXPECT_EQ(entries[1].substr(16), " a7a8b 1 0");
    EXPECT_EQ(entries[2].substr(16), " a7a8r 1 0");
    EXPECT_EQ(entries[3].substr(16), " a7a8q 1 0");
}

TEST(BookToolMake, CastlingMayBeWrittenInBothWays) {
    texts_t const fen{"--fen", positions::all_castlings};
    texts_t const one_way = made_of("e1g1 e8c8\ne1g1 e8c8\ne1c1 e8g8\ne1c1 e8g8", fen);
    EXPECT_EQ(one_way.size(), 4U);
    EXPECT_EQ(made_of("e1g1 e8a8\ne1h1 e8c8\ne1a1 e8h8\ne1c1 e8g8", fen), one_way);
    for (std::string const& line : one_way) {
        EXPECT_EQ(line.substr(21), " 2 0");
    }
}

TEST(BookToolMake, CastlingOfChess960IsTheKingTakingHisRook) {
    texts_t const fen{"--fen", "4k3/8/8/8/8/8/8/1RK3R1 w GB - 0 1"};
    texts_t const entries = made_of("c1g1\nc1b1\nc1d1", fen);
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].substr(16), " c1b1 1 0");
    EXPECT_EQ(entries[1].substr(16), " c1d1 1 0");
    EXPECT_EQ(entries[2].substr(16), " c1g1 1 0");
    // A king on e1 beside his rook on g1 goes nowhere else.
    EXPECT_EQ(made_of("e1g1", {"--fen", "4k3/8/8/8/8/8/8/4K1R1 w G - 0 1"}).at(0).substr(16, 5),
              " e1g1");
}

TEST(BookToolMake, EnPassantIsAMoveLikeOthers) {
    EXPECT_EQ(made_of("e2e4 a7a6 e4e5 d7d5 e5d6 a6a5").size(), 6U);
    expect_refused("e2e4 d7d5 e4e5 a7a6 e5d6", ":1: move e5d6 is illegal");
}

TEST(BookToolMake, IllegalMoveIsToldWithFileAndLine) {
    TemporaryDirectory const directory;
    std::string const lines = directory.file("lines.txt");
    write_bytes(lines, "e2e4 e7e5\n\nd2d4 d2d4\n");
    expect_error({"make", lines, "-o", directory.file("book.bin")}, 1,
                 "orvelin-book: " + lines + ":3: move d2d4 is illegal\n");
    EXPECT_EQ(file_names(directory), texts_t{"lines.txt"});
    expect_error({"make", "-", "-o", directory.file("book.bin")}, 1,
                 "orvelin-book: standard input:1: move e2e5 is illegal\n", "e2e5");
}

TEST(BookToolMake, RefusesWhatIsNoLegalMove) {
    for (std::string const word : {"e4", "Nf3", "e2-e4", "E2E4", "e2e4q", "e2e4+", "0000", "a1a1",
                                   "e7e5", "e1g1", "i2i4", "1."}) {
        expect_refused("d2d4 d7d5\n" + word, ":2: move " + word + " is illegal");
    }
    expect_refused("f2f3 e7e5 g2g4 d8h4 a2a3", ":1: move a2a3 is illegal");
    expect_refused("=3", ":1: move  is illegal");
    expect_refused(std::string("e2e4\0", 5), ":1: move e2e4? is illegal");
    expect_refused("\x1B[2J\xFF", ":1: move ?[2J? is illegal");
    expect_refused(std::string(100000, 'x'), ":1: move xxxxxxxxxxxxxxxxxxxx... is illegal");
}

TEST(BookToolMake, RefusesBadWeights) {
    for (std::string const weight :
         {"0", "-1", "1000000001", "99999999999999999999", "x", "", "1 2", "1.5", "e2e4"}) {
        expect_refused("e2e4\n" + weight + ": e2e4",
                       ":2: the weight \"" + weight + "\" is not a number from 1 to 1000000000");
    }
    for (std::string const weight : {"65536", "-1", "", "x", "1=2", "0x1"}) {
        expect_refused("e2e4=" + weight,
                       ":1: the weight \"" + weight + "\" is not a number from 0 to 65535");
    }
}

TEST(BookToolMake, RefusesTwoWeightsOfOneMove) {
    expect_refused("e2e4=3 e7e5\nd2d4\ne2e4=4", ":3: move e2e4 has another weight in another line");
}

TEST(BookToolMake, RefusesATextWithoutMoves) {
    for (char const* text : {"", "\n\n", "# nothing\n", "3:"}) {
        expect_refused(text, "there are no moves to write");
    }
    TemporaryDirectory const directory;
    expect_error({"make", "-", "-o", directory.file("x"), "--min-count", "2"}, 1,
                 "there are no moves to write", "e2e4");
    EXPECT_EQ(file_names(directory), texts_t{});
}

TEST(BookToolMake, RefusesLinesThatCannotBeRead) {
    TemporaryDirectory const directory;
    std::string const book = directory.file("book.bin");
    std::string const missing = directory.file("missing.txt");
    std::string const folder = directory.path().string();
    expect_error({"make", missing, "-o", book}, 1,
                 "cannot read " + missing + ": No such file or directory");
    expect_error({"make", folder, "-o", book}, 1, "cannot read " + folder + ": a folder");
    EXPECT_EQ(file_names(directory), texts_t{});
}

TEST(BookToolMake, RefusesBadArguments) {
    TemporaryDirectory const directory;
    std::string const book = directory.file("book.bin");
    expect_error({"make"}, 2, "LINES is required");
    expect_error({"make", "-"}, 2, "--output is required");
    expect_error({"make", "-", "-o", book, "--max-ply", "0"}, 2, "--max-ply");
    expect_error({"make", "-", "-o", book, "--max-ply", "-1"}, 2, "--max-ply");
    expect_error({"make", "-", "-o", book, "--min-count", "0"}, 2, "--min-count");
    expect_error({"make", "-", "-o", book, "--min-count", "many"}, 2, "--min-count");
    expect_error({"make", "-", "-o", book, "--fen", "8/8/8/8/8/8/8/8 w"}, 2, "bad FEN: ", "e2e4");
    EXPECT_EQ(file_names(directory), texts_t{});
}

TEST(BookToolMake, LongLinesAndManyLinesAreTaken) {
    std::string shuffle;
    for (int i = 0; i < (short_tests ? 100 : 2000); ++i) {
        shuffle += "g1f3 g8f6 f3g1 f6g8 ";
    }
    EXPECT_EQ(made_of(shuffle).size(), 4U);
    std::string lines;
    for (int i = 0; i < (short_tests ? 100 : 5000); ++i) {
        lines += "e2e4\n";
    }
    EXPECT_EQ(start_moves(lines), texts_t{short_tests ? "e2e4 100" : "e2e4 5000"});
}

}  // namespace orvelin::test
