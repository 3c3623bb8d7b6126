#include "protocol/communicator.h"

#include <chrono>
#include <utility>

#include "protocol/clock_id.h"

namespace orvelin {

Communicator::Communicator() : id_(clock_id(std::chrono::system_clock::now())) {}

void Communicator::to_engine(std::string line) {
    push(interface_to_engine_lock_, interface_to_engine_, std::move(line),
         "Communicator::to_engine       ");
}

std::string Communicator::from_interface() {
    return pop(interface_to_engine_lock_, interface_to_engine_, "Communicator::from_interface  ");
}

void Communicator::to_interface(std::string line) {
    push(engine_to_interface_lock_, engine_to_interface_, std::move(line),
         "Communicator::to_interface    ");
}

std::string Communicator::from_engine() {
    return pop(engine_to_interface_lock_, engine_to_interface_, "Communicator::from_engine     ");
}

void Communicator::clear() {
    {
        std::lock_guard<std::mutex> const guard(engine_to_interface_lock_);
        engine_to_interface_.clear();
    }
    std::lock_guard<std::mutex> const guard(interface_to_engine_lock_);
    interface_to_engine_.clear();
}

void Communicator::set_log(bool on) {
    log_enabled_ = on;
    if (on) {
        log_.open("comm_" + std::to_string(id_) + ".log");
    }
}

void Communicator::push(std::mutex& lock, queue_t& queue, std::string&& line, char const* prefix) {
    std::string const traced = log_enabled_ ? line : std::string();
    {
        std::lock_guard<std::mutex> const guard(lock);
        queue.push_back(std::move(line));
    }
    trace(prefix, traced);
}

std::string Communicator::pop(std::mutex& lock, queue_t& queue, char const* prefix) {
    std::string line;
    {
        std::lock_guard<std::mutex> const guard(lock);
        if (!queue.empty()) {
            line = std::move(queue.front());
            queue.pop_front();
        }
    }
    trace(prefix, line);
    return line;
}

void Communicator::trace(char const* prefix, std::string const& line) {
    if (log_enabled_ && !line.empty()) {
        log_ << prefix << line << std::endl;
    }
}

}  // namespace orvelin
