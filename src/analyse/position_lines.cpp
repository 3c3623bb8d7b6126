#include "analyse/position_lines.h"

#include <algorithm>
#include <utility>

#include "analyse/game_start.h"
#include "generation/tables.h"
#include "play/reader_text.h"

namespace orvelin::analyse {

namespace {

using play::byte_order_mark;
using std::string_view;

/// The fields that every line has.
constexpr std::size_t epd_fields = 4;
constexpr std::size_t fen_fields = 6;

/// Where the first blank stands, or the end.
std::size_t find_blank(string_view text) {
    auto const blank = std::find_if(text.begin(), text.end(), play::is_blank);
    return static_cast<std::size_t>(blank - text.begin());
}

bool is_number(string_view word) {
    return !word.empty() && word.find_first_not_of("0123456789") == string_view::npos;
}

/// The fields of the position at the begin of a line: four, and the two counters of a FEN text if
/// they are there. `rest` is what is behind them.
std::vector<string_view> take_fields(string_view text, string_view& rest) {
    std::vector<string_view> fields;
    rest = play::trimmed(text);
    while (fields.size() < fen_fields && !rest.empty()) {
        std::size_t const blank = find_blank(rest);
        string_view const word = rest.substr(0, blank);
        // What stands in place of a counter and is neither a number nor an operation is for the
        // check of the text to name.
        bool const counter = is_number(word) || word.front() == '-';
        if (fields.size() >= epd_fields && !counter) {
            break;
        }
        fields.push_back(word);
        rest = play::trimmed(rest.substr(blank));
    }
    return fields;
}

/// Takes one operation with its name, up to a semicolon outside quotation marks.
Tag take_operation(string_view& rest) {
    bool quoted = false;
    std::size_t end = 0;
    while (end < rest.size() && (quoted || rest[end] != ';')) {
        quoted ^= rest[end] == '"';
        ++end;
    }
    string_view const text = play::trimmed(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    std::size_t const blank = find_blank(text);
    string_view value = play::trimmed(text.substr(blank));
    if (value.size() > 1 && value.front() == '"' && value.back() == '"') {
        value = value.substr(1, value.size() - 2);
    }
    return {std::string(text.substr(0, blank)), std::string(value)};
}

}  // namespace

std::string PositionLine::operation(string_view name) const {
    for (Tag const& operation : operations) {
        if (operation.name == name) {
            return operation.value;
        }
    }
    return "";
}

PositionLines::PositionLines(InputText& input, Tables const& tables, std::uint64_t positions_before)
    : input_(input), position_(tables), number_(positions_before) {}

/// Reads a line without its end. What is beyond the longest line is gone over, and then false.
bool PositionLines::read_line(std::string& line) {
    line.clear();
    bool fits = true;
    while (!input_.at_end() && input_.next() != '\n') {
        string_view const text = input_.ahead(1);
        string_view const part = text.substr(0, text.find('\n'));
        fits &= line.size() + part.size() <= longest_line;
        if (fits) {
            line += part;
        }
        input_.skip_letters(part.size());
    }
    if (!input_.at_end()) {
        input_.skip(1);
    }
    std::replace(line.begin(), line.end(), '\0', ' ');
    return fits;
}

PositionLines::outcome PositionLines::next(PositionLine& read) {
    reason_.clear();
    remarks_.clear();
    while (!input_.at_end()) {
        read.line = input_.line();
        bool const fits = read_line(line_);
        string_view text = play::trimmed(line_);
        if (text.starts_with(byte_order_mark)) {
            text = play::trimmed(text.substr(byte_order_mark.size()));
        }
        if (fits && (text.empty() || text.front() == '#')) {
            continue;
        }
        read.number = ++number_;
        reason_ = fits ? read_position(text, read)
                       : "is longer than " + std::to_string(longest_line) + " bytes";
        if (reason_.empty()) {
            return outcome::position;
        }
        reason_ = "line " + std::to_string(read.line) + ": " + reason_;
        return outcome::broken;
    }
    return outcome::end;
}

/// Returns why the line is wrong, or nothing.
std::string PositionLines::read_position(string_view text, PositionLine& read) {
    string_view rest;
    std::vector<string_view> const fields = take_fields(text, rest);
    read.operations.clear();
    while (!rest.empty()) {
        Tag operation = take_operation(rest);
        if (!operation.name.empty()) {
            read.operations.push_back(std::move(operation));
        }
    }
    std::string fen;
    for (string_view const field : fields) {
        fen.append(fen.empty() ? "" : " ").append(field);
    }
    // The counters of a FEN text have operations of their own in EPD.
    if (fields.size() == epd_fields) {
        std::string const halfmoves = read.operation("hmvc");
        std::string const number = read.operation("fmvn");
        fen += is_number(halfmoves) ? ' ' + halfmoves : " 0";
        fen += is_number(number) ? ' ' + number : " 1";
    }
    GameStart start = set_up_start(fen, false, position_);
    read.fen = std::move(start.fen);
    read.chess960 = start.chess960;
    remarks_ = std::move(start.remarks);
    return start.reason;
}

}  // namespace orvelin::analyse
