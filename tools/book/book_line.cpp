#include "book/book_line.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>
#include <system_error>

namespace orvelin::tools {

namespace {

constexpr std::string_view blanks = " \t\r\v\f";

std::string_view trimmed(std::string_view text) {
    std::size_t const first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The number that the whole text is.
std::uint64_t read_weight(std::string_view text, std::uint64_t least, std::uint64_t largest) {
    std::uint64_t weight = 0;
    char const* const end = text.data() + text.size();
    auto const [rest, error] = std::from_chars(text.data(), end, weight);
    if (error != std::errc() || rest != end || weight < least || weight > largest) {
        throw std::runtime_error("the weight \"" + shown(text) + "\" is not a number from " +
                                 std::to_string(least) + " to " + std::to_string(largest));
    }
    return weight;
}

written_move_t read_move(std::string_view word) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint16_t>::max();
    std::size_t const sign = word.find('=');
    if (sign == std::string_view::npos) {
        return {std::string(word), std::nullopt};
    }
    return {std::string(word.substr(0, sign)),
            static_cast<std::uint16_t>(read_weight(word.substr(sign + 1), 0, largest))};
}

}  // namespace

book_line_t read_book_line(std::string_view text) {
    book_line_t line;
    text = text.substr(0, text.find('#'));
    std::size_t const colon = text.find(':');
    if (colon != std::string_view::npos) {
        line.games = read_weight(trimmed(text.substr(0, colon)), 1, max_games);
        text.remove_prefix(colon + 1);
    }
    while (!(text = trimmed(text)).empty()) {
        std::string_view const word = text.substr(0, text.find_first_of(blanks));
        line.moves.push_back(read_move(word));
        text.remove_prefix(word.size());
    }
    return line;
}

std::string shown(std::string_view text) {
    constexpr std::size_t longest = 20;
    std::string result(text.substr(0, longest));
    std::replace_if(
        result.begin(), result.end(), [](char letter) { return letter < ' ' || letter > '~'; },
        '?');
    if (text.size() > longest) {
        result += "...";
    }
    return result;
}

}  // namespace orvelin::tools
