// orvelin-analyse: what the engine thinks of games and positions, as records that can be computed
// again.

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>

#include "analyse/commands.h"
#include "play/version.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

std::function<int()> set_up(CLI::App& app) {
    auto const command = std::make_shared<command_t>();
    app.set_version_flag("--version", "Orvelin " + std::string(play::version));
    app.require_subcommand(0, 1);
    add_analyse_command(app, *command);
    add_verify_records_command(app, *command);
    add_merge_records_command(app, *command);
    return [command] { return (*command)(); };
}

}  // namespace

}  // namespace orvelin::tools

int main(int argc, char** argv) {
    return orvelin::tools::tool_main("orvelin-analyse",
                                     "Analyses games and positions, and records what is found.",
                                     orvelin::tools::set_up, argc, argv);
}
