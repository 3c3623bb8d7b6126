// The opening book of the real engine: the file in its working directory.

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "protocol/book_fixture.h"
#include "protocol/engine_directory_fixture.h"
#include "support/installed_book.h"
#include "support/positions.h"
#include "support/program.h"
#include "support/test_config.h"

namespace orvelin::test {
namespace {

namespace fs = std::filesystem;

std::string const use_book = "setoption name OwnBook value true";

/// The real engine in a directory of its own that may hold a book.
class ProcessBookTest : public EngineDirectoryFixture {
 protected:
    void SetUp() override { ASSERT_FALSE(installed_book_in_sight()) << book_in_the_way; }

    using EngineDirectoryFixture::start;
    void start(std::string const& bytes) {
        write_book(book, bytes);
        start();
    }

    /// All lines up to the `bestmove` of the start position.
    lines_t answer() { return search({use_book, "position startpos", "go depth 2"}); }

    void expect_search(std::string const& name) {
        SCOPED_TRACE(name);
        lines_t const lines = answer();
        ASSERT_GE(lines.size(), 2U);
        EXPECT_TRUE(lines[lines.size() - 2].starts_with("info hashfull "));
        EXPECT_TRUE(lines.back().starts_with("bestmove "));
        quit();
    }

    void expect_book(std::string const& move, std::string const& name) {
        SCOPED_TRACE(name);
        EXPECT_EQ(answer(), lines_t{"bestmove " + move});
        quit();
    }

    /// The names of books that the engine tries to open at its start, as the system sees it. None
    /// where processes cannot be traced; the leak check of the address sanitizer, for one, does
    /// not work under a tracer.
    lines_t opened_books() const {
        std::string const trace = directory.file("trace");
        if (short_tests) {
            return {};
        }
        auto const result =
            run_program(tracer, {"-f", "-e", "trace=open,openat", "-o", trace, engine_binary},
                        {.input = "quit\n", .directory = directory.path()});
        if (result.status != 0) {
            return {};
        }
        lines_t names;
        for (std::string const& line : read_lines(trace)) {
            std::size_t const begin = line.find('"') + 1;
            std::string const name = line.substr(begin, line.find('"', begin) - begin);
            if (name.find("Orvelin") != std::string::npos || name.ends_with(".bin")) {
                names.push_back(name);
            }
        }
        return names;
    }

    static constexpr char const* tracer = "/usr/bin/strace";
    std::string const book = directory.file("Orvelin.bin");
};

TEST_F(ProcessBookTest, WithoutABookTheSearchAnswers) {
    start();
    expect_search("no file");
}

TEST_F(ProcessBookTest, NoOtherNameIsABook) {
    for (char const* const name : {"orvelin.bin", "Orvelin.BIN", "Orvelin", "book.bin",
                                   "Orvelin.bin.bin", "performance.bin"}) {
        write_book(directory.file(name), book_bytes({book_line(start_fen, "a2a3")}));
    }
    fs::create_directory(directory.file("orvelin.files"));
    write_book(directory.file("orvelin.files/Orvelin.bin"),
               book_bytes({book_line(start_fen, "a2a3")}));
    start();
    expect_search("other names");
}

TEST_F(ProcessBookTest, ThreePlacesAreTriedInOrderAndNoOther) {
    lines_t places(installed_books.begin(), installed_books.end());
    places.emplace_back("Orvelin.bin");
    lines_t const names = opened_books();
    if (!names.empty()) {
        EXPECT_EQ(names, places);
    }
}

TEST_F(ProcessBookTest, OneEntry) {
    start(book_bytes({book_line(start_fen, "e2e4")}));
    expect_book("e2e4", "one entry");
}

TEST_F(ProcessBookTest, ManyEntries) {
    std::mt19937_64 random(7);
    std::vector<Book_record> entries{book_line(start_fen, "c2c4")};
    for (int i = 0; i < 20000; ++i) {
        entries.push_back(book_entry(random(), 1 + i % 4095, 1));
    }
    std::stable_sort(entries.begin(), entries.end());
    start(book_bytes(entries));
    expect_book("c2c4", "many entries");
}

TEST_F(ProcessBookTest, OddSizesAreUsedUpToTheLastWholeEntry) {
    std::string const entry = book_bytes({book_line(start_fen, "b1c3")});
    std::string const low = book_bytes({book_entry(1, 77, 1)});
    struct {
        std::string bytes;
        bool found;
    } const rows[] = {
        {"", false},
        {"x", false},
        {entry.substr(0, 15), false},
        {entry + "x", true},
        {entry + entry.substr(0, 15), true},
        {low + entry + "x", true},
        {low + entry.substr(0, 15), false},
        {low.substr(0, 15) + entry, false},
    };
    for (auto const& row : rows) {
        start(row.bytes);
        std::string const name = std::to_string(row.bytes.size()) + " bytes";
        row.found ? expect_book("b1c3", name) : expect_search(name);
    }
}

TEST_F(ProcessBookTest, RubbishIsNoBook) {
    std::mt19937 random(11);
    for (std::size_t const size : {64U, 1000U, 100000U}) {
        std::string bytes(size, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        start(bytes);
        expect_search("rubbish");
    }
    start(std::string(4096, '\0'));
    expect_search("zeros");
    start(std::string(4096, '\xff'));
    expect_search("ones");
    start("this is not a book\nbut a text of two lines\n");
    expect_search("text");
}

TEST_F(ProcessBookTest, EntriesOutOfOrderMayNotBeFound) {
    Book_record const line = book_line(start_fen, "g1f3");
    Book_record const low = book_entry(1, 77, 1);
    Book_record const high = book_entry(~std::uint64_t{0}, 77, 1);
    start(book_bytes({high, line}));
    expect_search("high first");
    start(book_bytes({low, line, high, low, high}));
    expect_book("g1f3", "before the disorder");
}

TEST_F(ProcessBookTest, AFolderOrALoopOfLinksIsNoBook) {
    fs::create_directory(book);
    start();
    expect_search("folder");
    fs::remove(book);
    fs::create_symlink(book, book);
    start();
    expect_search("loop");
    fs::remove(book);
    fs::create_symlink(directory.file("nothing"), book);
    start();
    expect_search("dangling link");
}

TEST_F(ProcessBookTest, AFileCutWhileOpenIsNoMove) {
    start(book_bytes(std::vector<Book_record>(100, book_line(start_fen, "h2h3"))));
    say({});
    fs::resize_file(book, 0);
    expect_search("cut");
}

TEST_F(ProcessBookTest, EveryListedMoveIsPlayedAndTheFirstOneFavoured) {
    start(book_bytes({book_line(start_fen, "e2e4", 1), book_line(start_fen, "d2d4", 1),
                      book_line(start_fen, "c2c4", 2)}));
    engine->send_all({use_book, "position startpos"});
    std::map<std::string, int> counts;
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (int i = 0; i < 180 || (counts.size() < 3 && std::chrono::steady_clock::now() < deadline);
         ++i) {
        engine->send("go");
        auto const line = engine->read_line();
        ASSERT_TRUE(line.has_value());
        ++counts[line->text];
    }
    EXPECT_EQ(counts.size(), 3U);
    // Two chances in four for the first, though its weight is one; one for each of the others.
    EXPECT_GT(counts["bestmove e2e4"], counts["bestmove d2d4"]);
    EXPECT_GT(counts["bestmove e2e4"], counts["bestmove c2c4"]);
    EXPECT_GT(counts["bestmove d2d4"], 0);
    EXPECT_GT(counts["bestmove c2c4"], 0);
}

TEST_F(ProcessBookTest, ARunningSearchGoesOnBehindTheAnswer) {
    start(book_bytes({book_line(start_fen, "a2a3")}));
    engine->send_all({"position startpos", "go wtime 6000000 btime 6000000"});
    ASSERT_NE(engine->find("info depth"), "");
    engine->send_all({use_book, "go depth 1"});
    EXPECT_EQ(engine->find("bestmove"), "bestmove a2a3");
    EXPECT_NE(engine->find("info depth"), "");
    engine->send("stop");
    EXPECT_NE(engine->find("bestmove").substr(0, 13), "bestmove a2a3");
}

TEST_F(ProcessBookTest, TheAnswerIsNotLogged) {
    start(book_bytes({book_line(start_fen, "a2a3")}));
    engine->send("setoption name Debug value true");
    expect_book("a2a3", "logged");
    for (fs::directory_entry const& entry : fs::directory_iterator(directory.path())) {
        if (!entry.path().filename().string().starts_with("uci_eng_")) {
            continue;
        }
        EXPECT_EQ(read_lines(entry.path().string()),
                  (lines_t{"engine <- " + use_book, "engine <- position startpos",
                           "engine <- go depth 2", "engine <- quit"}));
        return;
    }
    ADD_FAILURE() << "no log";
}

TEST_F(ProcessBookTest, CastlingIsWrittenAsTheOptionSays) {
    std::string const fen = positions::white_short_castling;
    start(book_bytes({book_line(fen, "e1h1")}));
    engine->send_all({use_book, "position fen " + fen, "go"});
    EXPECT_EQ(engine->find("bestmove"), "bestmove e1g1");
    engine->send_all({"setoption name UCI_Chess960 value true", "go"});
    EXPECT_EQ(engine->find("bestmove"), "bestmove e1h1");
}

}  // namespace
}  // namespace orvelin::test
