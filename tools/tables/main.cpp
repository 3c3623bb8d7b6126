// orvelin-tables: builds, reads, asks and checks the distance-to-mate tables of endings.

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/tool_main.h"
#include "tables/commands.h"
#include "tables/ending.h"

namespace {

using namespace orvelin::tools;

struct arguments_t {
    std::string ending;
    std::string output;
    std::string source;
    std::vector<std::string> sources;
    std::vector<std::string> fens;
    bool plot = false;
};

using command_t = std::function<int()>;

std::string const source_help = std::string("An ending (") + ending_names +
                                "), whose table is then built, or a table file; a file with the "
                                "name of an ending is given as ./NAME";

void add_build(CLI::App& app, arguments_t& arguments, command_t& command) {
    CLI::App* const build = app.add_subcommand("build", "Build a table and write it to a file");
    build->add_option("ENDING", arguments.ending, std::string("What to build: ") + ending_names)
        ->required();
    build->add_option("-o,--output", arguments.output, "File to write or to replace")->required();
    build->callback([&] {
        command = [&] {
            ending_t const* const ending = find_ending(arguments.ending);
            if (ending == nullptr) {
                throw UsageError("unknown ending " + arguments.ending + "; it must be " +
                                 ending_names);
            }
            return build_command(*ending, arguments.output);
        };
    });
}

void add_eval(CLI::App& app, arguments_t& arguments, command_t& command) {
    CLI::App* const eval = app.add_subcommand(
        "eval",
        "Print the value of positions: the winner, the distance to mate and the engine's "
        "number for it");
    eval->add_option("SOURCE", arguments.source, source_help)->required();
    eval->add_option("FEN", arguments.fens,
                     "Positions, each in quotes, with the pieces of the ending or fewer in either "
                     "colours; move counters are ignored")
        ->required();
    eval->callback(
        [&] { command = [&] { return eval_command(arguments.source, arguments.fens); }; });
}

void add_stats(CLI::App& app, arguments_t& arguments, command_t& command) {
    CLI::App* const stats = app.add_subcommand(
        "stats",
        "Print how many keys have each distance to mate, and the longest wins; positions "
        "with the white king on a long diagonal count together with their reflection");
    stats->add_option("SOURCE", arguments.source, source_help)->required();
    stats->add_flag("--plot", arguments.plot,
                    "Print also a histogram of the moves to mate, as wide as COLUMNS in the "
                    "environment tells, else 80");
    stats->callback(
        [&] { command = [&] { return stats_command(arguments.source, arguments.plot); }; });
}

void add_check(CLI::App& app, arguments_t& arguments, command_t& command) {
    CLI::App* const check = app.add_subcommand(
        "check", "Compare table files with tables newly built, and these with themselves");
    check->add_option("SOURCE", arguments.sources, source_help)->required();
    check->callback([&] { command = [&] { return check_command(arguments.sources); }; });
}

std::function<int()> set_up(CLI::App& app) {
    app.require_subcommand(1);
    auto const arguments = std::make_shared<arguments_t>();
    auto const command = std::make_shared<command_t>();
    add_build(app, *arguments, *command);
    add_eval(app, *arguments, *command);
    add_stats(app, *arguments, *command);
    add_check(app, *arguments, *command);
    // The commands refer to the arguments, which the body keeps.
    return [arguments, command] { return (*command)(); };
}

}  // namespace

int main(int argc, char** argv) {
    return tool_main("orvelin-tables", "Distance-to-mate tables of endings with four pieces.",
                     set_up, argc, argv);
}
