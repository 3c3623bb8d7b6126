#include "position/hasher.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

using test::start_fen;

class HasherTest : public ::testing::Test {
 protected:
    void play(std::vector<std::string> const& moves) {
        for (std::string const& text : moves) {
            position.make_move(position.convert_to_move(text));
        }
    }

    std::uint64_t piece_key(int id, char const* square) const {
        return keys.piece[id][Square(square).id()];
    }

    Tables const& tables = test::shared_tables();
    HashKeys const& keys = tables.hash_keys;
    ChessPosition position{tables};
};

TEST_F(HasherTest, StartsWithoutPositionAndKey) {
    Hasher<1> const hasher(tables);
    EXPECT_EQ(hasher.hash(), 0U);
    EXPECT_EQ(hasher.pawn_hash(), 0U);
}

TEST_F(HasherTest, PopKeepsTheLowestEntry) {
    Hasher<1> hasher(tables);
    hasher.make_move(Move(Square("e2"), Square("e4"), normal_move, Piece(1), Piece()));
    EXPECT_EQ(hasher.pawn_hash(), piece_key(1, "e2") ^ piece_key(1, "e4"));
    hasher.pop();
    hasher.pop();
    EXPECT_EQ(hasher.hash(), 0U);
    EXPECT_EQ(hasher.pawn_hash(), 0U);
}

TEST_F(HasherTest, InitTakesTheKeysOfAnotherPosition) {
    position.newgame();
    play({"e2e4", "d7d5"});
    Hasher<1> hasher(tables);
    hasher.init(&position);
    EXPECT_EQ(hasher.hash(), position.get_hash());
    EXPECT_EQ(hasher.pawn_hash(), position.get_pawnhash());
}

TEST_F(HasherTest, InitialPositionHasThePublishedKey) {
    position.newgame();
    EXPECT_EQ(position.get_hash(), 0x463B96181691FC9CU);
    EXPECT_EQ(position.get_pawnhash(), 0x37FC40DA841E1692U);
}

TEST_F(HasherTest, ExamplesOfTheBookFormat) {
    const std::vector<std::pair<std::vector<std::string>, std::uint64_t>> examples = {
        {{"e2e4"}, 0x823C9B50FD114196U},
        {{"e2e4", "d7d5"}, 0x0756B94461C50FB0U},
        {{"e2e4", "d7d5", "e4e5"}, 0x662FAFB965DB29D4U},
        {{"e2e4", "d7d5", "e4e5", "f7f5"}, 0x22A48B5A8E47FF78U},
        {{"e2e4", "d7d5", "e4e5", "f7f5", "e1e2"}, 0x652A607CA3F242C1U},
        {{"e2e4", "d7d5", "e4e5", "f7f5", "e1e2", "e8f7"}, 0x00FDD303C946BDD9U},
        {{"a2a4", "b7b5", "h2h4", "b5b4", "c2c4"}, 0x3C8123EA7B067637U},
        {{"a2a4", "b7b5", "h2h4", "b5b4", "c2c4", "b4c3", "a1a3"}, 0x5C3F9B829B279560U}};
    for (auto const& [moves, key] : examples) {
        position.newgame();
        play(moves);
        EXPECT_EQ(position.get_hash(), key) << position.fen();
    }
}

TEST_F(HasherTest, NullMoveChangesTurnKeyOnly) {
    position.newgame();
    const std::uint64_t before = position.get_hash();
    const std::uint64_t pawns = position.get_pawnhash();
    position.make_move(Move());
    EXPECT_EQ(position.get_hash(), before ^ keys.turn);
    EXPECT_EQ(position.get_pawnhash(), pawns);
}

TEST_F(HasherTest, NullMoveLosesTheEnPassantKey) {
    position.fen("4k3/8/8/8/4pP2/8/8/4K3 b - f3 0 1");
    const std::uint64_t before = position.get_hash();
    position.make_move(Move());
    EXPECT_EQ(position.get_hash(), before ^ keys.turn ^ keys.en_passant[5]);
}

TEST_F(HasherTest, EveryEnPassantFileHasItsKey) {
    for (std::string const& side : {std::string("w"), std::string("b")}) {
        const std::string placement = "4k3/8/8/8/8/8/8/4K3 " + side + " - ";
        position.fen(placement + "- 0 1");
        const std::uint64_t without = position.get_hash();
        for (std::size_t file = 0; file < 8; ++file) {
            for (char const* rank : {"3", "6"}) {
                position.fen(placement + "abcdefgh"[file] + rank + " 0 1");
                EXPECT_EQ(position.get_hash() ^ without, keys.en_passant[file]) << position.fen();
            }
        }
    }
}

TEST_F(HasherTest, LosingARightChangesTheKeyWithoutTheStack) {
    position.newgame();
    const std::uint64_t before = position.get_hash();
    const std::pair<std::uint16_t, std::uint64_t> rights_and_keys[] = {
        {std::uint16_t{0x8181 ^ 0x0001}, keys.castling[1]},
        {std::uint16_t{0x8181 ^ 0x0080}, keys.castling[0]},
        {std::uint16_t{0x8181 ^ 0x0100}, keys.castling[3]},
        {std::uint16_t{0x8181 ^ 0x8000}, keys.castling[2]}};
    for (auto const& [rights, lost_key] : rights_and_keys) {
        position.set_castlingrights(static_cast<short>(rights));
        EXPECT_EQ(position.get_hash(), before ^ lost_key);
    }
    position.set_castlingrights(static_cast<short>(0x8181));
    EXPECT_EQ(position.get_hash(), before);
}

TEST_F(HasherTest, AnyRightsFoldInTheKeyOfEachCornerAndTheWordForOtherRooks) {
    position.newgame();
    position.set_castlingrights(0);
    const std::uint64_t without = position.get_hash();
    for (unsigned rights = 0; rights <= 0xFFFF; ++rights) {
        std::uint64_t key = without;
        key ^= (rights & 0x0001) != 0 ? keys.castling[1] : 0;
        key ^= (rights & 0x0080) != 0 ? keys.castling[0] : 0;
        key ^= (rights & 0x0100) != 0 ? keys.castling[3] : 0;
        key ^= (rights & 0x8000) != 0 ? keys.castling[2] : 0;
        key ^= (rights & 0x7E7E) != 0 ? rights : 0;
        position.set_castlingrights(static_cast<short>(rights));
        ASSERT_EQ(position.get_hash(), key) << rights;
    }
}

/// A move that captures nothing or anything changes the pawn key by the pawns in it alone.
TEST_F(HasherTest, PawnKeyFollowsPawnsAlone) {
    for (int const moved : {1, 2, 3, 4, 5, 6, 9, 10, 11, 12, 13, 14}) {
        for (int const captured : {0, 1, 2, 3, 4, 5, 6, 9, 10, 11, 12, 13, 14}) {
            Hasher<1> hasher(tables);
            hasher.make_move(
                Move(Square("c4"), Square("d5"), normal_move, Piece(moved), Piece(captured)));
            std::uint64_t pawns = 0;
            if (moved == 1 || moved == 9) {
                pawns ^= piece_key(moved, "c4") ^ piece_key(moved, "d5");
            }
            if (captured == 1 || captured == 9) {
                pawns ^= piece_key(captured, "d5");
            }
            EXPECT_EQ(hasher.pawn_hash(), pawns) << moved << ' ' << captured;
        }
    }
}

TEST_F(HasherTest, PawnCaptureChangesThePawnKeyByItsSquares) {
    position.fen("4k3/8/8/3n4/4P3/8/8/4K3 w - - 0 1");
    std::uint64_t before = position.get_pawnhash();
    play({"e4d5"});
    EXPECT_EQ(position.get_pawnhash(), before ^ piece_key(1, "e4") ^ piece_key(1, "d5"));

    position.fen("4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1");
    before = position.get_pawnhash();
    play({"e4d5"});
    EXPECT_EQ(position.get_pawnhash(),
              before ^ piece_key(1, "e4") ^ piece_key(1, "d5") ^ piece_key(9, "d5"));
}

TEST_F(HasherTest, PromotionReadsTheColourFromTheSenseOfTheMove) {
    struct promotion_case_t {
        Move move;
        std::uint64_t key;
        std::uint64_t pawn_key;
    };
    const Square a2("a2");
    const Square b1("b1");
    const Square b7("b7");
    const Square b8("b8");
    const promotion_case_t cases[] = {
        {Move(b7, b8, promo_rook, white_pawn, no_piece), piece_key(1, "b7") ^ piece_key(4, "b8"),
         piece_key(1, "b7")},
        {Move(a2, b1, promo_knight, black_pawn, white_rook),
         piece_key(9, "a2") ^ piece_key(10, "b1") ^ piece_key(4, "b1"), piece_key(9, "a2")},
        // Backwards: a white pawn counts as a black one, and the other way round.
        {Move(b8, b7, promo_queen, white_pawn, black_pawn),
         piece_key(9, "b8") ^ piece_key(13, "b7") ^ piece_key(9, "b7"), piece_key(9, "b8")},
        {Move(b1, a2, promo_bishop, black_pawn, no_piece), piece_key(1, "b1") ^ piece_key(3, "a2"),
         piece_key(1, "b1")},
        // Nowhere is not upwards.
        {Move(b7, b7, promo_queen, white_pawn, white_pawn),
         piece_key(9, "b7") ^ piece_key(13, "b7") ^ piece_key(1, "b7"), piece_key(9, "b7")},
        // Pieces that are no pawns: as if a pawn had moved.
        {Move(b1, b7, promo_knight, white_king, no_piece), piece_key(1, "b1") ^ piece_key(2, "b7"),
         piece_key(1, "b1")},
        {Move(b8, a2, promo_queen, black_king, no_piece), piece_key(9, "b8") ^ piece_key(13, "a2"),
         piece_key(9, "b8")}};
    for (promotion_case_t const& c : cases) {
        Hasher<1> hasher(tables);
        hasher.make_move(c.move);
        EXPECT_EQ(hasher.hash(), c.key) << c.move.dump();
        EXPECT_EQ(hasher.pawn_hash(), c.pawn_key) << c.move.dump();
        hasher.pop();
        EXPECT_EQ(hasher.hash(), 0U);
        EXPECT_EQ(hasher.pawn_hash(), 0U);
    }
}

// Not the side to move, nor the colour of the pawn: only illegal words tell them apart.
TEST_F(HasherTest, SenseOfTheMoveTellsWhereTheEnPassantVictimStands) {
    for (char const* fen : {positions::bare_kings, "4k3/8/8/8/8/8/8/4K3 b - - 0 1"}) {
        position.fen(std::string(fen));
        for (int const pawn : {int{white_pawn}, int{black_pawn}}) {
            int const victim = pawn ^ 8;
            const std::pair<Move, char const*> moves[] = {
                {Move(Square("d5"), Square("e6"), en_passant, Piece(pawn), Piece(victim)), "e5"},
                {Move(Square("d4"), Square("e3"), en_passant, Piece(pawn), Piece(victim)), "e4"}};
            for (auto const& [move, square] : moves) {
                const std::uint64_t change = piece_key(pawn, move.from().name().c_str()) ^
                                             piece_key(pawn, move.to().name().c_str()) ^
                                             piece_key(victim, square);
                Hasher<1> hasher(tables);
                hasher.init(&position);
                const std::uint64_t key = hasher.hash();
                hasher.make_move(move);
                EXPECT_EQ(hasher.hash(), key ^ change) << move.dump();
                EXPECT_EQ(hasher.pawn_hash(), change) << move.dump();
            }
        }
    }
}

TEST_F(HasherTest, IdsThatAreNoPieceHaveNoKeys) {
    for (int const id : {7, 8, 15}) {
        Hasher<1> hasher(tables);
        hasher.make_move(Move(Square("b1"), Square("b7"), normal_move, Piece(id), Piece(id)));
        EXPECT_EQ(hasher.hash(), 0U) << id;
        EXPECT_EQ(hasher.pawn_hash(), 0U) << id;
    }
}

TEST_F(HasherTest, ShiftedRooksFoldTheRawRightsWordIn) {
    const std::string placement = "nrbbkqrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBKQRN w ";
    position.fen(placement + "- - 0 1");
    const std::uint64_t without = position.get_hash();
    position.fen(placement + "BGbg - 0 1");
    EXPECT_EQ(position.castlingrights(), 0x4242);
    EXPECT_EQ(position.get_hash(), without ^ 0x4242U);
}

TEST_F(HasherTest, MixedRightsFoldInCornerKeysAndTheWord) {
    position.fen("4k3/8/8/8/8/8/8/R3K1R1 w - - 0 1");
    const std::uint64_t without = position.get_hash();
    position.fen("4k3/8/8/8/8/8/8/R3K1R1 w KQ - 0 1");
    EXPECT_EQ(position.castlingrights(), 0x0041);
    EXPECT_EQ(position.get_hash(), without ^ keys.castling[1] ^ 0x0041U);
}

struct move_case_t {
    char const* name;
    char const* fen;
    char const* move;
};

class IncrementalKeys : public ::testing::TestWithParam<move_case_t> {};

TEST_P(IncrementalKeys, EqualRecomputedOnesAndComeBack) {
    ChessPosition position(test::shared_tables());
    position.fen(std::string(GetParam().fen));
    const std::uint64_t key = position.get_hash();
    const std::uint64_t pawn_key = position.get_pawnhash();
    position.make_move(position.convert_to_move(std::string(GetParam().move)));

    ChessPosition fresh(test::shared_tables());
    fresh.fen(position.fen());
    EXPECT_EQ(position.get_hash(), fresh.get_hash());
    EXPECT_EQ(position.get_pawnhash(), fresh.get_pawnhash());
    EXPECT_NE(position.get_hash(), key);

    position.unmake_move();
    EXPECT_EQ(position.get_hash(), key);
    EXPECT_EQ(position.get_pawnhash(), pawn_key);
}

INSTANTIATE_TEST_SUITE_P(
    EveryCode, IncrementalKeys,
    ::testing::Values(
        move_case_t{"QuietMove", "4k3/8/8/8/8/8/8/R3K3 w Q - 0 1", "a1a5"},
        move_case_t{"Capture", "4k3/8/8/q7/8/8/8/R3K3 w Q - 0 1", "a1a5"},
        move_case_t{"WhiteQueenPromotion", "4k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7a8q"},
        move_case_t{"WhiteRookPromotionWithCapture", "1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7b8r"},
        move_case_t{"BlackBishopPromotion", "4k3/8/8/8/8/8/p7/4K3 b - - 0 1", "a2a1b"},
        move_case_t{"BlackKnightPromotionWithCapture", "4k3/8/8/8/8/8/p7/1N2K3 b - - 0 1", "a2b1n"},
        move_case_t{"WhiteKingSide", positions::white_castlings, "e1g1"},
        move_case_t{"WhiteQueenSide", positions::white_castlings, "e1c1"},
        move_case_t{"BlackKingSide", "r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1", "e8g8"},
        move_case_t{"BlackQueenSide", "r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1", "e8c8"},
        move_case_t{"KingAndRookChangePlaces", "4k3/8/8/8/8/8/8/5KR1 w G - 0 1", "f1g1"},
        move_case_t{"WhiteEnPassant", "7k/8/8/K1pP4/8/8/8/8 w - c6 0 1", "d5c6"},
        move_case_t{"BlackEnPassant", "4k3/8/8/8/4pP2/8/8/4K3 b - f3 0 1", "e4f3"},
        move_case_t{"DoublePushWithNeighbour", "4k3/8/8/8/4p3/8/5P2/4K3 w - - 0 1", "f2f4"}),
    [](auto const& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace orvelin
