#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analyse/answerer.h"
#include "analyse/position_source.h"
#include "analyse/record_output.h"
#include "platform/stop_signals.h"
#include "support/progress.h"

namespace orvelin::tools {

using outputs_t = std::vector<std::unique_ptr<RecordOutput>>;

/// How a run is to go.
struct RunSettings {
    Request request;
    Shard shard;
    std::size_t jobs = 1;
    bool progress = true;
    /// How many positions the input has, as far as that is known; negative when nobody knows.
    std::function<double()> positions_in_all = [] { return -1.0; };
};

/// Answers for the positions of a source in several threads, and gives the records to the outputs
/// in the order of the input. What is held in memory has a bound, however long the input is.
///
/// What the outputs hold from an earlier run is not answered again.
class AnalyseRun {
 public:
    /// All must outlive the run.
    /// @throws std::runtime_error when an output is of another run.
    AnalyseRun(RunSettings settings, PositionSource& source, answerer_maker_t const& maker,
               outputs_t& outputs, StopSignals const& signals);

    /// Gives the exit code. After a signal, what was answered in order is written.
    /// @throws std::runtime_error when something cannot be read or written.
    int run();

    /// Positions that the source gave, those of other shards and earlier runs too.
    std::uint64_t positions() const { return number_; }
    /// Those that were answered and written.
    std::uint64_t answered() const { return answered_; }

 private:
    using positions_t = std::vector<Asked>;
    struct Answers {
        std::vector<Answered> answered;
        /// One for each output.
        std::vector<std::string> texts;
    };

    void look_at_outputs();
    std::optional<positions_t> take();
    bool next(Asked& asked);
    void compare_with_outputs(Asked const& asked) const;
    std::optional<Answers> work(positions_t const& positions, std::size_t worker) const;
    void hand_on(Answers const& answers);
    bool stop_wanted();
    void interrupt();
    void run_jobs();
    std::string progress_text() const;

    RunSettings settings_;
    PositionSource& source_;
    outputs_t& outputs_;
    StopSignals const& signals_;
    std::vector<std::unique_ptr<Answerer>> answerers_;
    /// All positions up to this one are in all outputs.
    std::uint64_t done_before_ = 0;
    /// The last position that an output holds.
    std::uint64_t last_done_ = 0;
    std::uint64_t number_ = 0;
    /// Found behind positions that were taken.
    std::exception_ptr input_error_;
    std::atomic<std::uint64_t> answered_ = 0;
    std::atomic<bool> interrupted_ = false;
    Progress progress_;
    std::chrono::steady_clock::time_point start_;
};

}  // namespace orvelin::tools
