#include "analyse/sentence_pieces.h"

#include <algorithm>
#include <cstddef>

#include "play/reader_text.h"

namespace orvelin::analyse {

using std::string_view;

string_view without_stops(string_view word) {
    while (!word.empty() && string_view(".,;:()").find(word.back()) != string_view::npos) {
        word.remove_suffix(1);
    }
    while (!word.empty() && word.front() == '(') {
        word.remove_prefix(1);
    }
    return word;
}

std::optional<pieces_t> pieces_of(string_view text) {
    constexpr std::array<string_view, 9> numbers{"",     "",    "two",   "three", "four",
                                                 "five", "six", "seven", "eight"};
    pieces_t pieces{};
    int sign = 1;
    int count = 0;
    for (string_view word : play::words_of(text)) {
        word = without_stops(word);
        auto const number = std::find(numbers.begin() + 2, numbers.end(), word);
        if (word == "for") {
            sign = -1;
        } else if (word == "a" || word == "the") {
            count = 1;
        } else if (number != numbers.end()) {
            count = static_cast<int>(number - numbers.begin());
        } else if (word == "exchange") {
            pieces[2] += sign;
            pieces[1] -= sign;
        } else if (word != "and") {
            string_view const name = word.ends_with('s') ? word.substr(0, word.size() - 1) : word;
            constexpr std::array<string_view, 5> names{"pawn", "knight", "bishop", "rook", "queen"};
            auto const kind = std::find(names.begin(), names.end(), name);
            if (kind == names.end()) {
                return std::nullopt;
            }
            auto const at = static_cast<std::size_t>(kind - names.begin());
            pieces[at < 2 ? at : at - 1] += sign * count;
        }
    }
    return pieces;
}

pieces_t pieces_of(MaterialBalance const& balance) {
    auto const& more = balance.more;
    return {more[0], more[1] + more[2], more[3], more[4]};
}

}  // namespace orvelin::analyse
