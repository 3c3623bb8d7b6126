#include "analyse/pgn_lines.h"

#include "play/reader_text.h"

namespace orvelin::analyse {

namespace {

/// Braces would end the comment or seem to begin another.
std::string without_braces(std::string_view text) {
    std::string plain(text);
    for (char& letter : plain) {
        if (letter == '{') {
            letter = '(';
        } else if (letter == '}') {
            letter = ')';
        } else if (static_cast<unsigned char>(letter) < ' ' || letter == '\x7F') {
            letter = ' ';
        }
    }
    return plain;
}

/// Another one is none.
constexpr std::size_t longest_command = 40;

}  // namespace

void PgnLines::add(std::string_view word) {
    put_word();
    word_ = front_.append(word);
    front_.clear();
}

void PgnLines::put_word() {
    if (word_.empty()) {
        return;
    }
    if (column_ > 0) {
        bool const fits = column_ + 1 + word_.size() <= longest_line;
        text_ += fits ? ' ' : '\n';
        column_ = fits ? column_ + 1 : 0;
    }
    // At the begin of a line these would make it an escaped one, or a tag.
    if (column_ == 0 && (word_.front() == '%' || word_.front() == '[')) {
        text_ += ' ';
        ++column_;
    }
    text_ += word_;
    column_ += word_.size();
    word_.clear();
}

std::string PgnLines::text() {
    put_word();
    return column_ == 0 ? text_ : text_ + '\n';
}

void PgnLines::add_comment(std::string_view text) {
    std::string const plain = without_braces(text);
    auto const words = play::words_of(plain);
    if (words.empty()) {
        return;
    }
    open('{');
    // A command such as [%eval 0.35] is read by programs, some of which know no line end in it.
    std::string command;
    for (std::string_view const word : words) {
        bool const begins = command.empty() && word.starts_with("[%");
        if (!begins && command.empty()) {
            add(word);
            continue;
        }
        command += (command.empty() ? "" : " ") + std::string(word);
        if (word.ends_with(']') || command.size() > longest_command) {
            add(command);
            command.clear();
        }
    }
    if (!command.empty()) {
        add(command);
    }
    close('}');
}

}  // namespace orvelin::analyse
