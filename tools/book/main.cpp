// orvelin-book: reads, checks and writes opening books.

#include <CLI/CLI.hpp>

#include "book/commands.h"
#include "support/tool_main.h"

// Only the set-up of the arguments could throw: a fault of the program, which may end it.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    using namespace orvelin::tools;
    CLI::App app("Reads, checks and writes opening books in the Polyglot format.", "orvelin-book");
    app.require_subcommand(1);
    command_t command;
    add_look_command(app, command);
    add_print_command(app, command);
    add_verify_command(app, command);
    add_merge_command(app, command);
    add_make_command(app, command);
    return run_tool(app, argc, argv, [&] { return command(); });
}
