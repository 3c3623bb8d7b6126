#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/byte_output.h"

namespace orvelin::play {

/// The way out: every line is written whole and at once, whichever thread it comes from.
///
/// One lock for output and log, so that the log has the lines in the order in which they went out.
/// When the reader is gone the lines are dropped; the input thread finds that out and ends the
/// process. What cannot be written for another reason is dropped too, and the process is to end
/// with its next command.
class Output {
 public:
    /// Writes to a file descriptor, which stays open.
    explicit Output(int descriptor) : output_(descriptor) {}

    /// One line, without its end.
    void line(std::string_view text);
    /// An `info string` line. Characters that would end it or harm a terminal become blanks.
    void remark(std::string_view text);
    /// Several lines at once, each with its end.
    void text(std::string_view lines);

    int descriptor() const { return output_.descriptor(); }
    /// Whether a line has been waiting for so long for somebody to read what is out already.
    bool stuck_for(std::chrono::milliseconds time) const;

    /// Something could not be written.
    bool lost() const { return lost_; }

    /// Writes all lines that come (`>`) and go (`<`) to this file too; an empty name ends that.
    /// False when the file cannot be opened, or is a pipe, which would wait for its reader.
    bool set_log(std::string const& name);
    /// A line that came in, for the log.
    void log_input(std::string_view text);

 private:
    void write(std::string_view bytes);

    ByteOutput output_;
    /// Since when nothing has been taken of the text that is written, as a time of the steady
    /// clock; 0 when none is.
    std::atomic<std::int64_t> waiting_since_{0};
    std::atomic<bool> lost_{false};
    std::mutex mutex_;
    std::ofstream log_;
};

}  // namespace orvelin::play
