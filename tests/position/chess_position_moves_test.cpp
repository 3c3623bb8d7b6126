#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

const std::string castling_fen = positions::all_castlings;

class MakeMoveTest : public ::testing::Test {
 protected:
    void play(std::string const& text) { position.make_move(position.convert_to_move(text)); }

    ChessPosition position{test::shared_tables()};
};

TEST_F(MakeMoveTest, ARookLeavingItsFileClearsItsBitOnly) {
    position.fen(castling_fen);
    play("a1a2");
    EXPECT_EQ(position.castlingrights(), 0x8180);
    play("h8h7");
    EXPECT_EQ(position.castlingrights(), 0x0180);
    play("h1h2");
    EXPECT_EQ(position.castlingrights(), 0x0100);
    play("a8a7");
    EXPECT_EQ(position.castlingrights(), 0);
}

TEST_F(MakeMoveTest, AKingMoveClearsTheWholeByte) {
    position.fen(castling_fen);
    play("e1e2");
    EXPECT_EQ(position.castlingrights(), 0x8100);
    play("e8d7");
    EXPECT_EQ(position.castlingrights(), 0);
}

TEST_F(MakeMoveTest, CastlingClearsTheWholeByte) {
    position.fen(castling_fen);
    play("e1g1");
    EXPECT_EQ(position.castlingrights(), 0x8100);
    play("e8c8");
    EXPECT_EQ(position.castlingrights(), 0);
}

TEST_F(MakeMoveTest, CapturingARookAtHomeClearsTheOtherSidesBit) {
    position.fen(castling_fen);
    play("a1a8");
    EXPECT_EQ(position.castlingrights(), 0x8080);
    position.fen(castling_fen);
    position.switch_color_to_move();
    play("h8h1");
    EXPECT_EQ(position.castlingrights(), 0x0101);
}

TEST_F(MakeMoveTest, APieceOfRankOneThatIsNoRookAlsoClearsItsSquaresBit) {
    position.fen("4k3/8/8/8/8/8/8/1N2K2R w BH - 0 1");
    play("b1c3");
    EXPECT_EQ(position.castlingrights(), 0x0080);
}

TEST_F(MakeMoveTest, DoublePushWithoutNeighbourLeavesNoEnPassantSquare) {
    position.newgame();
    play("e2e4");
    EXPECT_EQ(position.ep().id(), 64);
    EXPECT_EQ(position.get_hash(), 0x823C9B50FD114196U);
}

TEST_F(MakeMoveTest, DoublePushBesideAnEnemyPawnSetsTheSquareBetween) {
    position.fen("4k3/8/8/8/3p4/8/4P3/4K3 w - - 0 1");
    play("e2e4");
    EXPECT_EQ(position.ep(), Square("e3"));
    position.fen("4k3/3p4/8/4P3/8/8/8/4K3 b - - 0 1");
    play("d7d5");
    EXPECT_EQ(position.ep(), Square("d6"));
}

TEST_F(MakeMoveTest, DoublePushBesideAnOwnPawnOrAnotherPieceDoesNot) {
    position.fen("4k3/8/8/8/3P1n2/8/4P3/4K3 w - - 0 1");
    play("e2e4");
    EXPECT_EQ(position.ep().id(), 64);
}

TEST_F(MakeMoveTest, SinglePushBesideAnEnemyPawnDoesNot) {
    position.fen("4k3/8/8/8/8/3p4/4P3/4K3 w - - 0 1");
    play("e2e3");
    EXPECT_EQ(position.ep().id(), 64);
}

TEST_F(MakeMoveTest, TheNeighbourTestWrapsAroundTheEdge) {
    position.fen("4k3/8/8/8/8/7p/P7/4K3 w - - 0 1");
    play("a2a4");
    EXPECT_EQ(position.ep(), Square("a3"));
    position.fen("4k3/8/8/p7/8/8/7P/4K3 w - - 0 1");
    play("h2h4");
    EXPECT_EQ(position.ep(), Square("h3"));
}

TEST_F(MakeMoveTest, NullMoveKeepsRightsAndClearsEnPassant) {
    position.fen("r3k2r/8/8/8/4pP2/8/8/R3K2R b KQkq f3 7 9");
    const std::uint64_t counter = position.get_make_move_counter();
    position.make_move(Move());
    EXPECT_EQ(position.castlingrights(), 0x8181);
    EXPECT_EQ(position.ep().id(), 64);
    EXPECT_EQ(position.get_dfz(), 8);
    EXPECT_EQ(position.get_make_move_counter(), counter + 1);
    EXPECT_EQ(position.stm(), 1);
    EXPECT_EQ(position.move_number(), 10);
    position.unmake_move();
    EXPECT_EQ(position.fen(), "r3k2r/8/8/8/4pP2/8/8/R3K2R b KQkq f3 7 9");
}

TEST_F(MakeMoveTest, DfzCountsQuietMovesAndRestartsOtherwise) {
    position.fen("4k3/8/8/8/8/1n6/P7/R3K3 w - - 5 9");
    play("e1e2");
    EXPECT_EQ(position.get_dfz(), 6);
    play("b3a1");
    EXPECT_EQ(position.get_dfz(), 0);
    play("a2a3");
    EXPECT_EQ(position.get_dfz(), 0);
}

TEST_F(MakeMoveTest, MoveNumberFollowsBlacksMoves) {
    position.newgame();
    play("g1f3");
    EXPECT_EQ(position.move_number(), 1);
    play("g8f6");
    EXPECT_EQ(position.move_number(), 2);
    play("f3g1");
    EXPECT_EQ(position.move_number(), 2);
    position.unmake_move();
    EXPECT_EQ(position.move_number(), 2);
    position.unmake_move();
    EXPECT_EQ(position.move_number(), 1);
    position.unmake_move();
    EXPECT_EQ(position.move_number(), 1);
}

TEST_F(MakeMoveTest, MoveNumberAtTheEndOfItsRangeWraps) {
    position.fen("4k3/8/8/8/8/8/8/4K3 b - - 0 2147483647");
    position.make_move(Move());
    EXPECT_EQ(position.move_number(), std::numeric_limits<int>::min());
    position.unmake_move();
    EXPECT_EQ(position.move_number(), std::numeric_limits<int>::max());
}

TEST_F(MakeMoveTest, TheRecordTakesTheMovesCheckBit) {
    position.fen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    Move move = position.convert_to_move(Square("a1"), Square("a8"), normal_move);
    EXPECT_FALSE(move.check());
    position.make_move(move);
    EXPECT_FALSE(position.check());
    position.unmake_move();
    move.check(true);
    position.make_move(move);
    EXPECT_TRUE(position.check());
    EXPECT_EQ(position.last_move(), move);
}

TEST_F(MakeMoveTest, SquarePairMoveFindsCheckByItself) {
    position.fen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    position.make_move(Square("a1"), Square("a8"), normal_move);
    EXPECT_TRUE(position.check());
    EXPECT_TRUE(position.last_move().check());
    EXPECT_EQ(position.history().size(), 2U);
    EXPECT_EQ(position.get_make_move_counter(), 2U);
    position.make_move(Square("e8"), Square("e7"), normal_move);
    EXPECT_FALSE(position.check());
    EXPECT_FALSE(position.last_move().check());
}

TEST_F(MakeMoveTest, TheRecordHoldsTheCounterOfItsPush) {
    position.newgame();
    position.make_move(Move());
    position.unmake_move();
    position.make_move(Move());
    position.unmake_move();
    position.make_move(Move());
    EXPECT_EQ(position.history().back().make_move_counter, 3U);
    EXPECT_EQ(position.history().front().make_move_counter, 0U);
}

TEST_F(MakeMoveTest, MakeAndUnmakeRestoreEverything) {
    struct case_t {
        char const* fen;
        char const* move;
    };
    const case_t cases[] = {{castling_fen.c_str(), "e1g1"},
                            {castling_fen.c_str(), "e1c1"},
                            {castling_fen.c_str(), "a1a8"},
                            {"4k3/8/8/8/4pP2/8/8/4K3 b - f3 3 5", "e4f3"},
                            {"1n2k3/P7/8/8/8/8/8/4K3 w - - 4 6", "a7b8q"},
                            {"4k3/8/8/8/8/8/p7/1N2K3 b - - 4 6", "a2a1n"}};
    for (case_t const& c : cases) {
        position.fen(std::string(c.fen));
        const ChessPosition saved(position);
        const std::uint64_t key = position.get_hash();
        play(c.move);
        EXPECT_FALSE(position == saved);
        position.unmake_move();
        EXPECT_TRUE(position == saved) << c.fen << ' ' << c.move;
        EXPECT_EQ(position.get_hash(), key);
        EXPECT_EQ(position.get_pawnhash(), saved.get_pawnhash());
        EXPECT_EQ(position.materialindex(), saved.materialindex());
        EXPECT_TRUE(position.repetition_filter() == saved.repetition_filter());
        EXPECT_EQ(position.history().size(), 1U);
        EXPECT_EQ(position.fen(), c.fen);
        for (int square = 0; square < 64; ++square) {
            EXPECT_EQ(position[square], saved[square]) << square;
        }
    }
}

TEST_F(MakeMoveTest, MaterialFollowsCapturesAndPromotions) {
    position.fen("1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    play("a7b8r");
    EXPECT_EQ(position.materialindex().index(), std::uint64_t{1} << 44);
}

TEST_F(MakeMoveTest, UnmakingMoreThanWasMadeKeepsTheFirstRecord) {
    position.newgame();
    for (int i = 0; i < 5; ++i) {
        position.unmake_move();
    }
    EXPECT_EQ(position.history().size(), 1U);
    EXPECT_EQ(position.get_pawnhash(), 0x37FC40DA841E1692U);
    // The repetition record is empty by now; playing on fills it again.
    EXPECT_TRUE(position.repetition_filter() == Rep3filter());
    position.fen("4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1");
    position.unmake_move();
    play("e4d5");
    EXPECT_FALSE(position.draw_by_threefold_repetition());
    position.unmake_move();
    EXPECT_TRUE(position.repetition_filter() == Rep3filter());
}

// The history grows while the move is made; the address sanitizer sees a word that is read too
// late.
TEST_F(MakeMoveTest, AMoveMayBeOneOfTheHistory) {
    position.newgame();
    position.make_move(Move());
    for (int ply = 0; ply < 3000; ++ply) {
        position.make_move(position.history().back().last_move);
    }
    EXPECT_EQ(position.history().size(), 3002U);
    EXPECT_EQ(position.last_move(), Move());
}

TEST_F(MakeMoveTest, ACapturedKingLeavesADefinedPosition) {
    position.fen("k7/8/8/8/8/8/8/R6K w - - 0 1");
    position.make_move(Square("a1"), Square("a8"), normal_move);
    EXPECT_EQ(position.black_kingsfield().id(), 64);
    EXPECT_FALSE(position.check());
    position.make_move(Move());
    EXPECT_FALSE(position.white_queencheck_squares());
    position.unmake_move();
    position.unmake_move();
    EXPECT_EQ(position.fen(), "k7/8/8/8/8/8/8/R6K w - - 0 1");
}

/// Words that no generator makes: any squares, any code, legal or not.
TEST_F(MakeMoveTest, IllegalMovesTouchNoForeignMemory) {
    std::mt19937 random(20260101);
    auto const draw = [&random](unsigned limit) { return static_cast<int>(random() % limit); };
    const std::string fens[] = {
        positions::start,
        "kkkkkkkk/pppppppp/qqqqqqqq/8/8/QQQQQQQQ/PPPPPPPP/KKKKKKKK b ABCabc "
        "h3 0 1",
        "pppppppp/8/8/8/8/8/8/PPPPPPPP w KQkq a6 65535 1"};
    for (std::string const& fen : fens) {
        position.fen(fen);
        for (int ply = 0; ply < 3000; ++ply) {
            auto const code = static_cast<move_t>(draw(8));
            position.make_move(Square(draw(64)), Square(draw(64)), code);
        }
        EXPECT_EQ(position.history().size(), 3001U);
        for (int ply = 0; ply < 3000; ++ply) {
            position.unmake_move();
        }
        EXPECT_EQ(position.history().size(), 1U);
    }
}

TEST_F(MakeMoveTest, WordsWithAnyContentTouchNoForeignMemory) {
    std::mt19937 random(20260102);
    position.newgame();
    for (int ply = 0; ply < 5000; ++ply) {
        const Square from(static_cast<int>(random() % 64));
        const Square to(static_cast<int>(random() % 64));
        const Piece piece(static_cast<int>(random() % 16));
        const Piece captured(static_cast<int>(random() % 16));
        position.make_move(Move(from, to, static_cast<unsigned>(random() % 8), piece, captured));
    }
    EXPECT_EQ(position.history().size(), 5001U);
    EXPECT_FALSE(position.fen().empty());
    for (int ply = 0; ply < 5000; ++ply) {
        position.unmake_move();
    }
    EXPECT_EQ(position.history().size(), 1U);
}

}  // namespace
}  // namespace orvelin
