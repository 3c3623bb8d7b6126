#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "analyse/game.h"
#include "analyse/record.h"
#include "position/move.h"

namespace orvelin::tools {

/// A position that an answer is wanted for.
struct Asked {
    /// Its place among all positions of the input, from 1.
    std::uint64_t number = 0;
    analyse::Source source;
    /// Six fields, such as play::check_fen() gives.
    std::string fen;
    bool chess960 = false;
    /// The move that was played in the game; the empty move for none.
    Move played;
    /// What the move before it took.
    std::optional<analyse::Taken> taken;
    /// The game that it is of; null for none.
    std::shared_ptr<analyse::Game const> game;
};

/// Where the positions come from, in order. One thread at a time.
class PositionSource {
 public:
    virtual ~PositionSource() = default;
    /// The next position, all but its number; false at the end.
    virtual bool next(Asked& asked) = 0;
    /// Whether next() will not have to wait for input.
    virtual bool ready() { return true; }
};

/// What is asked about every position of a run.
struct Request {
    analyse::Limit limit;
    int lines = 1;
    bool leaves = true;
    /// Whether the move that was played is searched by itself.
    bool played = false;
    /// Whether all moves but the best one are.
    bool rest = false;

    analyse::Receipt receipt() const {
        return analyse::receipt_of(limit, lines, leaves, played, rest);
    }
};

/// Which positions of the input are those of this run: those whose number leaves the remainder
/// index - 1 when divided by count.
struct Shard {
    std::uint64_t index = 1;
    std::uint64_t count = 1;

    bool takes(std::uint64_t number) const { return (number - 1) % count == index - 1; }
};

/// "2/8".
std::optional<Shard> parse_shard(std::string_view text);

}  // namespace orvelin::tools
