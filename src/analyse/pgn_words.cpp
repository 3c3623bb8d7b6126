#include "analyse/pgn_words.h"

#include <array>
#include <cstddef>
#include <utility>

#include "play/reader_text.h"

namespace orvelin::analyse {

using play::is_digit;
using std::string_view;

string_view result_of(string_view word) {
    constexpr std::array<std::pair<string_view, string_view>, 7> results{
        {{"1-0", "1-0"},
         {"0-1", "0-1"},
         {"1/2-1/2", "1/2-1/2"},
         {"1/2", "1/2-1/2"},
         {"*", "*"},
         {"\xBD-\xBD", "1/2-1/2"},
         {"\xC2\xBD-\xC2\xBD", "1/2-1/2"}}};
    if (word.empty() || word.size() > 7 || (word.front() > '1' && word.front() <= 'z')) {
        return "";
    }
    for (auto const& [text, result] : results) {
        if (word == text) {
            return result;
        }
    }
    return "";
}

string_view without_number(string_view word) {
    std::size_t digits = 0;
    while (digits < word.size() && is_digit(word[digits])) {
        ++digits;
    }
    std::size_t dots = digits;
    while (dots < word.size() && word[dots] == '.') {
        ++dots;
    }
    bool const numbered =
        dots > digits || digits == word.size() || (digits > 0 && word[digits] >= 'A');
    // Null moves and castling are written with digits too.
    if (!numbered || word == "0000") {
        return word;
    }
    return word.substr(dots);
}

bool is_glyph(string_view word) {
    constexpr string_view signs = "!?+-=/#~<>";
    if (signs.find(word.front()) == string_view::npos) {
        return word == "e.p." || word == "ep";
    }
    return word != "--" && word.find_first_not_of(signs) == string_view::npos;
}

}  // namespace orvelin::analyse
