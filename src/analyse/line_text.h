#pragma once

#include <memory>
#include <string>
#include <vector>

#include "position/move.h"

namespace orvelin {
struct Tables;
}

namespace orvelin::analyse {

/// Moves as players write them. Owns a board; for one thread.
class LineText {
 public:
    /// The tables must outlive it.
    explicit LineText(Tables const& tables);
    ~LineText();
    LineText(LineText const&) = delete;
    LineText& operator=(LineText const&) = delete;

    // The FEN texts must be such that play::check_fen() takes.

    /// The moves from the position on, with a space between.
    std::string san(std::string const& fen, std::vector<Move> const& moves);
    /// The legal move that the UCI text means; the empty move when there is none.
    Move legal_move(std::string const& fen, std::string const& text);

 private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace orvelin::analyse
