#include "analyse/analyse_outputs.h"

#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "analyse/csv_output.h"
#include "analyse/json_output.h"
#include "analyse/pgn_output.h"
#include "analyse/sqlite_output.h"
#include "platform/path.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

open_mode mode_of(OutputOptions const& options) {
    if (options.resume && options.overwrite) {
        throw UsageError("--resume and --overwrite exclude each other");
    }
    if (options.resume && !options.pgn.empty()) {
        throw UsageError(
            "--resume does not go with --pgn: begin the file anew with --overwrite; with --cache "
            "nothing is searched twice");
    }
    if (options.resume) {
        return open_mode::resume;
    }
    return options.overwrite ? open_mode::replace : open_mode::create;
}

void refuse_inputs(std::vector<std::string> const& names, std::vector<std::string> const& inputs) {
    for (std::string const& name : names) {
        for (std::string const& input : inputs) {
            std::error_code ignored;
            if (name != "-" && input != "-" &&
                std::filesystem::equivalent(path_of(name), path_of(input), ignored) &&
                std::filesystem::is_regular_file(path_of(name), ignored)) {
                throw UsageError(name + " is read, and cannot be written too");
            }
        }
    }
}

void refuse_two_of_a_place(std::vector<std::string> const& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t j = i + 1; j < names.size(); ++j) {
            if (!names[i].empty() && names[i] == names[j]) {
                throw UsageError("two kinds of output cannot both go to " + names[i]);
            }
        }
    }
}

}  // namespace

outputs_t open_outputs(OutputOptions const& options, std::vector<std::string> const& inputs,
                       Plies const& plies) {
    std::vector<std::string> const names = {options.jsonl, options.csv, options.sqlite,
                                            options.pgn};
    std::vector<std::string> written = names;
    written.push_back(options.cache);
    refuse_two_of_a_place(written);
    refuse_inputs(written, inputs);
    // The same file may have two names.
    refuse_inputs(names, {options.cache});
    if (options.sqlite == "-") {
        throw UsageError("--sqlite needs a file");
    }
    open_mode const mode = mode_of(options);
    std::string const jsonl = options.jsonl.empty() && options.csv.empty() &&
                                      options.sqlite.empty() && options.pgn.empty()
                                  ? "-"
                                  : options.jsonl;
    if (mode == open_mode::resume && (jsonl == "-" || options.csv == "-")) {
        throw UsageError("--resume needs files to go on with, not standard output");
    }
    outputs_t outputs;
    if (!jsonl.empty()) {
        outputs.push_back(std::make_unique<JsonOutput>(jsonl, mode));
    }
    if (!options.csv.empty()) {
        outputs.push_back(std::make_unique<CsvOutput>(options.csv, mode));
    }
    if (!options.sqlite.empty()) {
        outputs.push_back(std::make_unique<SqliteOutput>(options.sqlite, mode));
    }
    if (!options.pgn.empty()) {
        outputs.push_back(std::make_unique<PgnOutput>(options.pgn, mode, plies));
    }
    return outputs;
}

}  // namespace orvelin::tools
