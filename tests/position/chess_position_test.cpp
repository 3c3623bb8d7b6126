#include "position/chess_position.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "generation/tables.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

using test::start_fen;
const std::string castling_fen = positions::all_castlings;

class ChessPositionTest : public ::testing::Test {
 protected:
    void play(std::string const& text) { position.make_move(position.convert_to_move(text)); }

    ChessPosition position{test::shared_tables()};
};

TEST_F(ChessPositionTest, EveryConstructorTakesTheNextId) {
    int const before = ChessPosition::cp_id;
    const ChessPosition first(test::shared_tables());
    const ChessPosition second(first);
    EXPECT_EQ(first.id(), before + 1);
    EXPECT_EQ(second.id(), before + 2);
    EXPECT_EQ(ChessPosition::cp_id, before + 2);
}

TEST_F(ChessPositionTest, IsClearedWhenConstructed) {
    EXPECT_EQ(position.initial_position(), positions::empty_board);
    EXPECT_EQ(position.fen(), positions::empty_board);
    ASSERT_EQ(position.history().size(), 1U);
    EXPECT_EQ(position.ep().id(), 64);
    EXPECT_EQ(position.white_kingsfield().id(), 64);
    EXPECT_EQ(position.black_kingsfield().id(), 64);
    EXPECT_EQ(position.last_move(), Move());
    EXPECT_EQ(position.move_number(), 1);
    EXPECT_EQ(position.get_make_move_counter(), 0U);
    EXPECT_EQ(position.materialindex().index(), 0U);
    EXPECT_EQ(position.get_pawnhash(), 0U);
    EXPECT_EQ(position.get_hash(), test::shared_tables().hash_keys.turn);
    EXPECT_FALSE(position.check());
}

TEST_F(ChessPositionTest, ClearForgetsTheGame) {
    position.newgame();
    play("e2e4");
    position.clear();
    EXPECT_EQ(position.stm(), 1);
    EXPECT_EQ(position.fen(), positions::empty_board);
    EXPECT_EQ(position.history().size(), 1U);
    EXPECT_EQ(position.get_make_move_counter(), 0U);
    EXPECT_EQ(position.materialindex().index(), 0U);
    EXPECT_FALSE(position.draw_by_threefold_repetition());
}

TEST_F(ChessPositionTest, NewGameSetsTheStartPosition) {
    position.newgame();
    EXPECT_EQ(position.fen(), start_fen);
    EXPECT_EQ(position.initial_position(), start_fen);
    EXPECT_EQ(position.stm(), 1);
    EXPECT_EQ(position.castlingrights(), 0x8181);
    EXPECT_EQ(position.materialindex().index(), 0x0001222800012228U);
    EXPECT_EQ(position.white_kingsfield(), Square("e1"));
    EXPECT_EQ(position.black_kingsfield(), Square("e8"));
}

TEST_F(ChessPositionTest, NewGameStoresFileLettersUnderTheChess960Flag) {
    position.set_chess960(true);
    position.newgame();
    EXPECT_EQ(position.initial_position(),
              "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w AHah - 0 1");
}

TEST_F(ChessPositionTest, CopyKeepsTheGameAndStartsItsCounterAtZero) {
    position.newgame();
    for (char const* text : {"g1f3", "g8f6", "f3g1"}) {
        play(text);
    }
    const ChessPosition copy(position);
    EXPECT_TRUE(copy == position);
    EXPECT_EQ(copy.get_hash(), position.get_hash());
    EXPECT_EQ(copy.get_pawnhash(), position.get_pawnhash());
    EXPECT_EQ(copy.initial_position(), start_fen);
    EXPECT_EQ(copy.history_str(), "g1f3 g8f6 f3g1");
    EXPECT_TRUE(copy.repetition_filter() == position.repetition_filter());
    EXPECT_EQ(copy.materialindex(), position.materialindex());
    EXPECT_EQ(position.get_make_move_counter(), 6U);
    EXPECT_EQ(copy.get_make_move_counter(), 0U);
}

TEST_F(ChessPositionTest, CopyHoldsTheCurrentKeysOnly) {
    position.newgame();
    play("g1f3");
    play("g8f6");
    ChessPosition copy(position);
    const std::uint64_t pieces = copy.get_hash() ^ test::shared_tables().hash_keys.turn;
    copy.unmake_move();
    EXPECT_EQ(copy.get_hash(), pieces);
    EXPECT_EQ(copy.fen(), "rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq - 1 1");
}

TEST_F(ChessPositionTest, AssignmentKeepsTheId) {
    ChessPosition other(test::shared_tables());
    int const id = other.id();
    position.newgame();
    play("e2e4");
    other = position;
    EXPECT_EQ(other.id(), id);
    EXPECT_TRUE(other == position);
    EXPECT_EQ(other.history_str(), "e2e4");
    EXPECT_EQ(other.initial_position(), start_fen);
    EXPECT_EQ(other.get_make_move_counter(), 0U);
}

TEST_F(ChessPositionTest, AssignmentToItselfDoesNothing) {
    position.newgame();
    play("e2e4");
    ChessPosition& same = position;
    position = same;
    EXPECT_EQ(position.history_str(), "e2e4");
    EXPECT_EQ(position.get_make_move_counter(), 2U);
}

TEST_F(ChessPositionTest, CopyAndAssignmentDoNotTakeTheChess960Flag) {
    const std::string by_file = "r3k2r/8/8/8/8/8/8/R3K2R w AHah - 0 1";
    position.fen(castling_fen);
    position.set_chess960(true);
    ASSERT_EQ(position.fen(), by_file);
    const ChessPosition copy(position);
    EXPECT_EQ(copy.fen(), castling_fen);
    ChessPosition assigned(test::shared_tables());
    assigned = position;
    EXPECT_EQ(assigned.fen(), castling_fen);
    // The target's own flag stays.
    position = copy;
    EXPECT_EQ(position.fen(), by_file);
}

TEST_F(ChessPositionTest, EqualityLooksAtTheCurrentStateOnly) {
    position.fen(castling_fen);
    ChessPosition other(position);
    EXPECT_TRUE(position == other);
    EXPECT_FALSE(position != other);
    other.fen("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1");
    EXPECT_TRUE(position != other);
    other.fen("r3k2r/8/8/8/8/8/8/R3K2R w KQk - 0 1");
    EXPECT_TRUE(position != other);
    other.fen("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 1 1");
    EXPECT_TRUE(position != other);
    other.fen("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 2");
    EXPECT_TRUE(position != other);
    other.fen("r3k2r/8/8/8/8/8/8/R3K2R w KQkq a6 0 1");
    EXPECT_TRUE(position != other);
    other.fen("r3k2r/8/8/8/8/8/8/R3K1R1 w KQkq - 0 1");
    EXPECT_TRUE(position != other);
    other.fen(castling_fen);
    other.set_castlingrights(0);
    EXPECT_EQ(other.castlingrights(), 0);
    EXPECT_TRUE(position != other);
}

// Pieces that are put on by hand leave the derived sets as they were.
TEST_F(ChessPositionTest, EqualityNeedsTheSamePinnedPieces) {
    position.fen("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    ChessPosition other(test::shared_tables());
    other.fen("7k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    other.set_piece_on(Square("e8"), Piece(black_rook));
    ASSERT_NE(other.pinned_pieces(), position.pinned_pieces());
    ASSERT_EQ(other.discovering_pieces(), position.discovering_pieces());
    EXPECT_TRUE(position != other);
    other.fen(position.fen());
    EXPECT_TRUE(position == other);
}

TEST_F(ChessPositionTest, EqualityNeedsTheSameDiscoveringPieces) {
    position.fen("4k3/8/8/8/4N3/8/8/K3R3 w - - 0 1");
    ChessPosition other(test::shared_tables());
    other.fen("4k3/8/8/8/4N3/8/8/K7 w - - 0 1");
    other.set_piece_on(Square("e1"), Piece(white_rook));
    ASSERT_EQ(other.pinned_pieces(), position.pinned_pieces());
    ASSERT_NE(other.discovering_pieces(), position.discovering_pieces());
    EXPECT_TRUE(position != other);
    other.fen(position.fen());
    EXPECT_TRUE(position == other);
}

TEST_F(ChessPositionTest, SetAndRemovePieceRenewTheAggregates) {
    position.set_piece_on(Square("e4"), Piece(5));
    EXPECT_EQ(position.pieces(), Square("e4").bitboard());
    EXPECT_EQ(position.white_pieces(), Square("e4").bitboard());
    EXPECT_EQ(position.get_piece_id_from(Square("e4")), 5);
    EXPECT_EQ(position.get_piece_id_from(Square("e4").bitboard()), 5);
    EXPECT_TRUE(position.get_piece_from(Square("e4")).white_queen());
    EXPECT_EQ(position[28].id(), 5);
    position.compute_materialindex();
    EXPECT_EQ(position.materialindex().get_whitequeen(), 1);
    position.remove_piece_from(Square("e4"), Piece(5));
    EXPECT_FALSE(position.pieces());
    EXPECT_EQ(position.get_piece_id_from(Square("e4")), 0);
}

TEST_F(ChessPositionTest, PieceBoardsAreThoseOfTheBoard) {
    position.newgame();
    BitBoard const* boards[] = {
        &position.white_pawn(), &position.white_knight(), &position.white_bishop(),
        &position.white_rook(), &position.white_queen(),  &position.white_king(),
        &position.black_pawn(), &position.black_knight(), &position.black_bishop(),
        &position.black_rook(), &position.black_queen(),  &position.black_king()};
    const std::uint64_t expected[] = {0xFF00,
                                      0x42,
                                      0x24,
                                      0x81,
                                      0x08,
                                      0x10,
                                      0x00FF000000000000,
                                      0x4200000000000000,
                                      0x2400000000000000,
                                      0x8100000000000000,
                                      0x0800000000000000,
                                      0x1000000000000000};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(*boards[i], BitBoard(expected[i])) << i;
        EXPECT_EQ(position.piece(i < 6 ? i + 1 : i + 3), BitBoard(expected[i])) << i;
    }
    EXPECT_EQ(position.white_pieces(), BitBoard(std::uint64_t{0xFFFF}));
    EXPECT_EQ(position.black_pieces(), BitBoard(std::uint64_t{0xFFFF000000000000}));
    EXPECT_TRUE(position.board() == ChessPosition(position).board());
}

TEST_F(ChessPositionTest, SwitchColorChangesTheSideOnly) {
    position.newgame();
    position.switch_color_to_move();
    EXPECT_EQ(position.stm(), 0);
    EXPECT_TRUE(position.black_to_move());
    EXPECT_FALSE(position.white_to_move());
    EXPECT_EQ(position.history().size(), 1U);
}

TEST_F(ChessPositionTest, EveryChangeThatIsNoMoveIsCounted) {
    position.newgame();
    std::uint64_t counted = position.set_ups();
    auto const changed = [&] {
        return position.set_ups() != std::exchange(counted, position.set_ups());
    };
    position.make_move(position.convert_to_move("e2e4"));
    position.unmake_move();
    EXPECT_FALSE(changed());
    position.switch_color_to_move();
    EXPECT_TRUE(changed());
    position.set_castlingrights(0);
    EXPECT_TRUE(changed());
    position.remove_piece_from(Square("e2"), Piece(white_pawn));
    EXPECT_TRUE(changed());
    position.set_piece_on(Square("e2"), Piece(white_pawn));
    EXPECT_TRUE(changed());
    position.clear();
    EXPECT_TRUE(changed());
    position.fen(start_fen);
    EXPECT_TRUE(changed());
}

TEST_F(ChessPositionTest, NobelmenSumsBothSides) {
    EXPECT_EQ(position.nobelmen(), 0);
    position.newgame();
    EXPECT_EQ(position.nobelmen(), 6200);
    position.fen("4k3/8/8/8/8/8/q7/R2NKB2 w - - 0 1");
    EXPECT_EQ(position.nobelmen(), 900 + 500 + 300 + 300);
}

TEST_F(ChessPositionTest, ForcedMoveMovesThePiecesOnly) {
    position.newgame();
    const std::uint64_t key = position.get_pawnhash();
    const Move move = position.convert_to_move(Square("e2"), Square("e4"), normal_move);
    position.force_move(move);
    EXPECT_EQ(position.get_piece_id_from(Square("e4")), 1);
    EXPECT_EQ(position.history().size(), 1U);
    EXPECT_EQ(position.get_pawnhash(), key);
    EXPECT_EQ(position.get_make_move_counter(), 0U);
    position.undo_forced_move(move);
    EXPECT_EQ(position.fen(), start_fen);
}

TEST_F(ChessPositionTest, DumpNamesBoardMoveHashCheckAndSets) {
    position.fen("3kq3/8/8/8/8/4N3/8/4K3 b - - 0 7");
    char hash[17];
    std::snprintf(hash, sizeof hash, "%lx", position.get_hash());
    EXPECT_EQ(position.dump(),
              position.board().dump() + "\ntotal moves: 7\nhash: " + hash +
                  "\ncheck: false\npinned pieces: " + Square("e3").bitboard().dump() +
                  "discovering pieces: " + BitBoard().dump());
}

class LoggingTest : public ChessPositionTest {
 protected:
    LoggingTest() : old_folder(std::filesystem::current_path()) {
        std::filesystem::create_directories(folder);
        std::filesystem::current_path(folder);
    }
    ~LoggingTest() override {
        std::filesystem::current_path(old_folder);
        std::filesystem::remove_all(folder);
    }
    std::string log_name() const { return "cposition_" + std::to_string(position.id()) + ".log"; }

    const std::filesystem::path old_folder;
    const std::filesystem::path folder =
        std::filesystem::path(::testing::TempDir()) /
        ("position_log_" +
         std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
};

TEST_F(LoggingTest, OpensAndEmptiesTheLogFile) {
    std::ofstream(log_name()) << "old text";
    position.set_logging(true);
    EXPECT_TRUE(std::filesystem::exists(log_name()));
    EXPECT_EQ(std::filesystem::file_size(log_name()), 0U);
}

TEST_F(LoggingTest, OnWhileOnOpensNothing) {
    position.set_logging(true);
    std::filesystem::remove(log_name());
    position.set_logging(true);
    EXPECT_FALSE(std::filesystem::exists(log_name()));
    position.set_logging(false);
    position.set_logging(false);
    position.set_logging(true);
    EXPECT_TRUE(std::filesystem::exists(log_name()));
}

TEST_F(LoggingTest, ReportsAFileThatCannotBeOpened) {
    std::filesystem::create_directory(log_name());
    ::testing::internal::CaptureStderr();
    position.set_logging(true);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "ChessPosition open file error\n");
}

TEST_F(LoggingTest, ACopyOfALoggingPositionHasTheFlagButNoFile) {
    position.set_logging(true);
    ChessPosition copy(position);
    copy.set_logging(true);
    EXPECT_FALSE(std::filesystem::exists("cposition_" + std::to_string(copy.id()) + ".log"));
}

TEST_F(ChessPositionTest, CopyOfABoardThatWasChangedByHandIsOneToo) {
    position.newgame();
    ChessPosition copy(position);
    EXPECT_FALSE(copy.board_is_inconsistent());
    position.set_piece_on(Square(30), Piece(white_queen));
    copy = position;
    EXPECT_TRUE(copy.board_is_inconsistent());
}

// Its board is read from text, which tells less than the moves of the history need.
TEST_F(ChessPositionTest, CopyOfAnInconsistentBoardStaysSoWhenTheOddMoveIsUnmade) {
    position.newgame();
    position.make_move(Square("d1"), Square("d1"), normal_move);
    ChessPosition copy(position);
    position.unmake_move();
    copy.unmake_move();
    EXPECT_FALSE(position.board_is_inconsistent());
    EXPECT_TRUE(copy.board_is_inconsistent());
}

}  // namespace
}  // namespace orvelin
