#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

namespace orvelin::tools {

/// How and when Progress shows something.
struct progress_style_t {
    /// Each text overwrites the one before, as a terminal can; else each is a line.
    bool overwrite;
    /// Nothing is shown before this time is over.
    std::chrono::milliseconds delay;
    /// Least time between two texts.
    std::chrono::milliseconds interval;
    /// When longer than that, the time between two texts grows to this: a tenth of the time that is
    /// over, so that the log of a run of days can be read.
    std::chrono::milliseconds most_interval{0};
};

/// The time from a text to the next.
std::chrono::milliseconds progress_interval(progress_style_t const& style,
                                            std::chrono::milliseconds elapsed);

/// Tells on standard error how far a long operation is. What is done quickly tells nothing.
class Progress {
 public:
    /// On standard error, in the style that suits it.
    Progress();
    Progress(std::ostream& out, progress_style_t style);
    /// Clears the line of a terminal.
    ~Progress();
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    /// Shows the text if it is time to. A text on a terminal should be short.
    void show(std::string const& text);
    /// Clears the line of a terminal, so that other output can follow; show() may go on.
    void clear();

 private:
    using clock = std::chrono::steady_clock;

    std::ostream& out_;
    progress_style_t style_;
    clock::time_point start_;
    clock::time_point next_;
    bool line_shown_ = false;
};

}  // namespace orvelin::tools
