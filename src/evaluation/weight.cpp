#include "evaluation/weight.h"

#include <algorithm>
#include <array>
#include <limits>

namespace orvelin {

namespace {

struct weight_t {
    char const* name;
    float mg;
    float eg;
};

// The tiny weights are values in their own right: they are what the tuning left, and the scores
// depend on them to the last bit.
constexpr std::array<weight_t, term::count> weights{{
    {"material", 2.50148F, 2.05895F},
    {"mobility", 1.04707F, 9.96812e-07F},
    {"knight_mobility", 0.581864F, 1.63203e-06F},
    {"bishop_mobility", 0.747138F, 0.905745F},
    {"rook_mobility", 0.000143933F, 3.77674F},
    {"queen_mobility", 2.91113F, 14.6056F},
    {"development", 1.4882F, 1.15224F},
    {"space", 0.610783F, 1.68053e-05F},
    {"pst_pawn", 1.63201F, 1.09013F},
    {"pst_knight", 0.382588F, 10.2664F},
    {"pst_bishop", 2.19208F, 0.000151478F},
    {"pst_rook", 0.60714F, 0.723856F},
    {"pst_queen", 9.94566e-07F, 0.519414F},
    {"pst_king", 20.1419F, 1.52514F},
    {"pawn_shield", 2.34221F, 1.49304e-06F},
    {"king_attack", 2.09817F, 3.56108e-06F},
    {"castling_rights", 0.0989548F, 6.36035e-06F},
    {"pawn_storm", 1.15545F, 4.76514e-06F},
    {"open_files_on_king", 0.236645F, 0.0461258F},
    {"safe_queencheck", 14.1252F, 0.00166655F},
    {"knight_king_contact", 0.00010267F, 7.56091e-05F},
    {"bishop_king_contact", 9.68724e-05F, 8.16766e-05F},
    {"rook_king_contact", 0.0213516F, 0.000185858F},
    {"queen_king_contact", 355.561F, 10.2923F},
    {"knight_battlefield_contact", 19.5868F, 0.000113646F},
    {"bishop_battlefield_contact", 7.36273e-05F, 3.86269F},
    {"rook_battlefield_contact", 0.000186614F, 8.42957e-05F},
    {"queen_battlefield_contact", 0.0344313F, 27.9784F},
    {"knight_battlefield_attack", 4.84189F, 0.118689F},
    {"bishop_battlefield_attack", 7.26411F, 8.25708F},
    {"rook_battlefield_attack", 2.20566F, 0.118689F},
    {"queen_battlefield_attack", 4.33753F, 8.25708F},
    {"king_activity", 2.8714e-05F, 4.90238F},
    {"locked_up_rook", 109.926F, 1.70761F},
    {"undefended_pieces", 9.65115F, 0.560495F},
    {"own_hanging_material", 67.9774F, 23.5576F},
    {"rookpawn", 43.4654F, 3.91959e-06F},
    {"doubled_pawns", 11.6542F, 46.6105F},
    {"weak_pawns", 15.4674F, 4.572F},
    {"isolated_pawns", 2.89348F, 0.00718341F},
    {"blocked_pawns", 15.0767F, 29.9991F},
    {"passed_pawns", 0.0350917F, 3.04884F},
    {"pawn_islands", 24.7771F, 4.52725e-05F},
    {"pinned_pieces", 2.70945F, 65.7304F},
    {"bad_bishop", 3.22237F, 9.93572e-07F},
    {"opposite_colored_bishops", 22.3661F, 2.31197F},
    {"stm", 14.0F, 14.0F},
}};

static_assert(weights.front().mg == 2.50148F && weights.front().eg == 2.05895F);
static_assert(weights.back().mg == 14.0F && weights.back().eg == 14.0F);
// What the error of loose_sum_t relies on.
static_assert(std::all_of(weights.begin(), weights.end(), [](weight_t const& weight) {
    return weight.mg >= 0.0F && weight.eg >= 0.0F;
}));
static_assert(weights.back().mg <= 16.0F && weights.back().eg <= 16.0F);

constexpr std::array<float, Weight::padded> row_of(float weight_t::*half) {
    std::array<float, Weight::padded> row{};
    for (std::size_t i = 0; i < weights.size(); ++i) {
        row[i] = weights[i].*half;
    }
    return row;
}

// Built at the start: as constants they would be a twentieth of the engine for pages.
std::array<Weight::row_t, Weight::most_phases + 2> make_blended_rows() {
    std::array<Weight::row_t, Weight::most_phases + 2> rows{};
    for (std::size_t phase = 0; phase <= Weight::most_phases; ++phase) {
        float const mg_share = Weight::mg_share(phase);
        float const eg_share = 1.0F - mg_share;
        for (std::size_t i = 0; i < term::stm; ++i) {
            rows[phase][i] = weights[i].eg * eg_share + weights[i].mg * mg_share;
        }
    }
    rows.back().fill(std::numeric_limits<float>::quiet_NaN());
    return rows;
}

}  // namespace

alignas(64) const std::array<Weight::row_t, Weight::most_phases + 2> Weight::blended_rows =
    make_blended_rows();
alignas(64) constinit const std::array<float, Weight::padded> Weight::mg_row =
    row_of(&weight_t::mg);
alignas(64) constinit const std::array<float, Weight::padded> Weight::eg_row =
    row_of(&weight_t::eg);

Weight::Weight() {
    names.reserve(weights.size());
    mg.reserve(weights.size());
    eg.reserve(weights.size());
    for (weight_t const& weight : weights) {
        names.emplace_back(weight.name);
        mg.push_back(weight.mg);
        eg.push_back(weight.eg);
    }
}

}  // namespace orvelin
