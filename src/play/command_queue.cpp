#include "play/command_queue.h"

#include <algorithm>
#include <utility>

#include "play/reader_text.h"

namespace orvelin::play {

namespace {

std::size_t bytes_of(Command const& command) {
    return sizeof command + command.line.size() + command.remark.size();
}

bool is_stop(Command const& command) {
    return first_word(command.line) == "stop";
}

}  // namespace

CommandQueue::CommandQueue(std::size_t most) : most_(most) {}

void CommandQueue::push(Command command) {
    {
        std::lock_guard const lock(mutex_);
        waiting_ += bytes_of(command);
        commands_.push_back(std::move(command));
        quit_ = quit_ || first_word(commands_.back().line) == "quit";
        if (on_stop_ && is_stop(commands_.back())) {
            on_stop_();
        }
    }
    changed_.notify_one();
}

void CommandQueue::end() {
    {
        std::lock_guard const lock(mutex_);
        end_ = true;
    }
    changed_.notify_one();
}

bool CommandQueue::full() const {
    std::lock_guard const lock(mutex_);
    return is_full();
}

bool CommandQueue::ending() const {
    std::lock_guard const lock(mutex_);
    return end_ || quit_;
}

std::optional<Command> CommandQueue::pop(
    std::optional<std::chrono::steady_clock::time_point> deadline) {
    if (fill_) {
        bool const none = [this] {
            std::lock_guard const lock(mutex_);
            return commands_.empty();
        }();
        if (none) {
            fill_(deadline);
        }
    }
    std::unique_lock lock(mutex_);
    auto const ready = [this] { return end_ || !commands_.empty(); };
    if (!deadline) {
        changed_.wait(lock, ready);
    } else if (!fill_) {
        changed_.wait_until(lock, *deadline, ready);
    }
    if (commands_.empty()) {
        return std::nullopt;
    }
    Command command = std::move(commands_.front());
    commands_.pop_front();
    bool const was_full = is_full();
    waiting_ -= bytes_of(command);
    if (was_full && !is_full()) {
        room_.set();
    }
    return command;
}

void CommandQueue::fill() {
    if (fill_) {
        fill_(std::chrono::steady_clock::time_point::min());
    }
}

bool CommandQueue::ended() const {
    std::lock_guard const lock(mutex_);
    return end_ && commands_.empty();
}

void CommandQueue::on_stop(std::function<void()> call) {
    std::lock_guard const lock(mutex_);
    on_stop_ = std::move(call);
    if (on_stop_ && std::any_of(commands_.begin(), commands_.end(), is_stop)) {
        on_stop_();
    }
}

}  // namespace orvelin::play
