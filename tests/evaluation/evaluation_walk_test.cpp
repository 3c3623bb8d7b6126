// The evaluation along walks through the game tree, where it keeps what has not changed, against
// the plain one, which keeps nothing.

#include <array>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "evaluation/evaluation.h"
#include "evaluation/weight.h"
#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "support/plain_evaluation.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

/// A position, both evaluations and the moves made on all three.
class Walk {
 public:
    Walk() : evaluation_(position_, shared_tables()) {}

    /// Goes on from another position with the same evaluation.
    void set_up(std::string const& fen) {
        position_.fen(fen);
        evaluation_.init();
        plain_.emplace(position_);
    }

    void make(Move const& move) {
        position_.make_move(move);
        evaluation_.make_move(move);
        plain_->make_move(move);
    }

    void unmake(Move const& move) {
        position_.unmake_move();
        evaluation_.unmake_move(move);
        plain_->unmake_move(move);
    }

    /// The evaluation is not told of a null move.
    void make_null_move() { position_.make_move(Move()); }
    void unmake_null_move() { position_.unmake_move(); }

    Move random_move() {
        MoveList list;
        generator_.generate_moves(position_, list);
        return list.size() == 0 ? Move() : list[static_cast<int>(random_() % list.size())];
    }

    std::size_t random(std::size_t limit) { return random_() % limit; }
    bool in_check() const { return position_.check(); }

    void expect_the_plain_terms(char const* where) {
        int const score = evaluation_.static_eval();
        int const plain_score = plain_->score();
        for (std::size_t i = 0; i < term::count; ++i) {
            ASSERT_EQ(
                std::memcmp(&evaluation_.variable_vector()[i], &plain_->terms()[i], sizeof(float)),
                0)
                << where << ' ' << position_.fen() << " term " << Weight().names[i] << ' '
                << evaluation_.variable_vector()[i] << " for " << plain_->terms()[i];
        }
        // Endgame functions take the place of sums with three pieces or less beside the kings.
        if (position_.pieces().popcount() > 5) {
            ASSERT_EQ(score, plain_score) << where << ' ' << position_.fen();
            ++scores_;
        }
    }

    int scores() const { return scores_; }

 private:
    ChessPosition position_{shared_tables()};
    Evaluation evaluation_;
    std::optional<PlainEvaluation> plain_;
    MoveGenerator generator_{shared_tables()};
    std::mt19937_64 random_{17};
    int scores_ = 0;
};

std::vector<std::string> const starts{
    positions::start,
    positions::kiwipete,
    positions::promotions,
    positions::rook_ending,
    "2r3k1/1P3p1p/8/3p4/1B1P2b1/8/p4PPP/4R1K1 b - - 0 1",
    "4k2r/6pp/8/1P6/2P5/8/3p4/R3K3 w Qk - 0 1",
    "8/P5k1/8/2p5/5P2/1K6/6p1/8 w - - 0 1",
    "QQQQ1QQQ/8/1k6/8/8/8/5P1P/1NBR1K2 b - - 0 1",
    "1r2n2k/8/2q5/8/8/5B2/3Q4/K2R4 w - - 0 1",
    "1r2k1r1/pp1ppp1p/3n4/8/2p5/3B4/PP1PPP1P/1R2K1R1 w GBgb - 0 1",
};

/// Evaluates behind each step of some kind, chosen at random.
void take_a_step(Walk& walk) {
    Move const move = walk.random_move();
    switch (walk.random(6)) {
        case 0:
            walk.make(move);
            ASSERT_NO_FATAL_FAILURE(walk.expect_the_plain_terms("a move made"));
            break;
        case 1:
            walk.make(move);
            break;
        case 2:
            walk.make(move);
            walk.unmake(move);
            ASSERT_NO_FATAL_FAILURE(walk.expect_the_plain_terms("a move made and unmade"));
            break;
        case 3:
            walk.make(move);
            ASSERT_NO_FATAL_FAILURE(walk.expect_the_plain_terms("a move made"));
            walk.unmake(move);
            ASSERT_NO_FATAL_FAILURE(walk.expect_the_plain_terms("and unmade"));
            break;
        case 4:
            if (!walk.in_check()) {
                walk.make_null_move();
                ASSERT_NO_FATAL_FAILURE(walk.expect_the_plain_terms("a null move"));
                Move const answer = walk.random_move();
                if (answer != Move()) {
                    walk.make(answer);
                    ASSERT_NO_FATAL_FAILURE(walk.expect_the_plain_terms("an answer to it"));
                    walk.unmake(answer);
                }
                walk.unmake_null_move();
                ASSERT_NO_FATAL_FAILURE(walk.expect_the_plain_terms("a null move unmade"));
            }
            break;
        default:
            ASSERT_NO_FATAL_FAILURE(walk.expect_the_plain_terms("the same position again"));
    }
}

TEST(EvaluationWalk, EveryStepGivesTheTermsOfThePlainEvaluation) {
    Walk walk;
    int const rounds = whole_tests() ? 6 : 2;
    for (int round = 0; round < rounds; ++round) {
        for (std::string const& start : starts) {
            walk.set_up(start);
            ASSERT_NO_FATAL_FAILURE(walk.expect_the_plain_terms("set up"));
            for (int step = 0; step < 50 && walk.random_move() != Move(); ++step) {
                ASSERT_NO_FATAL_FAILURE(take_a_step(walk));
            }
        }
    }
    EXPECT_GT(walk.scores(), 170 * rounds);
}

/// All terms but the sums of squares, which follow only what the evaluation is told.
void expect_the_plain_other_terms(Evaluation& evaluation, ChessPosition const& position) {
    evaluation.static_eval();
    PlainEvaluation plain(position);
    plain.score();
    for (std::size_t i = 0; i < term::count; ++i) {
        if (i < term::pst_pawn || i > term::pst_king) {
            ASSERT_EQ(evaluation.variable_vector()[i], plain.terms()[i])
                << position.fen() << ' ' << Weight().names[i];
        }
    }
}

TEST(EvaluationWalk, APositionSetUpBehindItsBackIsSeen) {
    for (std::string const& first : starts) {
        ChessPosition position(shared_tables());
        position.fen(first);
        Evaluation evaluation(position, shared_tables());
        for (std::string const& second : starts) {
            evaluation.static_eval();
            position.fen(second);
            ASSERT_NO_FATAL_FAILURE(expect_the_plain_other_terms(evaluation, position)) << first;
        }
    }
}

TEST(EvaluationWalk, AMoveMadeBehindItsBackIsSeen) {
    MoveGenerator generator(shared_tables());
    for (std::string const& start : starts) {
        ChessPosition position(shared_tables());
        position.fen(start);
        Evaluation evaluation(position, shared_tables());
        MoveList list;
        generator.generate_moves(position, list);
        for (Move const& move : list) {
            ASSERT_NO_FATAL_FAILURE(expect_the_plain_other_terms(evaluation, position));
            position.make_move(move);
            ASSERT_NO_FATAL_FAILURE(expect_the_plain_other_terms(evaluation, position));
            position.unmake_move();
        }
    }
}

/// As above, by an evaluation that has evaluated nothing else: it needs no kings.
void expect_the_fresh_other_terms(Evaluation& evaluation, ChessPosition const& position) {
    evaluation.static_eval();
    Evaluation fresh(position, shared_tables());
    fresh.static_eval();
    for (std::size_t i = 0; i < term::count; ++i) {
        if (i < term::pst_pawn || i > term::pst_king) {
            EXPECT_EQ(evaluation.variable_vector()[i], fresh.variable_vector()[i])
                << position.fen() << ' ' << Weight().names[i];
        }
    }
}

TEST(EvaluationWalk, ANullMoveAfterATextWithoutAKingIsSeen) {
    for (char const* const fen : {"8/8/8/8/8/8/P7/K7 w - - 0 1", "8/8/8/8/3r4/8/3P4/3K4 w - - 0 1",
                                  "k7/p7/8/8/8/8/8/8 b - - 0 1"}) {
        ChessPosition position(shared_tables());
        position.fen(fen);
        Evaluation evaluation(position, shared_tables());
        expect_the_fresh_other_terms(evaluation, position);
        position.make_move(Move());
        expect_the_fresh_other_terms(evaluation, position);
        position.unmake_move();
        expect_the_fresh_other_terms(evaluation, position);
    }
}

// Its low bits are those of the null move, but it gives White's rights away.
TEST(EvaluationWalk, AMoveThatStaysOnA1IsNoNullMove) {
    ChessPosition position(shared_tables());
    position.fen("4k3/8/8/8/8/8/8/4K3 w A - 0 1");
    Evaluation evaluation(position, shared_tables());
    evaluation.static_eval();
    EXPECT_EQ(evaluation.variable_vector()[term::castling_rights], 20.0F);
    position.make_move(position.convert_to_move("a1a1"));
    evaluation.static_eval();
    EXPECT_EQ(evaluation.variable_vector()[term::castling_rights], 0.0F);
}

/// Positions that share kings or pawns, as the record of the pawns keeps what both decide.
std::vector<std::string> const related{
    "r3k3/1p3P2/2p5/P7/5p2/8/1P4P1/R3K3 w - - 0 1",
    "4k2r/1p3P2/2p5/P7/5p2/8/1P4P1/2N1K3 b - - 0 1",
    "1k5r/1p3P2/2p5/P7/5p2/8/1P4P1/2N1K3 b - - 0 1",
    "4k2r/1p3P2/2p5/P7/5p2/8/1P4P1/2N3K1 w - - 0 1",
    "4k2r/1p6/2p2P2/P7/5p2/8/1P4P1/2N1K3 w - - 0 1",
    "4k2r/8/2p5/8/5p2/8/8/2N1K3 w - - 0 1",
    "4k2r/8/8/8/8/8/8/2N1K3 w - - 0 1",
    "4k2r/8/8/8/8/8/8/2N2K2 w - - 0 1",
};

TEST(EvaluationWalk, WhatKingsAndPawnsDecideIsThatOfThePosition) {
    for (std::string const& first : related) {
        for (std::string const& second : related) {
            ChessPosition position(shared_tables());
            position.fen(first);
            Evaluation evaluation(position, shared_tables());
            for (std::string const& text : {first, second, first}) {
                position.fen(text);
                ASSERT_NO_FATAL_FAILURE(expect_the_fresh_other_terms(evaluation, position));
            }
        }
    }
}

// A step finds the maps and the pawn record as they stand, and those may be of another position.
TEST(EvaluationWalk, StepsByThemselvesLeaveNothingForWholeEvaluations) {
    for (std::string const& first : related) {
        for (std::string const& second : related) {
            ChessPosition position(shared_tables());
            position.fen(first);
            Evaluation evaluation(position, shared_tables());
            evaluation.compute_pawn_eval();
            evaluation.compute_king_safety();
            position.fen(second);
            evaluation.compute_king_safety();
            evaluation.compute_king_activity();
            for (std::string const& text : {second, first}) {
                position.fen(text);
                ASSERT_NO_FATAL_FAILURE(expect_the_fresh_other_terms(evaluation, position));
            }
        }
    }
}

// A promotion that takes a pawn leaves it in the key of the pawns (by design), as a move text may
// that is no legal one, so that two structures have one record. Cover and storm are those of the
// pawns that stand there; the open files in them are those of the record.
TEST(EvaluationWalk, StructuresWithTheSameKeyKeepTheirOwnCover) {
    struct structure_t {
        char const* move;
        float pawn_shield;
        float pawn_storm;
    };
    struct way_t {
        char const* fen;
        std::array<structure_t, 2> structures;
    };
    char const* const promotions = "5n1p/6Pk/8/8/8/8/5PPP/R4RK1 w - - 0 1";
    char const* const storm = "7p/6P1/8/7K/8/8/8/k7 w - - 0 1";
    char const* const black_storm = "K7/8/8/8/7k/8/6p1/7P b - - 0 1";
    for (way_t const& way : std::vector<way_t>{
             {promotions, {{{"g7f8q", 20, 0}, {"g7h8n", 30, 0}}}},
             {promotions, {{{"g7h8n", 30, 0}, {"g7f8q", 30, 0}}}},
             {storm, {{{"g7g8q", 0, -5}, {"g7h8q", 0, 0}}}},
             {storm, {{{"g7h8q", 0, 0}, {"g7g8q", 0, -5}}}},
             {black_storm, {{{"g2g1q", 0, 5}, {"g2h1q", 0, 0}}}},
             {black_storm, {{{"g2h1q", 0, 0}, {"g2g1q", 0, 5}}}},
             {positions::start, {{{"e2e3q", -30, 0}, {"e2d7q", -20, 0}}}},
             {positions::start, {{{"e2d7q", -20, 0}, {"e2e3q", -30, 0}}}},
         }) {
        ChessPosition position(shared_tables());
        position.fen(way.fen);
        Evaluation evaluation(position, shared_tables());
        std::optional<std::uint64_t> key;
        for (structure_t const& structure : way.structures) {
            Move const move = position.convert_to_move(structure.move);
            ASSERT_NE(move, Move());
            evaluation.make_move(move);
            position.make_move(move);
            ASSERT_EQ(position.get_pawnhash(), key.value_or(position.get_pawnhash()));
            key = position.get_pawnhash();
            evaluation.static_eval();
            auto const& terms = evaluation.variable_vector();
            EXPECT_EQ(terms[term::pawn_shield], structure.pawn_shield) << position.fen();
            EXPECT_EQ(terms[term::pawn_storm], structure.pawn_storm) << position.fen();
            evaluation.unmake_move(move);
            position.unmake_move();
        }
    }
}

// A pawn stays behind that the key of the pawns does not know.
TEST(EvaluationWalk, PawnsOfAContradictedBoardAreLookedAtAgain) {
    ChessPosition position(shared_tables());
    position.fen("r3k3/1p6/8/8/8/8/1P6/RK6 w - - 0 1");
    Evaluation evaluation(position, shared_tables());
    evaluation.static_eval();
    EXPECT_EQ(evaluation.variable_vector()[term::pawn_shield], 10.0F);
    position.make_foreign_move(
        Move(Square("c3"), Square("c4"), normal_move, Piece(white_pawn), Piece()));
    position.unmake_move();
    evaluation.static_eval();
    EXPECT_EQ(evaluation.variable_vector()[term::pawn_shield], 20.0F);
}

// Such a move leaves another board behind it, with the count of moves that was evaluated.
TEST(EvaluationWalk, AContradictingMoveMadeAndUnmadeIsSeen) {
    ChessPosition position(shared_tables());
    position.fen("r3k3/1p6/8/8/8/8/1P6/R3K3 w - - 0 1");
    Evaluation evaluation(position, shared_tables());
    evaluation.static_eval();
    position.make_foreign_move(
        Move(Square("a1"), Square("c2"), normal_move, Piece(white_knight), Piece()));
    position.unmake_move();
    expect_the_fresh_other_terms(evaluation, position);
}

}  // namespace

}  // namespace orvelin::test
