#include <array>
#include <string_view>
#include <utility>

#include "protocol/arguments.h"
#include "protocol/engine.h"

namespace orvelin {

// Only the name of the option matches in any case. A name of two words matches nothing, because
// one word is read.
// A number that is missing or cannot be read is 0 (oddity 7).
bool Engine::command_setoption(std::istringstream& arguments) {
    static constexpr std::array<std::pair<std::string_view, option_t>, 9> options{{
        {"Hash", &Engine::option_hash},
        {"Threads", &Engine::option_threads},
        {"Ponder", &Engine::option_ponder},
        {"OwnBook", &Engine::option_ownbook},
        {"UCI_LimitStrength", &Engine::option_limit_strength},
        {"UCI_Elo", &Engine::option_elo},
        {"UCI_Chess960", &Engine::option_chess960},
        {"MultiPV", &Engine::option_multipv},
        {"Debug", &Engine::option_debug},
    }};
    if (read_token(arguments) != "name") {
        return true;
    }
    std::string const name = read_token(arguments);
    for (auto const& [known_name, option] : options) {
        if (!equal_options(name, std::string(known_name))) {
            continue;
        }
        if (read_token(arguments) == "value") {
            (this->*option)(arguments);
        }
        break;
    }
    return true;
}

namespace {

/// Every word but "true" means false.
bool read_flag(std::istringstream& value) {
    return read_token(value) == "true";
}

}  // namespace

// The table is not taken away from under a search.
void Engine::option_hash(std::istringstream& value) {
    hash_value_ = read_number(value);
    if (hash_value_ <= 0) {
        return;
    }
    gate_.do_between_searches([this, size = hash_value_] { analysis_.set_hash_size(size); });
}

// Numbers below 0 count as very large, here and for the lines.
void Engine::option_threads(std::istringstream& value) {
    analysis_.set_max_threads(static_cast<unsigned int>(read_number(value)));
}

void Engine::option_ponder(std::istringstream& value) {
    ponder_ = read_flag(value);
}

void Engine::option_ownbook(std::istringstream& value) {
    ownbook_ = read_flag(value) && book_available_;
}

void Engine::option_limit_strength(std::istringstream& value) {
    analysis_.set_uci_limitstrength(read_flag(value));
}

void Engine::option_elo(std::istringstream& value) {
    analysis_.set_uci_elo(read_number(value));
}

void Engine::option_chess960(std::istringstream& value) {
    chess960_ = read_flag(value);
}

void Engine::option_multipv(std::istringstream& value) {
    analysis_.set_multipv(static_cast<unsigned int>(read_number(value)));
}

// The line that brought this option has been written to the log, so a log that is closed has
// failed by now: that alone tells the two apart. One that cannot be opened is not reported.
void Engine::option_debug(std::istringstream& value) {
    debug_ = read_flag(value);
    analysis_.set_log(debug_);
    if (log_.fail()) {
        if (debug_) {
            log_.open("uci_eng_" + std::to_string(id_) + ".log", std::ios::out);
        }
    } else if (!debug_) {
        log_.close();
    }
}

}  // namespace orvelin
