#pragma once

#include <functional>
#include <stdexcept>

// Its header takes long to compile, and few files need it.
namespace CLI {
class App;
}

namespace orvelin::tools {

/// Exit codes of all tools.
inline constexpr int exit_success = 0;
/// The operation or the check failed.
inline constexpr int exit_failure = 1;
/// The arguments make no sense.
inline constexpr int exit_usage = 2;

/// An argument is well formed but wrong in what it says; ends the tool with `exit_usage`.
class UsageError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// What the arguments ask for; gives the exit code.
using command_t = std::function<int()>;

/// Reads the arguments and runs the body of a tool; returns the exit code for main().
///
/// The app must carry the name of the tool. `--help` prints the help and ends well. A bad argument
/// gives `exit_usage`, any other exception `exit_failure`, as does an output that could not be
/// written; each is told on standard error as "name: message".
int run_tool(CLI::App& app, int argc, char const* const* argv, command_t const& body);

/// Adds the arguments of a tool to its app and makes the body, which owns what it needs.
using set_up_t = command_t (*)(CLI::App& app);

/// The whole main() of a tool. What the set-up throws is told and ends as any other exception.
int tool_main(char const* name, char const* description, set_up_t set_up, int argc,
              char const* const* argv);

}  // namespace orvelin::tools
