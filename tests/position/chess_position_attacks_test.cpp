#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

BitBoard squares(std::initializer_list<char const*> names) {
    BitBoard set;
    for (char const* name : names) {
        set.set_square(Square(std::string(name)));
    }
    return set;
}

BitBoard square(char const* name) {
    return squares({name});
}

class AttackQueries : public ::testing::Test {
 protected:
    ChessPosition position{test::shared_tables()};
};

TEST_F(AttackQueries, APieceBetweenRookAndEnemyKingOfItsColourIsPinned) {
    position.fen("4k3/8/8/4n3/8/8/8/K3R3 w - - 0 1");
    EXPECT_EQ(position.pinned_pieces(), square("e5"));
    EXPECT_FALSE(position.discovering_pieces());
    position.fen("4K3/8/8/4N3/8/8/8/k3r3 w - - 0 1");
    EXPECT_EQ(position.pinned_pieces(), square("e5"));
    EXPECT_FALSE(position.discovering_pieces());
}

TEST_F(AttackQueries, APieceBeforeItsOwnRookIsDiscovering) {
    position.fen("4k3/8/8/4N3/8/8/8/K3R3 w - - 0 1");
    EXPECT_EQ(position.discovering_pieces(), square("e5"));
    EXPECT_FALSE(position.pinned_pieces());
    position.fen("4K3/8/8/4n3/8/8/8/k3r3 w - - 0 1");
    EXPECT_EQ(position.discovering_pieces(), square("e5"));
    EXPECT_FALSE(position.pinned_pieces());
}

TEST_F(AttackQueries, TwoPiecesBetweenAreNeither) {
    position.fen("4k3/4p3/8/4n3/8/8/8/K3R3 w - - 0 1");
    EXPECT_FALSE(position.pinned_pieces());
    EXPECT_FALSE(position.discovering_pieces());
    position.fen("4k3/4p3/8/4N3/8/8/8/K3R3 w - - 0 1");
    EXPECT_FALSE(position.pinned_pieces());
    EXPECT_FALSE(position.discovering_pieces());
}

// A field of a text that is too long goes on in the rank above, where it meets what stands there.
TEST_F(AttackQueries, OfPiecesOfBothColoursOnOneSquareTheSlidersCounts) {
    // A white knight and a black pawn on e5, between the white rook and the black king.
    position.fen("4k3/8/8/4N3/84p3/8/K3R3/8/8 w - - 0 1");
    ASSERT_EQ(position.white_pieces() & position.black_pieces(), square("e5"));
    EXPECT_EQ(position.discovering_pieces(), square("e5"));
    EXPECT_FALSE(position.pinned_pieces());
    // A black knight and a white pawn on e5, between the black rook and the white king.
    position.fen("4K3/8/8/4n3/84P3/8/k3r3/8/8 w - - 0 1");
    ASSERT_EQ(position.white_pieces() & position.black_pieces(), square("e5"));
    EXPECT_EQ(position.discovering_pieces(), square("e5"));
    EXPECT_FALSE(position.pinned_pieces());
}

TEST_F(AttackQueries, BishopsAndQueensPinOnDiagonals) {
    position.fen("4k3/3r4/8/1B6/8/2q5/8/K7 w - - 0 1");
    EXPECT_EQ(position.pinned_pieces(), square("d7"));
    position.fen("4k3/3r4/8/1R6/8/2q5/1N6/K7 w - - 0 1");
    EXPECT_EQ(position.pinned_pieces(), square("b2"));
    position.fen("4k3/8/8/8/4Q3/4p3/8/4K3 w - - 0 1");
    EXPECT_FALSE(position.pinned_pieces());
}

TEST_F(AttackQueries, ASliderOfTheWrongKindPinsNothing) {
    position.fen("4k3/4n3/8/8/4B3/8/8/K7 w - - 0 1");
    EXPECT_FALSE(position.pinned_pieces());
    position.fen("4k3/3n4/8/1R6/8/8/8/K7 w - - 0 1");
    EXPECT_FALSE(position.pinned_pieces());
}

TEST_F(AttackQueries, BothColoursShareTheSets) {
    position.fen("3r4/2p5/1r2Rb2/3k1p2/1ppP3p/7P/1KP5/R7 w - - 3 49");
    EXPECT_EQ(position.pinned_pieces(), BitBoard(std::uint64_t{0x0000000008000000}));
    EXPECT_EQ(position.discovering_pieces(), BitBoard(std::uint64_t{0x0000000002000000}));
    position.fen("6Nk/p1pp2rp/7B/3PQ1p1/PP6/3P4/4B1KP/1R6 w - - 0 30");
    EXPECT_EQ(position.pinned_pieces(), BitBoard(std::uint64_t{0x0040000000000000}));
    EXPECT_EQ(position.discovering_pieces(), BitBoard(std::uint64_t{0x0000004000000000}));
}

TEST_F(AttackQueries, PinsAreRenewedByEveryMove) {
    position.fen("4k3/8/8/4n3/8/8/8/K2R4 w - - 0 1");
    EXPECT_FALSE(position.pinned_pieces());
    position.make_move(position.convert_to_move("d1e1"));
    EXPECT_EQ(position.pinned_pieces(), square("e5"));
    position.unmake_move();
    EXPECT_FALSE(position.pinned_pieces());
}

TEST_F(AttackQueries, SetsAreEmptiedBeforeTheyAreFound) {
    position.fen("4k3/8/8/4N3/8/8/8/K3R3 w - - 0 1");
    ASSERT_EQ(position.discovering_pieces(), square("e5"));
    position.remove_piece_from(Square("e1"), Piece(white_rook));
    position.find_pinned_pieces();
    EXPECT_FALSE(position.discovering_pieces());
    position.fen("4k3/8/8/4n3/8/8/8/K3R3 w - - 0 1");
    ASSERT_EQ(position.pinned_pieces(), square("e5"));
    position.remove_piece_from(Square("e1"), Piece(white_rook));
    position.find_pinned_pieces();
    EXPECT_FALSE(position.pinned_pieces());
}

TEST_F(AttackQueries, QueencheckSquaresAreTheQueenMovesFromTheEnemyKing) {
    position.fen("7k/6pp/8/8/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(position.white_queencheck_squares(),
              squares({"a8", "b8", "c8", "d8", "e8", "f8", "g8", "g7", "h7"}));
    EXPECT_EQ(position.black_queencheck_squares(),
              squares({"a2", "a3", "a4", "a5", "a6", "a7", "a8", "b1", "c1", "d1",
                       "e1", "f1", "g1", "h1", "b2", "c3", "d4", "e5", "f6", "g7"}));
    EXPECT_EQ(position.white_kingsfield(), Square("a1"));
    EXPECT_EQ(position.black_kingsfield(), Square("h8"));
}

TEST_F(AttackQueries, PawnsAttackDiagonallyForwardOnly) {
    position.fen("8/8/8/8/3PPP2/8/8/8 w - - 0 1");
    EXPECT_EQ(position.white_attackers(square("e5")), squares({"d4", "f4"}));
    position.fen("8/8/8/3ppp2/8/8/8/8 w - - 0 1");
    EXPECT_EQ(position.black_attackers(square("e4")), squares({"d5", "f5"}));
}

TEST_F(AttackQueries, PawnAttacksDoNotWrapAroundTheEdge) {
    position.fen("8/8/8/8/P6P/8/P6P/8 w - - 0 1");
    EXPECT_FALSE(position.white_attackers(square("a5")));
    EXPECT_FALSE(position.white_attackers(square("h3")));
    EXPECT_FALSE(position.white_attackers(square("a4")));
    position.fen("8/p6p/8/p6p/8/8/8/8 w - - 0 1");
    EXPECT_FALSE(position.black_attackers(square("a4")));
    EXPECT_FALSE(position.black_attackers(square("h6")));
    EXPECT_FALSE(position.black_attackers(square("h5")));
}

TEST_F(AttackQueries, EveryKindOfPieceAttacks) {
    const std::string fen = "4R3/1B6/3K1N2/Q6q/8/3n4/5pk1/1b2r3 w - - 0 1";
    position.fen(fen);
    EXPECT_EQ(position.white_attackers(square("d5")), squares({"b7", "d6", "f6", "a5"}));
    EXPECT_EQ(position.white_attackers(square("e4")), squares({"b7", "e8", "f6"}));
    EXPECT_EQ(position.black_attackers(square("e4")), squares({"e1"}));
    EXPECT_EQ(position.black_attackers(square("e5")), squares({"d3", "e1", "h5"}));
    EXPECT_EQ(position.black_attackers(square("f1")), squares({"e1", "g2"}));
    EXPECT_EQ(position.black_attackers(square("g1")), squares({"e1", "f2", "g2"}));
    EXPECT_TRUE(position.white_attacks(square("e4")));
    EXPECT_FALSE(position.white_attacks(square("h1")));
    EXPECT_TRUE(position.black_attacks(square("e4")));
    EXPECT_FALSE(position.black_attacks(square("a8")));
}

TEST_F(AttackQueries, AnEmptyTargetHasNoAttackers) {
    position.newgame();
    EXPECT_FALSE(position.white_attackers(BitBoard()));
    EXPECT_FALSE(position.black_attackers(BitBoard()));
    EXPECT_FALSE(position.white_blocked_attackers(BitBoard()));
    EXPECT_FALSE(position.black_blocked_attackers(BitBoard()));
    EXPECT_EQ(position.white_weakest_attacker(Square()).id(), 64);
    EXPECT_EQ(position.black_weakest_attacker(Square()).id(), 64);
}

TEST_F(AttackQueries, BlockedAttackersSeeThroughAWall) {
    position.fen("4k3/4p3/4p3/8/8/8/8/K3R3 w - - 0 1");
    EXPECT_EQ(position.white_blocked_attackers(square("e8")), square("e1"));
    EXPECT_FALSE(position.white_attackers(square("e8")));
    position.fen("4K3/4P3/4P3/7b/8/8/8/k3r3 w - - 0 1");
    EXPECT_EQ(position.black_blocked_attackers(square("e8")), squares({"e1", "h5"}));
    EXPECT_EQ(position.black_attackers(square("e8")), square("h5"));
}

TEST_F(AttackQueries, WeakestAttackerGoesByKind) {
    position.fen(positions::empty_board);
    const std::pair<int, char const*> white_pieces[] = {{6, "e6"}, {5, "d1"}, {4, "a5"},
                                                        {3, "a2"}, {2, "f6"}, {1, "c4"}};
    for (auto const& [type, name] : white_pieces) {
        position.set_piece_on(Square(std::string(name)), Piece(type));
        EXPECT_EQ(position.white_weakest_attacker(Square("d5")), Square(std::string(name)));
        EXPECT_EQ(position.black_weakest_attacker(Square("d5")).id(), 64);
    }
    position.clear();
    const std::pair<int, char const*> black_pieces[] = {{14, "e6"}, {13, "d1"}, {12, "a5"},
                                                        {11, "a2"}, {10, "f6"}, {9, "c6"}};
    for (auto const& [id, name] : black_pieces) {
        position.set_piece_on(Square(std::string(name)), Piece(id));
        EXPECT_EQ(position.black_weakest_attacker(Square("d5")), Square(std::string(name)));
    }
}

TEST_F(AttackQueries, WeakestAttackerOfOneKindIsTheLowestSquare) {
    struct case_t {
        int type;
        std::vector<char const*> attackers;  ///< Of d5, the lowest first.
    };
    // Queens on a line and on a diagonal are one kind, whichever of them is lower.
    const case_t cases[] = {{2, {"c3", "e3", "f4", "b6", "c7", "e7"}},
                            {3, {"g2", "b3", "f7", "a8"}},
                            {4, {"d2", "b5", "f5", "d7"}},
                            {5, {"g2", "d3", "h5", "a8"}},
                            {5, {"d2", "b3", "f7", "d8"}},
                            {6, {"c4", "e4", "c5", "d6"}},
                            {1, {"c4", "e4"}},
                            {9, {"c6", "e6"}}};
    for (case_t const& c : cases) {
        std::vector<int> ids{c.type};
        if (c.type > 1 && c.type < 7) {
            ids.push_back(c.type + 8);
        }
        for (int const id : ids) {
            position.clear();
            for (char const* name : c.attackers) {
                position.set_piece_on(Square(std::string(name)), Piece(id));
            }
            for (char const* name : c.attackers) {
                const Square lowest{std::string(name)};
                const Square found = id < 8 ? position.white_weakest_attacker(Square("d5"))
                                            : position.black_weakest_attacker(Square("d5"));
                EXPECT_EQ(found, lowest) << id << ' ' << name;
                position.remove_piece_from(lowest, Piece(id));
            }
        }
    }
}

TEST_F(AttackQueries, LookForCheckReadsTheBoard) {
    position.fen("4k3/8/8/8/8/8/8/K3R3 w - - 0 1");
    EXPECT_FALSE(position.check());
    position.switch_color_to_move();
    position.look_for_check();
    EXPECT_TRUE(position.check());
    position.switch_color_to_move();
    position.look_for_check();
    EXPECT_FALSE(position.check());
}

}  // namespace
}  // namespace orvelin
