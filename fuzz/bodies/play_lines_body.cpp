#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bodies/fuzz_bodies.h"
#include "bodies/require.h"
#include "play/command_queue.h"
#include "play/line_buffer.h"

namespace orvelin::fuzz {

namespace {

using play::Command;

/// The commands that come of the bytes when so many of them come at once.
std::vector<Command> commands_of(std::string_view bytes, std::size_t at_once, std::size_t longest) {
    play::CommandQueue queue;
    play::LineBuffer lines(queue, longest);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(at_once, bytes.size()))) {
        lines.take(bytes.substr(0, at_once));
    }
    lines.end();
    std::vector<Command> commands;
    while (std::optional<Command> command = queue.pop(std::nullopt)) {
        commands.push_back(*command);
    }
    require(queue.ended(), "the end of the bytes is the end of the queue");
    return commands;
}

bool same(Command const& one, Command const& other) {
    return one.line == other.line && one.remark == other.remark;
}

void require_fit(Command const& command, std::size_t longest) {
    require(command.line.size() <= longest, "a line is no longer than is taken");
    require(command.line.find('\n') == std::string::npos, "a line is one line");
    require(command.line.find('\0') == std::string::npos, "a line is free of NUL characters");
    require(!command.line.empty() || !command.remark.empty(), "there is something in a line");
}

}  // namespace

void fuzz_play_lines(std::string_view input) {
    if (input.size() < 2) {
        return;
    }
    std::size_t const at_once = 1U + static_cast<unsigned char>(input[0]);
    std::size_t const longest = 1U + static_cast<unsigned char>(input[1]) % 64U;
    std::string_view const bytes = input.substr(2);
    std::vector<Command> const whole = commands_of(bytes, bytes.size(), longest);
    std::vector<Command> const parts = commands_of(bytes, at_once, longest);
    require(std::equal(whole.begin(), whole.end(), parts.begin(), parts.end(), same),
            "the lines are the same whatever the pieces");
    auto const ends = static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
    require(whole.size() <= ends + 1, "there are no more lines than ends");
    for (Command const& command : whole) {
        require_fit(command, longest);
    }
}

}  // namespace orvelin::fuzz
