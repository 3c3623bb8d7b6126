// Computes records again and compares them.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analyse/commands.h"
#include "analyse/jobs_option.h"
#include "analyse/line_input.h"
#include "analyse/ordered_jobs.h"
#include "analyse/record_reader.h"
#include "analyse/verification.h"
#include "platform/stop_signals.h"
#include "support/counted.h"
#include "support/progress.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

struct verify_arguments_t {
    std::string file;
    double percent = 100;
    std::size_t jobs = 1;
    bool quiet = false;
};

/// A record to verify.
struct line_t {
    std::string text;
    std::uint64_t number;
};

/// Found, or not, at the line.
struct verdict_t {
    std::uint64_t line;
    std::optional<std::string> difference;
};

/// What to add where a file of another kind of output is given.
char const* other_format_hint(std::string const& line) {
    bool const is_other = line.starts_with("number,") || line.starts_with("SQLite format 3") ||
                          line.starts_with("[Event ");
    return is_other ? "; only the files of --jsonl can be verified" : "";
}

/// Goes over a file until the first difference.
class VerifyRun {
 public:
    explicit VerifyRun(verify_arguments_t const& arguments)
        : arguments_(arguments), input_(arguments.file, signals_.flag()) {
        for (std::size_t i = 0; i < arguments.jobs; ++i) {
            workers_.push_back(std::make_unique<Verification>(make_engine_answerer()));
        }
    }

    int run();

 private:
    std::optional<line_t> take();
    std::optional<verdict_t> work(line_t const& line, std::size_t worker);
    void hand_on(verdict_t const& verdict);
    bool stop_wanted();
    void interrupt();

    verify_arguments_t arguments_;
    StopSignals signals_;
    LineInput input_;
    std::vector<std::unique_ptr<Verification>> workers_;
    std::atomic<bool> interrupted_ = false;
    std::atomic<bool> different_ = false;
    std::uint64_t records_ = 0;
    std::atomic<std::uint64_t> verified_ = 0;
    Progress progress_;
};

std::optional<line_t> VerifyRun::take() {
    line_t line;
    while (input_.next(line.text)) {
        ++records_;
        // Something is looked at however small the sample is.
        if (records_ == 1 || in_sample(records_, arguments_.percent / 100)) {
            line.number = input_.number();
            return line;
        }
    }
    return std::nullopt;
}

std::optional<verdict_t> VerifyRun::work(line_t const& line, std::size_t worker) {
    verdict_t verdict{line.number, std::nullopt};
    try {
        verdict.difference = workers_[worker]->difference(line.text);
    } catch (RecordError const& error) {
        throw RecordError(arguments_.file + ": line " + std::to_string(line.number) + ": " +
                          error.what() + other_format_hint(line.text));
    }
    if (interrupted_) {
        return std::nullopt;
    }
    return verdict;
}

void VerifyRun::hand_on(verdict_t const& verdict) {
    if (different_) {
        return;
    }
    ++verified_;
    if (verdict.difference) {
        different_ = true;
        progress_.clear();
        std::cout << arguments_.file << ": line " << verdict.line << ": " << *verdict.difference
                  << '\n';
    }
}

bool VerifyRun::stop_wanted() {
    if (!different_ && !arguments_.quiet) {
        progress_.show(counted(verified_.load(), "record", "records") + " verified");
    }
    return signals_.stopped() || different_;
}

void VerifyRun::interrupt() {
    interrupted_ = true;
    signals_.wake();
    for (auto const& worker : workers_) {
        worker->interrupt();
    }
}

int VerifyRun::run() {
    OrderedJobs<line_t, verdict_t>::Work work;
    work.take = [this] { return take(); };
    work.work = [this](line_t& line, std::size_t worker) { return this->work(line, worker); };
    work.hand_on = [this](verdict_t& verdict) { hand_on(verdict); };
    work.stop_wanted = [this] { return stop_wanted(); };
    work.interrupt = [this] { interrupt(); };
    OrderedJobs<line_t, verdict_t>(std::move(work), arguments_.jobs, 64 * arguments_.jobs).run();
    progress_.clear();
    if (different_) {
        return exit_failure;
    }
    if (signals_.stopped()) {
        return exit_stopped;
    }
    if (records_ == 0) {
        throw std::runtime_error(arguments_.file + ": no record");
    }
    std::cout << counted(verified_.load(), "record", "records") << " of " << records_
              << " computed again, no difference\n";
    return exit_success;
}

}  // namespace

void add_verify_records_command(CLI::App& app, command_t& command) {
    CLI::App* const verify =
        app.add_subcommand("verify", "Computes the records of a file again and compares them");
    verify->footer(
        "Each record is computed again from what its receipt says and compared to the last bit. "
        "The\nfirst difference is printed, and the exit code is 1. Records of another version, "
        "schema or\nsearch signature are refused.");
    auto const arguments = std::make_shared<verify_arguments_t>();
    verify->add_option("FILE", arguments->file, "Records as lines of JSON; - is standard input")
        ->required();
    verify->add_option("--sample", arguments->percent, "Verify this share of them, as 1%")
        ->option_text("PERCENT")
        ->transform([](std::string text) {
            if (text.ends_with('%')) {
                text.pop_back();
            }
            return text;
        })
        ->check(CLI::Range(0.0, 100.0))
        ->check([](std::string const& text) {
            bool const is_some = std::strtod(text.c_str(), nullptr) > 0;
            return is_some ? "" : std::string("a sample of nothing verifies nothing");
        });
    add_jobs_option(*verify, arguments->jobs);
    verify->add_flag("--quiet", arguments->quiet, "Tell no progress");
    verify->callback(
        [arguments, &command] { command = [arguments] { return VerifyRun(*arguments).run(); }; });
}

}  // namespace orvelin::tools
