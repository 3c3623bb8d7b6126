#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "analyse/game.h"
#include "analyse/input_text.h"
#include "analyse/move_finder.h"
#include "analyse/pgn_text.h"
#include "position/chess_position.h"

namespace orvelin::analyse {

/// Reads the games of a PGN text one after another and holds no more than one of them.
///
/// A game that cannot be read is told with the reason, and the next one is read as if nothing had
/// been. What real databases have and a strict reader would refuse is understood where it can mean
/// but one thing. The input and the tables must outlive the reader. One thread at a time.
class PgnReader {
 public:
    /// More moves than any game has.
    static constexpr std::size_t most_moves = 20000;
    /// The largest size of all tags of a game together.
    static constexpr std::size_t most_tag_bytes = std::size_t{1} << 20;

    enum class outcome : std::uint8_t {
        game,
        /// The game holds what was read up to the fault, and reason() tells of that.
        broken,
        end,
    };

    /// The first game gets the number behind `games_before`, which counts those of other files.
    PgnReader(InputText& input, Tables const& tables, std::uint64_t games_before = 0);

    /// Reads the next game.
    /// @throws std::runtime_error when the input cannot be read.
    outcome next(Game& game);

    /// One line that tells which game is broken, where and why.
    std::string const& reason() const { return reason_; }
    /// What was put right in the start position of the last game, a line each.
    std::vector<std::string> const& remarks() const { return remarks_; }

 private:
    bool find_game();
    void read_tags(Game& game);
    bool begins_next_game(Game const& game);
    void set_up(Game& game);
    void read_moves(Game& game);
    /// False when the word ends the game.
    bool read_word(Game& game, std::string_view word);
    void read_move(Game& game, std::string_view word, std::uint64_t line);
    void end_variations(Game const& game);
    void break_game(Game const& game, std::uint64_t line, std::string const& why);

    PgnText text_;
    MoveFinder finder_;
    ChessPosition position_;
    /// The board from which `position_` got where it is by `moves_made_` moves; empty at first.
    std::string position_start_;
    std::size_t moves_made_ = 0;
    /// How many variations are open, and the line of the outermost.
    std::uint64_t depth_ = 0;
    std::uint64_t variation_line_ = 0;
    std::uint64_t number_;
    std::string reason_;
    std::vector<std::string> remarks_;
    Tag tag_;
};

}  // namespace orvelin::analyse
