#pragma once

#include <functional>

namespace CLI {
class App;
}  // namespace CLI

namespace orvelin::tools {

/// What the arguments ask for; gives the exit code.
using command_t = std::function<int()>;

// Each adds its arguments to the app, and sets `command` when it is what is asked for.

/// The analysis itself.
void add_analyse_command(CLI::App& app, command_t& command);
/// Computes records again and compares.
void add_verify_command(CLI::App& app, command_t& command);
/// One file of those of several shards.
void add_merge_command(CLI::App& app, command_t& command);

}  // namespace orvelin::tools
