#include "analyse/pgn_text.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "play/reader_text.h"

namespace orvelin::analyse {

namespace {

using play::byte_order_mark;
using play::is_digit;
using std::string_view;

enum letter_t : std::uint8_t { in_word, blank, sign, result };

constexpr std::array<letter_t, 256> make_letters() {
    std::array<letter_t, 256> letters{};
    for (char const letter : string_view("\0\t\n\v\f\r ", 7)) {
        letters[static_cast<unsigned char>(letter)] = blank;
    }
    for (char const letter : string_view("{}()[];$")) {
        letters[static_cast<unsigned char>(letter)] = sign;
    }
    letters[static_cast<unsigned char>('*')] = result;
    return letters;
}

constexpr std::array<letter_t, 256> letter_kinds = make_letters();

letter_t kind_of(char letter) {
    return letter_kinds[static_cast<unsigned char>(letter)];
}

/// A promotion in brackets belongs to its word: "e8(Q)".
bool is_promotion(string_view text, std::size_t bracket) {
    return bracket > 0 && (text[bracket - 1] == '8' || text[bracket - 1] == '1') &&
           bracket + 2 < text.size() && text[bracket] == '(' && text[bracket + 2] == ')' &&
           std::strchr("QRBN", text[bracket + 1]) != nullptr && text[bracket + 1] != '\0';
}

constexpr std::size_t comment_part = 1024;

}  // namespace

PgnText::part PgnText::look() {
    while (!input_.at_end()) {
        char const letter = input_.next();
        switch (letter) {
            case '\n':
                empty_line_ |= input_.at_line_start();
                input_.skip(1);
                break;
            case '%':
                if (!input_.at_line_start()) {
                    return part::word;
                }
                [[fallthrough]];
            case ';':
                input_.skip_to('\n');
                break;
            case '$':
                do {
                    input_.skip_letter();
                } while (!input_.at_end() && is_digit(input_.next()));
                break;
            case '{':
                return part::comment;
            case '(':
                return part::variation_begin;
            case ')':
                return part::variation_end;
            case '[':
                return at_tag() ? part::tag : part::bracket;
            case '}':
            case ']':
                input_.skip_letter();
                break;
            case '\r':
                // Left out of sight, so that a line with nothing else counts as empty.
                input_.skip_mark(1);
                break;
            case byte_order_mark.front():
                if (!input_.ahead(byte_order_mark.size()).starts_with(byte_order_mark)) {
                    return part::word;
                }
                input_.skip_mark(byte_order_mark.size());
                break;
            default:
                if (kind_of(letter) != blank) {
                    return part::word;
                }
                input_.skip_letter();
        }
    }
    return part::end;
}

string_view PgnText::take_word() {
    empty_line_ = false;
    // Behind the longest word, room to tell a promotion in brackets.
    string_view const text = input_.ahead(longest_word + 3);
    std::size_t const most = std::min(text.size(), longest_word);
    std::size_t end = 0;
    while (end < most && kind_of(text[end]) == in_word) {
        ++end;
    }
    if (end == 0) {
        // The sign of a game without a result, which needs no blank before it.
        end = 1;
    } else if (end < most && is_promotion(text, end)) {
        end += 3;
        while (end < most && kind_of(text[end]) == in_word) {
            ++end;
        }
    }
    input_.skip_letters(end);
    return text.substr(0, end);
}

void PgnText::take_letter() {
    empty_line_ = false;
    input_.skip_letter();
}

bool PgnText::take_comment() {
    take_letter();
    bool behind_empty = false;
    while (!input_.at_end()) {
        bool const line_start = input_.at_line_start();
        if (line_start && input_.next() == '[' && at_tag() &&
            (behind_empty || tag_name() == "Event")) {
            return false;
        }
        // A part of a long line, which would else be looked through for each of its comments.
        string_view const text = input_.ahead(1).substr(0, comment_part);
        std::size_t const line_end = std::min(text.find('\n'), text.size());
        std::size_t const close = text.substr(0, line_end).find('}');
        if (close != string_view::npos) {
            input_.skip_letters(close + 1);
            return true;
        }
        input_.skip_letters(line_end);
        if (line_end < text.size()) {
            behind_empty =
                line_start && text.substr(0, line_end).find_first_not_of('\r') == string_view::npos;
            input_.skip(1);
        }
    }
    return false;
}

}  // namespace orvelin::analyse
