// Books of orvelin-book in the hands of the engine: by its own class and by the binary over pipes.

#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "book/bk_move.h"
#include "book/book.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "support/data_file.h"
#include "support/engine_process.h"
#include "support/installed_book.h"
#include "support/shared_tables.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"
#include "tools/book_tool.h"

namespace orvelin::test {

namespace {

using std::chrono::steady_clock;

/// Weights of 3, because the engine gives the last move of a key one chance less.
const texts_t lines{"e2e4 e7e5 g1f3 b8c6 f1b5 a7a6 e1g1 g8f6",
                    "e2e4 c7c5 g1f3 d7d6",
                    "e2e4 a7a6 e4e5 d7d5 e5d6 h7h6 d6c7 h6h5 c7b8n a8b8",
                    "e2e4 a7a6 e4e5 d7d5 e5d6 h7h6 d6c7 h6h5 c7d8q e8d8",
                    "d2d4 d7d5 b1c3 b8c6 c1f4 c8f5 d1d2 d8d7 e1c1 e8c8",
                    "g1f3 g8f6 f3g1 f6g8 c2c4"};

/// Moves from the start position on, and the moves that the lines have for where they lead.
using book_moves_t = std::map<std::string, std::set<std::string>>;

/// The moves by position, each position named by one way to it.
book_moves_t moves_by_position() {
    ChessPosition position(shared_tables());
    std::map<std::uint64_t, std::string> way_to;
    book_moves_t moves;
    for (std::string const& line : lines) {
        position.newgame();
        std::string way;
        for (std::string const& text : split_words(line)) {
            std::string const& name = way_to.try_emplace(position.get_hash(), way).first->second;
            moves[name].insert(text);
            position.make_move(position.convert_to_move(text));
            way += ' ' + text;
        }
    }
    return moves;
}

void play(ChessPosition& position, std::string const& way) {
    position.newgame();
    for (std::string const& text : split_words(way)) {
        position.make_move(position.convert_to_move(text));
    }
}

void make_book(std::string const& name) {
    std::string text;
    for (std::string const& line : lines) {
        text += "3: " + line + '\n';
    }
    EXPECT_EQ(lines_of({"make", "-", "-o", name}, text).size(), 1U);
}

/// The engine's move, which must come with nothing before it: a book needs no search.
std::string go_in(EngineProcess& engine, std::string const& way) {
    engine.send_all({"position startpos moves" + way, "go depth 1"});
    auto const answer = engine.read_until("bestmove ");
    EXPECT_EQ(answer.size(), 1U) << way;
    return answer.empty() ? "" : answer.back().text;
}

}  // namespace

TEST(BookToolEngine, BookClassFindsEveryMoveAndNoneOther) {
    TemporaryDirectory const directory;
    make_book(directory.file("book.bin"));
    for (auto const& [way, moves] : moves_by_position()) {
        ChessPosition position(shared_tables());
        play(position, way);
        std::set<std::string> drawn;
        auto const deadline = steady_clock::now() + std::chrono::seconds(20);
        do {
            // Each round has a young book: an older one draws the first move for two seconds.
            Book book;
            book.set_name(directory.file("book.bin"));
            book.open();
            for (int i = 0; i < 20; ++i) {
                BKmove const move(book.get_move(position.get_hash()));
                drawn.insert(move(position).algebraic(false));
            }
        } while (drawn.size() < moves.size() && steady_clock::now() < deadline);
        EXPECT_EQ(drawn, moves) << way;
    }
}

TEST(BookToolEngine, LookListsTheSameMoves) {
    TemporaryDirectory const directory;
    make_book(directory.file("book.bin"));
    constexpr int step = short_tests ? 9 : 3;
    for (int number = 0; auto const& [way, moves] : moves_by_position()) {
        if (number++ % step != 0) {
            continue;
        }
        ChessPosition position(shared_tables());
        play(position, way);
        std::set<std::string> listed;
        for (std::string const& line :
             lines_of({"look", directory.file("book.bin"), "--fen", position.fen()})) {
            EXPECT_EQ(split_words(line).size(), 3U) << line;
            listed.insert(split_words(line).at(0));
        }
        EXPECT_EQ(listed, moves) << way;
    }
}

TEST(BookToolEngine, EnginePlaysEveryMoveAndNoneOther) {
    ASSERT_FALSE(installed_book_in_sight()) << book_in_the_way;
    TemporaryDirectory const directory;
    make_book(directory.file("Orvelin.bin"));
    EngineProcess engine(engine_binary, directory.path());
    engine.send("setoption name OwnBook value true");
    book_moves_t const wanted = moves_by_position();
    book_moves_t played;
    // Two seconds in four the engine draws first moves only.
    auto const deadline = steady_clock::now() + std::chrono::seconds(60);
    while (played != wanted && steady_clock::now() < deadline) {
        for (auto const& [way, moves] : wanted) {
            // What is known is not asked for again.
            if (played[way] == moves) {
                continue;
            }
            std::string const answer = go_in(engine, way);
            ASSERT_TRUE(answer.starts_with("bestmove ")) << way;
            std::string const move = answer.substr(9);
            ASSERT_TRUE(moves.contains(move)) << way << ": " << answer;
            played[way].insert(move);
        }
    }
    EXPECT_EQ(played, wanted);
    engine.send("quit");
    EXPECT_TRUE(engine.wait());
}

}  // namespace orvelin::test
