// The analysis itself.

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "analyse/analyse_run.h"
#include "analyse/answer_cache.h"
#include "analyse/commands.h"
#include "analyse/csv_output.h"
#include "analyse/jobs_option.h"
#include "analyse/json_output.h"
#include "analyse/position_files.h"
#include "analyse/sqlite_output.h"
#include "analyse/stop_signals.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

struct arguments_t {
    std::vector<std::string> files;
    std::string limit = "depth=10";
    int lines = 1;
    std::string plies = "0-";
    std::string moves = "best";
    bool no_leaves = false;
    bool chess960 = false;
    std::string jsonl;
    std::string csv;
    std::string sqlite;
    bool resume = false;
    bool overwrite = false;
    std::string shard = "1/1";
    std::size_t jobs = 1;
    std::string cache;
    bool quiet = false;
};

analyse::Limit limit_of(std::string const& text) {
    auto const limit = analyse::parse_limit(text);
    if (!limit) {
        throw UsageError("--limit is static, depth=N with N from 1 to 100, or nodes=N, not " +
                         text);
    }
    return *limit;
}

bool played_wanted(std::string const& moves) {
    if (moves == "best,played" || moves == "played,best") {
        return true;
    }
    if (moves != "best") {
        throw UsageError("--moves is best or best,played, not " + moves);
    }
    return false;
}

Plies plies_of(std::string const& text) {
    auto const plies = parse_plies(text);
    if (!plies) {
        throw UsageError("--plies is FROM-TO, as in 20-60, 20- or -60, not " + text);
    }
    return *plies;
}

Shard shard_of(std::string const& text) {
    auto const shard = parse_shard(text);
    if (!shard) {
        throw UsageError("--shard is I/N with I from 1 to N, not " + text);
    }
    return *shard;
}

open_mode mode_of(arguments_t const& arguments) {
    if (arguments.resume && arguments.overwrite) {
        throw UsageError("--resume and --overwrite exclude each other");
    }
    if (arguments.resume) {
        return open_mode::resume;
    }
    return arguments.overwrite ? open_mode::replace : open_mode::create;
}

void refuse_two_of_a_place(arguments_t const& arguments) {
    std::vector<std::string> const names = {arguments.jsonl, arguments.csv, arguments.sqlite};
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t j = i + 1; j < names.size(); ++j) {
            if (!names[i].empty() && names[i] == names[j]) {
                throw UsageError("two kinds of output cannot both go to " + names[i]);
            }
        }
    }
    if (arguments.sqlite == "-") {
        throw UsageError("--sqlite needs a file");
    }
}

outputs_t open_outputs(arguments_t const& arguments) {
    refuse_two_of_a_place(arguments);
    open_mode const mode = mode_of(arguments);
    std::string const jsonl =
        arguments.jsonl.empty() && arguments.csv.empty() && arguments.sqlite.empty()
            ? "-"
            : arguments.jsonl;
    if (mode == open_mode::resume && (jsonl == "-" || arguments.csv == "-")) {
        throw UsageError("--resume needs files to go on with, not standard output");
    }
    outputs_t outputs;
    if (!jsonl.empty()) {
        outputs.push_back(std::make_unique<JsonOutput>(jsonl, mode));
    }
    if (!arguments.csv.empty()) {
        outputs.push_back(std::make_unique<CsvOutput>(arguments.csv, mode));
    }
    if (!arguments.sqlite.empty()) {
        outputs.push_back(std::make_unique<SqliteOutput>(arguments.sqlite, mode));
    }
    return outputs;
}

/// Looking an answer up takes longer than a static evaluation.
std::unique_ptr<AnswerCache> open_cache(arguments_t const& arguments, analyse::Limit const& limit) {
    if (arguments.cache.empty() || limit.what == analyse::Limit::kind::static_eval) {
        return nullptr;
    }
    return std::make_unique<AnswerCache>(arguments.cache);
}

int analyse_files(arguments_t const& arguments) {
    Request const request{limit_of(arguments.limit), arguments.lines, !arguments.no_leaves,
                          played_wanted(arguments.moves)};
    PositionFiles::Settings input_settings{arguments.files, plies_of(arguments.plies),
                                           arguments.chess960};
    if (input_settings.names.empty()) {
        input_settings.names = {"-"};
    }
    Shard const shard = shard_of(arguments.shard);

    StopSignals const signals;
    PositionFiles input(input_settings, signals.descriptor(), [](std::string const& remark) {
        std::cerr << "orvelin-analyse: " + remark + '\n';
    });
    outputs_t outputs = open_outputs(arguments);
    std::unique_ptr<AnswerCache> const cache = open_cache(arguments, request.limit);
    RunSettings settings;
    settings.request = request;
    settings.shard = shard;
    settings.jobs = arguments.jobs;
    settings.progress = !arguments.quiet;
    settings.input_read = [&input] { return input.read_share(); };
    auto const maker = [&cache] {
        auto answerer = make_engine_answerer();
        return cache ? make_cached_answerer(*cache, std::move(answerer)) : std::move(answerer);
    };
    AnalyseRun run(std::move(settings), input, maker, outputs, signals);
    int const code = run.run();
    if (code == exit_success && run.positions() == 0 && input.broken() > 0) {
        throw std::runtime_error("nothing of the input could be read");
    }
    return code;
}

constexpr char const* footer =
    "Games are read as PGN, positions as EPD or FEN, a line each; what a file holds is seen from "
    "its\nfirst line. A game or line that cannot be read is told and left out. Without an output "
    "option\nthe records go to standard output as lines of JSON. docs/analyse.md tells what stands "
    "in them.\n"
    "Exit code 0 for success, 1 for a failure, 2 for bad usage, 130 after Ctrl-C.";

void add_question_options(CLI::App& app, arguments_t& arguments) {
    constexpr int most_lines = 256;
    app.add_option("--limit", arguments.limit,
                   "How far each position is looked into: static, depth=N or nodes=N; depth=10")
        ->option_text("LIMIT");
    app.add_option("--lines", arguments.lines, "So many best lines of each position; 1")
        ->option_text("K")
        ->check(CLI::Range(1, most_lines));
    app.add_option("--plies", arguments.plies,
                   "Of games only the positions behind so many half-moves; all")
        ->option_text("FROM-TO");
    app.add_option("--moves", arguments.moves,
                   "best, or best,played to search the move that was played by itself; best")
        ->option_text("WHICH");
    app.add_flag("--no-leaves", arguments.no_leaves,
                 "Do not look for the positions whose evaluation the scores are");
    app.add_flag("--chess960", arguments.chess960, "Positions without a game are of Chess960");
}

void add_output_options(CLI::App& app, arguments_t& arguments) {
    app.add_option("--jsonl", arguments.jsonl, "Write lines of JSON; - is standard output")
        ->option_text("FILE");
    app.add_option("--csv", arguments.csv, "Write CSV; - is standard output")->option_text("FILE");
    app.add_option("--sqlite", arguments.sqlite, "Write the tables of an SQLite file")
        ->option_text("FILE");
    app.add_flag("--resume", arguments.resume,
                 "Go on with what is in the output files; what they hold is not done again");
    app.add_flag("--overwrite", arguments.overwrite, "Begin output files that are there anew");
}

void add_run_options(CLI::App& app, arguments_t& arguments) {
    app.add_option("--shard", arguments.shard,
                   "Of N machines this is machine I; merge puts the "
                   "records back in order")
        ->option_text("I/N");
    add_jobs_option(app, arguments.jobs);
    app.add_option("--cache", arguments.cache,
                   "Take answers from this file, and keep new ones there")
        ->option_text("FILE");
    app.add_flag("--quiet", arguments.quiet, "Tell no progress");
}

}  // namespace

void add_analyse_command(CLI::App& app, command_t& command) {
    app.footer(footer);
    auto const arguments = std::make_shared<arguments_t>();
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
