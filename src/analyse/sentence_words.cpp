#include "analyse/sentence_words.h"

#include <cstdio>

#include "analyse/score.h"

namespace orvelin::analyse {

namespace {

std::string two_digits(char const* format, double number) {
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

std::string text_of(NamedChange const& change) {
    return std::string(change.name) + ' ' + change_text(change.change);
}

}  // namespace

std::string eval_text(int score, bool white_to_move) {
    int const turned = white_to_move ? score : -score;
    if (auto const mate = Score{turned}.mate()) {
        return '#' + std::to_string(*mate);
    }
    return two_digits("%.2f", Score{turned}.centipawns() / 100.0);
}

std::string change_text(double pawns) {
    return two_digits("%+.1f", pawns);
}

std::string changes_text(MoveReason const& reason) {
    std::string text;
    for (NamedChange const& loss : reason.losses) {
        text += text.empty() ? "" : ", ";
        text += text_of(loss);
    }
    if (reason.gain) {
        text += " against ";
        text += text_of(*reason.gain);
    }
    return text;
}

std::string mate_text(int moves) {
    return "mate in " + std::to_string(moves);
}

std::span<Move const> known_moves(Line const& line) {
    return line.why_not == unexplained::none ? line.leaf.moves : line.moves;
}

bool have_leaves(Line const& one, Line const& other) {
    return one.why_not == unexplained::none && other.why_not == unexplained::none;
}

}  // namespace orvelin::analyse
