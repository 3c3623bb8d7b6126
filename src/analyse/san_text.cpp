#include "analyse/san_text.h"

#include <array>
#include <cstddef>

namespace orvelin::analyse {

namespace {

using std::string_view;

bool is_file(char letter) {
    return letter >= 'a' && letter <= 'h';
}

bool is_rank(char letter) {
    return letter >= '1' && letter <= '8';
}

int piece_of(char letter) {
    switch (letter) {
        case 'P':
            return white_pawn;
        case 'N':
            return white_knight;
        case 'B':
            return white_bishop;
        case 'R':
            return white_rook;
        case 'Q':
            return white_queen;
        case 'K':
            return white_king;
        default:
            return no_piece;
    }
}

move_t promotion_of(char letter) {
    switch (letter) {
        case 'Q':
        case 'q':
            return promo_queen;
        case 'R':
        case 'r':
            return promo_rook;
        case 'B':
        case 'b':
            return promo_bishop;
        case 'N':
        case 'n':
            return promo_knight;
        default:
            return nullmove;
    }
}

bool drop_end(string_view& text, string_view end) {
    bool const ends = text.ends_with(end);
    if (ends) {
        text.remove_suffix(end.size());
    }
    return ends;
}

/// Takes the signs behind a move away: of check and mate, of praise and blame, and of a capture in
/// passing.
void drop_signs(string_view& text) {
    bool dropped = true;
    while (dropped && !text.empty()) {
        char const last = text.back();
        dropped = last == '+' || last == '#' || last == '!' || last == '?';
        if (dropped) {
            text.remove_suffix(1);
        } else {
            dropped = drop_end(text, "e.p.") || drop_end(text, "e.p") || drop_end(text, "ep");
        }
    }
}

bool is_null_move(string_view text) {
    return text == "--" || text == "Z0" || text == "0000" || text == "null" || text == "@@@@";
}

SanText::form castling_of(string_view text) {
    int letters = 0;
    for (char const letter : text) {
        bool const castles = letter == 'O' || letter == '0' || letter == 'o';
        if (!castles && letter != '-') {
            return SanText::form::none;
        }
        letters += castles ? 1 : 0;
    }
    return letters == 2   ? SanText::form::short_castling
           : letters == 3 ? SanText::form::long_castling
                          : SanText::form::none;
}

/// Takes the letter of a promotion away: "=Q", "Q", "(Q)", "/Q". A letter behind anything but a
/// rank is none.
move_t take_promotion(string_view& text) {
    string_view rest = text;
    bool const closed = drop_end(rest, ")");
    if (rest.empty()) {
        return normal_move;
    }
    move_t const code = promotion_of(rest.back());
    rest.remove_suffix(1);
    bool const marked = closed ? drop_end(rest, "(") : drop_end(rest, "=") || drop_end(rest, "/");
    if (code == nullmove || rest.empty() || !is_rank(rest.back()) || (closed && !marked)) {
        return normal_move;
    }
    text = rest;
    return code;
}

/// Reads the files and ranks of "e4", "ed5", "R1e2", "g1-f3". False when there is anything else.
bool read_squares(string_view text, SanText& read) {
    std::array<char, 4> found;
    std::size_t size = 0;
    for (char const letter : text) {
        if (letter == 'x' || letter == '-' || letter == ':' || letter == 'X') {
            continue;
        }
        if (size == found.size() || (!is_file(letter) && !is_rank(letter))) {
            return false;
        }
        found[size++] = letter;
    }
    if (size < 2 || !is_file(found[size - 2]) || !is_rank(found[size - 1])) {
        return false;
    }
    read.to = found[size - 2] - 'a' + 8 * (found[size - 1] - '1');
    for (std::size_t i = 0; i + 2 < size; ++i) {
        int& known = is_file(found[i]) ? read.from_file : read.from_rank;
        // A file stands before a rank, and neither twice.
        if (known >= 0 || (is_file(found[i]) && read.from_rank >= 0)) {
            return false;
        }
        known = is_file(found[i]) ? found[i] - 'a' : found[i] - '1';
    }
    return true;
}

}  // namespace

SanText parse_san(string_view text) {
    SanText read;
    if (is_null_move(text)) {
        read.what = SanText::form::null_move;
        return read;
    }
    drop_signs(text);
    if (text.empty()) {
        return read;
    }
    if (text.front() == 'O' || text.front() == '0' || text.front() == 'o') {
        read.what = castling_of(text);
        return read;
    }
    read.piece = piece_of(text.front());
    bool const named = read.piece != no_piece;
    if (named) {
        text.remove_prefix(1);
    } else {
        read.piece = white_pawn;
    }
    read.promotion = take_promotion(text);
    if (!read_squares(text, read)) {
        return read;
    }
    read.what = SanText::form::step;
    if (!named && read.from_file >= 0 && read.from_rank >= 0) {
        read.piece = no_piece;
    }
    return read;
}

}  // namespace orvelin::analyse
