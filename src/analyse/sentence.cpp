#include "analyse/sentence.h"

#include <algorithm>

#include "analyse/san.h"
#include "analyse/score.h"
#include "analyse/sentence_words.h"
#include "generation/tables.h"

namespace orvelin::analyse {

std::string SentenceWriter::name(Move const& move) {
    return move_number_text(position_) + san(position_, tables_, move);
}

std::string SentenceWriter::moves_from_here(std::span<Move const> line, std::size_t moves) {
    return numbered_line(position_, tables_, line.first(std::min(moves, line.size())));
}

std::string SentenceWriter::replies(std::span<Move const> line, std::size_t moves) {
    position_.make_move(legal_form(position_, tables_, line[0]));
    std::string text = moves_from_here(line.subspan(1), moves);
    position_.unmake_move();
    return text;
}

/// The text with as much of the replies of the line and of the better move as there is room for.
std::string SentenceWriter::with_lines(std::string const& begin, Line const* line,
                                       std::size_t wanted, std::string const& better) {
    std::size_t const there = line == nullptr ? 0 : known_moves(*line).size() - 1;
    for (std::size_t moves = std::min(wanted, there); moves > 0; --moves) {
        std::string const text =
            begin + ", after " + replies(known_moves(*line), moves) + better + '.';
        if (text.size() <= longest_sentence) {
            return text;
        }
    }
    std::string const text = begin + better + '.';
    return text.size() <= longest_sentence ? text : begin + '.';
}

std::string SentenceWriter::write(MoveInGame const& move, Judgement const& judgement) {
    if (!judgement.known) {
        return "";
    }
    position_.fen(move.fen);
    if (judgement.forced) {
        return name(move.played) + " is the only legal move.";
    }
    if (std::string const text = of_mate(move, judgement); !text.empty()) {
        return text;
    }
    if (move.line()->drawn) {
        return of_draw(move, judgement);
    }
    switch (judgement.mark) {
        case move_mark::good:
            return of_praise(move);
        case move_mark::none:
            return judgement.is_best ? of_best(move) : of_near(move);
        default:
            return of_loss(move, *move.best(), *move.line(), name(move.played), true);
    }
}

/// Empty where the move has nothing to do with a mate.
std::string SentenceWriter::of_mate(MoveInGame const& move, Judgement const& judgement) {
    Line const& best = *move.best();
    Line const& line = *move.line();
    int const mate = Score{line.score}.mate().value_or(0);
    std::string const played = name(move.played);
    auto const fitting = [this](std::string const& begin, std::span<Move const> moves, bool all) {
        for (std::size_t shown = std::min<std::size_t>(moves.size() - (all ? 0 : 1), 9); shown > 0;
             --shown) {
            std::string text =
                begin + ": " + (all ? moves_from_here(moves, shown) : replies(moves, shown)) + '.';
            if (text.size() <= longest_sentence) {
                return text;
            }
        }
        return begin + '.';
    };
    if (judgement.mate_missed) {
        std::string text = played + " misses " + mate_text(*judgement.mate_missed);
        if (judgement.mate_allowed) {
            text +=
                " (" + name(best.moves[0]) + ") and allows " + mate_text(*judgement.mate_allowed);
            return fitting(text, line.moves, false);
        }
        return fitting(text, best.moves, true);
    }
    if (judgement.mate_allowed) {
        return fitting(played + " allows " + mate_text(*judgement.mate_allowed), line.moves, false);
    }
    if (mate == 1 && line.moves.size() == 1) {
        return played + " is mate.";
    }
    if (mate > 0) {
        return fitting(played + " forces " + mate_text(mate), line.moves, false);
    }
    if (mate < 0) {
        return fitting(played + " cannot stop " + mate_text(-mate), line.moves, false);
    }
    return "";
}

}  // namespace orvelin::analyse
