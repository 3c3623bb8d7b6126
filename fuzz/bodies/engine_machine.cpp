#include "bodies/engine_machine.h"

#include <array>
#include <memory>

#include "search/action.h"
#include "search/analysis.h"

namespace orvelin::fuzz {

namespace {

constexpr int least_megabytes = 6;

/// A machine serves so many inputs, so that no fault hides for long behind what earlier ones left.
constexpr int inputs_of_a_machine = 100;

/// The strength stands before its switch, which lifts the limits that it set.
constexpr std::array<char const*, 9> defaults{
    "setoption name Threads value 1",
    "setoption name Ponder value true",
    "setoption name OwnBook value false",
    "setoption name UCI_Elo value 2000",
    "setoption name UCI_LimitStrength value false",
    "setoption name UCI_Chess960 value false",
    "setoption name MultiPV value 1",
    "setoption name Debug value false",
    "ucinewgame",
};

struct holder_t {
    std::unique_ptr<EngineMachine> machine;
    int inputs = 0;
};

holder_t& holder() {
    static holder_t the_holder;
    return the_holder;
}

}  // namespace

EngineMachine& EngineMachine::ready() {
    if (holder().inputs >= inputs_of_a_machine) {
        give_up();
    }
    if (!holder().machine) {
        holder() = {std::make_unique<EngineMachine>(), 0};
    }
    ++holder().inputs;
    return *holder().machine;
}

void EngineMachine::give_up() {
    holder().machine.reset();
}

EngineMachine::EngineMachine() : engine_(communicator_, log_) {
    engine_.analysis().set_hash_size(least_megabytes);
}

EngineMachine::~EngineMachine() {
    communicator_.clear();
    command("quit");
}

void EngineMachine::command(std::string const& line) {
    communicator_.to_engine(line);
    engine_.from_console();
}

void EngineMachine::report() {
    engine_.to_console();
    while (!communicator_.from_engine().empty()) {
    }
}

// In this order: the thread announces its search before it clears the action.
bool EngineMachine::searching() {
    return engine_.analysis().get_action() == think_action ||
           engine_.analysis().get_status() == searching_status;
}

void EngineMachine::make_new() {
    for (char const* const line : defaults) {
        command(line);
    }
    engine_.analysis().set_hash_size(least_megabytes);
    report();
}

}  // namespace orvelin::fuzz
