#pragma once

#include <cstdint>

#include "analyse/input_text.h"

namespace orvelin::analyse {

enum class input_kind : std::uint8_t {
    /// Nothing but blanks.
    empty,
    games,
    /// FEN and EPD lines.
    positions,
};

/// Tells by the first significant text what the input holds. Only blanks are gone over.
input_kind find_kind(InputText& input);

}  // namespace orvelin::analyse
