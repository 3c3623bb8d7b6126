// A position that is read is the one that the exact engine sets up from the same words.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "generation/tables.h"
#include "play/position_expectations.h"
#include "play/position_reader.h"
#include "position/chess_position.h"
#include "search/analysis.h"
#include "support/chess960_positions.h"
#include "support/data_file.h"
#include "support/data_folder.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::join_words;
using orvelin::test::shared_tables;
using orvelin::test::split_words;

/// A position as the exact engine sets it up from the same words.
void set_up_by_text(std::vector<std::string> const& words, ChessPosition& position) {
    auto const moves = std::find(words.begin(), words.end(), "moves");
    if (words[0] == "startpos") {
        position.newgame();
    } else {
        position.fen(join_words({words.begin() + 1, moves}));
    }
    for (auto move = moves; move != words.end() && ++move != words.end();) {
        position.make_move(position.convert_to_move(*move));
    }
}

/// A game of random moves from a position, as the words behind `position`.
std::string random_game(std::string const& start, std::size_t length, std::uint64_t seed) {
    ChessPosition position(shared_tables());
    std::string line = start;
    read(line, position);
    line += " moves";
    std::mt19937_64 random(seed);
    for (std::size_t i = 0; i < length; ++i) {
        auto const moves = legal_moves(position, shared_tables());
        if (moves.empty()) {
            break;
        }
        Move const move = moves[random() % moves.size()];
        line += ' ' + move.algebraic(random() % 2 == 0);
        position.make_move(move);
    }
    return line;
}

TEST(ReadPosition, IsThePositionThatTheTextsGiveElsewhere) {
    std::vector<std::string> lines;
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        lines.push_back(random_game("startpos", 150, seed));
    }
    for (std::string const& fen : orvelin::test::random_chess960_fens(shared_tables(), 30)) {
        lines.push_back(random_game("fen " + fen, 60, lines.size()));
    }
    for (std::string const& line : lines) {
        ChessPosition by_reader(shared_tables());
        ChessPosition by_text(shared_tables());
        EXPECT_EQ(read(line, by_reader).refusal.reason, "") << line;
        set_up_by_text(split_words(line), by_text);
        expect_same(by_reader, by_text);
    }
}

TEST(ReadPosition, RecordedSessionsAreReadWithoutARemark) {
    int lines = 0;
    for (char const* file :
         {"search_chess960.txt", "search_depth8.txt", "search_depth12.txt", "search_endings.txt",
          "search_games.txt", "search_limits.txt", "search_table_endings.txt", "signature.txt"}) {
        std::ifstream session(std::string(orvelin::test::data_folder) + '/' + file);
        for (std::string line; std::getline(session, line);) {
            if (line.rfind("> pos ", 0) != 0) {
                continue;
            }
            ++lines;
            std::string const arguments = "fen " + line.substr(6);
            ChessPosition by_reader(shared_tables());
            ChessPosition by_text(shared_tables());
            PositionText const text = read(arguments, by_reader);
            EXPECT_EQ(text.refusal.reason, "") << line;
            EXPECT_TRUE(text.remarks.empty()) << line << ": " << text.remarks[0];
            set_up_by_text(split_words(arguments), by_text);
            expect_same(by_reader, by_text);
        }
    }
    EXPECT_GT(lines, 300);
}

TEST(ReadPosition, TheSearchIsTheSameAsFromTheTexts) {
    std::string const line = random_game("startpos", 30, 13);
    std::vector<std::uint64_t> nodes;
    std::vector<std::uint32_t> moves;
    for (bool const by_reader : {true, false}) {
        Tables tables;
        tables.transposition_table.set_size(6);
        ChessPosition position(tables);
        Analysis analysis(position, tables);
        if (by_reader) {
            EXPECT_FALSE(read_position(line, tables, position).refusal.refused());
        } else {
            set_up_by_text(split_words(line), position);
        }
        analysis.init(position);
        analysis.reset();
        analysis.set_depth(7);
        analysis.iterative_search();
        nodes.push_back(analysis.get_node_count());
        moves.push_back(analysis.best_move().word());
    }
    EXPECT_GT(nodes[0], 1000U);
    EXPECT_EQ(nodes[0], nodes[1]);
    EXPECT_EQ(moves[0], moves[1]);
}

}  // namespace

}  // namespace orvelin::play::test
