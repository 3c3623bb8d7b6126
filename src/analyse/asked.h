#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "analyse/game.h"
#include "analyse/limit.h"
#include "analyse/record.h"
#include "analyse/taken.h"
#include "position/move.h"

namespace orvelin::analyse {

/// A position that an answer is wanted for.
struct Asked {
    /// Its place among all positions of the input, from 1.
    std::uint64_t number = 0;
    Source source;
    /// Six fields, such as play::check_fen() gives.
    std::string fen;
    bool chess960 = false;
    /// The move that was played in the game; the empty move for none.
    Move played;
    /// What the move before it took.
    std::optional<Taken> taken;
    /// The game that it is of; null for none.
    std::shared_ptr<Game const> game;
};

/// What is asked about every position of a run.
struct Request {
    Limit limit;
    int lines = 1;
    bool leaves = true;
    /// Whether the move that was played is searched by itself.
    bool played = false;
    /// Whether all moves but the best one are.
    bool rest = false;

    Receipt receipt() const { return receipt_of(limit, lines, leaves, played, rest); }
};

/// Which moves of a position are searched; the best one always is.
struct WantedMoves {
    bool played = false;
    bool rest = false;
};

/// "best", and behind it "played" and "rest", each word at most once, with commas between. Nothing
/// for another text.
std::optional<WantedMoves> parse_wanted_moves(std::string_view text);

}  // namespace orvelin::analyse
