#include "tables/table_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "endgame/egt4_pieces.h"
#include "support/file_replacement.h"

namespace orvelin::tools {

namespace {

/// Three times the size of any table file.
constexpr std::uintmax_t largest_file = 64U << 20U;
constexpr std::size_t longest_first_word = 64;
constexpr std::string_view blanks = " \t\r\n\f\v";

[[noreturn]] void fail(std::string const& path, std::string const& fault) {
    throw std::runtime_error(path + ": " + fault);
}

/// The file from its start, at most so many bytes of it.
std::string read_file(std::string const& path, std::size_t most) {
    std::error_code error;
    bool const regular = std::filesystem::is_regular_file(path, error);
    if (error) {
        fail(path, "cannot be read: " + error.message());
    }
    if (!regular) {
        fail(path, "cannot be read: not a regular file");
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        fail(path, std::string("cannot be read: ") + std::strerror(errno));
    }
    std::uintmax_t const size = std::filesystem::file_size(path);
    std::string text(size < most ? static_cast<std::size_t>(size) : most, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

/// Takes the next word off the text; empty at its end.
std::string_view take_word(std::string_view& text) {
    std::size_t const begin = std::min(text.find_first_not_of(blanks), text.size());
    std::size_t const end = std::min(text.find_first_of(blanks, begin), text.size());
    std::string_view const word = text.substr(begin, end - begin);
    text.remove_prefix(end);
    return word;
}

/// A word as it can stand in a message, whatever the file holds.
std::string quoted(std::string_view word) {
    constexpr std::size_t longest = 20;
    std::string text = "\"";
    for (char const letter : word.substr(0, longest)) {
        text += letter >= ' ' && letter <= '~' ? letter : '?';
    }
    return text + (word.size() > longest ? "...\"" : "\"");
}

ending_t const& ending_of(std::string const& path, std::string_view first_word) {
    constexpr std::string_view begin = "begin{";
    if (!first_word.starts_with(begin) || !first_word.ends_with('}')) {
        fail(path, "no table file: it does not begin with \"begin{\" and the name of an ending");
    }
    first_word.remove_prefix(begin.size());
    first_word.remove_suffix(1);
    for (ending_t const& ending : endings) {
        if (first_word == ending.name) {
            return ending;
        }
    }
    fail(path,
         "a table of the unknown ending " + quoted(first_word) + "; it must be " + ending_names);
}

bool is_finished_value(unsigned int value) {
    return value <= 100 || (value >= 128 && value <= 228) || value == Egt4Pieces::drawn ||
           value == Egt4Pieces::illegal;
}

void check_value(std::string const& path, unsigned int key, std::string_view word) {
    std::string const place = "key " + std::to_string(key);
    if (word.empty()) {
        fail(path, "damaged: it ends before " + place);
    }
    unsigned int value = 0;
    auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || !is_finished_value(value)) {
        fail(path, "damaged: " + quoted(word) + " at " + place + " is no value of a table");
    }
}

void check_text(std::string const& path, std::string_view text, unsigned int size) {
    ending_t const& ending = ending_of(path, take_word(text));
    for (unsigned int key = 0; key < size; ++key) {
        check_value(path, key, take_word(text));
    }
    std::string const wanted = "end{" + std::string(ending.name) + "}";
    std::string_view const last = take_word(text);
    if (last != wanted) {
        fail(path, "damaged: " + quoted(last) + " stands behind the last key, not " + wanted);
    }
    if (!take_word(text).empty()) {
        fail(path, "damaged: something stands behind " + wanted);
    }
}

}  // namespace

ending_t const& ending_of_file(std::string const& path) {
    std::string const start = read_file(path, longest_first_word);
    std::string_view text = start;
    return ending_of(path, take_word(text));
}

ending_t const& ending_of_source(std::string const& source) {
    ending_t const* const ending = find_ending(source);
    if (ending != nullptr) {
        return *ending;
    }
    std::error_code ignored;
    if (!std::filesystem::exists(source, ignored)) {
        throw std::runtime_error(source + " is neither a file nor " + ending_names);
    }
    return ending_of_file(source);
}

void load_table(std::string const& path, Egt4Pieces& values) {
    std::string const text = read_file(path, largest_file);
    if (text.size() == largest_file) {
        fail(path, "too large for a table file");
    }
    check_text(path, text, values.size());
    values.load(path);
}

void save_table(Egt4Pieces const& table, std::string const& path) {
    FileReplacement replacement(path);
    try {
        table.save(replacement.path());
    } catch (std::runtime_error const&) {
        // Of all that happens the user only knows the file that he named.
        throw std::runtime_error("cannot write " + path + ": the write failed");
    }
    replacement.commit();
}

}  // namespace orvelin::tools
