#include "support/session_reader.h"

#include <stdexcept>

#include "support/data_file.h"

namespace orvelin::test {

namespace {

const std::string prompt = "> ";

session_t session_of(data_block_t const& block) {
    session_t session;
    for (std::string const& line : block) {
        if (line.starts_with(prompt)) {
            session.commands.push_back({line.substr(prompt.size()), {}});
        } else if (!session.commands.empty()) {
            session.commands.back().answer.push_back(line);
        } else {
            throw std::runtime_error("a session begins with an answer: " + line);
        }
    }
    return session;
}

session_t cut_at(session_t const& session, std::uint64_t node_limit) {
    session_t cut;
    std::uint64_t nodes = 0;
    for (session_command_t const& command : session.commands) {
        nodes += command.nodes();
        if (nodes > node_limit) {
            break;
        }
        cut.commands.push_back(command);
    }
    return cut;
}

}  // namespace

std::uint64_t session_command_t::nodes() const {
    if (answer.empty() || !answer.back().starts_with("best ")) {
        return 0;
    }
    return std::stoull(split_words(answer.back()).back());
}

std::uint64_t session_t::nodes() const {
    std::uint64_t sum = 0;
    for (session_command_t const& command : commands) {
        sum += command.nodes();
    }
    return sum;
}

std::vector<session_t> read_sessions(std::string const& file_name) {
    std::vector<session_t> sessions;
    for (data_block_t const& block : read_data_blocks(file_name)) {
        sessions.push_back(session_of(block));
    }
    return sessions;
}

std::vector<session_t> shorten(std::vector<session_t> const& sessions, std::size_t step,
                               std::uint64_t node_limit) {
    std::vector<session_t> chosen;
    for (std::size_t i = 0; i < sessions.size(); i += step) {
        session_t cut = cut_at(sessions[i], node_limit);
        if (cut.nodes() > 0) {
            chosen.push_back(std::move(cut));
        }
    }
    return chosen;
}

}  // namespace orvelin::test
