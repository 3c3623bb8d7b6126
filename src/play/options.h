#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvelin::play {

/// The values of all options, as the GUI has set them. Plain data with the defaults.
struct Options {
    int hash = 128;  ///< MiB
    int threads = 1;
    bool ponder = false;
    int multipv = 1;
    bool own_book = false;
    std::string book_file;   ///< empty: where the book is installed
    int move_overhead = 30;  ///< milliseconds
    bool chess960 = false;
    bool limit_strength = false;
    int elo = 2000;
    bool show_wdl = false;
    bool analyse_mode = false;
    bool engine_units = false;  ///< `Score Unit` is `engine` and not `centipawn`
    std::string log_file;       ///< empty: none

    bool operator==(Options const&) const = default;
};

/// Which option a line was about, for those that need more than their new value.
enum class option_t { none, hash, clear_hash, book, log_file, other };

/// What became of a `setoption` line.
struct OptionText {
    option_t changed = option_t::none;
    /// Empty, or one line that says what was wrong; the options are then as they were.
    std::string refusal;
};

/// The `option name ...` lines of the handshake, in their order.
std::vector<std::string> option_lines();

/// Reads what follows the word `setoption` into the options: a name and perhaps a value, names of
/// several words, in any case. A value that is out of range is refused, with the range.
OptionText set_option(std::string_view arguments, Options& options);

}  // namespace orvelin::play
