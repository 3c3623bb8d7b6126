#include "bodies/go_line.h"

#include <algorithm>
#include <sstream>
#include <string_view>

#include "protocol/arguments.h"
#include "time/time_manager.h"

namespace orvelin::fuzz {

namespace {

constexpr int movestogo_of_go = 40;

/// The limits of one side's clock, read as the engine reads them.
class Clock {
 public:
    explicit Clock(bool white) {
        manager_.set_white_to_move(white);
        manager_.set_movestogo(movestogo_of_go);
    }

    void read(std::string_view name, int number) {
        std::uint64_t const word = sign_extended(number);
        if (name == "wtime") {
            manager_.set_wtime(word);
        }
        if (name == "btime") {
            manager_.set_btime(word);
        }
        if (name == "winc") {
            manager_.set_winc(word);
        }
        if (name == "binc") {
            manager_.set_binc(word);
        }
        if (name == "movestogo") {
            manager_.set_movestogo(number);
        }
        if (name == "movetime") {
            manager_.set_movetime(word);
        }
    }

    bool is_zero() const { return manager_.soft_budget() == 0; }

 private:
    TimeManager manager_;
};

}  // namespace

// Tested after each limit: a search that runs already sees them as they come in. A number that the
// engine does not come to is read too, which only makes the test stricter.
bool has_zero_budget(std::string const& line) {
    std::istringstream words(line);
    Clock white(true);
    Clock black(false);
    std::string name;
    for (std::string word = read_token(words); !word.empty(); word = read_token(words)) {
        std::istringstream number(word);
        int const value = read_number(number);
        white.read(name, value);
        black.read(name, value);
        if (white.is_zero() || black.is_zero()) {
            return true;
        }
        name = word;
    }
    return false;
}

std::uint64_t nodes_of(std::string const& line, std::uint64_t most) {
    std::istringstream words(line);
    std::uint64_t nodes = most;
    for (std::string word = read_token(words); !word.empty(); word = read_token(words)) {
        if (word == "nodes") {
            nodes = std::min(most, sign_extended(read_number(words)));
        }
    }
    return nodes;
}

}  // namespace orvelin::fuzz
