#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orvelin::test {

/// One command of a session and the lines that it must give.
struct session_command_t {
    std::string text;
    std::vector<std::string> answer;

    /// Nodes that the command searches, as its last line tells; 0 if it does not search.
    std::uint64_t nodes() const;
};

/// A run of commands on one engine.
struct session_t {
    std::vector<session_command_t> commands;

    std::uint64_t nodes() const;
};

/// All sessions of a data file.
std::vector<session_t> read_sessions(std::string const& file_name);

/// Cuts the sessions down for shortened builds: every `step`-th, and of each the commands
/// before the first that takes it past `node_limit`. Sessions with no search left are dropped.
std::vector<session_t> shorten(std::vector<session_t> const& sessions, std::size_t step,
                               std::uint64_t node_limit);

}  // namespace orvelin::test
