#pragma once

#include <string_view>

/// What the words between the moves of a PGN text are.
namespace orvelin::analyse {

/// The result that a word is, as the export format writes it; empty when it is none.
std::string_view result_of(std::string_view word);

/// The word without a move number of any form before it: "12.e4", "12...", "12", "...".
std::string_view without_number(std::string_view word);

/// Whether a word, which is not empty, stands for no move: praise, blame and evaluations, "e.p."
/// behind a capture.
bool is_glyph(std::string_view word);

}  // namespace orvelin::analyse
