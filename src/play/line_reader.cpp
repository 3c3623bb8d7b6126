#include "play/line_reader.h"

#include <array>
#include <cstdlib>
#include <optional>

namespace orvelin::play {

LineReader::LineReader(int input, Output const& output, CommandQueue& queue)
    : watch_(input, output.descriptor(), queue.room()),
      output_(output),
      queue_(queue),
      lines_(queue) {}

void LineReader::operator()() {
    for (;;) {
        bool const ending = queue_.ending() || state_ != input_t::open;
        look(ending ? std::optional<std::chrono::milliseconds>(look_interval) : std::nullopt);
    }
}

void LineReader::look_until(std::optional<std::chrono::steady_clock::time_point> deadline) {
    using std::chrono::milliseconds;
    if (!deadline) {
        look(std::nullopt);
        return;
    }
    auto const now = std::chrono::steady_clock::now();
    look(*deadline <= now ? milliseconds(0) : std::chrono::ceil<milliseconds>(*deadline - now));
}

// Behind its end only signals and the output are waited for.
void LineReader::look(std::optional<std::chrono::milliseconds> most) {
    using wanted_t = InputWatch::wanted_t;
    bool const full = queue_.full();
    bool const ignored = state_ == input_t::ended || (full && state_ == input_t::hung_up);
    bool const ending = queue_.ending() || state_ != input_t::open;
    InputWatch::seen_t const seen =
        watch_.wait(ignored ? wanted_t::nothing : (full ? wanted_t::loss : wanted_t::bytes), most);
    if (seen.signal != 0) {
        end_process(128 + seen.signal);
    }
    if (seen.output_lost || (ending && output_.stuck_for(patience))) {
        end_process(1);
    }
    if (seen.flag) {
        queue_.take_room();
    }
    if (!seen.input) {
        return;
    }
    if (full) {
        state_ = input_t::hung_up;
    } else {
        read();
    }
}

void LineReader::read() {
    std::array<char, 1 << 16> buffer;
    std::optional<std::size_t> const number = watch_.read(buffer.data(), buffer.size());
    if (!number) {
        return;
    }
    if (*number > 0) {
        lines_.take({buffer.data(), *number});
    } else {
        lines_.end();
        state_ = input_t::ended;
    }
}

// Nothing is kept beyond the lines that are written already, so there is nothing to wait for.
void LineReader::end_process(int status) {
    std::_Exit(status);
}

}  // namespace orvelin::play
