#pragma once

#include "support/tool_main.h"

namespace orvelin::tools {

// Each adds a subcommand to the app, which sets `command` when it is the one asked for.

/// The moves of a position.
void add_look_command(CLI::App& app, command_t& command);
/// All entries.
void add_print_command(CLI::App& app, command_t& command);
/// Whether a book is sorted and whole.
void add_verify_command(CLI::App& app, command_t& command);
/// One book of several.
void add_merge_command(CLI::App& app, command_t& command);
/// A book from lines of moves.
void add_make_command(CLI::App& app, command_t& command);

}  // namespace orvelin::tools
