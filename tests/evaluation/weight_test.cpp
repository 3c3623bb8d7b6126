#include "evaluation/weight.h"

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>

namespace orvelin {
namespace {

struct row_t {
    char const* name;
    char const* mg;
    char const* eg;
};

// Kept as text and read with strtof, so that a slip in a literal of the code shows.
constexpr std::array<row_t, term::count> rows{{
    {"material", "2.50148", "2.05895"},
    {"mobility", "1.04707", "9.96812e-07"},
    {"knight_mobility", "0.581864", "1.63203e-06"},
    {"bishop_mobility", "0.747138", "0.905745"},
    {"rook_mobility", "0.000143933", "3.77674"},
    {"queen_mobility", "2.91113", "14.6056"},
    {"development", "1.4882", "1.15224"},
    {"space", "0.610783", "1.68053e-05"},
    {"pst_pawn", "1.63201", "1.09013"},
    {"pst_knight", "0.382588", "10.2664"},
    {"pst_bishop", "2.19208", "0.000151478"},
    {"pst_rook", "0.60714", "0.723856"},
    {"pst_queen", "9.94566e-07", "0.519414"},
    {"pst_king", "20.1419", "1.52514"},
    {"pawn_shield", "2.34221", "1.49304e-06"},
    {"king_attack", "2.09817", "3.56108e-06"},
    {"castling_rights", "0.0989548", "6.36035e-06"},
    {"pawn_storm", "1.15545", "4.76514e-06"},
    {"open_files_on_king", "0.236645", "0.0461258"},
    {"safe_queencheck", "14.1252", "0.00166655"},
    {"knight_king_contact", "0.00010267", "7.56091e-05"},
    {"bishop_king_contact", "9.68724e-05", "8.16766e-05"},
    {"rook_king_contact", "0.0213516", "0.000185858"},
    {"queen_king_contact", "355.561", "10.2923"},
    {"knight_battlefield_contact", "19.5868", "0.000113646"},
    {"bishop_battlefield_contact", "7.36273e-05", "3.86269"},
    {"rook_battlefield_contact", "0.000186614", "8.42957e-05"},
    {"queen_battlefield_contact", "0.0344313", "27.9784"},
    {"knight_battlefield_attack", "4.84189", "0.118689"},
    {"bishop_battlefield_attack", "7.26411", "8.25708"},
    {"rook_battlefield_attack", "2.20566", "0.118689"},
    {"queen_battlefield_attack", "4.33753", "8.25708"},
    {"king_activity", "2.8714e-05", "4.90238"},
    {"locked_up_rook", "109.926", "1.70761"},
    {"undefended_pieces", "9.65115", "0.560495"},
    {"own_hanging_material", "67.9774", "23.5576"},
    {"rookpawn", "43.4654", "3.91959e-06"},
    {"doubled_pawns", "11.6542", "46.6105"},
    {"weak_pawns", "15.4674", "4.572"},
    {"isolated_pawns", "2.89348", "0.00718341"},
    {"blocked_pawns", "15.0767", "29.9991"},
    {"passed_pawns", "0.0350917", "3.04884"},
    {"pawn_islands", "24.7771", "4.52725e-05"},
    {"pinned_pieces", "2.70945", "65.7304"},
    {"bad_bishop", "3.22237", "9.93572e-07"},
    {"opposite_colored_bishops", "22.3661", "2.31197"},
    {"stm", "14", "14"},
}};

TEST(WeightTest, HoldsThreeParallelVectorsOfAllTerms) {
    Weight const weight;
    EXPECT_EQ(weight.names.size(), term::count);
    EXPECT_EQ(weight.mg.size(), term::count);
    EXPECT_EQ(weight.eg.size(), term::count);
}

TEST(WeightTest, EveryNameAndWeightIsTheTunedOne) {
    Weight const weight;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(weight.names[i], rows[i].name) << i;
        EXPECT_EQ(weight.mg[i], std::strtof(rows[i].mg, nullptr)) << rows[i].name;
        EXPECT_EQ(weight.eg[i], std::strtof(rows[i].eg, nullptr)) << rows[i].name;
    }
}

TEST(WeightTest, TinyWeightsAreNotZero) {
    Weight const weight;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_GT(weight.mg[i], 0.0F) << rows[i].name;
        EXPECT_GT(weight.eg[i], 0.0F) << rows[i].name;
    }
}

TEST(WeightTest, TermIndicesFollowTheNames) {
    Weight const weight;
    EXPECT_EQ(weight.names[term::material], "material");
    EXPECT_EQ(weight.names[term::development], "development");
    EXPECT_EQ(weight.names[term::pst_king], "pst_king");
    EXPECT_EQ(weight.names[term::king_attack], "king_attack");
    EXPECT_EQ(weight.names[term::safe_queencheck], "safe_queencheck");
    EXPECT_EQ(weight.names[term::king_activity], "king_activity");
    EXPECT_EQ(weight.names[term::passed_pawns], "passed_pawns");
    EXPECT_EQ(weight.names[term::opposite_colored_bishops], "opposite_colored_bishops");
    EXPECT_EQ(weight.names[term::stm], "stm");
}

}  // namespace
}  // namespace orvelin
