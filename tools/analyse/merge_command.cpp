// One file of those of several shards.

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "analyse/commands.h"
#include "analyse/json_output.h"
#include "analyse/line_file.h"
#include "analyse/shard_merge.h"
#include "platform/path.h"
#include "platform/stop_signals.h"
#include "support/counted.h"
#include "support/file_replacement.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

struct merge_arguments_t {
    std::vector<std::string> files;
    std::string output;
    std::uint64_t positions = 0;
    bool overwrite = false;
};

/// Rubbish may have a fault in every line.
constexpr std::uint64_t most_faults = 20;

/// Whether all is there, once.
bool is_whole(merge_arguments_t const& arguments, StopSignals const& signals) {
    std::uint64_t faults = 0;
    auto const tell = [&faults](std::string const& fault) {
        if (++faults <= most_faults) {
            std::cerr << "orvelin-analyse: " << fault << '\n';
        }
    };
    ShardMerge merge(arguments.files, signals.flag());
    merge.run([](std::string_view) {}, tell);
    if (arguments.positions > merge.last()) {
        tell("the last position is " + std::to_string(merge.last()) + " and not " +
             std::to_string(arguments.positions));
    } else if (arguments.positions > 0 && arguments.positions < merge.last()) {
        tell("the last position is " + std::to_string(merge.last()) + ", more than " +
             std::to_string(arguments.positions));
    }
    if (faults > most_faults) {
        std::cerr << "orvelin-analyse: ... and " << faults - most_faults << " more\n";
    }
    return faults == 0 && !signals.stopped();
}

void write_all(merge_arguments_t const& arguments, StopSignals const& signals, LineFile& output) {
    constexpr std::size_t block = 1 << 18;
    std::string text;
    ShardMerge(arguments.files, signals.flag())
        .run(
            [&](std::string_view line) {
                text += line;
                if (text.size() >= block) {
                    output.add(text);
                    text.clear();
                }
            },
            [](std::string const& fault) {
                throw std::runtime_error("a file was changed meanwhile: " + fault);
            });
    output.add(text);
}

/// All positions of such a file would be told to be there twice.
void refuse_a_file_twice(std::vector<std::string> const& files) {
    std::error_code ignored;
    for (std::size_t i = 0; i < files.size(); ++i) {
        for (std::size_t j = i + 1; j < files.size(); ++j) {
            if (std::filesystem::equivalent(path_of(files[i]), path_of(files[j]), ignored)) {
                bool const alike = files[i] == files[j];
                throw UsageError(alike ? files[i] + " is given twice"
                                       : files[i] + " and " + files[j] + " are the same file");
            }
        }
    }
}

int merge(merge_arguments_t const& arguments) {
    refuse_a_file_twice(arguments.files);
    std::error_code ignored;
    if (!arguments.overwrite &&
        std::filesystem::is_regular_file(path_of(arguments.output), ignored)) {
        throw std::runtime_error(arguments.output + " is there already; --overwrite replaces it");
    }
    StopSignals const signals;
    // It is looked through before anything is written: what is written is whole.
    if (!is_whole(arguments, signals)) {
        return signals.stopped() ? exit_stopped : exit_failure;
    }
    if (arguments.output.empty() || arguments.output == "-") {
        LineFile output("-", open_mode::create);
        write_all(arguments, signals, output);
        return signals.stopped() ? exit_stopped : exit_success;
    }
    if (std::filesystem::is_regular_file(path_of(arguments.output), ignored) &&
        !LineFile(arguments.output, open_mode::resume).begins_with(json_file_begin)) {
        throw std::runtime_error("cannot overwrite " + arguments.output +
                                 ": what it holds is not of this kind of output");
    }
    FileReplacement replacement(path_of(arguments.output));
    {
        LineFile output(name_of(replacement.path()), open_mode::replace);
        write_all(arguments, signals, output);
    }
    if (signals.stopped()) {
        return exit_stopped;
    }
    replacement.commit();
    return exit_success;
}

}  // namespace

void add_merge_records_command(CLI::App& app, command_t& command) {
    CLI::App* const merge_app =
        app.add_subcommand("merge", "Puts the records of several shards in the order of the input");
    merge_app->footer(
        "What comes out is byte for byte what a run without --shard writes. Positions that are "
        "missing\nor there twice are told, nothing is then written, and the exit code is 1. That "
        "the very last\npositions are there is known only with --positions.");
    auto const arguments = std::make_shared<merge_arguments_t>();
    merge_app->add_option("FILE", arguments->files, "Records as lines of JSON")
        ->required()
        ->check(CLI::ExistingFile);
    merge_app->add_option("-o,--output", arguments->output, "The file to write; standard output")
        ->option_text("FILE");
    merge_app->add_flag("--overwrite", arguments->overwrite,
                        "Replace an output file that is there");
    merge_app->add_option("--positions", arguments->positions, "There must be so many positions")
        ->option_text("N")
        ->check(CLI::PositiveNumber);
    merge_app->callback(
        [arguments, &command] { command = [arguments] { return merge(*arguments); }; });
}

}  // namespace orvelin::tools
