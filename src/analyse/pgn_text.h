#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "analyse/game.h"
#include "analyse/input_text.h"

namespace orvelin::analyse {

/// The words, comments and tags of a PGN text, taken from the input one after another.
class PgnText {
 public:
    /// The longest word that is read whole; no move is half as long.
    static constexpr std::size_t longest_word = 200;
    /// The longest name and value of a tag.
    static constexpr std::size_t longest_name = 255;
    static constexpr std::size_t longest_value = 65536;

    explicit PgnText(InputText& input) : input_(input) {}

    /// What comes next.
    enum class part : std::uint8_t {
        end,
        word,
        comment,
        /// A bracket that begins a tag.
        tag,
        /// A bracket that does not.
        bracket,
        variation_begin,
        variation_end,
    };

    /// Goes over blanks, glyphs, line comments and escaped lines, and tells what comes then.
    part look();
    /// Whether an empty line was gone over since the last part that was taken.
    bool behind_empty_line() const { return empty_line_; }
    /// The line of what comes next.
    std::uint64_t line() const { return input_.line(); }

    /// The next word. It lives until the next call; what is beyond longest_word is cut off and
    /// comes as the next word.
    std::string_view take_word();
    /// Goes over one letter.
    void take_letter();
    /// Goes over the rest of the line.
    void take_line() { input_.skip_to('\n'); }
    /// Goes over a comment; false when a new tag section or the end of the input comes first.
    bool take_comment();
    /// The name of the tag that comes next, which stays there. It lives until the next call.
    std::string_view tag_name();
    /// Reads a tag. False, behind its line, when its value is too long. A value that is not closed
    /// ends with its line, and a quotation mark within it need not be escaped.
    bool take_tag(Tag& tag);

 private:
    bool at_tag();
    bool take_value(std::string& value);
    bool at_end_of_value();

    InputText& input_;
    bool empty_line_ = false;
};

}  // namespace orvelin::analyse
