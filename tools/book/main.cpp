// orvelin-book: reads, checks and writes opening books.

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>

#include "book/commands.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

std::function<int()> set_up(CLI::App& app) {
    app.require_subcommand(1);
    auto const command = std::make_shared<command_t>();
    add_look_command(app, *command);
    add_print_command(app, *command);
    add_verify_command(app, *command);
    add_merge_command(app, *command);
    add_make_command(app, *command);
    return [command] { return (*command)(); };
}

}  // namespace

}  // namespace orvelin::tools

int main(int argc, char** argv) {
    return orvelin::tools::tool_main(
        "orvelin-book", "Reads, checks and writes opening books in the Polyglot format.",
        orvelin::tools::set_up, argc, argv);
}
