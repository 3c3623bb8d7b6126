#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "position/move.h"

namespace orvelin::analyse {

/// A tag pair of a game.
struct Tag {
    std::string name;
    std::string value;
};

/// A game as far as an analysis needs it: the tags, where it begins, and the moves of its main
/// line. Comments, glyphs, clocks and variations are read past.
struct Game {
    std::vector<Tag> tags;
    /// Six fields. The board of the first move.
    std::string start_fen;
    bool chess960 = false;
    std::vector<Move> moves;
    /// "1-0", "0-1", "1/2-1/2" or "*".
    std::string result = "*";
    /// Its number in the input, from 1, and the line of the input at which it begins, from 1.
    std::uint64_t number = 0;
    std::uint64_t line = 0;

    /// The value of a tag; empty when there is none.
    std::string tag(std::string const& name) const;
};

}  // namespace orvelin::analyse
