// The tags of a PGN text.

#include <cstddef>
#include <cstring>

#include "analyse/pgn_text.h"

namespace orvelin::analyse {

namespace {

using std::string_view;

bool is_name_letter(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '_';
}

std::size_t blanks_at(string_view text, std::size_t place) {
    std::size_t const begin = place;
    while (place < text.size() && (text[place] == ' ' || text[place] == '\t')) {
        ++place;
    }
    return place - begin;
}

/// Where the name of a tag ends if the text begins with a tag up to the quotation mark, else 0.
/// `value` is then the place behind the mark.
std::size_t tag_name_end(string_view text, std::size_t& value) {
    std::size_t const begin = 1 + blanks_at(text, 1);
    std::size_t end = begin;
    while (end < text.size() && is_name_letter(text[end])) {
        ++end;
    }
    value = end + blanks_at(text, end) + 1;
    bool const tag = end > begin && end - begin <= PgnText::longest_name && value <= text.size() &&
                     text[value - 1] == '"';
    return tag ? end : 0;
}

/// Room for a bracket, blanks, the longest name, blanks and a quotation mark.
constexpr std::size_t tag_begin = 2 * PgnText::longest_name;

}  // namespace

bool PgnText::at_tag() {
    std::size_t value = 0;
    return tag_name_end(input_.ahead(tag_begin).substr(0, tag_begin), value) != 0;
}

string_view PgnText::tag_name() {
    string_view const text = input_.ahead(tag_begin).substr(0, tag_begin);
    std::size_t value = 0;
    std::size_t const end = tag_name_end(text, value);
    std::size_t const begin = 1 + blanks_at(text, 1);
    return text.substr(begin, end - begin);
}

bool PgnText::take_tag(Tag& tag) {
    empty_line_ = false;
    tag.name = tag_name();
    std::size_t value = 0;
    tag_name_end(input_.ahead(tag_begin).substr(0, tag_begin), value);
    input_.skip_letters(value);
    tag.value.clear();
    bool const good = take_value(tag.value);
    if (!good) {
        input_.skip_to('\n');
    }
    return good;
}

/// At a quotation mark: goes over it and the bracket behind it if they close the tag.
bool PgnText::at_end_of_value() {
    constexpr std::size_t room = 64;
    string_view const text = input_.ahead(room).substr(0, room);
    std::size_t const bracket = 1 + blanks_at(text, 1);
    if (bracket >= text.size() || text[bracket] != ']') {
        return false;
    }
    input_.skip_letters(bracket + 1);
    return true;
}

bool PgnText::take_value(std::string& value) {
    while (!input_.at_end() && input_.next() != '\n') {
        char letter = input_.next();
        if (letter == '"' && at_end_of_value()) {
            return true;
        }
        if (letter == '\\') {
            string_view const two = input_.ahead(2).substr(0, 2);
            if (two == "\\\"" || two == "\\\\") {
                input_.skip_letter();
                letter = two[1];
            }
        }
        if (value.size() == longest_value) {
            return false;
        }
        value += letter == '\0' ? ' ' : letter;
        input_.skip_letter();
    }
    while (!value.empty() && std::strchr(" \t\r]", value.back()) != nullptr) {
        value.pop_back();
    }
    if (!value.empty() && value.back() == '"') {
        value.pop_back();
    }
    return true;
}

}  // namespace orvelin::analyse
