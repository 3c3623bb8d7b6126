#include "play/line_buffer.h"

#include <chrono>
#include <utility>

#include "play/reader_text.h"

namespace orvelin::play {

void LineBuffer::take(std::string_view bytes) {
    for (char const byte : bytes) {
        if (byte == '\n') {
            finish_line();
        } else if (line_.size() == longest_) {
            too_long_ = true;
        } else if (byte == '\0') {
            had_nul_ = true;
            line_ += ' ';
        } else {
            line_ += byte;
        }
    }
}

void LineBuffer::end() {
    finish_line();
    queue_.end();
}

void LineBuffer::finish_line() {
    if (first_ && line_.starts_with(byte_order_mark)) {
        line_.erase(0, byte_order_mark.size());
    }
    first_ = false;
    Command command{std::exchange(line_, {}), std::chrono::steady_clock::now()};
    if (too_long_) {
        command.remark =
            "a line of more than " + std::to_string(longest_) + " characters is ignored";
        command.line.clear();
    } else if (had_nul_) {
        command.remark = "NUL characters in a line are taken for blanks";
    }
    if (!command.line.empty() && command.line.back() == '\r') {
        command.line.pop_back();
    }
    if (!command.line.empty() || !command.remark.empty()) {
        queue_.push(std::move(command));
    }
    too_long_ = false;
    had_nul_ = false;
}

}  // namespace orvelin::play
