#include "bodies/session_player.h"

#include <chrono>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "bodies/go_line.h"
#include "bodies/swallowed_output.h"
#include "book/bk_move.h"
#include "book/book_record.h"
#include "platform/sleep.h"
#include "position/chess_position.h"
#include "protocol/arguments.h"
#include "search/analysis.h"
#include "support/working_directory.h"

namespace orvelin::fuzz {

namespace {

constexpr std::uint64_t node_limit = 200;
constexpr std::chrono::milliseconds patience(100);

/// The lines behind these are left out.
constexpr std::size_t most_lines = 40;

/// Memory beyond this belongs to the machine and not to the engine.
constexpr int most_megabytes = 64;

constexpr std::uint64_t key_of_start_position = 0x463B96181691FC9C;
constexpr std::uint16_t word_of_e2e4 = 0x031C;

void write_book() {
    Book_record entry;
    entry.set_key(key_of_start_position);
    entry.set_move(BKmove(word_of_e2e4));
    entry.set_weight(1);
    std::ofstream("Orvelin.bin", std::ios::binary).write(entry.bytes(), Book_record::size);
}

/// The line sets the hash table to a size that only large machines have.
bool asks_for_much_memory(std::string const& line) {
    std::istringstream words(line);
    if (read_token(words) != "setoption" || read_token(words) != "name") {
        return false;
    }
    return Engine::equal_options(read_token(words), "Hash") && read_token(words) == "value" &&
           read_number(words) > most_megabytes;
}

}  // namespace

bool SessionPlayer::play(std::string const& line) {
    std::istringstream words(line);
    std::string const word = read_token(words);
    if (word == "quit") {
        return false;
    }
    if (word.empty()) {
        step_until_idle();
    } else if (word == "go") {
        go(line);
    } else if (word != "bench" && !asks_for_much_memory(line)) {
        // The bench searches millions of nodes on the calling thread, whatever the limits are.
        machine_.command(line);
    }
    machine_.report();
    return (word != "position" && word != "usermove") || board_is_playable();
}

// A refused `go` lifts the node limit of the search that runs, by design, so the limit is set from
// outside. The clocks are dropped where they would raise SIGFPE.
void SessionPlayer::go(std::string const& line) {
    machine_.command(has_zero_budget(line) ? "go" : line);
    machine_.engine().analysis().set_nodes(nodes_of(line, node_limit));
}

// By design a promotion letter stays on any piece and can make one that is no piece at all, of
// which a search asks the value: an exception that nothing can catch on the analysis thread.
bool SessionPlayer::board_is_playable() {
    ChessPosition const& position = machine_.engine().position();
    for (int square = 0; square < 64; ++square) {
        if ((position[square].id() & 7) == 7) {
            return false;
        }
    }
    return true;
}

bool SessionPlayer::step_until_idle() {
    auto const end = std::chrono::steady_clock::now() + patience;
    while (machine_.searching()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        machine_.command("isready");
        machine_.report();
        sleep_milliseconds(1);
    }
    machine_.report();
    return true;
}

void SessionPlayer::finish() {
    if (!step_until_idle()) {
        machine_.engine().set_action(stop_action);
    }
    machine_.command("stop");
    machine_.report();
}

std::vector<std::string> lines_of(std::string_view input) {
    std::istringstream text{std::string(input)};
    std::vector<std::string> lines;
    for (std::string line; lines.size() < most_lines && std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

void play_session(std::vector<std::string> const& lines) {
    test::WorkingDirectory const directory;
    SwallowedOutput const silence;
    write_book();
    EngineMachine& machine = EngineMachine::ready();
    SessionPlayer player(machine);
    try {
        for (std::string const& line : lines) {
            if (!player.play(line)) {
                break;
            }
        }
    } catch (std::logic_error const&) {
        // By design: a text that is no move or no position, or a move under a search.
        EngineMachine::give_up();
        return;
    }
    player.finish();
    machine.make_new();
}

}  // namespace orvelin::fuzz
