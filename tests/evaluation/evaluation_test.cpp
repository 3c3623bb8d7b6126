#include "evaluation/evaluation.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "position/chess_position.h"
#include "support/fresh_evaluation.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

using test::blended;
using test::FreshEvaluation;
using test::shared_tables;

constexpr char const* start_fen = positions::start;
constexpr char const* kiwi_fen = positions::kiwipete;

TEST(EvaluationTest, ANewObjectHasZeroTermsAndTheMiddleGamePhase) {
    ChessPosition const position(shared_tables());
    Evaluation const evaluation(position, shared_tables());
    ASSERT_EQ(evaluation.variable_vector().size(), term::count);
    for (float const v : evaluation.variable_vector()) {
        EXPECT_EQ(v, 0.0F);
    }
    EXPECT_EQ(evaluation.mg_phase(), 1.0F);
    EXPECT_EQ(evaluation.eg_phase(), 0.0F);
    EXPECT_EQ(evaluation.score(), 0.0F);
    EXPECT_EQ(evaluation.total_evals(), 0U);
    EXPECT_EQ(evaluation.pawn_evals(), 0U);
    EXPECT_EQ(evaluation.missed_pht_reads(), 0U);
    EXPECT_FALSE(evaluation.log());
}

TEST(EvaluationTest, StartPositionPhaseIsExact) {
    FreshEvaluation at(start_fen);
    EXPECT_EQ(at.score(), 14);
    EXPECT_EQ(at.evaluation().mg_phase(), 1.0F);
    EXPECT_EQ(at.evaluation().eg_phase(), 0.0F);
}

TEST(EvaluationTest, NineQueensGiveAPhaseBeyondTheMiddleGame) {
    FreshEvaluation at("4k3/8/8/8/8/8/QQQQQQQQ/4K2Q w - - 0 1");
    at.score();
    EXPECT_GT(at.evaluation().mg_phase(), 1.0F);
    EXPECT_LT(at.evaluation().eg_phase(), 0.0F);
    EXPECT_EQ(at.evaluation().mg_phase(), 8100.0F / 6200.0F);
    EXPECT_EQ(at.evaluation().eg_phase(), 1.0F - 8100.0F / 6200.0F);
    EXPECT_EQ(at.score(), static_cast<int>(std::round(blended(at.evaluation()))));
}

TEST(EvaluationTest, BlendRoundsEveryOperationInOrder) {
    for (char const* fen : {kiwi_fen, positions::rook_ending, positions::quiet_middle_game,
                            "3r2k1/5ppp/8/1P6/8/2B5/5PPP/6K1 b - - 0 1"}) {
        FreshEvaluation at(fen);
        int const score = at.score();
        int const sign = at.position().stm() == 1 ? 1 : -1;
        EXPECT_EQ(score, sign * static_cast<int>(std::round(blended(at.evaluation())))) << fen;
    }
}

// The sums of these are halves to the last bit; other ways to round differ on one of them.
TEST(EvaluationTest, AHalfIsRoundedAwayFromZero) {
    struct half_t {
        char const* fen;
        float sum;
        int score;
    };
    for (half_t const& half : {
             half_t{"r3k1n1/1bpp4/p1n4p/2N1Pr2/4PQ2/p1P1KPP1/1P1B3P/1N3BR1 w q - 1 26", 2690.5F,
                    2691},
             half_t{"r2q1k2/6pb/2nb4/P1np4/P1p3Br/3N1P2/2RP4/1NBK4 w - - 1 40", -4154.5F, -4155},
             half_t{"b2nk2B/N7/rp6/2Npp1p1/P3PQ1b/2P2PR1/3PK3/7R w - - 0 33", 4093.5F, 4094},
             half_t{"7r/1b1pPk1p/n1P1p3/rp4p1/p3qP2/2B1P1R1/PP2N1Bn/3NR1K1 w - - 1 33", -1037.5F,
                    -1038},
             half_t{"1n1b4/p5k1/B3rppp/P2N1n2/qPpPpP2/2K1P2P/NBP3PR/R2Q4 b - - 12 34", 2326.5F,
                    -2327},
             half_t{"r3kb2/p1pn2rp/P2pp3/1p2qnpP/3PPpP1/B1P2P2/P2N2B1/3RK1NR b Kq - 1 21", -1658.5F,
                    1659},
             // With the two addends of the side to move added one by one this is below the half.
             half_t{"3r1b2/p7/n1p1pBkp/pb1p3p/Q1P2pr1/1P1PnN2/5P2/RNK3R1 b - - 1 31", 1017.5F,
                    -1018},
         }) {
        FreshEvaluation at(half.fen);
        EXPECT_EQ(at.score(), half.score) << half.fen;
        EXPECT_EQ(blended(at.evaluation()), half.sum) << half.fen;
    }
}

TEST(EvaluationTest, OppositeBishopsHalveTheWholeSum) {
    // The second position lacks nothing but one bishop on each side.
    for (char const* fen : {"r1bqk2r/pppp1ppp/8/8/8/8/PPP2PPP/RNBQK2R w KQkq - 0 1",
                            "rnbqk1nr/pppppppp/8/8/8/8/PPPPPPPP/RNBQK1NR w KQkq - 0 1"}) {
        FreshEvaluation at(fen);
        int const score = at.score();
        EXPECT_EQ(at.evaluation().variable_vector()[term::opposite_colored_bishops], 1.0F) << fen;
        float const half = static_cast<float>(static_cast<double>(blended(at.evaluation())) / 2.0);
        EXPECT_EQ(score, static_cast<int>(std::round(half))) << fen;
        EXPECT_NE(score, static_cast<int>(std::round(blended(at.evaluation())))) << fen;
    }
}

TEST(EvaluationTest, OtherBishopsDoNotHalve) {
    for (char const* fen : {"r1bqkb1r/pppp1ppp/8/8/8/8/PPP2PPP/RNBQKB1R w KQkq - 0 1",
                            "r1bqk2r/pppp1ppp/8/8/8/8/PPP2PPP/RN1QKB1R w KQkq - 0 1",
                            "r2qk2r/pppp1ppp/8/8/8/8/PPP2PPP/RNBQK2R w KQkq - 0 1"}) {
        FreshEvaluation at(fen);
        int const score = at.score();
        EXPECT_EQ(at.evaluation().variable_vector()[term::opposite_colored_bishops], 0.0F) << fen;
        EXPECT_EQ(score, static_cast<int>(std::round(blended(at.evaluation())))) << fen;
    }
}

TEST(EvaluationTest, AMirroredPositionHasTheSameScore) {
    std::vector<std::pair<char const*, char const*>> const twins{
        {start_fen, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1"},
        {kiwi_fen, "r3k2r/pppbbppp/2n2q1P/1P2p3/3pn3/BN2PNP1/P1PPQPB1/R3K2R b KQkq - 0 1"},
        {positions::rook_ending, "8/4p1p1/8/1r3P1K/kp5R/3P4/2P5/8 b - - 0 1"},
        {positions::promotions, "r2q1rk1/pP1p2pp/Q4n2/bbp1p3/Np6/1B3NBn/pPPP1PPP/R3K2R b KQ - 0 1"},
        {"8/8/8/3k4/8/8/3PK3/8 w - - 0 1", "8/3pk3/8/8/3K4/8/8/8 b - - 0 1"},
    };
    for (auto const& [fen, mirrored] : twins) {
        FreshEvaluation at(fen);
        FreshEvaluation twin(mirrored);
        EXPECT_NEAR(at.score(), twin.score(), 1) << fen;
        EXPECT_EQ(at.evaluation().variable_vector()[term::stm],
                  -twin.evaluation().variable_vector()[term::stm]);
    }
}

TEST(EvaluationTest, TheBonusOfOppositeBishopsIsAlwaysWhites) {
    FreshEvaluation at("4k3/2b2ppp/8/8/8/8/2B2PPP/4K3 w - - 0 1");
    FreshEvaluation twin("4k3/2b2ppp/8/8/8/8/2B2PPP/4K3 b - - 0 1");
    // 14 for the side to move and about 4 for White, halved: with the bonus for the mover both
    // scores would be 9.
    EXPECT_EQ(at.score(), 9);
    EXPECT_EQ(twin.score(), 5);
    EXPECT_EQ(at.evaluation().variable_vector()[term::opposite_colored_bishops], 1.0F);
    EXPECT_EQ(twin.evaluation().variable_vector()[term::opposite_colored_bishops], 1.0F);
}

TEST(EvaluationTest, TheSideToMoveIsWorthFourteen) {
    FreshEvaluation white("4k3/pppp4/8/8/8/8/PPPP4/4K3 w - - 0 1");
    FreshEvaluation black("4k3/pppp4/8/8/8/8/PPPP4/4K3 b - - 0 1");
    EXPECT_EQ(white.score(), 14);
    EXPECT_EQ(black.score(), 14);
    EXPECT_EQ(white.evaluation().variable_vector()[term::stm], 1.0F);
    EXPECT_EQ(black.evaluation().variable_vector()[term::stm], -1.0F);
}

TEST(EvaluationTest, SpaceMeasuresNothing) {
    FreshEvaluation at(kiwi_fen);
    at.score();
    EXPECT_EQ(at.evaluation().variable_vector()[term::space], 0.0F);
}

TEST(EvaluationTest, PieceSquareTermsAreBlendedByThePhase) {
    FreshEvaluation at(positions::rook_ending);
    at.score();
    Evaluation const& evaluation = at.evaluation();
    PieceSquareTables const& tables = evaluation.piece_square_tables();
    auto const expect = [&](std::size_t index, PieceSquareTables::pair_t const& sum) {
        volatile float const mg = sum.first * evaluation.mg_phase();
        volatile float const eg = sum.second * evaluation.eg_phase();
        EXPECT_EQ(evaluation.variable_vector()[index], mg + eg) << index;
    };
    expect(term::pst_pawn, tables.get_pawn_score());
    expect(term::pst_knight, tables.get_knight_score());
    expect(term::pst_bishop, tables.get_bishop_score());
    expect(term::pst_rook, tables.get_rook_score());
    expect(term::pst_queen, tables.get_queen_score());
    expect(term::pst_king, tables.get_king_score());
    EXPECT_NE(evaluation.variable_vector()[term::pst_pawn], 0.0F);
}

TEST(EvaluationTest, MaterialTermIsTheTableValue) {
    FreshEvaluation at("4k3/pppp4/8/8/8/8/PPPPP3/4K3 w - - 0 1");
    at.score();
    EXPECT_EQ(at.evaluation().variable_vector()[term::material], 145.0F);
    EXPECT_EQ(at.evaluation().material(), 145);
}

TEST(EvaluationTest, AccessorsGiveTheTermsTruncated) {
    FreshEvaluation at(kiwi_fen);
    at.score();
    EXPECT_EQ(at.evaluation().material(), 0);
    EXPECT_EQ(at.evaluation().mobility(), 17);
    EXPECT_EQ(at.evaluation().mobility(), at.evaluation().mobility_maps().safe_mobility());
    EXPECT_EQ(at.evaluation().fen(), kiwi_fen);
}

TEST(EvaluationTest, WeightVectorsAreThoseOfTheModel) {
    FreshEvaluation at(start_fen);
    EXPECT_EQ(at.evaluation().weight_mg_vector(), Weight().mg);
    EXPECT_EQ(at.evaluation().weight_eg_vector(), Weight().eg);
}

TEST(EvaluationTest, ClearChangesNothing) {
    FreshEvaluation at(kiwi_fen);
    int const score = at.score();
    std::vector<float> const terms = at.evaluation().variable_vector();
    at.evaluation().clear();
    EXPECT_EQ(at.evaluation().variable_vector(), terms);
    EXPECT_EQ(at.evaluation().total_evals(), 1U);
    EXPECT_EQ(at.score(), score);
}

TEST(EvaluationTest, InitFollowsAPositionThatWasSetByOtherMeans) {
    FreshEvaluation at(start_fen);
    at.position().fen(kiwi_fen);
    EXPECT_FALSE(at.evaluation().piece_square_tables().get_pawn_score() ==
                 FreshEvaluation(kiwi_fen).evaluation().piece_square_tables().get_pawn_score());
    at.evaluation().init();
    EXPECT_TRUE(at.evaluation().piece_square_tables().verify_score());
    EXPECT_EQ(at.score(), FreshEvaluation(kiwi_fen).score());
}

TEST(EvaluationTest, MovesPassOnToThePieceSquareSums) {
    FreshEvaluation at(start_fen);
    Move const move{Square(12), Square(28), static_cast<unsigned int>(normal_move), Piece(1),
                    Piece(0)};
    at.position().make_move(move);
    at.evaluation().make_move(move);
    EXPECT_TRUE(at.evaluation().piece_square_tables().verify_score());
    EXPECT_NE(at.evaluation().piece_square_tables().get_pawn_score().first, 0.0F);
    at.position().unmake_move();
    at.evaluation().unmake_move(move);
    EXPECT_TRUE(at.evaluation().piece_square_tables().verify_score());
}

TEST(EvaluationTest, EveryCallIsCounted) {
    FreshEvaluation at(start_fen);
    at.score();
    at.score();
    EXPECT_EQ(at.evaluation().total_evals(), 2U);
    EXPECT_EQ(at.evaluation().pawn_evals(), 1U);
    EXPECT_EQ(at.evaluation().missed_pht_reads(), 1U);
}

TEST(EvaluationTest, ABoardWithoutKingsIsHarmless) {
    FreshEvaluation at(positions::empty_board);
    at.score();
    EXPECT_EQ(at.evaluation().mg_phase(), 0.0F);
    FreshEvaluation queens("QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/qqqqqqqq/8/8/8 b - - 0 1");
    queens.score();
    EXPECT_GT(queens.evaluation().mg_phase(), 1.0F);
}

// Runs a test in an empty working directory.
class EvaluationLogTest : public testing::Test {
 protected:
    void SetUp() override {
        old_ = std::filesystem::current_path();
        folder_ = std::filesystem::path(testing::TempDir()) /
                  ("orvelin_evaluation_log_" +
                   std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
        std::filesystem::current_path(folder_);
    }
    void TearDown() override {
        std::filesystem::current_path(old_);
        std::filesystem::remove_all(folder_);
    }

    std::filesystem::path old_;
    std::filesystem::path folder_;
};

TEST_F(EvaluationLogTest, OnEmptiesTheFileAndOffClosesIt) {
    {
        std::ofstream file("eval_log.log");
        file << "old text";
    }
    FreshEvaluation at(start_fen);
    at.evaluation().set_log(true);
    EXPECT_TRUE(at.evaluation().log());
    EXPECT_TRUE(std::filesystem::exists("eval_log.log"));
    EXPECT_EQ(std::filesystem::file_size("eval_log.log"), 0U);
    at.score();
    at.evaluation().set_log(false);
    EXPECT_FALSE(at.evaluation().log());
    EXPECT_EQ(std::filesystem::file_size("eval_log.log"), 0U);
}

TEST_F(EvaluationLogTest, AFailedOpenIsIgnored) {
    std::filesystem::create_directory("eval_log.log");
    FreshEvaluation at(start_fen);
    at.evaluation().set_log(true);
    EXPECT_TRUE(at.evaluation().log());
    EXPECT_EQ(at.score(), 14);
    at.evaluation().set_log(false);
    EXPECT_FALSE(at.evaluation().log());
}

}  // namespace
}  // namespace orvelin
