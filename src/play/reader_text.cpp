#include "play/reader_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>

namespace orvelin::play {

namespace {

constexpr std::size_t shown_characters = 40;

bool is_printable(char letter) {
    return letter >= ' ' && letter <= '~';
}

/// Not every library makes it of the two places alone.
std::string_view part(std::string_view text, std::string_view::const_iterator begin,
                      std::string_view::const_iterator end) {
    return text.substr(static_cast<std::size_t>(begin - text.begin()),
                       static_cast<std::size_t>(end - begin));
}

}  // namespace

bool is_blank(char letter) {
    return letter == ' ' || (letter >= '\t' && letter <= '\r');
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && is_blank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && is_blank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string_view first_word(std::string_view text) {
    auto const begin = std::find_if_not(text.begin(), text.end(), is_blank);
    return part(text, begin, std::find_if(begin, text.end(), is_blank));
}

std::vector<std::string_view> words_of(std::string_view text) {
    std::vector<std::string_view> words;
    auto const end = text.end();
    for (auto begin = std::find_if_not(text.begin(), end, is_blank); begin != end;) {
        auto const word_end = std::find_if(begin, end, is_blank);
        words.push_back(part(text, begin, word_end));
        begin = std::find_if_not(word_end, end, is_blank);
    }
    return words;
}

std::string shown(std::string_view text) {
    std::string message = "\"";
    for (char const letter : text.substr(0, shown_characters)) {
        message += is_printable(letter) ? letter : '?';
    }
    return message + (text.size() > shown_characters ? "...\"" : "\"");
}

std::string shown(char letter) {
    if (is_printable(letter)) {
        return {'"', letter, '"'};
    }
    constexpr std::string_view digits = "0123456789abcdef";
    auto const code = static_cast<unsigned char>(letter);
    return std::string("the byte 0x") + digits[code / 16U] + digits[code % 16U];
}

std::string lower_case(std::string_view text) {
    std::string small(text);
    for (char& letter : small) {
        if (letter >= 'A' && letter <= 'Z') {
            letter = static_cast<char>(letter - 'A' + 'a');
        }
    }
    return small;
}

std::optional<Number> read_number(std::string_view text) {
    bool const negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    auto const point = std::find_if_not(text.begin(), text.end(), is_digit);
    if (point == text.begin()) {
        return std::nullopt;
    }
    bool const fraction = point != text.end();
    if (fraction && (*point != '.' || !std::all_of(point + 1, text.end(), is_digit))) {
        return std::nullopt;
    }
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    std::int64_t value = 0;
    for (auto digit = text.begin(); digit != point; ++digit) {
        std::int64_t const next = *digit - '0';
        value = value > (largest - next) / 10 ? largest : 10 * value + next;
    }
    return Number{negative ? -value : value, fraction};
}

void Remarks::add(std::string remark) {
    if (kept_.size() < most) {
        kept_.push_back(std::move(remark));
    } else {
        ++others_;
    }
}

std::vector<std::string> Remarks::take() {
    if (others_ > 0) {
        kept_.push_back(std::to_string(others_) + " more of this kind");
    }
    others_ = 0;
    return std::exchange(kept_, {});
}

}  // namespace orvelin::play
