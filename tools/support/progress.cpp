#include "support/progress.h"

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
    return {false, 2000ms, 2000ms};
}

}  // namespace

Progress::Progress() : Progress(std::cerr, style_of_standard_error()) {}

Progress::Progress(std::ostream& out, progress_style_t style)
    : out_(out), style_(style), next_(clock::now() + style.delay) {}

Progress::~Progress() {
    clear();
}

void Progress::show(std::string const& text) {
    if (clock::now() < next_) {
        return;
    }
    next_ = clock::now() + style_.interval;
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
