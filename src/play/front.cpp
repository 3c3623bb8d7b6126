#include "play/front.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

#include "platform/single_thread.h"
#include "play/reader_text.h"

namespace orvelin::play {

namespace {

constexpr std::chrono::seconds report_interval{1};

/// As much of a text as fits into a remark.
std::string cut(std::string_view text) {
    constexpr std::size_t most = 40;
    return text.size() <= most ? std::string(text) : std::string(text.substr(0, most)) + "...";
}

}  // namespace

Front::Front(CommandQueue& queue, Output& output)
    : queue_(queue), output_(output), searcher_(output), hasher_(searcher_.tables()) {
    apply_book();
    if constexpr (single_thread) {
        set_interlude([this](std::optional<time_point> deadline) { attend(deadline); });
    }
}

Front::~Front() {
    if constexpr (single_thread) {
        set_interlude({});
    }
}

Front::command_t const* Front::find_command(std::string_view word) {
    static constexpr std::array<command_t, 17> commands{{
        {"uci", &Front::command_uci},
        {"isready", &Front::command_isready},
        {"ucinewgame", &Front::command_ucinewgame},
        {"setoption", &Front::command_setoption, true},
        {"position", &Front::command_position, true},
        {"go", &Front::command_go, true},
        {"stop", &Front::command_stop},
        {"ponderhit", &Front::command_ponderhit},
        {"debug", &Front::command_debug, true},
        {"register", &Front::command_register, true},
        {"d", &Front::command_display},
        {"eval", &Front::command_eval},
        {"flip", &Front::command_flip},
        {"bench", &Front::command_bench, true},
        {"perft", &Front::command_perft, true},
        {"help", &Front::command_help},
        {"?", &Front::command_help},
    }};
    auto const* const found =
        std::find_if(commands.begin(), commands.end(),
                     [word](command_t const& command) { return command.word == word; });
    return found == commands.end() ? nullptr : found;
}

void Front::run() {
    while (!quit_ && !output_.lost()) {
        std::optional<Command> const command = queue_.pop(next_look());
        if (command) {
            if (!act(*command)) {
                return;
            }
        } else if (queue_.ended()) {
            return;
        }
        look_at_search();
    }
}

bool Front::act_on_all() {
    while (std::optional<Command> const command = queue_.pop(time_point::min())) {
        if (!act(*command)) {
            break;
        }
    }
    return !quit_;
}

// Lines behind a stop wait for the end of the search. A count or benchmark takes no line, but is
// stopped by one that comes in.
void Front::attend(std::optional<time_point> deadline) {
    if (!searcher_.busy()) {
        queue_.fill();
        return;
    }
    if (!searcher_.stopping() && !quit_) {
        if (std::optional<time_point> const look = next_look()) {
            deadline = std::min(deadline.value_or(*look), *look);
        }
        std::optional<Command> const command = queue_.pop(deadline);
        if (command && !act(*command)) {
            searcher_.stop_at_once();
        }
    }
    look_at_search();
}

bool Front::act(Command const& command) {
    output_.log_input(command.line);
    if (!command.remark.empty()) {
        output_.remark(command.remark);
    }
    arrival_ = command.arrival;
    std::string_view const line = command.line;
    std::string_view const word = first_word(line);
    std::string_view const arguments =
        trimmed(line.substr(static_cast<std::size_t>(word.data() + word.size() - line.data())));
    if (word.empty()) {
        return true;
    }
    if (word == "quit") {
        quit_ = true;
        return false;
    }
    command_t const* const found = find_command(word);
    if (found == nullptr) {
        output_.remark("unknown command '" + cut(word) + "', help lists the known ones");
        return true;
    }
    if (!found->takes_words && !arguments.empty()) {
        output_.remark(std::string(word) + ": takes no words, " + shown(arguments) +
                       " is left out");
    }
    try {
        (this->*found->handler)(arguments);
    } catch (std::exception const& error) {
        output_.remark(cut(word) + ": " + error.what());
    }
    return true;
}

bool Front::refused_while_searching(std::string_view what) {
    // A GUI may send on behind its stop without waiting for the answer.
    if (!searcher_.busy() || searcher_.stopping()) {
        searcher_.wait_for_answer(patience);
        return false;
    }
    output_.remark(std::string(what) + " is ignored while a search runs, stop it first");
    return true;
}

void Front::remark(std::vector<std::string> const& lines) {
    for (std::string const& line : lines) {
        output_.remark(line);
    }
}

std::optional<Front::time_point> Front::next_look() const {
    if (!searcher_.busy()) {
        return std::nullopt;
    }
    time_point next = report_at_;
    if (stop_at_) {
        next = std::min(next, *stop_at_);
    }
    if (force_at_) {
        next = std::min(next, *force_at_);
    }
    return next;
}

void Front::look_at_search() {
    if (!searcher_.busy()) {
        return;
    }
    time_point const now = std::chrono::steady_clock::now();
    if (stop_at_ && now >= *stop_at_) {
        stop_at_.reset();
        force_at_ = now + patience;
        searcher_.stop();
    }
    if (force_at_ && now >= *force_at_) {
        force_at_.reset();
        searcher_.stop_at_once();
    }
    if (now >= report_at_) {
        report_at_ = now + report_interval;
        searcher_.tell_progress();
    }
}

void Front::plan_looks(TimePlan const& plan, time_point start) {
    stop_at_.reset();
    force_at_.reset();
    if (plan.limited) {
        stop_at_ = start + plan.maximum;
    }
    report_at_ = std::chrono::steady_clock::now() + report_interval;
}

}  // namespace orvelin::play
