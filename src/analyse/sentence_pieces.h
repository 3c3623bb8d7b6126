#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "analyse/material_balance.h"

namespace orvelin::analyse {

/// The word without the punctuation around it.
std::string_view without_stops(std::string_view word);

/// How many pieces are won or lost: pawns, minor pieces counted as one kind, rooks, queens.
using pieces_t = std::array<int, 4>;

/// Those of "a rook and two pawns" and "the queen for two rooks"; nothing for other texts.
std::optional<pieces_t> pieces_of(std::string_view text);

pieces_t pieces_of(MaterialBalance const& balance);

}  // namespace orvelin::analyse
