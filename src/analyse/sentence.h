#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analyse/move_judgement.h"
#include "analyse/move_reason.h"
#include "position/chess_position.h"

namespace orvelin {
struct Tables;
}

namespace orvelin::analyse {

/// A sentence is no longer.
inline constexpr std::size_t longest_sentence = 160;

/// Says in one sentence why a move is good or bad: "18.Bd6 loses a bishop: material -3.1, after
/// 18...Qxb2 19.Rb1 Qxa2; better 18.Rc1."
///
/// The difference of two leaves is told in pawns of the phase, scores as eval_text() has them.
/// Where a leaf is missing only scores and lines are told: nothing is guessed. The tables must
/// outlive it. One thread at a time.
class SentenceWriter {
 public:
    explicit SentenceWriter(Tables const& tables) : tables_(tables), position_(tables) {}

    /// Empty when the move is not known to the judgement, which must be that of the move.
    std::string write(MoveInGame const& move, Judgement const& judgement);

 private:
    // Of the position of the move.
    std::string name(Move const& move);
    std::string replies(std::span<Move const> line, std::size_t moves);
    std::string moves_from_here(std::span<Move const> line, std::size_t moves);

    std::string of_mate(MoveInGame const& move, Judgement const& judgement);
    std::string of_loss(MoveInGame const& move, Line const& better, Line const& worse,
                        std::string const& begin, bool show_better);
    std::string of_score(Line const& better, Line const& worse);
    std::string of_praise(MoveInGame const& move);
    std::string of_best(MoveInGame const& move);
    std::string of_draw(MoveInGame const& move, Judgement const& judgement);
    std::string of_near(MoveInGame const& move);
    std::string with_better(std::string const& begin, Line const& better, MoveReason const& reason);
    std::string with_replies(std::string const& begin, Line const& worse, MoveReason const& reason,
                             std::string const& better);
    std::string with_lines(std::string const& begin, Line const* line, std::size_t wanted,
                           std::string const& better);
    bool white() const { return position_.white_to_move(); }

    Tables const& tables_;
    ChessPosition position_;
};

}  // namespace orvelin::analyse
