#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvelin::analyse {

/// Joins words to lines of less than 80 characters, as a PGN text has them.
class PgnLines {
 public:
    static constexpr std::size_t longest_line = 79;

    /// Adds a word, on the next line where there is no room.
    void add(std::string_view word);
    /// Glues a sign to the front of the word that comes next.
    void open(char sign) { front_ += sign; }
    /// Glues a sign to the end of the last word.
    void close(char sign) { word_ += sign; }
    /// A comment in braces, if there is text.
    void add_comment(std::string_view text);

    /// All lines, each with its end.
    std::string text();

 private:
    void put_word();

    std::string text_;
    std::string front_;
    /// The last word, which may still grow.
    std::string word_;
    std::size_t column_ = 0;
};

}  // namespace orvelin::analyse
