#include "support/perft_witness.h"

#include <array>
#include <cctype>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace orvelin::test {

namespace {

constexpr char const* witness_binary = "/usr/games/stockfish";

struct pipe_t {
    int read_end = -1;
    int write_end = -1;
};

pipe_t make_pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    return {ends[0], ends[1]};
}

/// Whether the line has the form "e2e4: 20" or "a7a8q: 20".
bool is_move_count(std::string const& line, std::size_t colon) {
    return (colon == 4 || colon == 5) && std::isalpha(static_cast<unsigned char>(line[0])) != 0 &&
           std::isdigit(static_cast<unsigned char>(line[1])) != 0;
}

}  // namespace

PerftWitness::PerftWitness() {
    if (access(witness_binary, X_OK) != 0) {
        throw std::runtime_error(std::string(witness_binary) +
                                 " is missing: apt-get install stockfish");
    }
    const pipe_t input = make_pipe();
    const pipe_t output = make_pipe();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.read_end, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.write_end, STDOUT_FILENO);
    std::string name = witness_binary;
    const std::array<char*, 2> arguments = {name.data(), nullptr};
    int const error =
        posix_spawn(&process_, witness_binary, &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(input.read_end);
    close(output.write_end);
    to_engine_ = fdopen(input.write_end, "w");
    from_engine_ = fdopen(output.read_end, "r");
    if (error != 0 || to_engine_ == nullptr || from_engine_ == nullptr) {
        throw std::runtime_error(std::string("cannot start ") + witness_binary);
    }
}

PerftWitness::~PerftWitness() {
    send("quit");
    std::fclose(to_engine_);
    std::fclose(from_engine_);
    waitpid(process_, nullptr, 0);
}

void PerftWitness::send(std::string const& line) {
    std::fputs((line + '\n').c_str(), to_engine_);
    std::fflush(to_engine_);
}

std::string PerftWitness::receive() {
    std::array<char, 1024> buffer{};
    if (std::fgets(buffer.data(), static_cast<int>(buffer.size()), from_engine_) == nullptr) {
        throw std::runtime_error(std::string(witness_binary) + " ended");
    }
    std::string line = buffer.data();
    while (!line.empty() && line.back() == '\n') {
        line.pop_back();
    }
    return line;
}

std::map<std::string, std::uint64_t> PerftWitness::divide(std::string const& fen, int depth,
                                                          bool chess960) {
    send(std::string("setoption name UCI_Chess960 value ") + (chess960 ? "true" : "false"));
    send("position fen " + fen);
    send("go perft " + std::to_string(depth));
    std::map<std::string, std::uint64_t> counts;
    for (std::string line = receive(); !line.starts_with("Nodes searched"); line = receive()) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos || !is_move_count(line, colon)) {
            continue;
        }
        counts[line.substr(0, colon)] = std::stoull(line.substr(colon + 1));
    }
    return counts;
}

}  // namespace orvelin::test
