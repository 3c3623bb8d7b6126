#pragma once

#include <deque>
#include <fstream>
#include <mutex>
#include <string>

namespace orvelin {

/// A pair of locked line queues between two threads, one for each direction.
///
/// What `to_engine` pushes `from_interface` pops, and what `to_interface` pushes `from_engine`
/// pops, first in, first out. A read never blocks: an empty string is the only sign of an empty
/// queue, so an empty string can never be a message. The queue operations may be called from any
/// thread; the two locks are never held together, so there is no lock order to keep. `set_id` and
/// `set_log` belong before the threads start; the trace file is written after the lock has been
/// released and is meant for one thread at a time.
class Communicator {
 public:
    /// Empty queues, trace off, id from the low 9 bits of the system clock.
    Communicator();

    /// Appends `line` to the interface-to-engine queue.
    void to_engine(std::string line);
    /// Removes and returns the oldest line for the engine; empty when there is none.
    std::string from_interface();

    /// Appends `line` to the engine-to-interface queue.
    void to_interface(std::string line);
    /// Removes and returns the oldest line for the GUI; empty when there is none.
    std::string from_engine();

    /// Empties both queues, one after the other.
    void clear();

    void lock_interface_to_engine() { interface_to_engine_lock_.lock(); }
    void unlock_interface_to_engine() { interface_to_engine_lock_.unlock(); }
    void lock_engine_to_interface() { engine_to_interface_lock_.lock(); }
    void unlock_engine_to_interface() { engine_to_interface_lock_.unlock(); }

    void set_id(int id) { id_ = id; }
    /// The number in the name of the trace file, 0 to 511 at construction.
    int id() const { return id_; }

    /// Switches the trace. On opens "comm_<id>.log" in the working directory; a file that cannot
    /// be opened leaves the stream failed and is not reported. Off stops the lines only.
    void set_log(bool on);

 private:
    using queue_t = std::deque<std::string>;

    void push(std::mutex& lock, queue_t& queue, std::string&& line, char const* prefix);
    std::string pop(std::mutex& lock, queue_t& queue, char const* prefix);
    void trace(char const* prefix, std::string const& line);

    int id_;
    bool log_enabled_ = false;
    std::ofstream log_;
    std::mutex interface_to_engine_lock_;
    std::mutex engine_to_interface_lock_;
    queue_t interface_to_engine_;
    queue_t engine_to_interface_;
};

}  // namespace orvelin
