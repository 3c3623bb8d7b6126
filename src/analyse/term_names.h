#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "evaluation/weight.h"

namespace orvelin::analyse {

/// What a player speaks of, in the order in which it is told. Each term belongs to one of them.
enum class term_group : std::uint8_t {
    material,
    king_safety,
    piece_activity,
    pawn_structure,
    passed_pawns,
    threats,
    development,
    endgame,
};

constexpr std::size_t term_group_count = 8;

/// How a term is called.
struct TermName {
    /// As the engine prints it.
    std::string_view code;
    /// As a player says it, in small letters.
    std::string_view full;
    /// One line on what is counted.
    std::string_view meaning;
    term_group group;
};

/// The names of all terms, in the order of `term`.
std::array<TermName, term::count> const& term_names();

/// The group in small letters, as "king safety".
std::string_view group_name(term_group group);

}  // namespace orvelin::analyse
