#pragma once

#include "support/tool_main.h"

namespace orvelin::tools {

// Each adds its arguments to the app, and sets `command` when it is what is asked for.

/// The analysis itself.
void add_analyse_command(CLI::App& app, command_t& command);
/// Computes records again and compares.
void add_verify_records_command(CLI::App& app, command_t& command);
/// One file of those of several shards.
void add_merge_records_command(CLI::App& app, command_t& command);

}  // namespace orvelin::tools
