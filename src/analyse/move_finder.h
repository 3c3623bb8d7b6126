#pragma once

#include <string_view>

#include "analyse/san.h"
#include "analyse/san_text.h"
#include "generation/move_generator.h"
#include "position/chess_position.h"

namespace orvelin::analyse {

/// Finds the moves of games among the legal ones, without generating those of other pieces and to
/// other squares. One thread at a time; the tables must outlive it.
class MoveFinder {
 public:
    explicit MoveFinder(Tables const& tables);

    /// As find_san() among all legal moves of the position, which must be one of a game.
    FoundMove find(ChessPosition const& position, std::string_view text);

 private:
    bool enter_candidates(ChessPosition const& position, SanText const& wanted);
    void enter_pawns(ChessPosition const& position, SanText const& wanted);
    Move find_step(ChessPosition const& position, SanText const& wanted);

    Attacks const& attacks_;
    MoveGenerator generator_;
    movetable_t table_{};
};

}  // namespace orvelin::analyse
