#include "support/engine_process.h"

#include <cerrno>
#include <unistd.h>

#include "support/test_config.h"

namespace orvelin::test {

EngineProcess::EngineProcess(std::string const& binary) : EngineProcess(binary, {}) {}

EngineProcess::EngineProcess() : EngineProcess(engine_binary) {}

EngineProcess::EngineProcess(std::string const& binary, std::filesystem::path const& directory)
    : child_({binary, {}, directory}),
      output_reader_([this] { collect_output(); }),
      error_reader_([this] { collect_errors(); }) {}

EngineProcess::~EngineProcess() {
    close_input();
    child_.kill();
    join_readers();
}

void EngineProcess::collect_output() {
    read_buffer_t buffer;
    while (std::size_t const count = read_some(child_.output(), buffer)) {
        clock::time_point const now = clock::now();
        std::lock_guard<std::mutex> const guard(mutex_);
        for (std::size_t i = 0; i < count; ++i) {
            if (buffer[i] == '\n') {
                lines_.push_back({unfinished_, now});
                unfinished_.clear();
            } else {
                unfinished_ += buffer[i];
            }
        }
        arrival_.notify_all();
    }
    std::lock_guard<std::mutex> const guard(mutex_);
    output_ended_ = true;
    arrival_.notify_all();
}

void EngineProcess::collect_errors() {
    read_buffer_t buffer;
    while (std::size_t const count = read_some(child_.errors(), buffer)) {
        std::lock_guard<std::mutex> const guard(mutex_);
        errors_.append(buffer.data(), count);
    }
}

void EngineProcess::join_readers() {
    if (output_reader_.joinable()) {
        output_reader_.join();
    }
    if (error_reader_.joinable()) {
        error_reader_.join();
    }
}

void EngineProcess::send_all(std::vector<std::string> const& lines) {
    std::string text;
    for (std::string const& line : lines) {
        text += line + "\n";
    }
    write(text);
}

void EngineProcess::write(std::string const& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        ssize_t const count = ::write(child_.input(), text.data() + done, text.size() - done);
        if (count < 0 && errno != EINTR) {
            return;
        }
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        }
    }
}

std::optional<EngineProcess::timed_line_t> EngineProcess::read_line(milliseconds timeout) {
    std::unique_lock<std::mutex> lock(mutex_);
    arrival_.wait_until(lock, clock::now() + timeout,
                        [this] { return !lines_.empty() || output_ended_; });
    if (lines_.empty()) {
        return std::nullopt;
    }
    timed_line_t line = lines_.front();
    lines_.pop_front();
    return line;
}

std::vector<EngineProcess::timed_line_t> EngineProcess::read_until(std::string_view start,
                                                                   milliseconds timeout) {
    clock::time_point const deadline = clock::now() + timeout;
    std::vector<timed_line_t> lines;
    while (std::optional<timed_line_t> const line =
               read_line(std::chrono::duration_cast<milliseconds>(deadline - clock::now()))) {
        lines.push_back(*line);
        if (line->text.starts_with(start)) {
            break;
        }
    }
    return lines;
}

std::string EngineProcess::find(std::string_view start, milliseconds timeout) {
    std::vector<timed_line_t> const lines = read_until(start, timeout);
    if (lines.empty() || !lines.back().text.starts_with(start)) {
        return "";
    }
    return lines.back().text;
}

std::vector<EngineProcess::timed_line_t> EngineProcess::read_for(milliseconds time) {
    std::this_thread::sleep_for(time);
    std::lock_guard<std::mutex> const guard(mutex_);
    std::vector<timed_line_t> lines(lines_.begin(), lines_.end());
    lines_.clear();
    return lines;
}

std::string EngineProcess::unfinished_line() {
    std::lock_guard<std::mutex> const guard(mutex_);
    return unfinished_;
}

std::optional<process_end_t> EngineProcess::wait(milliseconds timeout) {
    std::optional<process_end_t> const end = child_.wait(timeout);
    if (end) {
        join_readers();
    }
    return end;
}

std::vector<std::string> EngineProcess::rest() {
    std::lock_guard<std::mutex> const guard(mutex_);
    std::vector<std::string> texts;
    for (timed_line_t const& line : lines_) {
        texts.push_back(line.text);
    }
    lines_.clear();
    return texts;
}

std::string EngineProcess::error_text() {
    std::lock_guard<std::mutex> const guard(mutex_);
    return errors_;
}

}  // namespace orvelin::test
