#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace orvelin {

/// Slots of the variable vector, in its order.
namespace term {
inline constexpr std::size_t material = 0;
inline constexpr std::size_t mobility = 1;
inline constexpr std::size_t knight_mobility = 2;
inline constexpr std::size_t bishop_mobility = 3;
inline constexpr std::size_t rook_mobility = 4;
inline constexpr std::size_t queen_mobility = 5;
inline constexpr std::size_t development = 6;
inline constexpr std::size_t space = 7;
inline constexpr std::size_t pst_pawn = 8;
inline constexpr std::size_t pst_knight = 9;
inline constexpr std::size_t pst_bishop = 10;
inline constexpr std::size_t pst_rook = 11;
inline constexpr std::size_t pst_queen = 12;
inline constexpr std::size_t pst_king = 13;
inline constexpr std::size_t pawn_shield = 14;
inline constexpr std::size_t king_attack = 15;
inline constexpr std::size_t castling_rights = 16;
inline constexpr std::size_t pawn_storm = 17;
inline constexpr std::size_t open_files_on_king = 18;
inline constexpr std::size_t safe_queencheck = 19;
inline constexpr std::size_t knight_king_contact = 20;
inline constexpr std::size_t bishop_king_contact = 21;
inline constexpr std::size_t rook_king_contact = 22;
inline constexpr std::size_t queen_king_contact = 23;
inline constexpr std::size_t knight_battlefield_contact = 24;
inline constexpr std::size_t bishop_battlefield_contact = 25;
inline constexpr std::size_t rook_battlefield_contact = 26;
inline constexpr std::size_t queen_battlefield_contact = 27;
inline constexpr std::size_t knight_battlefield_attack = 28;
inline constexpr std::size_t bishop_battlefield_attack = 29;
inline constexpr std::size_t rook_battlefield_attack = 30;
inline constexpr std::size_t queen_battlefield_attack = 31;
inline constexpr std::size_t king_activity = 32;
inline constexpr std::size_t locked_up_rook = 33;
inline constexpr std::size_t undefended_pieces = 34;
inline constexpr std::size_t own_hanging_material = 35;
inline constexpr std::size_t rookpawn = 36;
inline constexpr std::size_t doubled_pawns = 37;
inline constexpr std::size_t weak_pawns = 38;
inline constexpr std::size_t isolated_pawns = 39;
inline constexpr std::size_t blocked_pawns = 40;
inline constexpr std::size_t passed_pawns = 41;
inline constexpr std::size_t pawn_islands = 42;
inline constexpr std::size_t pinned_pieces = 43;
inline constexpr std::size_t bad_bishop = 44;
inline constexpr std::size_t opposite_colored_bishops = 45;
inline constexpr std::size_t stm = 46;
/// Number of terms of the linear model.
inline constexpr std::size_t count = 47;
}  // namespace term

/// The tuned weights of the linear evaluation.
///
/// Three parallel vectors in the order of `term`. The weights never change after construction;
/// the names are lengthened with blanks by `Evaluation::report()` only.
class Weight {
 public:
    /// Number of terms, filled up to groups of four.
    static constexpr std::size_t padded = 48;
    /// The weights once more, in rows of whole groups; the spare ones are 0.
    alignas(64) static const std::array<float, padded> mg_row;
    alignas(64) static const std::array<float, padded> eg_row;

    /// Hundreds of nobelmen at the start of a game.
    static constexpr std::size_t most_phases = 62;
    /// The middle-game share by hundreds of nobelmen. What is above 1 leaves a negative rest for
    /// the end game.
    static constexpr float mg_share(std::size_t hundreds) {
        return static_cast<float>(100 * hundreds) / 6200.0F;
    }

    /// Both weights in one, blended by the share of each phase, with 0 for the side to move. Behind
    /// the last phase a row of no numbers.
    using row_t = std::array<float, padded>;
    alignas(64) static const std::array<row_t, most_phases + 2> blended_rows;
    static row_t const& blended_row(std::size_t hundreds) {
        return blended_rows[std::min(hundreds, most_phases + 1)];
    }

    /// Fills the three vectors from the literals of the model.
    Weight();

    /// Name of each term, as the report prints it.
    std::vector<std::string> names;
    /// Middle-game weight of each term.
    std::vector<float> mg;
    /// End-game weight of each term.
    std::vector<float> eg;
};

}  // namespace orvelin
