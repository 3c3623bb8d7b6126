#include <cstddef>
#include <string>
#include <string_view>

#include "bodies/fuzz_bodies.h"
#include "bodies/require.h"
#include "play/options.h"
#include "play/strength.h"

namespace orvelin::fuzz {

namespace {

using play::Options;
using play::OptionText;

void require_number(int value, int least, int most) {
    require(value >= least && value <= most, "the number of an option is in range");
}

/// A name of a file has one line and an end.
void require_text(std::string const& value) {
    constexpr std::size_t longest = 4096;
    require(value.size() <= longest, "the text of an option has an end");
    for (char const letter : value) {
        require((letter < 0 || letter >= ' ') && letter != '\x7f',
                "the text of an option is free of control characters");
    }
}

void require_in_range(Options const& options) {
    require_number(options.hash, 1, 65536);
    require_number(options.threads, 1, 1);
    require_number(options.multipv, 1, 256);
    require_number(options.move_overhead, 0, 5000);
    require_number(options.elo, play::min_elo, play::max_elo);
    require_text(options.book_file);
    require_text(options.log_file);
}

}  // namespace

void fuzz_play_options(std::string_view input) {
    Options options;
    while (!input.empty()) {
        std::size_t const end = input.find('\n');
        Options const before = options;
        OptionText const text = play::set_option(input.substr(0, end), options);
        require_in_range(options);
        if (!text.refusal.empty()) {
            require(options == before, "a refused line changes nothing");
            require(text.changed == play::option_t::none, "a refused line asks for nothing");
            require(text.refusal.size() <= 400, "a message is short");
        }
        // Each time as if the line was the first, for what the one before hides.
        Options fresh;
        play::set_option(input.substr(0, end), fresh);
        require_in_range(fresh);
        input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
    }
}

}  // namespace orvelin::fuzz
