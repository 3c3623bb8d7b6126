// What is said of a move that is worse than another, and of the other one.

#include <algorithm>

#include "analyse/move_reason.h"
#include "analyse/score.h"
#include "analyse/sentence.h"
#include "analyse/sentence_words.h"
#include "search/score.h"

namespace orvelin::analyse {

/// Begins with the move that is the worse one.
std::string SentenceWriter::of_loss(MoveInGame const& move, Line const& better, Line const& worse,
                                    std::string const& begin, bool show_better) {
    std::string const tail = show_better ? "; better " + name(better.moves[0]) : "";
    MoveReason reason;
    if (have_leaves(better, worse)) {
        reason = find_reason(move, better, worse);
    }
    while (!reason.losses.empty()) {
        std::string const text = begin + ' ' + reason.deed + ": " + changes_text(reason);
        std::string const told =
            reason.is_missed_chance ? (show_better ? with_better(text, better, reason) : text + '.')
                                    : with_replies(text, worse, reason, tail);
        if (!told.empty() && told.size() <= longest_sentence) {
            return told;
        }
        // With fewer reasons there may be room for the line.
        reason.losses.pop_back();
        reason.gain.reset();
    }
    return with_lines(begin + ' ' + of_score(better, worse), &worse, usual_replies, tail);
}

/// The line goes as far as the captures that are told of; empty where there is no room for that.
std::string SentenceWriter::with_better(std::string const& begin, Line const& better,
                                        MoveReason const& reason) {
    for (std::size_t moves = std::max(reason.moves_needed, usual_replies);
         moves >= std::max<std::size_t>(reason.moves_needed, 1); --moves) {
        std::string text = begin + "; better " + moves_from_here(known_moves(better), moves) + '.';
        if (text.size() <= longest_sentence) {
            return text;
        }
    }
    return "";
}

/// The same with the replies to the worse move, before what would have been better.
std::string SentenceWriter::with_replies(std::string const& begin, Line const& worse,
                                         MoveReason const& reason, std::string const& better) {
    std::size_t const needed = std::max<std::size_t>(reason.moves_needed, 1) - 1;
    if (needed == 0) {
        return with_lines(begin, &worse, usual_replies, better);
    }
    for (std::string const& tail : {better, std::string()}) {
        for (std::size_t moves = std::max(needed, usual_replies); moves >= needed; --moves) {
            std::string text = begin + ", after " + replies(known_moves(worse), moves) + tail + '.';
            if (text.size() <= longest_sentence) {
                return text;
            }
        }
    }
    return "";
}

std::string SentenceWriter::of_score(Line const& better, Line const& worse) {
    if (auto const mate = Score{worse.score}.mate(); mate && *mate < 0) {
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
    Line const& rest = *move.rest();
    std::string const begin = name(move.played) + " is the only good move; " + name(rest.moves[0]);
    return of_loss(move, *move.line(), rest, begin, false);
}

}  // namespace orvelin::analyse
