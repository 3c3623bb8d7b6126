#include "analyse/move_judgement.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "analyse/score.h"
#include "generation/tables.h"
#include "play/position_reader.h"
#include "position/bit_board.h"
#include "position/chess_position.h"

namespace orvelin::analyse {

namespace {

/// In the order of `move_mark`.
constexpr std::array<std::string_view, 5> mark_texts{"", "!", "?!", "?", "??"};

bool is_searched(Line const& line) {
    return line.depth > 0 && !line.moves.empty();
}

bool is_exact(Line const& line) {
    return is_searched(line) && !line.at_least;
}

/// Whether the move takes back, takes more than it may lose, promotes to a queen, or mates: nobody
/// has to be praised for that.
bool is_obvious(ChessPosition& position, MoveInGame const& in_game, Move const& legal) {
    if (legal.code() == promo_queen || Score{in_game.line()->score}.mate() == 1) {
        return true;
    }
    if (legal.capture_id() == no_piece) {
        return false;
    }
    if (in_game.takes_back() || legal.capture().abs_value() > legal.piece().abs_value()) {
        return true;
    }
    bool const white = position.white_to_move();
    position.make_move(legal);
    BitBoard const target{legal.to()};
    bool const defended = white ? position.black_attacks(target) : position.white_attacks(target);
    position.unmake_move();
    return !defended;
}

move_mark mark_of_loss(double loss) {
    // A thousandth is the grain of the chances.
    double const rounded = loss + 1e-9;
    if (rounded >= blunder_loss) {
        return move_mark::blunder;
    }
    if (rounded >= mistake_loss) {
        return move_mark::mistake;
    }
    return rounded >= dubious_loss ? move_mark::dubious : move_mark::none;
}

bool is_only_good_one(MoveInGame const& move, Judgement const& judgement) {
    Line const* const rest = move.rest();
    return judgement.is_best && rest != nullptr && judgement.points >= praise_points &&
           judgement.points - Score{rest->score}.points() + 1e-9 >= praise_margin;
}

}  // namespace

std::string_view mark_text(move_mark mark) {
    return mark_texts[static_cast<std::size_t>(mark)];
}

std::optional<move_mark> parse_mark(std::string_view text) {
    auto const found = std::find(mark_texts.begin(), mark_texts.end(), text);
    if (found == mark_texts.end()) {
        return std::nullopt;
    }
    return static_cast<move_mark>(found - mark_texts.begin());
}

int mark_glyph(move_mark mark) {
    constexpr std::array<int, 5> glyphs{0, 1, 6, 2, 4};
    return glyphs[static_cast<std::size_t>(mark)];
}

bool is_same_move(Move const& one, Move const& other) {
    return one.from() == other.from() && one.to() == other.to() && one.code() == other.code();
}

Line const* MoveInGame::best() const {
    bool const found = !result->lines.empty() && is_searched(result->lines.front());
    return found ? &result->lines.front() : nullptr;
}

Line const* MoveInGame::line() const {
    if (is_searched(result->played)) {
        return is_same_move(result->played.moves[0], played) ? &result->played : nullptr;
    }
    for (Line const& line : result->lines) {
        if (is_exact(line) && is_same_move(line.moves[0], played)) {
            return &line;
        }
    }
    return nullptr;
}

Line const* MoveInGame::rest() const {
    return is_searched(result->rest) ? &result->rest : nullptr;
}

bool MoveInGame::is_best() const {
    Line const* const line = best();
    return line != nullptr && is_same_move(line->moves[0], played);
}

bool MoveInGame::takes_back() const {
    return taken && played.capture_id() != no_piece && taken->square.id() == played.to().id();
}

Judgement judge(MoveInGame const& move, Tables const& tables) {
    Judgement judgement;
    Line const* const best = move.best();
    Line const* const line = move.line();
    ChessPosition position(tables);
    position.fen(move.fen);
    std::vector<Move> const legal = play::legal_moves(position, tables);
    auto const found = std::find_if(legal.begin(), legal.end(), [&move](Move const& other) {
        return is_same_move(other, move.played);
    });
    if (best == nullptr || line == nullptr || found == legal.end()) {
        return judgement;
    }
    judgement.known = true;
    judgement.forced = legal.size() == 1;
    judgement.is_best = move.is_best();
    judgement.points = Score{line->score}.points();
    // Searched by itself, a move may turn out to be better than what was thought to be the best.
    judgement.best_points = std::max(Score{best->score}.points(), judgement.points);
    int const best_mate = Score{best->score}.mate().value_or(0);
    int const mate = Score{line->score}.mate().value_or(0);
    if (judgement.forced) {
        return judgement;
    }
    if (best_mate > 0 && mate <= 0) {
        judgement.mate_missed = best_mate;
    }
    if (mate < 0 && best_mate >= 0) {
        judgement.mate_allowed = -mate;
    }
    judgement.mark = mark_of_loss(judgement.loss());
    bool const overlooked = judgement.mate_missed.value_or(near_mate + 1) <= near_mate ||
                            judgement.mate_allowed.value_or(near_mate + 1) <= near_mate;
    if (judgement.mark == move_mark::none && overlooked) {
        judgement.mark = move_mark::dubious;
    }
    if (judgement.mark == move_mark::none && is_only_good_one(move, judgement) &&
        !is_obvious(position, move, *found)) {
        judgement.mark = move_mark::good;
    }
    return judgement;
}

std::optional<double> move_accuracy(Judgement const& judgement) {
    if (judgement.forced) {
        return std::nullopt;
    }
    // Rounded, it is the same wherever it is computed, and no loss is near the half of a step.
    return std::round(1000 * std::exp2(-6 * judgement.loss())) / 10;
}

void Accuracy::add(move_mark mark, std::optional<double> accuracy) {
    ++marks_[static_cast<std::size_t>(mark)];
    if (accuracy) {
        sum_ += *accuracy;
        ++moves_;
    }
}

std::optional<double> Accuracy::percent() const {
    return moves_ == 0 ? std::nullopt : std::optional(sum_ / moves_);
}

}  // namespace orvelin::analyse
