#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "analyse/ending.h"
#include "endgame/egt4_pieces.h"

namespace orvelin {
class Attacks;
}

namespace orvelin::board {

/// How an ending goes on when both sides play it best.
struct EndingValue {
    /// 1 White wins, -1 Black wins, 0 it is a draw.
    int winner = 0;
    /// Half-moves to the mate; 0 for a draw.
    int plies = 0;
};

/// The tables of endings, each built step by step when a position of it is looked at. Five MiB
/// each. The attacks must outlive it.
class EndingTables {
 public:
    explicit EndingTables(Attacks const& attacks) : attacks_(attacks) {}

    /// The index of the ending that a position belongs to; nothing when no table knows it.
    static std::optional<std::size_t> find(std::string const& fen);

    /// The share of the table that is built, from 0 to 1.
    double progress(std::size_t ending) const;
    /// Builds on for one step, which may take a second or two.
    void build(std::size_t ending);
    /// The value of a position of the ending, whose table must be whole.
    EndingValue value(std::size_t ending, std::string const& fen);

 private:
    Attacks const& attacks_;
    std::array<std::unique_ptr<Egt4Pieces>, analyse::endings.size()> tables_;
};

}  // namespace orvelin::board
