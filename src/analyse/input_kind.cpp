#include "analyse/input_kind.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "play/reader_text.h"

namespace orvelin::analyse {

namespace {

using play::byte_order_mark;

/// Whether the word can only be meant as the pieces of a FEN text, however wrong it is.
bool is_placement(std::string_view word) {
    constexpr std::string_view letters = "pnbrqkPNBRQK0123456789/";
    return word.find_first_not_of(letters) == std::string_view::npos &&
           std::count(word.begin(), word.end(), '/') > 1;
}

}  // namespace

input_kind find_kind(InputText& input) {
    while (!input.at_end()) {
        std::string_view text = input.ahead(InputText::most_ahead);
        if (text.starts_with(byte_order_mark)) {
            input.skip_mark(byte_order_mark.size());
        } else if (play::is_blank(text.front()) || text.front() == '\0') {
            input.skip(1);
        } else {
            text = text.substr(0, InputText::most_ahead);
            auto const end = std::find_if(text.begin(), text.end(), play::is_blank);
            auto const size = static_cast<std::size_t>(end - text.begin());
            bool const positions = text.front() == '#' || is_placement(text.substr(0, size));
            return positions ? input_kind::positions : input_kind::games;
        }
    }
    return input_kind::empty;
}

}  // namespace orvelin::analyse
