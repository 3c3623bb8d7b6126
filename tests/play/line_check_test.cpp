#include "play/line_check.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "play/position_reader.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::shared_tables;

/// A line of moves that are legal one behind the other.
PrincipalVariation line_of(std::string const& fen, std::vector<std::string> const& moves) {
    ChessPosition position(shared_tables());
    position.fen(fen);
    PrincipalVariation line;
    for (std::string const& text : moves) {
        Move const move = find_legal_move(position, shared_tables(), text);
        EXPECT_NE(move, Move()) << text;
        line[line.size()] = move;
        position.make_move(move);
    }
    return line;
}

std::vector<Move> true_part(std::string const& fen, PrincipalVariation const& line) {
    ChessPosition position(shared_tables());
    position.fen(fen);
    return LineCheck(shared_tables(), position).true_part(line);
}

TEST(LineCheck, KeepsATrueLineWhole) {
    auto const line = line_of(positions::start, {"e2e4", "e7e5", "g1f3", "b8c6"});
    EXPECT_EQ(true_part(positions::start, line).size(), 4U);
}

TEST(LineCheck, CutsAtTheFirstMoveThatIsNotLegal) {
    auto line = line_of(positions::start, {"e2e4", "e7e5"});
    line[2] = line[0];
    line[3] = line[1];
    EXPECT_EQ(true_part(positions::start, line).size(), 2U);
}

TEST(LineCheck, CutsAtARepetition) {
    std::vector<std::string> const there_and_back{"g1f3", "g8f6", "f3g1", "f6g8"};
    std::vector<std::string> moves;
    for (int i = 0; i < 4; ++i) {
        moves.insert(moves.end(), there_and_back.begin(), there_and_back.end());
    }
    EXPECT_LT(true_part(positions::start, line_of(positions::start, moves)).size(), 9U);
}

/// Whether the game is over behind the moves, which are legal one behind the other.
bool ends_game(std::string const& fen, std::vector<std::string> const& moves) {
    ChessPosition position(shared_tables());
    position.fen(fen);
    LineCheck check(shared_tables(), position);
    bool const over = check.ends_game(check.true_part(line_of(fen, moves)));
    EXPECT_EQ(check.root_moves().size(), legal_moves(position, shared_tables()).size());
    // The position is the root again: a second look says the same.
    EXPECT_EQ(check.ends_game(check.true_part(line_of(fen, moves))), over);
    return over;
}

TEST(LineCheck, KnowsWhereAGameEnds) {
    EXPECT_TRUE(ends_game("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", {"a1a8"}));
    EXPECT_TRUE(ends_game("7k/8/5QK1/8/8/8/8/8 w - - 0 1", {"f6f7"}));
    EXPECT_TRUE(ends_game("7k/8/8/8/8/8/8/K6R w - - 99 100", {"h1g1", "h8h7"}));
    EXPECT_TRUE(ends_game(positions::start,
                          {"g1f3", "g8f6", "f3g1", "f6g8", "g1f3", "g8f6", "f3g1", "f6g8"}));
}

TEST(LineCheck, KnowsWhereAGameGoesOn) {
    EXPECT_FALSE(ends_game("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", {"a1a7"}));
    EXPECT_FALSE(ends_game("7k/8/5QK1/8/8/8/8/8 w - - 0 1", {"f6f5"}));
    EXPECT_FALSE(ends_game("7k/8/8/8/8/8/8/K6R w - - 90 100", {"h1g1", "h8h7"}));
    EXPECT_FALSE(ends_game(positions::start, {"g1f3", "g8f6"}));
}

TEST(LineCheck, CutsWhereFiftyMovesWereMadeWithoutProgress) {
    std::string const fen = "7k/8/8/8/8/8/8/K6R w - - 98 100";
    auto const line = line_of(fen, {"h1g1", "h8h7", "g1g2", "h7h6", "g2g3"});
    std::size_t const size = true_part(fen, line).size();
    EXPECT_GE(size, 2U);
    EXPECT_LE(size, 3U);
}

TEST(LineCheck, LeavesItsPositionForTheNextLine) {
    ChessPosition position(shared_tables());
    position.fen(positions::start);
    LineCheck check(shared_tables(), position);
    auto const line = line_of(positions::start, {"e2e4", "e7e5", "g1f3"});
    EXPECT_EQ(check.true_part(line).size(), 3U);
    EXPECT_EQ(check.true_part(line).size(), 3U);
    EXPECT_EQ(position.fen(), positions::start);
}

TEST(LineCheck, KnowsTheMovesOfTheRoot) {
    ChessPosition position(shared_tables());
    position.fen(positions::start);
    EXPECT_EQ(LineCheck(shared_tables(), position).root_moves().size(), 20U);
    position.fen("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    EXPECT_TRUE(LineCheck(shared_tables(), position).root_moves().empty());
}

}  // namespace

}  // namespace orvelin::play::test
