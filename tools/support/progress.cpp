#include "support/progress.h"

#include <algorithm>
#include <iostream>

#include "platform/process.h"

namespace orvelin::tools {

namespace {

constexpr char const* clear_line = "\r\033[K";

progress_style_t style_of_standard_error() {
    using namespace std::chrono_literals;
    if (is_terminal(standard_error)) {
        return {true, 500ms, 100ms};
    }
    return {false, 2000ms, 2000ms, 5min};
}

}  // namespace

std::chrono::milliseconds progress_interval(progress_style_t const& style,
                                            std::chrono::milliseconds elapsed) {
    return std::max(style.interval, std::min(elapsed / 10, style.most_interval));
}

Progress::Progress() : Progress(std::cerr, style_of_standard_error()) {}

Progress::Progress(std::ostream& out, progress_style_t style)
    : out_(out), style_(style), start_(clock::now()), next_(start_ + style.delay) {}

Progress::~Progress() {
    clear();
}

void Progress::show(std::string const& text) {
    clock::time_point const now = clock::now();
    if (now < next_) {
        return;
    }
    using std::chrono::milliseconds;
    next_ = now + progress_interval(style_, std::chrono::duration_cast<milliseconds>(now - start_));
    if (style_.overwrite) {
        out_ << clear_line << text << std::flush;
        line_shown_ = true;
    } else {
        out_ << text << std::endl;
    }
}

void Progress::clear() {
    if (line_shown_) {
        out_ << clear_line << std::flush;
    }
    line_shown_ = false;
}

}  // namespace orvelin::tools
