// What the evaluation computes in a fast form, against the plain one.

#include <cmath>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "evaluation/counting.h"
#include "evaluation/king_zone.h"
#include "evaluation/linear_model.h"
#include "position/chess_position.h"
#include "position/side.h"
#include "support/fresh_evaluation.h"
#include "support/position_record.h"

namespace orvelin::test {

namespace {

std::uint32_t bits(float value) {
    std::uint32_t word = 0;
    std::memcpy(&word, &value, sizeof word);
    return word;
}

void expect_rounded(float value) {
    for (float const x : {value, -value}) {
        ASSERT_EQ(bits(rounded(x)), bits(std::round(x))) << x;
    }
}

TEST(FastForms, RoundingIsThatOfTheLibraryAroundHalves) {
    for (int whole = 0; whole < 9000000; whole += whole < 5000 ? 1 : 997) {
        for (float const fraction : {0.0F, 0.25F, 0.5F, 0.75F}) {
            float const x = static_cast<float>(whole) + fraction;
            expect_rounded(x);
            expect_rounded(std::nextafter(x, 0.0F));
            expect_rounded(std::nextafter(x, 1e9F));
        }
    }
}

TEST(FastForms, RoundingIsThatOfTheLibraryForAnyBits) {
    std::mt19937 random(11);
    for (int i = 0; i < 1000000; ++i) {
        auto const word = static_cast<std::uint32_t>(random());
        float x = 0.0F;
        std::memcpy(&x, &word, sizeof x);
        if (!std::isnan(x)) {
            expect_rounded(x);
        }
    }
}

TEST(FastForms, RoundingOfHugeAndTinyValues) {
    for (float const x : {8388607.5F, 8388608.0F, 16777216.0F, 3e9F, 1e38F, 1e-38F, 1e-45F,
                          std::numeric_limits<float>::infinity()}) {
        expect_rounded(x);
    }
    EXPECT_TRUE(std::isnan(rounded(std::numeric_limits<float>::quiet_NaN())));
}

TEST(FastForms, CountsAreThoseOfTheBoard) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 100000; ++i) {
        std::uint64_t const word = (i & 1) != 0 ? random() : random() & random() & random();
        EXPECT_EQ(count(BitBoard(word)), BitBoard::popcount(word));
        EXPECT_EQ(count_by_table(word), BitBoard::popcount(word));
        if (counts_in_hardware) {
            EXPECT_EQ(count_in_hardware(word), BitBoard::popcount(word));
        }
        EXPECT_EQ(bits_of_quarter(word), BitBoard::popcount(word & 0xFFFF));
        EXPECT_EQ(single(BitBoard(word)), BitBoard::popcount(word) == 1);
        EXPECT_EQ(several(BitBoard(word)), BitBoard::popcount(word) > 1);
    }
    EXPECT_EQ(count(~BitBoard()), 64);
    EXPECT_EQ(count_by_table(~std::uint64_t{0}), 64);
    EXPECT_FALSE(single(BitBoard()));
    EXPECT_FALSE(several(BitBoard()));
}

/// Terms as large as those of positions and larger, some of them 0.
terms_t random_terms(std::mt19937& random) {
    terms_t terms;
    int const largest = 1 << (random() % 12);
    for (std::size_t i = 0; i < term::stm; ++i) {
        int const value = static_cast<int>(random() % 2001 - 1000) * largest / 1000;
        if (is_float_term(i)) {
            terms.float_bits[i] = bits(static_cast<float>(value) / 7.0F);
        } else {
            terms.integers[i] = value;
        }
    }
    return terms;
}

float ordered_sum(terms_t const& terms, float mg_phase, float eg_phase) {
    float sum = 0.0F;
    for (std::size_t i = 0; i < term::stm; ++i) {
        float const end_game = terms.value(i) * Weight::eg_row[i] * eg_phase;
        float const middle_game = terms.value(i) * Weight::mg_row[i] * mg_phase;
        sum += end_game + middle_game;
    }
    return sum;
}

loose_sum_t loose_sum(terms_t const& terms, std::size_t hundreds) {
    Weight::row_t const& weights = Weight::blended_row(hundreds);
    loose_sum_t sum;
    sum.add<group::material_to_space>(terms, weights);
    sum.add<group::pst_of_pieces>(terms, weights);
    sum.add<group::pst_to_king_attack>(terms, weights);
    sum.add<group::castling_to_battlefield>(terms, weights);
    sum.add<group::king_activity_to_bishops>(terms, weights);
    return sum;
}

TEST(FastForms, TheLooseSumIsAsNearAsItSays) {
    std::mt19937 random(13);
    int different = 0;
    for (int i = 0; i < 100000; ++i) {
        terms_t terms = random_terms(random);
        std::size_t const hundreds = random() % (Weight::most_phases + 1);
        float const mg_phase = Weight::mg_share(hundreds);
        float const ordered = ordered_sum(terms, mg_phase, 1.0F - mg_phase);
        // The side to move is added to both behind the sum.
        terms.integers[term::stm] = (i & 1) != 0 ? 1 : -1;
        loose_sum_t const loose = loose_sum(terms, hundreds);
        ASSERT_LE(std::fabs(loose.sum() - ordered), loose.error());
        different += loose.sum() != ordered ? 1 : 0;
    }
    EXPECT_GT(different, 10000);
}

// The loose sum lies on the other side of a half, or on it, where the sum in its order does not.
TEST(FastForms, TheOrderOfTheSumDecidesAtAHalf) {
    struct {
        char const* fen;
        int score;  ///< White's
    } const cases[] = {
        {"4kq2/2b2p2/b3p3/n1B3pQ/Pr6/P1p1N3/2P2PK1/2R5 w - - 5 28", -879},
        {"r2k1b2/3p4/p1nPqpp1/1bp1pnN1/5P1r/PpP1B3/1P5P/R2NK3 w - - 6 30", -5025},
        {"2rqk2b/p2p3n/b3Pp2/QBp1N1pr/1p2PP2/2N4P/PPPB3P/R3K2R w KQ - 0 11", 1421},
        {"1n2N3/rb6/1p4k1/p1b2Pp1/PN6/4P2P/2PKn3/2R1Q2R b - - 0 37", 2220},
        {"rq3br1/p1pp1k2/b5p1/1N1Pp3/1P2PP2/3B4/1nP1K2P/2B1R2q w - - 1 14", -5954},
        {"6k1/1pp3pp/2npNn2/2B1N3/3Pr3/P7/1PR2PK1/2R5 b - - 2 48", 1666},
    };
    for (auto const& [fen, score] : cases) {
        FreshEvaluation fresh(fen);
        fresh.score();
        EXPECT_EQ(fresh.evaluation().score(), static_cast<float>(score)) << fen;
    }
}

TEST(FastForms, TheLooseSumOfAPositionLeavesOneScoreMostly) {
    terms_t terms;
    terms.integers[term::material] = 300;
    terms.integers[term::mobility] = -200;
    EXPECT_LT(loose_sum(terms, Weight::most_phases).error(), 0.02F);
}

TEST(FastForms, WithMorePiecesThanAtTheStartTheLooseSumIsNoNumber) {
    terms_t const terms;
    for (std::size_t const hundreds : {Weight::most_phases + 1, Weight::most_phases + 500}) {
        loose_sum_t const sum = loose_sum(terms, hundreds);
        EXPECT_TRUE(std::isnan(sum.sum()));
        EXPECT_TRUE(std::isnan(sum.error()));
    }
}

template <int Side>
void expect_same_rooks(ChessPosition const& position, Mobility const& maps) {
    KingZone<Side, true> const fast(position, maps);
    KingZone<Side, false> const plain(position, maps);
    EXPECT_EQ(fast.shut_in_rook(position), plain.shut_in_rook(position));
}

/// A king on every square, with pieces of all kinds around.
TEST(FastForms, ShutInRooksAreFoundAlikeForEveryKing) {
    std::mt19937_64 random(3);
    for (int square = 0; square < 64; ++square) {
        for (int round = 0; round < 40; ++round) {
            ChessPosition position(shared_tables());
            position.clear();
            Square const other(static_cast<int>(random() % 64));
            if (other == Square(square)) {
                continue;
            }
            position.set_piece_on(Square(square), Piece(white_king));
            position.set_piece_on(other, Piece(black_king));
            for (int piece = 0; piece < 24; ++piece) {
                Square const at(static_cast<int>(random() % 64));
                if (position.get_piece_id_from(at) != 0) {
                    continue;
                }
                int const type = static_cast<int>(random() % 5) + 1;
                position.set_piece_on(at, Piece(type + ((random() & 1) != 0 ? 8 : 0)));
            }
            Mobility maps(shared_tables().attacks);
            maps.compute(position);
            expect_same_rooks<side::white>(position, maps);
            expect_same_rooks<side::black>(position, maps);
            EXPECT_EQ((KingZone<side::black, true>(position, maps).pressure(maps) -
                       KingZone<side::white, true>(position, maps).pressure(maps)),
                      maps.king_safety());
        }
    }
}

TEST(FastForms, AWholeEvaluationHasTheTermsOfTheSeparateSteps) {
    for (PositionRecord const& record : read_position_records("positions.txt")) {
        FreshEvaluation whole(record.fen());
        whole.score();
        FreshEvaluation steps(record.fen());
        Evaluation& evaluation = steps.evaluation();
        evaluation.compute_phase();
        evaluation.compute_material();
        evaluation.compute_mobility();
        evaluation.compute_space();
        evaluation.compute_pst();
        evaluation.compute_pawn_eval();
        evaluation.compute_development();
        evaluation.compute_king_safety();
        evaluation.compute_king_activity();
        evaluation.compute_pinned_pieces();
        evaluation.compute_opposite_colored_bishops();
        for (std::size_t i = 0; i < term::stm; ++i) {
            ASSERT_EQ(bits(whole.term(i)), bits(steps.term(i))) << record.fen() << ' ' << i;
        }
    }
}

/// Boards with two kings of a colour can be set up; their zones are joined.
TEST(FastForms, SeveralKingsAreCountedOverAllTheirZones) {
    for (char const* fen :
         {"K1K1k1k1/8/8/3p4/4P3/8/8/2K2k2 w - - 0 1", "K1K3k1/8/8/3p4/4P3/8/8/2K5 w - - 0 1",
          "K3k1k1/8/8/3p4/4P3/8/8/5k2 w - - 0 1"}) {
        FreshEvaluation at(fen);
        at.score();
        Mobility const& maps = at.evaluation().mobility_maps();
        BitBoard const black = maps.black_king_neighbourhood() & ~e_file;
        BitBoard const white = maps.white_king_neighbourhood() & ~d_file;
        EXPECT_EQ(at.term(term::open_files_on_king),
                  static_cast<float>((black.popcount() - white.popcount()) * 15))
            << fen;
    }
}

}  // namespace

}  // namespace orvelin::test
