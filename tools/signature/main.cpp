// orvelin-signature: searches what every build must search alike and prints it as one number.
//
// For developers; tools/compare-signatures builds and runs it in many ways. It needs no library
// beside the engine's, so that it can be built for other processors.

#include <cstddef>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "support/play_signature.h"
#include "support/session_reader.h"
#include "support/signature.h"

namespace {

using namespace orvelin::test;

constexpr int exit_success = 0;
constexpr int exit_failure = 1;
constexpr int exit_usage = 2;

constexpr char const* help =
    "Usage: orvelin-signature [--print | --play] [FILE]\n"
    "Plays the sessions of a file, prints the nodes and a hash over all lines, and fails when a\n"
    "line is not the one on record.\n"
    "  FILE     absolute path; the fixed list of the tests when not given\n"
    "  --print  print the sessions instead, with the lines that this build gives\n"
    "  --play   play the searches by orvelin-play, and compare what it tells of them\n";

/// Tells each command whose answer is not the one on record; true when there is none.
bool compare(session_t const& played, session_t const& expected) {
    bool equal = true;
    for (std::size_t i = 0; i < expected.commands.size(); ++i) {
        if (played.commands[i].answer == expected.commands[i].answer) {
            continue;
        }
        equal = false;
        std::cerr << "orvelin-signature: other lines for: " << expected.commands[i].text << '\n';
    }
    return equal;
}

/// The same for the searches of orvelin-play.
int run_play(std::string const& file_name) {
    std::vector<session_t> played;
    bool equal = true;
    for (session_t const& session : read_sessions(file_name)) {
        played.push_back(played_outcomes(session));
        equal = compare(played.back(), recorded_outcomes(session)) && equal;
    }
    std::cout << signature_of(played) << '\n';
    return equal && std::cout.flush() ? exit_success : exit_failure;
}

int run(std::string const& file_name, bool print) {
    const std::vector<session_t> expected = read_sessions(file_name);
    std::vector<session_t> played;
    bool equal = true;
    for (session_t const& session : expected) {
        played.push_back(play_again(session));
        if (!print) {
            equal = compare(played.back(), session) && equal;
        }
    }
    if (print) {
        std::cout << session_text(played);
    } else {
        std::cout << signature_of(played) << '\n';
    }
    return equal && std::cout.flush() ? exit_success : exit_failure;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments == std::vector<std::string>{"--help"}) {
        std::cout << help;
        return exit_success;
    }
    bool const print = std::erase(arguments, "--print") > 0;
    bool const play = std::erase(arguments, "--play") > 0;
    if (arguments.empty()) {
        arguments.push_back(signature_file);
    }
    if (arguments.size() > 1 || (print && play) || arguments[0].starts_with('-')) {
        std::cerr << help;
        return exit_usage;
    }
    try {
        return play ? run_play(arguments[0]) : run(arguments[0], print);
    } catch (std::exception const& error) {
        std::cerr << "orvelin-signature: " << error.what() << '\n';
        return exit_failure;
    }
}
