#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "analyse/game.h"
#include "analyse/input_text.h"
#include "position/chess_position.h"

namespace orvelin::analyse {

/// A position of a FEN or EPD line.
struct PositionLine {
    /// Six fields, good for ChessPosition::fen().
    std::string fen;
    bool chess960 = false;
    /// The operations behind the fields of the position, as "id" with its text or "bm" with its
    /// moves, as they are written.
    std::vector<Tag> operations;
    /// Its number in the input, from 1, and its line, from 1.
    std::uint64_t number = 0;
    std::uint64_t line = 0;

    /// What an operation says; empty when there is none of this name.
    std::string operation(std::string_view name) const;
};

/// Reads FEN and EPD lines one after another. Blank lines and those that begin with '#' are gone
/// over. The input and the tables must outlive the reader. One thread at a time.
class PositionLines {
 public:
    static constexpr std::size_t longest_line = 65536;

    enum class outcome : std::uint8_t {
        position,
        /// The line is wrong, and reason() tells why.
        broken,
        end,
    };

    /// The first position gets the number behind `positions_before`, which counts those of other
    /// files.
    PositionLines(InputText& input, Tables const& tables, std::uint64_t positions_before = 0);

    /// Reads the next line that holds something.
    /// @throws std::runtime_error when the input cannot be read.
    outcome next(PositionLine& read);

    /// One line that tells which line is broken and why.
    std::string const& reason() const { return reason_; }
    /// What was put right in the last position, a line each.
    std::vector<std::string> const& remarks() const { return remarks_; }

 private:
    bool read_line(std::string& line);
    std::string read_position(std::string_view text, PositionLine& read);

    InputText& input_;
    ChessPosition position_;
    std::string line_;
    std::uint64_t number_;
    std::string reason_;
    std::vector<std::string> remarks_;
};

}  // namespace orvelin::analyse
