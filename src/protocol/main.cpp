#include <array>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>

#include "platform/process.h"
#include "platform/sleep.h"
#include "protocol/communicator.h"
#include "protocol/console_input.h"
#include "protocol/engine.h"

namespace orvelin {

namespace {

/// Fixed text. What the options really do differs from it in places (oddity 5).
constexpr std::array<std::string_view, 12> handshake{
    "id name Orvelin 0.40.1",
    "id author Kalvoorst",
    "option name Hash type spin default 128 min 6 max 4096",
    "option name Threads type spin default 1 min 1 max 2",
    "option name Ponder type check default true",
    "option name OwnBook type check default false",
    "option name UCI_LimitStrength type check default false",
    "option name UCI_Elo type spin default 2000 min 1500 max 2200",
    "option name UCI_Chess960 type check default false",
    "option name MultiPV type spin default 1 min 1 max 256",
    "option name Debug type check default false",
    "uciok",
};

void write_handshake() {
    for (std::string_view const line : handshake) {
        std::cout << line << std::endl;
    }
}

/// Polls until "quit": at most one line in and one line out per tick of 5 ms (oddity 2), so that
/// nothing here ever waits for the search. "uci" and "quit" count only when they stand alone on
/// their line (oddity 1).
void dispatch_loop(Communicator& console, Communicator& engine_queues, Engine& engine,
                   std::string& input_line, std::string& output_line) {
    for (;;) {
        input_line = console.from_interface();
        if (input_line == "uci") {
            write_handshake();
            continue;
        }
        if (input_line == "quit") {
            return;
        }
        if (!input_line.empty()) {
            engine_queues.to_engine(input_line);
        }
        engine.from_console();
        engine.to_console();
        output_line = engine_queues.from_engine();
        if (!output_line.empty()) {
            std::cout << output_line << std::endl;
        }
        sleep_milliseconds(5);
    }
}

}  // namespace

}  // namespace orvelin

/// Owns everything. The reader starts before the engine is built, so that it takes lines while the
/// tables are being computed. Output still queued at "quit" is dropped (oddity 4).
int main() {
    using namespace orvelin;

    prepare_process();

    // Only the main thread may touch the standard output, so the reader must not flush it.
    std::cin.tie(nullptr);

    std::ofstream engine_log;
    Communicator engine_communicator;
    Communicator console_communicator;
    ConsoleInput console_input(console_communicator);
    std::thread console_thread(std::ref(console_input));
    Engine engine(engine_communicator, engine_log);
    std::string input_line;
    std::string output_line;

    dispatch_loop(console_communicator, engine_communicator, engine, input_line, output_line);

    console_thread.join();
    if (!std::cin) {
        outlast_interruption(standard_input);
    }
    engine_communicator.to_engine("quit");
    engine.from_console();
    return 0;
}
