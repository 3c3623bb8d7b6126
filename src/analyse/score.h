#pragma once

#include <optional>

#include "play/win_chance.h"

namespace orvelin::analyse {

/// A score in all units, from the side to move.
struct Score {
    /// Engine units.
    int units = 0;
    /// The game is drawn, whatever is played: by stalemate, or because no side can give mate.
    bool drawn = false;

    int centipawns() const { return play::to_centipawns(units); }
    play::WinDrawLoss chances() const {
        return drawn ? play::WinDrawLoss{0, 1000, 0} : play::win_draw_loss(units);
    }
    /// The points of the game that the side to move may expect, 0 to 1.
    double points() const;
    /// Moves to the mate, negative when the side to move is mated, 0 when it is so already;
    /// nothing when no mate is in sight.
    std::optional<int> mate() const;

    bool operator==(Score const& other) const = default;
};

}  // namespace orvelin::analyse
