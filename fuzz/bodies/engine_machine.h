#pragma once

#include <fstream>
#include <string>

#include "protocol/communicator.h"
#include "protocol/engine.h"

namespace orvelin::fuzz {

/// An engine with a small hash table and its queues, without the process around it.
///
/// Building one takes long, so one serves many inputs, each of which must leave it idle and with
/// the default options. An input that ends the engine by design gives it up.
class EngineMachine {
 public:
    /// The machine that stands ready, built in the working directory if there is none.
    static EngineMachine& ready();
    /// Forgets the machine that stands ready: the next input gets a new one.
    static void give_up();

    EngineMachine();
    ~EngineMachine();
    EngineMachine(EngineMachine const&) = delete;
    EngineMachine& operator=(EngineMachine const&) = delete;

    /// Hands over a line and lets the engine act on it.
    void command(std::string const& line);
    /// Lets the engine report, and drops what it has to say.
    void report();
    /// A search runs, or waits for the analysis thread.
    bool searching();
    /// The idle engine becomes as a new one.
    void make_new();
    Engine& engine() { return engine_; }

 private:
    std::ofstream log_;
    Communicator communicator_;
    Engine engine_;
};

}  // namespace orvelin::fuzz
