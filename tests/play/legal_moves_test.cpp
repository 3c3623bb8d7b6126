// The legal moves of a position and their texts.

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "play/position_reader.h"
#include "position/chess_position.h"
#include "support/chess960_positions.h"
#include "support/data_file.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::shared_tables;

/// What the text means in the position, written as the king taking its own rook; "0000" for
/// nothing.
std::string meaning(std::string const& fen, std::string_view text) {
    ChessPosition position(shared_tables());
    position.fen(fen);
    return find_legal_move(position, shared_tables(), text).algebraic(true);
}

TEST(FindLegalMove, ReadsAllTextsThatAreWritten) {
    ChessPosition position(shared_tables());
    std::vector<std::string> fens = orvelin::test::random_chess960_fens(shared_tables(), 100);
    for (auto const& block : orvelin::test::read_data_blocks("positions.txt")) {
        fens.push_back(block.at(0).substr(std::string("position ").size()));
    }
    for (std::string const& fen : fens) {
        position.fen(fen);
        for (Move const& move : legal_moves(position, shared_tables())) {
            for (bool const chess960 : {false, true}) {
                Move const found =
                    find_legal_move(position, shared_tables(), move.algebraic(chess960));
                EXPECT_EQ(found.word(), move.word()) << fen << ' ' << move.algebraic(chess960);
            }
        }
    }
}

TEST(FindLegalMove, IsTheMoveThatTheTextGivesElsewhere) {
    ChessPosition position(shared_tables());
    for (auto const& block : orvelin::test::read_data_blocks("positions.txt")) {
        position.fen(block.at(0).substr(std::string("position ").size()));
        for (Move const& move : legal_moves(position, shared_tables())) {
            std::string const text = move.algebraic(false);
            EXPECT_EQ(position.convert_to_move(text).word(), move.word())
                << position.fen() << ' ' << text;
        }
    }
}

TEST(FindLegalMove, HasTheCheckBit) {
    ChessPosition position(shared_tables());
    position.fen("4k3/8/8/8/8/8/8/R3K3 w Q - 0 1");
    EXPECT_TRUE(find_legal_move(position, shared_tables(), "a1a8").check());
    EXPECT_FALSE(find_legal_move(position, shared_tables(), "a1a7").check());
}

TEST(FindLegalMove, PromotionLetterInAnyCase) {
    std::string const fen = "7k/4P3/8/8/8/8/8/K7 w - - 0 1";
    EXPECT_EQ(meaning(fen, "e7e8q"), "e7e8q");
    EXPECT_EQ(meaning(fen, "e7e8Q"), "e7e8q");
    EXPECT_EQ(meaning(fen, "e7e8N"), "e7e8n");
    EXPECT_EQ(meaning(fen, "e7e8r"), "e7e8r");
    EXPECT_EQ(meaning(fen, "e7e8B"), "e7e8b");
}

TEST(FindLegalMove, PromotionNeedsItsLetterAndOthersHaveNone) {
    EXPECT_EQ(meaning("7k/4P3/8/8/8/8/8/K7 w - - 0 1", "e7e8"), "0000");
    EXPECT_EQ(meaning("7k/4P3/8/8/8/8/8/K7 w - - 0 1", "e7e8k"), "0000");
    EXPECT_EQ(meaning("7k/4P3/8/8/8/8/8/K7 w - - 0 1", "e7e8 "), "0000");
    EXPECT_EQ(meaning(positions::start, "e2e4q"), "0000");
}

TEST(FindLegalMove, CastlingAsStepAndAsCaptureOfTheRook) {
    EXPECT_EQ(meaning(positions::all_castlings, "e1g1"), "e1h1");
    EXPECT_EQ(meaning(positions::all_castlings, "e1h1"), "e1h1");
    EXPECT_EQ(meaning(positions::all_castlings, "e1c1"), "e1a1");
    EXPECT_EQ(meaning(positions::all_castlings, "e1a1"), "e1a1");
    std::string const black = "r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1";
    EXPECT_EQ(meaning(black, "e8g8"), "e8h8");
    EXPECT_EQ(meaning(black, "e8c8"), "e8a8");
    EXPECT_EQ(meaning("r3k2r/8/8/8/8/8/8/R3K2R w - - 0 1", "e1g1"), "0000");
}

TEST(FindLegalMove, StepOfAnotherStartPositionIsCastlingToo) {
    std::string const fen = "4k3/8/8/8/8/8/8/R2K3R w KQ - 0 1";
    EXPECT_EQ(meaning(fen, "d1g1"), "d1h1");
    EXPECT_EQ(meaning(fen, "d1h1"), "d1h1");
    EXPECT_EQ(meaning(fen, "d1a1"), "d1a1");
}

TEST(FindLegalMove, StepThatIsAKingMoveIsTheKingMove) {
    // The king on d1 castles long to c1, next to it.
    EXPECT_EQ(meaning("4k3/8/8/8/8/8/8/R2K3R w KQ - 0 1", "d1c1"), "d1c1");
    EXPECT_EQ(meaning("4k3/8/8/8/8/8/8/R4K1R w KQ - 0 1", "f1g1"), "f1g1");
    EXPECT_EQ(meaning("4k3/8/8/8/8/8/8/R4K1R w KQ - 0 1", "f1h1"), "f1h1");
}

TEST(FindMove, DoesNotDependOnTheOrderOfTheMoves) {
    ChessPosition position(shared_tables());
    position.fen("4k3/8/8/8/8/8/8/R2K3R w KQ - 0 1");
    std::vector<Move> moves = legal_moves(position, shared_tables());
    for (int order = 0; order < 2; ++order) {
        EXPECT_EQ(find_move(moves, "d1c1").code(), normal_move);
        EXPECT_EQ(find_move(moves, "d1a1").code(), castling);
        EXPECT_EQ(find_move(moves, "d1g1").algebraic(true), "d1h1");
        std::reverse(moves.begin(), moves.end());
    }
    EXPECT_EQ(find_move({}, "d1c1").word(), 0U);
}

TEST(FindLegalMove, StepOntoTheOwnRookIsCastlingWithIt) {
    EXPECT_EQ(meaning("4k3/8/8/8/8/8/8/R4KR1 w GA - 0 1", "f1g1"), "f1g1");
    ChessPosition position(shared_tables());
    position.fen("4k3/8/8/8/8/8/8/R4KR1 w GA - 0 1");
    EXPECT_EQ(find_legal_move(position, shared_tables(), "f1g1").code(), castling);
}

TEST(FindLegalMove, KingThatStandsOnItsTargetCastlesOntoTheRookOnly) {
    std::string const fen = "4k3/8/8/8/8/8/8/R5KR w KQ - 0 1";
    EXPECT_EQ(meaning(fen, "g1h1"), "g1h1");
    EXPECT_EQ(meaning(fen, "g1g1"), "0000");
}

TEST(FindLegalMove, OtherTextsAreNoMoves) {
    for (std::string_view const text : {"", "0000", "e2", "e2e", "e2e5", "E2E4", "e2-e4", "e2e4 ",
                                        "Nf3", "i2i4", "e9e4", "e2i1", "a1a1", "O-O", "e7e5"}) {
        EXPECT_EQ(meaning(positions::start, text), "0000") << text;
    }
    EXPECT_EQ(meaning(positions::start, std::string_view("e2e\0", 4)), "0000");
    EXPECT_EQ(meaning(positions::start, std::string(1'000'000, 'e')), "0000");
}

TEST(LegalMoves, AreThoseOfTheGenerator) {
    ChessPosition position(shared_tables());
    position.newgame();
    EXPECT_EQ(legal_moves(position, shared_tables()).size(), 20U);
    position.fen(positions::kiwipete);
    EXPECT_EQ(legal_moves(position, shared_tables()).size(), 48U);
    position.fen("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    EXPECT_TRUE(legal_moves(position, shared_tables()).empty());
}

}  // namespace

}  // namespace orvelin::play::test
