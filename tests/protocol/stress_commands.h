#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "support/referee.h"

namespace orvelin::test {

/// What a `go` line asks for.
struct stress_go_t {
    /// The engine state that it leads to when it is not refused.
    int state = 1;
    /// Its search ends by itself from an idle engine, once nothing holds back the `bestmove`.
    bool finite = false;
    /// It ends by itself in weakened play too.
    bool by_clock = false;
    /// It may end before any move has been looked at.
    bool may_find_nothing = false;
};

enum class stress_kind { position, go, stop, ponderhit, isready, new_game, eval, option, other };

/// A command line, and what it is.
struct stress_line_t {
    std::string text;
    stress_kind kind = stress_kind::other;
    stress_go_t go{};
};

/// Whether the line sets the option.
inline bool sets_option(stress_line_t const& line, std::string const& name) {
    return line.text.starts_with("setoption name " + name + " ");
}

/// The number of rounds for a stress test, a tenth of it in the sanitizer builds. The environment
/// variable ORVELIN_STRESS_TIMES says how many times as many, for long runs.
std::size_t stress_rounds(std::size_t rounds);

/// A seeded source of the commands that may come at any moment.
class StressCommands {
 public:
    explicit StressCommands(std::uint64_t seed) : random_(seed) {}

    /// A number from 0 to one below the bound.
    std::size_t below(std::size_t bound) { return random_() % bound; }
    bool one_in(std::size_t n) { return below(n) == 0; }

    /// Any line. A position goes into the game, of which search moves are taken while it is known.
    stress_line_t line(Referee& game);
    /// Any line but those that depend on the position: fit to follow others whose answers are not
    /// known yet.
    stress_line_t later_line();
    /// A `position` line: a new game, or a move more in one whose position is known.
    stress_line_t position(Referee& game);
    /// A `go` line, with search moves of the game only if there is one and its position is known.
    stress_line_t go(Referee const* game);

 private:
    std::string option();
    std::string unknown();
    stress_line_t simple_line();
    void begin_game(Referee& game);
    template <typename List>
    auto const& pick(List const& list) {
        return list[below(list.size())];
    }

    std::mt19937_64 random_;
};

}  // namespace orvelin::test
