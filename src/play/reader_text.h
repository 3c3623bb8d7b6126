#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the readers of command lines share. A line may hold any bytes, NUL and control characters
/// among them, and be of any length.
namespace orvelin::play {

/// The order mark that some editors put at the begin of a file, and so between joined files.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

inline bool is_digit(char letter) {
    return letter >= '0' && letter <= '9';
}

/// Space, tab and the line ends; NUL is none.
bool is_blank(char letter);

/// The text without blanks at its ends.
std::string_view trimmed(std::string_view text);

/// The first word, as a view into the text; empty when there is none.
std::string_view first_word(std::string_view text);

/// The words between blanks, as views into the text.
std::vector<std::string_view> words_of(std::string_view text);

/// The text in quotation marks, fit for a message of one line: at most 40 characters and then dots,
/// and a question mark for each byte that is no printable ASCII character.
std::string shown(std::string_view text);

/// A single byte for a message: itself in quotation marks, or its code when it cannot be printed.
std::string shown(char letter);

/// With ASCII capital letters made small.
std::string lower_case(std::string_view text);

/// A number that was read; beyond what 64 bits hold it is the nearest that they do.
struct Number {
    std::int64_t value;
    /// There was a decimal fraction, which is left away.
    bool had_fraction;
};

/// The number that the whole text is: digits with or without a sign, perhaps a fraction.
std::optional<Number> read_number(std::string_view text);

/// Remarks about one line, of which a long line of nonsense cannot make many.
class Remarks {
 public:
    /// So many are kept, behind which a last one tells the number of the others.
    static constexpr std::size_t most = 8;

    void add(std::string remark);
    /// All remarks, which are given away.
    std::vector<std::string> take();

 private:
    std::vector<std::string> kept_;
    std::size_t others_ = 0;
};

}  // namespace orvelin::play
