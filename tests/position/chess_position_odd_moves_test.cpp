#include <cstdlib>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

#include "evaluation/evaluation.h"
#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "search/score.h"
#include "support/shared_tables.h"

// Promotion codes on pieces that are no pawns. They come in from outside only, and what they put on
// the board can be any id of four bits: a second king, a piece of the other colour, or no piece at
// all.

namespace orvelin {
namespace {

/// A piece that takes a promotion code to `to` and moves on to `onwards`.
struct odd_promotion_t {
    char const* fen;
    char const* from;
    char const* to;
    char const* onwards;
};

void PrintTo(odd_promotion_t const& odd, std::ostream* out) {
    *out << odd.fen << ' ' << odd.from << odd.to;
}

class OddPromotion : public ::testing::TestWithParam<odd_promotion_t> {
 protected:
    OddPromotion() { position.fen(std::string(GetParam().fen)); }

    Square from() const { return Square(std::string(GetParam().from)); }
    Square to() const { return Square(std::string(GetParam().to)); }
    Square onwards() const { return Square(std::string(GetParam().onwards)); }

    ChessPosition position{test::shared_tables()};
};

constexpr move_t promotion_codes[] = {promo_queen, promo_rook, promo_bishop, promo_knight};

TEST_P(OddPromotion, PutsTheStepOnThePieceAndComesBack) {
    const ChessPosition saved(position);
    int const id = position.get_piece_id_from(from());
    int step = 4;
    for (const move_t code : promotion_codes) {
        int const promoted = (id + step--) & 15;
        position.make_move(from(), to(), code);
        EXPECT_EQ(position.last_move().code(), code);
        EXPECT_EQ(position.get_piece_id_from(to()), promoted);
        EXPECT_EQ(position.get_piece_id_from(from()), 0);

        position.make_move(to(), onwards(), normal_move);
        EXPECT_EQ(position.get_piece_id_from(onwards()), promoted);
        position.unmake_move();
        EXPECT_EQ(position.get_piece_id_from(to()), promoted);

        position.unmake_move();
        EXPECT_TRUE(position == saved);
        EXPECT_EQ(position.fen(), GetParam().fen);
        EXPECT_EQ(position.get_hash(), saved.get_hash());
        EXPECT_EQ(position.get_pawnhash(), saved.get_pawnhash());
        EXPECT_EQ(position.materialindex(), saved.materialindex());
        EXPECT_TRUE(position.repetition_filter() == saved.repetition_filter());
    }
}

TEST_P(OddPromotion, LeavesThePositionFitForEvaluationAndGeneration) {
    MoveGenerator generator(test::shared_tables());
    Evaluation evaluation(position, test::shared_tables());
    auto const play = [&](Square const& origin, Square const& target, move_t code) {
        position.make_move(origin, target, code);
        evaluation.make_move(position.last_move());
        EXPECT_LT(std::abs(evaluation.static_eval()), infinite_score);
        MoveList list;
        generator.generate_moves(position, list);
        EXPECT_LE(list.size(), 256U);
        for (Move const& move : list) {
            EXPECT_EQ(move.piece_id(), position.get_piece_id_from(move.from()));
        }
    };
    for (const move_t code : promotion_codes) {
        int const score = evaluation.static_eval();
        play(from(), to(), code);
        play(to(), onwards(), normal_move);
        for (int ply = 0; ply < 2; ++ply) {
            const Move last = position.last_move();
            position.unmake_move();
            evaluation.unmake_move(last);
        }
        EXPECT_NEAR(evaluation.static_eval(), score, 1);
    }
}

// The material word of an odd move is not that of the pieces on the board, and what was found for
// it there must not be taken for that of a sound board with the same word.
TEST(OddMoves, LeaveNoPhaseBehind) {
    const std::string without_queen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNB1KBNR w KQkq - 0 1";
    ChessPosition position(test::shared_tables());
    position.fen(without_queen);
    Evaluation evaluation(position, test::shared_tables());
    int const expected = evaluation.static_eval();
    position.newgame();
    evaluation.init();
    position.make_move(Square("d1"), Square("d1"), normal_move);
    evaluation.make_move(position.last_move());
    ASSERT_EQ(position.materialindex().get_whitequeen(), 0);
    evaluation.static_eval();
    position.fen(without_queen);
    EXPECT_EQ(evaluation.static_eval(), expected);
}

// A knight that becomes a king keeps the material word, but not the phase.
TEST(OddMoves, ChangeThePhaseUnderTheSameMaterialWord) {
    ChessPosition position(test::shared_tables());
    position.newgame();
    Evaluation first(position, test::shared_tables());
    Evaluation second(position, test::shared_tables());
    first.static_eval();
    position.make_move(Square("b1"), Square("c3"), promo_queen);
    first.make_move(position.last_move());
    second.make_move(position.last_move());
    EXPECT_EQ(first.static_eval(), second.static_eval());
}

INSTANTIATE_TEST_SUITE_P(
    EveryPieceButThePawn, OddPromotion,
    ::testing::Values(odd_promotion_t{"4k3/5ppp/8/8/8/8/5PPP/1N2K3 w - - 0 1", "b1", "c3", "d5"},
                      odd_promotion_t{"4k3/5ppp/8/8/8/8/5PPP/1R2K3 w - - 0 1", "b1", "b8", "b4"},
                      odd_promotion_t{"1n2k3/5ppp/8/8/8/8/5PPP/1R2K3 w - - 0 1", "b1", "b8", "b4"},
                      odd_promotion_t{"4k3/5ppp/8/8/8/8/5PPP/1B2K3 w - - 0 1", "b1", "e4", "c6"},
                      odd_promotion_t{"4k3/5ppp/8/8/8/8/5PPP/1Q2K3 w - - 0 1", "b1", "b8", "b4"},
                      odd_promotion_t{"4k3/5ppp/8/8/8/8/5PPP/4K3 w - - 0 1", "e1", "e2", "d3"},
                      odd_promotion_t{"1n2k3/5ppp/8/8/8/8/5PPP/4K3 b - - 0 1", "b8", "c6", "d4"},
                      odd_promotion_t{"1r2k3/5ppp/8/8/8/8/5PPP/4K3 b - - 0 1", "b8", "b1", "b5"},
                      odd_promotion_t{"1b2k3/5ppp/8/8/8/8/5PPP/4K3 b - - 0 1", "b8", "e5", "c3"},
                      odd_promotion_t{"1q2k3/5ppp/8/8/8/8/5PPP/1R2K3 b - - 0 1", "b8", "b1", "b5"},
                      odd_promotion_t{"4k3/5ppp/8/8/8/8/5PPP/4K3 b - - 0 1", "e8", "e7", "d6"}));

}  // namespace
}  // namespace orvelin
