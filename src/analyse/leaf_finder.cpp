#include "analyse/leaf_finder.h"

#include <cstddef>
#include <cstdlib>
#include <utility>

#include "analyse/static_evaluator.h"
#include "play/dead_draw.h"
#include "position/chess_position.h"
#include "position/move_buffer.h"
#include "search/analysis.h"
#include "search/score.h"

namespace orvelin::analyse {

namespace {

/// Below this level quiescence leaves captures out that win no material.
constexpr int losing_captures_end = -8;

/// How far the evaluation of the leaf may be from the score.
constexpr int most_units_off = 1;

bool is_near(int value, int wanted, int tolerance) {
    return std::abs(value - wanted) <= tolerance;
}

}  // namespace

ChessPosition const& LeafFinder::position() const {
    return analysis_.chessposition();
}

void LeafFinder::make(Move const& move) {
    analysis_.make_move(move);
    moves_.push_back(move);
}

void LeafFinder::unmake() {
    analysis_.unmake_move(moves_.back());
    moves_.pop_back();
}

void LeafFinder::find(Line& line) {
    line.leaf = Leaf();
    moves_.clear();
    // Also ends the stop of a search that came to its limit, which quiescence would heed.
    analysis_.init(position());
    analysis_.reset_max_nodes();
    analysis_.set_infinite(true);
    for (Move const& move : line.moves) {
        make(move);
    }
    Leaf leaf;
    line.why_not = look_behind(line, leaf);
    if (line.why_not == unexplained::none) {
        line.leaf = std::move(leaf);
    }
    while (!moves_.empty()) {
        unmake();
    }
}

bool LeafFinder::game_is_over() {
    if (position().draw_by_threefold_repetition() ||
        position().get_dfz() > play::last_reversible_ply) {
        return true;
    }
    MoveBuffer buffer;
    MoveList list(buffer.data());
    generator_.generate_moves(position(), list);
    return list.size() == 0;
}

unexplained LeafFinder::look_behind(Line const& line, Leaf& leaf) {
    bool const tells_mate = std::abs(line.score) > max_ordinary_score;
    if (game_is_over()) {
        return tells_mate || line.score == draw_score ? unexplained::mate_or_draw
                                                      : unexplained::not_found;
    }
    if (tells_mate) {
        return has_endgame_score() ? unexplained::endgame : unexplained::mate_or_draw;
    }
    int const sign = line.moves.size() % 2 == 0 ? 1 : -1;
    double const fading = analysis_.fading();
    auto const faded = [fading](int value) {
        return static_cast<int>(static_cast<double>(value) * fading);
    };
    int const value = analysis_.quiescence(-infinite_score, infinite_score, 0);
    if (line.at_least || !is_near(sign * faded(value), line.score, most_units_off) ||
        std::abs(value) > max_ordinary_score ||
        !(follow(value, 0, 0) || follow(value, most_units_off, 0))) {
        return unexplained::not_found;
    }
    leaf.moves = moves_;
    leaf.fen = position().fen();
    evaluator_.evaluate(leaf.fen);
    if (!evaluator_.is_sum()) {
        return unexplained::endgame;
    }
    int const turned = moves_.size() % 2 == 0 ? 1 : -1;
    leaf.score = turned * faded(evaluator_.score());
    if (!is_near(leaf.score, line.score, most_units_off)) {
        return unexplained::not_found;
    }
    leaf.fading = static_cast<float>(fading);
    for (std::size_t i = 0; i < leaf.terms.size(); ++i) {
        leaf.terms[i] = evaluator_.terms()[i] * leaf.fading;
    }
    return unexplained::none;
}

bool LeafFinder::has_endgame_score() {
    evaluator_.evaluate(position().fen());
    return !evaluator_.is_sum();
}

/// Goes on to the node whose own evaluation is the value, from a node at this level of quiescence.
/// Where there is none the board is left as it was found.
bool LeafFinder::follow(int value, int tolerance, int level) {
    bool const check = position().check();
    if (!check && is_near(analysis_.static_eval(), value, tolerance)) {
        return true;
    }
    MoveBuffer buffer;
    MoveList list(buffer.data());
    if (check) {
        generator_.generate_moves(position(), list);
    } else {
        generator_.generate_captures_directly(position(), list);
    }
    for (Move const& move : list) {
        if (level < losing_captures_end && !check && analysis_.see(move) <= 0) {
            continue;
        }
        make(move);
        int const reply = -value;
        int const found =
            analysis_.quiescence(reply - tolerance - 1, reply + tolerance + 1, level - 1);
        if (is_near(found, reply, tolerance) && follow(found, tolerance, level - 1)) {
            return true;
        }
        unmake();
    }
    return false;
}

}  // namespace orvelin::analyse
