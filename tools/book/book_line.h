#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvelin::tools {

/// A move as it is written in a line of moves.
struct written_move_t {
    std::string text;
    /// The weight behind the move, as in `e2e4=20`.
    std::optional<std::uint16_t> weight;
};

/// One line of moves: a game or a variation.
struct book_line_t {
    /// For how many games the line stands: the weight in front of the moves, as in `3: e2e4`.
    std::uint64_t games = 1;
    std::vector<written_move_t> moves;
};

/// Largest number of games that a line may stand for.
inline constexpr std::uint64_t max_games = 1'000'000'000;

/// Reads a line of moves. `#` begins a comment; nothing but blanks is a line without moves. The
/// moves are any words.
/// @throws std::runtime_error when a weight is not a number in its range.
book_line_t read_book_line(std::string_view text);

/// A text from a file as it can be shown in a message: short and without control characters.
std::string shown(std::string_view text);

}  // namespace orvelin::tools
