#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "bodies/engine_machine.h"

namespace orvelin::fuzz {

/// Plays the lines of a session to an engine, one by one.
///
/// Changes or leaves out those that would make a run endless or useless: every search gets a small
/// node limit, and what ends the process by design without an exception is kept from the engine.
class SessionPlayer {
 public:
    explicit SessionPlayer(EngineMachine& machine) : machine_(machine) {}

    /// Hands over a line and steps one tick; an empty line waits for the end of the search. False
    /// when the session is over.
    /// @throws std::logic_error where the engine ends by design.
    bool play(std::string const& line);
    /// Steps ticks until no search runs and no answer is held back. One that goes on for long is
    /// stopped.
    void finish();

 private:
    void go(std::string const& line);
    bool board_is_playable();
    bool step_until_idle();

    EngineMachine& machine_;
};

/// The lines of an input, as many as a session may have.
std::vector<std::string> lines_of(std::string_view input);

/// Plays all lines to a machine in a fresh directory with a small book, with the standard streams
/// of the engine swallowed.
void play_session(std::vector<std::string> const& lines);

}  // namespace orvelin::fuzz
