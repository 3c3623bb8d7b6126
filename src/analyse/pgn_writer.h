#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "analyse/game.h"
#include "position/move.h"

namespace orvelin {
struct Tables;
}

namespace orvelin::analyse {

struct AnnotatedMove;

/// Moves that might have been played instead of one.
struct Variation {
    /// Stands before the first move.
    std::string comment;
    std::vector<AnnotatedMove> moves;
};

/// A move and what is said of it.
struct AnnotatedMove {
    Move move;
    /// Numeric annotation glyphs: 1 "!", 2 "?", 3 "!!", 4 "??", 5 "!?", 6 "?!".
    std::vector<int> glyphs;
    std::string comment;
    std::vector<Variation> variations;
};

/// What is written of a game.
struct AnnotatedGame {
    /// In any order; what is missing of the seven that every game has is written as unknown.
    std::vector<Tag> tags;
    /// Six fields, good for ChessPosition::fen(). When it is not the start of chess, the tags FEN
    /// and SetUp are written from it, whatever tags there are.
    std::string start_fen;
    bool chess960 = false;
    /// Stands before the first move.
    std::string comment;
    std::vector<AnnotatedMove> moves;
    /// "1-0", "0-1", "1/2-1/2" or "*".
    std::string result = "*";
};

/// Writes the game in the export format, in lines of less than 80 characters where no longer word
/// stands in the way. A line of moves ends before one that is not legal. In comments and tags
/// control characters become blanks, and braces within a comment round brackets, since nothing
/// could tell them from its end.
void write_pgn(std::ostream& out, AnnotatedGame const& game, Tables const& tables);

}  // namespace orvelin::analyse
