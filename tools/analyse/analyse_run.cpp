#include "analyse/analyse_run.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "analyse/duration_text.h"
#include "analyse/ordered_jobs.h"
#include "support/counted.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

/// Static evaluations are so quick that they are handed from thread to thread by the bundle.
constexpr std::size_t static_bundle = 64;
/// For each job so many tasks may wait for one that takes long.
constexpr std::uint64_t window = 64;

[[noreturn]] void refuse(std::string const& reason) {
    throw std::runtime_error("cannot resume: " + reason);
}

void compare_receipts(analyse::Receipt const& there, analyse::Receipt const& wanted) {
    if (there.version != wanted.version || there.signature != wanted.signature) {
        refuse("what is there was written by version " + there.version + ", signature " +
               there.signature);
    }
    if (there.limit != wanted.limit) {
        refuse("what is there has --limit " + there.limit);
    }
    if (there.lines != wanted.lines) {
        refuse("what is there has --lines " + std::to_string(there.lines));
    }
    if (there.played != wanted.played || there.rest != wanted.rest ||
        there.leaves != wanted.leaves) {
        refuse("what is there has other --moves or --no-leaves");
    }
}

}  // namespace

AnalyseRun::AnalyseRun(RunSettings settings, PositionSource& source, answerer_maker_t const& maker,
                       outputs_t& outputs, StopSignals const& signals)
    : settings_(std::move(settings)), source_(source), outputs_(outputs), signals_(signals) {
    look_at_outputs();
    for (std::size_t i = 0; i < settings_.jobs; ++i) {
        answerers_.push_back(maker());
    }
}

void AnalyseRun::look_at_outputs() {
    bool first = true;
    for (auto const& output : outputs_) {
        LastRecord const& last = output->last();
        done_before_ = first ? last.number : std::min(done_before_, last.number);
        last_done_ = std::max(last_done_, last.number);
        first = false;
        if (last.number == 0) {
            continue;
        }
        compare_receipts(last.receipt, settings_.request.receipt());
        if (!settings_.shard.takes(last.number)) {
            refuse("position " + std::to_string(last.number) +
                   ", which is there, is not of this shard");
        }
    }
}

void AnalyseRun::compare_with_outputs(Asked const& asked) const {
    for (auto const& output : outputs_) {
        LastRecord const& last = output->last();
        if (last.number == asked.number && last.fen != asked.fen) {
            refuse("position " + std::to_string(asked.number) + " of the input is " + asked.fen +
                   ", but what is there has " + last.fen);
        }
    }
}

std::optional<AnalyseRun::positions_t> AnalyseRun::take() {
    bool const bundled = settings_.request.limit.what == analyse::Limit::kind::static_eval;
    std::size_t const wanted = bundled ? static_bundle : 1;
    if (input_error_) {
        std::rethrow_exception(input_error_);
    }
    positions_t positions;
    Asked asked;
    try {
        while (positions.size() < wanted && (positions.empty() || source_.ready()) && next(asked)) {
            if (number_ > done_before_ && settings_.shard.takes(number_)) {
                positions.push_back(std::move(asked));
                asked = Asked();
            }
        }
    } catch (std::exception const&) {
        if (positions.empty()) {
            throw;
        }
        // Those before it are answered first.
        input_error_ = std::current_exception();
    }
    if (positions.empty()) {
        return std::nullopt;
    }
    return positions;
}

bool AnalyseRun::next(Asked& asked) {
    if (!source_.next(asked)) {
        if (number_ < last_done_ && !signals_.stopped()) {
            refuse("position " + std::to_string(last_done_) +
                   " is there, but the input ends with position " + std::to_string(number_));
        }
        return false;
    }
    asked.number = ++number_;
    if (number_ <= last_done_) {
        compare_with_outputs(asked);
    }
    return true;
}

std::optional<AnalyseRun::Answers> AnalyseRun::work(positions_t const& positions,
                                                    std::size_t worker) const {
    Answers answers;
    answers.texts.resize(outputs_.size());
    for (Asked const& asked : positions) {
        answers.answered.push_back(
            {answerers_[worker]->answer(asked, settings_.request), asked.game});
        if (interrupted_) {
            return std::nullopt;
        }
        for (std::size_t i = 0; i < outputs_.size(); ++i) {
            outputs_[i]->render(answers.answered.back().record, answers.texts[i]);
        }
    }
    return answers;
}

void AnalyseRun::hand_on(Answers const& answers) {
    for (std::size_t i = 0; i < outputs_.size(); ++i) {
        outputs_[i]->write(answers.answered, answers.texts[i]);
    }
    answered_ += answers.answered.size();
}

bool AnalyseRun::stop_wanted() {
    if (settings_.progress && answered_ > 0) {
        progress_.show(progress_text());
    }
    return signals_.stopped();
}

void AnalyseRun::interrupt() {
    interrupted_ = true;
    // A worker may wait for input.
    signals_.wake();
    for (auto const& answerer : answerers_) {
        answerer->interrupt();
    }
}

std::string AnalyseRun::progress_text() const {
    using seconds = std::chrono::duration<double>;
    double const elapsed = seconds(std::chrono::steady_clock::now() - start_).count();
    std::uint64_t const count = answered_;
    double const rate = static_cast<double>(count) / std::max(elapsed, 0.001);
    std::string text = counted(count, "position", "positions") + ", " + rate_text(rate);
    double const all = settings_.positions_in_all() - static_cast<double>(done_before_);
    double const left =
        all / static_cast<double>(settings_.shard.count) - static_cast<double>(count);
    if (left > 0) {
        text += ", " + duration_text(left / rate) + " left";
    }
    return text;
}

void AnalyseRun::run_jobs() {
    OrderedJobs<positions_t, Answers>::Work work;
    work.take = [this] { return take(); };
    work.work = [this](positions_t& positions, std::size_t worker) {
        return this->work(positions, worker);
    };
    work.hand_on = [this](Answers& answers) { hand_on(answers); };
    work.stop_wanted = [this] { return stop_wanted(); };
    work.interrupt = [this] { interrupt(); };
    OrderedJobs<positions_t, Answers>(std::move(work), settings_.jobs, window * settings_.jobs)
        .run();
}

int AnalyseRun::run() {
    start_ = std::chrono::steady_clock::now();
    try {
        run_jobs();
    } catch (std::exception const&) {
        progress_.clear();
        // What was answered before is worth keeping, and the first reason worth telling.
        try {
            for (auto const& output : outputs_) {
                output->finish();
            }
        } catch (std::exception const&) {
        }
        throw;
    }
    progress_.clear();
    for (auto const& output : outputs_) {
        output->finish();
    }
    return signals_.stopped() ? exit_stopped : exit_success;
}

}  // namespace orvelin::tools
