#include "play/board_text.h"

#include <gtest/gtest.h>
#include <string>

#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::shared_tables;

std::string text_of(std::string const& fen, bool chess960 = false) {
    ChessPosition position(shared_tables());
    position.fen(fen);
    return board_text(position, shared_tables(), chess960);
}

TEST(BoardText, ShowsEachPieceOnItsSquare) {
    std::string const text = text_of("r6k/1n6/2b5/3q4/4P3/5N2/6B1/K6Q w - - 0 1");
    for (std::string const row :
         {"8 | r |   |   |   |   |   |   | k |", "7 |   | n |", "6 |   |   | b |",
          "5 |   |   |   | q |", "4 |   |   |   |   | P |", "3 |   |   |   |   |   | N |",
          "2 |   |   |   |   |   |   | B |", "1 | K |   |   |   |   |   |   | Q |"}) {
        EXPECT_NE(text.find(row), std::string::npos) << row << '\n' << text;
    }
}

TEST(BoardText, TellsFenKeyAndMoves) {
    std::string const text = text_of(positions::white_short_castling);
    EXPECT_NE(text.find("FEN: " + std::string(positions::white_short_castling) + '\n'),
              std::string::npos);
    std::size_t const key = text.find("Key: ");
    ASSERT_NE(key, std::string::npos);
    EXPECT_EQ(text.find('\n', key) - key, 5U + 16U);
    EXPECT_NE(text.find(" e1g1"), std::string::npos);
    EXPECT_NE(text_of(positions::white_short_castling, true).find(" e1h1"), std::string::npos);
}

TEST(BoardText, FlippedFenIsItsOwnOpposite) {
    ChessPosition position(shared_tables());
    position.fen(positions::rook_ending);
    std::string const flipped = flipped_fen(position, shared_tables());
    EXPECT_EQ(position.fen(), positions::rook_ending);
    EXPECT_NE(flipped, positions::rook_ending);
    position.fen(flipped);
    EXPECT_EQ(flipped_fen(position, shared_tables()), positions::rook_ending);
}

}  // namespace

}  // namespace orvelin::play::test
