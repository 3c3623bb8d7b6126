#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "analyse/limit.h"
#include "evaluation/weight.h"
#include "position/move.h"

namespace orvelin {
struct Tables;
}

namespace orvelin::analyse {

/// What the terms of the evaluation add to the score of a position, in engine units, from the point
/// of view of White, in the order of `term`. With bishops of opposite colours, which halve the
/// whole score, the half of it, so that the sum is the score before rounding in any case in which
/// no function of an endgame gives another one.
using term_scores_t = std::array<float, term::count>;

/// The position behind a line whose static evaluation is the score of the line.
struct Leaf {
    /// From the position that was searched to the leaf: the moves of the line, and then those of
    /// the quiet end that the search looked into.
    std::vector<Move> moves;
    std::string fen;
    /// Static evaluation, from the side to move of the position that was searched, multiplied by
    /// the fading. Within one unit of the score of the line.
    int score = 0;
    /// Multiplied by the fading too.
    term_scores_t terms{};
    /// What the search takes of the value of a quiet end as the fifty-move limit comes near: 1 up
    /// to 50 reversible plies at the end of the line, 0 at 100.
    float fading = 1;
};

/// Why a line has no leaf.
enum class unexplained : std::uint8_t {
    /// There is a leaf.
    none,
    /// The score is a mate, or the game is drawn by rule at the end of the line.
    mate_or_draw,
    /// The score is from a table or a rule of an endgame, no sum of terms.
    endgame,
    /// No position was found whose evaluation is the score.
    not_found,
};

struct Line {
    int depth = 0;
    /// In engine units, from the side to move.
    int score = 0;
    /// The score is no more than a lower bound: the search gives some of its further lines so, and
    /// then with one move only. No leaf is looked for.
    bool at_least = false;
    /// Behind the first move the game is drawn, whatever the search thinks of it: by stalemate, or
    /// because no side can give mate. The score is 0 then.
    bool drawn = false;
    /// As far as they are true: to the end of the game at most.
    std::vector<Move> moves;
    unexplained why_not = unexplained::not_found;
    Leaf leaf;
};

/// What is known of one position.
struct Result {
    /// Of the search of the lines; those of the move that was played and of the rest are not
    /// counted.
    std::uint64_t nodes = 0;
    /// Of the last iteration that ended; 0 without a search.
    int depth = 0;
    /// Static evaluation in engine units, from the side to move.
    int static_score = 0;
    /// The game is drawn: by stalemate, or because no side can give mate.
    bool drawn = false;
    term_scores_t terms{};
    /// As the search ranks them, best first; empty where there is no legal move, and without a
    /// search. At a limit of nodes they are those of the last iteration that ended; in the first
    /// place stands the best line of the iteration that was cut short, with a depth of one more,
    /// where that had found one and no better move was known to it. Where not even the first
    /// iteration found a line, one of depth 0 with a single move and the static evaluation.
    std::vector<Line> lines;
    /// The line that begins with the move that was played, when it was asked for; its moves are
    /// empty else.
    Line played;
    /// The best line of all moves but the first of the best line, when it was asked for; its moves
    /// are empty else. Unlike a further one of `lines` it has a true score.
    Line rest;
};

/// As many lines as the search has room for.
inline constexpr int most_lines = 50;

/// What is asked about one position.
struct Question {
    std::string fen;
    bool chess960 = false;
    Limit limit;
    int lines = 1;
    /// Whether each line is followed to its leaf.
    bool leaves = true;
    /// The move that was played, to be searched by itself to the same limit, but one ply deeper by
    /// the extension of only moves; the empty move for none.
    Move played;
    /// Whether all moves but the best one are searched by themselves too, to the same limit; when
    /// one is left, it is searched as the move that was played. Where another move than the best
    /// one was played nothing is asked of them, and where there is no other move there is no
    /// answer.
    bool rest = false;
};

/// An engine for one thread that answers for each position from a fresh state, so that an answer
/// depends on the question alone, whatever came before it.
class PositionSearch {
 public:
    PositionSearch();
    ~PositionSearch();
    PositionSearch(PositionSearch const&) = delete;
    PositionSearch& operator=(PositionSearch const&) = delete;

    /// The FEN text must be one that play::check_fen() takes. An answer that interrupt() cut short
    /// must be thrown away.
    Result answer(Question const& question);
    /// What answer() tells of a line beside its moves, score and depth, which must be set: the draw
    /// behind its first move, the leaf, or why there is none. The moves, one at least, must be
    /// legal in the position and go no further than the game.
    void explain(std::string const& fen, bool chess960, Line& line);
    /// From another thread: ends the search that runs, if one does.
    void interrupt();
    /// What it was made with, for others in the same thread to read.
    Tables const& tables() const;

 private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace orvelin::analyse
