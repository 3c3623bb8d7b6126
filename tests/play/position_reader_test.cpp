#include "play/position_reader.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "play/hostile_lines.h"
#include "play/position_expectations.h"
#include "position/chess_position.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::shared_tables;

std::string reason_of(std::string_view arguments) {
    ChessPosition position(shared_tables());
    return read(arguments, position).refusal.reason;
}

void expect_refused(std::string_view arguments, std::string const& words) {
    std::string const reason = reason_of(arguments);
    EXPECT_NE(reason.find(words), std::string::npos)
        << arguments.substr(0, 200) << " gives: " << reason << "\n not: " << words;
}

/// The knights go out and back again, so many half-moves in all.
std::string shuffle(std::size_t length) {
    static constexpr char const* moves[] = {" g1f3", " g8f6", " f3g1", " f6g8"};
    std::string line = "startpos moves";
    for (std::size_t i = 0; i < length; ++i) {
        line += moves[i % 4];
    }
    return line;
}

TEST(ReadPosition, StartposIsANewGame) {
    ChessPosition position(shared_tables());
    PositionText const text = read(" startpos ", position);
    EXPECT_EQ(text.refusal.reason, "");
    EXPECT_EQ(position.fen(), positions::start);
    EXPECT_EQ(text.game_ply, 0);
    EXPECT_EQ(text.moves_made, 0);
}

TEST(ReadPosition, FenAndMovesAreCounted) {
    ChessPosition position(shared_tables());
    PositionText const text = read("fen 4k3/8/8/8/8/8/8/R3K3 b Q - 3 20 moves e8e7 e1c1", position);
    EXPECT_EQ(text.refusal.reason, "");
    EXPECT_TRUE(text.remarks.empty());
    EXPECT_EQ(position.fen(), "8/4k3/8/8/8/8/8/2KR4 b - - 5 21");
    EXPECT_EQ(text.moves_made, 2);
    EXPECT_EQ(text.game_ply, 41);
}

TEST(ReadPosition, FenOfFourFieldsIsReadWithARemark) {
    ChessPosition position(shared_tables());
    PositionText const text = read("fen 4k3/8/8/8/8/8/8/R3K3 w Q - moves a1a8", position);
    EXPECT_EQ(text.refusal.reason, "");
    EXPECT_EQ(text.remarks.size(), 2U);
    EXPECT_EQ(position.fen(), "R3k3/8/8/8/8/8/8/4K3 b - - 1 1");
}

TEST(ReadPosition, MovesMayBeNone) {
    ChessPosition position(shared_tables());
    EXPECT_EQ(read("startpos moves", position).refusal.reason, "");
    EXPECT_EQ(position.fen(), positions::start);
}

TEST(ReadPosition, AnotherBeginningIsRefused) {
    expect_refused("", "startpos or fen is expected");
    expect_refused("  ", "startpos or fen is expected");
    expect_refused("moves e2e4", "\"moves\", startpos or fen is expected");
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - - 0 1", "startpos or fen is expected");
    expect_refused("startpos e2e4", "\"e2e4\" behind startpos, moves is expected");
}

TEST(ReadPosition, AFenThatIsWrongIsRefused) {
    expect_refused("fen", "FEN is empty");
    expect_refused("fen moves e2e4", "FEN is empty");
    expect_refused("fen 8/8/8/8/8/8/8/8 w - - 0 1 moves e2e4", "White has no king");
    expect_refused("fen 4k3/8/8/8/8/8/8/4K3 w - - 0 1 e1e2", "7 fields");
}

TEST(ReadPosition, RepeatedBlanksInAFenAreARemark) {
    ChessPosition position(shared_tables());
    EXPECT_EQ(read("fen 4k3/8/8/8/8/8/8/4K3  w - - 0 1 moves", position).remarks.size(), 1U);
    EXPECT_EQ(read("fen   4k3/8/8/8/8/8/8/4K3 w - - 0 1   moves", position).remarks.size(), 0U);
}

TEST(ReadPosition, AMoveThatIsNotLegalIsRefusedWithItsPlace) {
    EXPECT_EQ(reason_of("startpos moves e2e4 e7e5 e4e5 d7d5"),
              "position: move 3, \"e4e5\", is not legal in "
              "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2");
    EXPECT_EQ(reason_of("startpos moves e2-e4"),
              "position: move 1, \"e2-e4\", is no move, in " + std::string(positions::start));
}

TEST(ReadPosition, AFenWithoutItsWordGetsAHint) {
    EXPECT_EQ(reason_of("8/k7/8/8/8/8/8/K7 w - - 0 1"),
              "position: \"8/k7/8/8/8/8/8/K7\", startpos or fen is expected; did you forget fen?");
    EXPECT_EQ(reason_of("start"), "position: \"start\", startpos or fen is expected");
}

TEST(ReadPosition, APromotionWithoutItsLetterGetsAHint) {
    std::string const fen = "8/P1k5/8/8/8/8/8/K7 w - - 0 1";
    EXPECT_EQ(
        reason_of("fen " + fen + " moves a7a8"),
        "position: move 1, \"a7a8\", is not legal in " + fen + "; a promotion has a letter: a7a8q");
    EXPECT_EQ(reason_of("fen " + fen + " moves a7b8"),
              "position: move 1, \"a7b8\", is not legal in " + fen);
}

TEST(ReadPosition, AMoveBehindTheEndOfAGameIsNotLegal) {
    expect_refused("startpos moves f2f3 e7e5 g2g4 d8h4 a2a3", "move 5, \"a2a3\", is not legal in ");
}

TEST(ReadPosition, TheMovesBeforeARefusalAreCounted) {
    ChessPosition position(shared_tables());
    EXPECT_EQ(read("startpos moves e2e4 e7e5 e4e5", position).moves_made, 2);
}

TEST(ReadPosition, TheNextLineDoesNotDependOnARefusal) {
    ChessPosition position(shared_tables());
    ChessPosition fresh(shared_tables());
    EXPECT_TRUE(read("startpos moves e2e4 e7e6 x", position).refusal.refused());
    EXPECT_FALSE(read("startpos moves d2d4", position).refusal.refused());
    EXPECT_FALSE(read("startpos moves d2d4", fresh).refusal.refused());
    expect_same(position, fresh);
}

TEST(ReadPosition, LongGamesAreRead) {
    ChessPosition position(shared_tables());
    PositionText const text = read(shuffle(5000), position);
    EXPECT_EQ(text.refusal.reason, "");
    EXPECT_EQ(text.moves_made, 5000);
    EXPECT_EQ(text.game_ply, 5000);
    EXPECT_EQ(position.history().size(), 5001U);
    EXPECT_EQ(position.fen(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 5000 2501");
}

TEST(ReadPosition, TwentyThousandMovesAreReadAndOneMoreIsRefused) {
    ChessPosition position(shared_tables());
    EXPECT_EQ(read(shuffle(20000), position).moves_made, 20000);
    expect_refused(shuffle(20001), "20001 moves, more than 20000");
}

TEST(ReadPosition, TheLargestCountersLeaveRoomForTheMoves) {
    ChessPosition position(shared_tables());
    std::string line = "fen " + std::string(positions::start);
    line = line.substr(0, line.size() - 3) + "20000 20000" + shuffle(20000).substr(8);
    PositionText const text = read(line, position);
    EXPECT_EQ(text.refusal.reason, "");
    EXPECT_EQ(position.get_dfz(), 40000U);
    EXPECT_EQ(text.game_ply, 2 * 29999);
}

TEST(ReadPosition, AMegabyteIsRefusedWithAShortReason) {
    std::string const million(1'000'000, 'x');
    expect_refused(million, "startpos or fen is expected");
    expect_refused("startpos " + million, "moves is expected");
    expect_refused("startpos moves " + million, "is no move");
    expect_refused("fen " + million, "\"x\" in rank 8");
    std::string words;
    for (int i = 0; i < 200'000; ++i) {
        words += " e2e4";
    }
    expect_refused("startpos moves" + words, "200000 moves");
    expect_refused("fen" + words, "200000 fields");
}

TEST(ReadPosition, RandomBytesAreReadOrRefused) {
    HostileLines lines({"startpos", "startpos", "fen", "moves", "moves",
                        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", "r3k2r/8/8/8/8/8/8/R3K2R",
                        "w", "b", "KQkq", "-", "0", "1", "e2e4", "e7e5", "e1g1", "0000", "g1f3"});
    ChessPosition position(shared_tables());
    int read_lines = 0;
    for (int i = 0; i < 20'000; ++i) {
        std::string line = lines.next();
        if (i % 2 == 0) {
            line.insert(0, i % 4 == 0 ? "startpos moves " : "fen ");
        }
        read_lines += read(line, position).refusal.refused() ? 0 : 1;
        // Whatever was read, the position is one.
        EXPECT_LE(legal_moves(position, shared_tables()).size(), 256U);
    }
    EXPECT_GT(read_lines, 100);
}

}  // namespace

}  // namespace orvelin::play::test
