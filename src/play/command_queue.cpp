#include "play/command_queue.h"

#include <utility>

namespace orvelin::play {

void CommandQueue::push(Command command) {
    {
        std::lock_guard const lock(mutex_);
        commands_.push_back(std::move(command));
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

std::optional<Command> CommandQueue::pop(
    std::optional<std::chrono::steady_clock::time_point> deadline) {
    std::unique_lock lock(mutex_);
    auto const ready = [this] { return end_ || !commands_.empty(); };
    if (deadline) {
        changed_.wait_until(lock, *deadline, ready);
    } else {
        changed_.wait(lock, ready);
    }
    if (commands_.empty()) {
        return std::nullopt;
    }
    Command command = std::move(commands_.front());
    commands_.pop_front();
    return command;
}

bool CommandQueue::ended() const {
    std::lock_guard const lock(mutex_);
    return end_ && commands_.empty();
}

}  // namespace orvelin::play
