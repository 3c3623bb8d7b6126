// The analysis itself.

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "analyse/analyse_arguments.h"
#include "analyse/analyse_outputs.h"
#include "analyse/analyse_run.h"
#include "analyse/answer_cache.h"
#include "analyse/commands.h"
#include "analyse/jobs_option.h"
#include "analyse/position_files.h"
#include "platform/stop_signals.h"
#include "support/counted.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

/// Looking an answer up takes longer than a static evaluation.
std::unique_ptr<AnswerCache> open_cache(AnalyseArguments const& arguments,
                                        analyse::Limit const& limit) {
    if (arguments.output.cache.empty() || limit.what == analyse::Limit::kind::static_eval) {
        return nullptr;
    }
    return std::make_unique<AnswerCache>(arguments.output.cache);
}

/// "5 games, 104 positions, 1 left out".
std::string summary(AnalyseRun const& run, PositionFiles const& input) {
    std::string text = input.games() == 0 ? "" : counted(input.games(), "game", "games") + ", ";
    text += counted(run.answered(), "position", "positions");
    return text + (input.broken() == 0 ? "" : ", " + std::to_string(input.broken()) + " left out");
}

int analyse_files(AnalyseArguments const& arguments) {
    Request const request = request_of(arguments);
    PositionFiles::Settings input_settings{arguments.files, plies_of(arguments.plies),
                                           arguments.chess960};
    if (input_settings.names.empty()) {
        input_settings.names = {"-"};
    }
    Shard const shard = shard_of(arguments.shard);
    if (!arguments.output.pgn.empty()) {
        refuse_for_pgn(request, shard);
    }

    StopSignals const signals;
    PositionFiles input(input_settings, signals.flag(), [](std::string const& remark) {
        std::cerr << "orvelin-analyse: " + remark + '\n';
    });
    outputs_t outputs = open_outputs(arguments.output, input_settings.names, input_settings.plies);
    std::unique_ptr<AnswerCache> const cache = open_cache(arguments, request.limit);
    RunSettings settings;
    settings.request = request;
    settings.shard = shard;
    settings.jobs = arguments.jobs;
    settings.progress = !arguments.quiet;
    settings.positions_in_all = [&input] { return input.estimated_positions(); };
    auto const maker = [&cache] {
        auto answerer = make_engine_answerer();
        return cache ? make_cached_answerer(*cache, std::move(answerer)) : std::move(answerer);
    };
    AnalyseRun run(std::move(settings), input, maker, outputs, signals);
    int const code = run.run();
    bool const nothing_read = run.positions() == 0 && input.games() == 0;
    if (code == exit_success && nothing_read && input.broken() > 0) {
        throw std::runtime_error("nothing of the input could be read");
    }
    if (!arguments.quiet) {
        std::cerr << "orvelin-analyse: " + summary(run, input) + '\n';
    }
    return code;
}

constexpr char const* footer =
    "Games are read as PGN, positions as EPD or FEN, a line each; what a file holds is seen from "
    "its\nfirst line. A game or line that cannot be read is told and left out. Without an output "
    "option\nthe records go to standard output as lines of JSON. docs/analyse.md tells what stands "
    "in them.\n"
    "Exit code 0 for success, 1 for a failure, 2 for bad usage, 130 after Ctrl-C.";

void add_question_options(CLI::App& app, AnalyseArguments& arguments) {
    app.add_option("--limit", arguments.limit,
                   "How far each position is looked into: static, depth=N or nodes=N; depth=10")
        ->option_text("LIMIT");
    app.add_option("--depth", arguments.depth)->group("");
    app.add_option("--nodes", arguments.nodes)->group("");
    app.add_option("--lines", arguments.lines,
                   "So many best lines of each position, 1 to 50; 1. A game that is annotated "
                   "shows the best one alone")
        ->option_text("K")
        ->check(CLI::Range(1, analyse::most_lines));
    app.add_option("--plies", arguments.plies,
                   "Of games only the positions behind so many half-moves; all")
        ->option_text("FROM-TO");
    app.add_option("--moves", arguments.moves,
                   "best, and what is searched by itself too: best,played the move that was "
                   "played, to judge it; best,played,rest also all moves but the best one, to "
                   "tell only good moves; best, with --pgn best,played,rest")
        ->option_text("WHICH");
    app.add_flag("--no-leaves", arguments.no_leaves,
                 "Do not look for the positions whose evaluation the scores are");
    app.add_flag("--chess960", arguments.chess960, "Positions without a game are of Chess960");
}

void add_output_options(CLI::App& app, AnalyseArguments& arguments) {
    app.add_option("--jsonl", arguments.output.jsonl, "Write lines of JSON; - is standard output")
        ->option_text("FILE");
    app.add_option("--csv", arguments.output.csv, "Write CSV; - is standard output")
        ->option_text("FILE");
    app.add_option("--sqlite", arguments.output.sqlite, "Write the tables of an SQLite file")
        ->option_text("FILE");
    app.add_option("--pgn", arguments.output.pgn,
                   "Write the games with scores, marks, better lines and sentences; - is standard "
                   "output. Asks for --moves best,played,rest by itself; with best,played, which "
                   "may take half the time, no move gets !")
        ->option_text("FILE");
    app.add_flag("--resume", arguments.output.resume,
                 "Go on with what is in the output files; what they hold is not done again");
    app.add_flag("--overwrite", arguments.output.overwrite,
                 "Begin output files that are there anew");
}

void add_run_options(CLI::App& app, AnalyseArguments& arguments) {
    app.add_option("--shard", arguments.shard,
                   "Of N machines this is machine I; merge puts the "
                   "records back in order")
        ->option_text("I/N");
    add_jobs_option(app, arguments.jobs);
    app.add_option("--cache", arguments.output.cache,
                   "Take answers from this file, and keep new ones there")
        ->option_text("FILE");
    app.add_flag("--quiet", arguments.quiet, "Tell neither progress nor what was done");
}

}  // namespace

void add_analyse_command(CLI::App& app, command_t& command) {
    app.footer(footer);
    auto const arguments = std::make_shared<AnalyseArguments>();
    app.add_option("FILE", arguments->files, "Games or positions; - is standard input");
    add_question_options(app, *arguments);
    add_output_options(app, *arguments);
    add_run_options(app, *arguments);
    app.callback([&app, arguments, &command] {
        if (app.get_subcommands().empty()) {
            command = [arguments] { return analyse_files(*arguments); };
        }
    });
}

}  // namespace orvelin::tools
