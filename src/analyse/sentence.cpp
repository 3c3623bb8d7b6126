#include "analyse/sentence.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "analyse/san.h"
#include "analyse/term_names.h"
#include "generation/tables.h"
#include "play/position_reader.h"
#include "play/win_chance.h"
#include "search/score.h"

namespace orvelin::analyse {

namespace {

/// So many replies are shown when nothing asks for more.
constexpr std::size_t usual_replies = 3;

/// In hundreds: less is no piece won.
constexpr int pawn = 100;

/// In engine units.
constexpr int clearly_worse = 150;

/// What is won so many moves later is not won by this one.
constexpr std::size_t soon = 8;

/// In pawns of the phase: by less a move is not told to be ahead of the next.
constexpr double least_lead = 0.15;

std::string two_digits(char const* format, double number) {
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

std::string text_of(NamedChange const& change) {
    return std::string(change.name) + ' ' + change_text(change.change);
}

/// "material -3.1, king attack -0.4 against passed pawns +1.6".
std::string changes_text(MoveReason const& reason) {
    std::string text;
    for (NamedChange const& loss : reason.losses) {
        text += (text.empty() ? "" : ", ") + text_of(loss);
    }
    return text + (reason.gain ? " against " + text_of(*reason.gain) : "");
}

/// The whole line that is known: that of the leaf goes on behind the other.
std::span<Move const> whole(Line const& line) {
    return line.why_not == unexplained::none ? line.leaf.moves : line.moves;
}

bool have_leaves(Line const& one, Line const& other) {
    return one.why_not == unexplained::none && other.why_not == unexplained::none;
}

std::string mate_text(int moves) {
    return "mate in " + std::to_string(moves);
}

}  // namespace

std::string eval_text(int score, bool white_to_move) {
    int const turned = white_to_move ? score : -score;
    if (auto const mate = moves_to_mate(turned)) {
        return '#' + std::to_string(*mate);
    }
    int const hundredths = play::to_centipawns(turned);
    return two_digits("%.2f", hundredths / 100.0);
}

std::string change_text(double pawns) {
    return two_digits("%+.1f", pawns);
}

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
    std::size_t const there = line == nullptr ? 0 : whole(*line).size() - 1;
    for (std::size_t moves = std::min(wanted, there); moves > 0; --moves) {
        std::string const text = begin + ", after " + replies(whole(*line), moves) + better + '.';
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
    int const mate = moves_to_mate(line.score).value_or(0);
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

/// Begins with the move that is the worse one.
std::string SentenceWriter::of_loss(MoveInGame const& move, Line const& better, Line const& worse,
                                    std::string const& begin, bool show_better) {
    std::string const tail = show_better ? "; better " + name(better.moves[0]) : "";
    MoveReason reason;
    if (have_leaves(better, worse)) {
        reason = find_reason(move, better, worse);
    }
    if (reason.losses.empty()) {
        return with_lines(begin + ' ' + of_score(better, worse), &worse, usual_replies, tail);
    }
    std::string const text = begin + ' ' + reason.deed + ": " + changes_text(reason);
    if (!reason.is_missed_chance) {
        std::size_t const needed = std::max<std::size_t>(reason.moves_needed, 1) - 1;
        return with_lines(text, &worse, std::max(needed, usual_replies), tail);
    }
    if (show_better) {
        for (std::size_t moves = std::max(reason.moves_needed, usual_replies); moves > 0; --moves) {
            std::string shown = text + "; better " + moves_from_here(whole(better), moves) + '.';
            if (shown.size() <= longest_sentence) {
                return shown;
            }
        }
    }
    return with_lines(text, nullptr, 0, tail);
}

std::string SentenceWriter::of_score(Line const& better, Line const& worse) {
    if (auto const mate = moves_to_mate(worse.score); mate && *mate < 0) {
        return "allows " + mate_text(-*mate);
    }
    bool const drawn = worse.why_not == unexplained::mate_or_draw && worse.score == draw_score;
    std::string const scores = "the score goes from " + eval_text(better.score, white()) + " to " +
                               eval_text(worse.score, white());
    if (drawn && worse.moves.size() == 1) {
        return "ends the game in a draw: " + scores;
    }
    if (drawn) {
        return "allows a draw: " + scores;
    }
    bool const by_knowledge = worse.why_not == unexplained::endgame;
    return by_knowledge ? "goes into a worse endgame: by endgame knowledge " + scores
                        : "is worse: " + scores;
}

std::string SentenceWriter::of_praise(MoveInGame const& move) {
    Line const& second = *move.second();
    std::string const begin =
        name(move.played) + " is the only good move; " + name(second.moves[0]);
    return of_loss(move, *move.line(), second, begin, false);
}

std::string SentenceWriter::of_best(MoveInGame const& move) {
    Line const& line = *move.line();
    Line const* const second = move.second();
    std::string const played = name(move.played);
    Move const& previous = move.previous;
    if (line.why_not == unexplained::none) {
        MaterialBalance const won = material_won(move, line);
        std::string const text = won_text(won);
        std::size_t const needed = moves_to_material(line.leaf);
        if (won.value() >= pawn && !text.empty() && needed <= soon) {
            return with_lines(played + " wins " + text, &line,
                              std::max(needed, usual_replies + 1) - 1, "");
        }
    }
    bool const takes_back = previous.capture_id() != no_piece &&
                            move.played.capture_id() != no_piece &&
                            previous.to() == move.played.to();
    std::string const begin = played + (takes_back ? " takes back" : " is the best move");
    if (second != nullptr && have_leaves(line, *second) && second->score < line.score) {
        MoveReason const reason = find_reason(move, line, *second);
        if (reason.change <= -least_lead) {
            std::string const text = begin + "; " + name(second->moves[0]) + ' ' + reason.deed +
                                     ": " + changes_text(reason) + '.';
            if (text.size() <= longest_sentence) {
                return text;
            }
        }
    }
    return begin + '.';
}

std::string SentenceWriter::of_near(MoveInGame const& move) {
    Line const& best = *move.best();
    Line const& line = *move.line();
    std::string const played = name(move.played);
    std::string const other = name(best.moves[0]);
    if (line.score >= best.score) {
        return played + " is as good as " + other + '.';
    }
    // Where the game is decided much may be lost that costs no points.
    bool const hardly = best.score - line.score < clearly_worse;
    std::string const begin =
        played + (hardly ? " is hardly worse than " : " is worse than ") + other;
    if (have_leaves(best, line)) {
        MoveReason reason = find_reason(move, best, line);
        // Where much is lost and gained the largest loss tells little.
        if (!reason.losses.empty() && !reason.gain) {
            reason.losses.resize(1);
            return begin + ": " + changes_text(reason) + '.';
        }
    }
    return begin + '.';
}

}  // namespace orvelin::analyse
