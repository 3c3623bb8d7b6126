#include "protocol/engine.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <functional>
#include <iostream>
#include <string_view>
#include <utility>

#include "evaluation/evaluation.h"
#include "protocol/arguments.h"
#include "protocol/clock_id.h"

namespace orvelin {

Engine::Engine(Communicator& communicator, std::ofstream& log)
    : communicator_(communicator),
      position_(tables_),
      analysis_(position_, tables_),
      hasher_(tables_),
      id_(clock_id(std::chrono::system_clock::now())),
      log_(log) {
    open_book();
    position_.newgame();
    analysis_.init(position_);
    analysis_thread_ = std::thread(std::ref(analysis_));
}

Engine::~Engine() {
    analysis_thread_.join();
}

bool Engine::equal_options(std::string first, std::string second) {
    auto const upper = [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); };
    std::transform(first.begin(), first.end(), first.begin(), upper);
    std::transform(second.begin(), second.end(), second.begin(), upper);
    return first == second;
}

Engine::handler_t Engine::find_handler(std::string const& word) {
    static constexpr std::array<std::pair<std::string_view, handler_t>, 11> commands{{
        {"ucinewgame", &Engine::command_ucinewgame},
        {"eval", &Engine::command_eval},
        {"bench", &Engine::command_bench},
        {"usermove", &Engine::command_usermove},
        {"position", &Engine::command_position},
        {"go", &Engine::command_go},
        {"ponderhit", &Engine::command_ponderhit},
        {"setoption", &Engine::command_setoption},
        {"isready", &Engine::command_isready},
        {"stop", &Engine::command_stop},
        {"quit", &Engine::command_quit},
    }};
    for (auto const& [name, handler] : commands) {
        if (name == word) {
            return handler;
        }
    }
    return nullptr;
}

void Engine::from_console() {
    for (command_ = communicator_.from_interface(); !command_.empty();
         command_ = communicator_.from_interface()) {
        if (!dispatch()) {
            return;
        }
    }
}

void Engine::to_console() {
    status_t const status = analysis_.get_status();
    if (status == ready_status) {
        return;
    }
    report_lines(status);
    if (status == finished_status && engine_state_ == thinking) {
        answer_search();
    }
}

bool Engine::dispatch() {
    if (engine_state_ == idle) {
        gate_.catch_up_in_idleness();
    }
    std::istringstream line(command_);
    std::string const word = read_token(line);
    if (!word.empty()) {
        write_log("engine <- " + command_);
    }
    handler_t const handler = find_handler(word);
    return handler == nullptr || (this->*handler)(line);
}

// The report goes straight to the standard output, ahead of queued lines and without a flush.
bool Engine::command_eval(std::istringstream&) {
    if (!gate_.search_runs_or_waits()) {
        std::cout << analysis_.static_eval_report();
        return true;
    }
    ChessPosition const root = gate_.searched_position();
    Evaluation evaluation(root, tables_);
    evaluation.static_eval();
    std::cout << evaluation.report();
    return true;
}

bool Engine::command_isready(std::istringstream&) {
    send("readyok");
    return true;
}

bool Engine::command_quit(std::istringstream&) {
    set_action(2);
    analysis_.quit();
    return true;
}

void Engine::send(std::string const& line) {
    write_log("engine -> " + line);
    communicator_.to_interface(line);
}

// While the log is closed the write fails and leaves the stream in a failed state, by which the
// switch of the log knows that it has a file to open.
void Engine::write_log(std::string const& line) {
    log_ << line << std::endl;
}

}  // namespace orvelin
