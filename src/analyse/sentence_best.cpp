// What is said of a move that is the best one, or hardly worse.

#include <algorithm>

#include "analyse/material_balance.h"
#include "analyse/move_reason.h"
#include "analyse/san.h"
#include "analyse/sentence.h"
#include "analyse/sentence_words.h"
#include "generation/tables.h"
#include "play/dead_draw.h"
#include "search/score.h"

namespace orvelin::analyse {

namespace {

/// In hundreds: less is no piece won.
constexpr int pawn = 100;

/// In engine units.
constexpr int clearly_worse = 150;

/// What is won so many moves later is not won by this one.
constexpr std::size_t soon = 8;

/// In pawns of the phase: by less a move is not told to be ahead of the next.
constexpr double least_lead = 0.15;

}  // namespace

std::string SentenceWriter::of_best(MoveInGame const& move) {
    Line const& line = *move.line();
    Line const* const rest = move.rest();
    std::string const played = name(move.played);
    if (line.why_not == unexplained::none) {
        MaterialBalance const won = material_won(move, line);
        std::string const text = won_text(won);
        std::size_t const needed = moves_to_material(line.leaf);
        if (won.value() >= pawn && !text.empty() && needed <= soon) {
            bool const is_return = material_after(move, line).value() <= 0;
            return with_lines(played + (is_return ? " wins back " : " wins ") + text, &line,
                              std::max(needed, usual_replies + 1) - 1, "");
        }
    }
    std::string const begin = played + (move.takes_back() ? " recaptures" : " is the best move");
    if (rest != nullptr && have_leaves(line, *rest) && rest->score < line.score) {
        MoveReason const reason = find_reason(move, line, *rest);
        if (reason.change <= -least_lead) {
            std::string const text = begin + "; " + name(rest->moves[0]) + ' ' + reason.deed +
                                     ": " + changes_text(reason) + '.';
            if (text.size() <= longest_sentence) {
                return text;
            }
        }
    }
    return begin + '.';
}

/// Of a move behind which the game is drawn.
std::string SentenceWriter::of_draw(MoveInGame const& move, Judgement const& judgement) {
    std::string const played = name(move.played);
    if (play::is_mate_impossible(move.fen)) {
        return played + " changes nothing: no side can give mate.";
    }
    position_.make_move(legal_form(position_, tables_, move.played));
    bool const dead = play::is_mate_impossible(position_.fen());
    position_.unmake_move();
    std::string const text =
        played + (dead ? " takes the draw: no side can give mate" : " is stalemate");
    if (judgement.mark <= move_mark::good) {
        return text + '.';
    }
    Line const& best = *move.best();
    return with_lines(text + (dead ? ", and the score goes from " : ": the score goes from ") +
                          eval_text(best.score, white()) + " to " + eval_text(draw_score, white()),
                      nullptr, 0, "; better " + name(best.moves[0]));
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
    // What hardly differs in the end may differ much in parts.
    if (!hardly && have_leaves(best, line)) {
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
