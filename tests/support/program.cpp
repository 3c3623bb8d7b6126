#include "support/program.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <unistd.h>

namespace orvelin::test {

namespace {

using std::chrono::steady_clock;

milliseconds time_left(steady_clock::time_point deadline) {
    auto const left = std::chrono::duration_cast<milliseconds>(deadline - steady_clock::now());
    return std::max(left, milliseconds(0));
}

/// Writes what the pipe takes and closes it behind the last byte.
void write_some(ChildProcess& child, std::string_view& input) {
    if (!input.empty()) {
        ssize_t const count = ::write(child.input(), input.data(), input.size());
        // The pipe is writable, so a failure is a reader that is gone.
        input.remove_prefix(count < 0 ? input.size() : static_cast<std::size_t>(count));
    }
    if (input.empty()) {
        child.close_input();
    }
}

/// Appends what the pipe holds; false at its end.
bool append_some(int descriptor, std::string& text) {
    read_buffer_t buffer;
    std::size_t const count = read_some(descriptor, buffer);
    text.append(buffer.data(), count);
    return count > 0;
}

/// Feeds the input and collects both outputs until the child has closed them; false when that
/// takes too long.
bool exchange_texts(ChildProcess& child, std::string_view input, steady_clock::time_point deadline,
                    program_result_t& result) {
    fcntl(child.input(), F_SETFL, O_NONBLOCK);
    int output = child.output();
    int errors = child.errors();
    while (output >= 0 || errors >= 0) {
        // The system skips an entry with a negative descriptor.
        std::array<pollfd, 3> waiting{
            {{child.input(), POLLOUT, 0}, {output, POLLIN, 0}, {errors, POLLIN, 0}}};
        if (poll(waiting.data(), waiting.size(), static_cast<int>(time_left(deadline).count())) <=
            0) {
            return false;
        }
        if (waiting[0].revents != 0) {
            write_some(child, input);
        }
        if (waiting[1].revents != 0 && !append_some(output, result.output)) {
            output = -1;
        }
        if (waiting[2].revents != 0 && !append_some(errors, result.errors)) {
            errors = -1;
        }
    }
    return true;
}

}  // namespace

program_result_t run_program(std::string const& binary, std::vector<std::string> const& arguments,
                             program_options_t const& options) {
    steady_clock::time_point const deadline = steady_clock::now() + options.timeout;
    ChildProcess child({binary, arguments, options.directory});
    program_result_t result;
    bool const collected = exchange_texts(child, options.input, deadline, result);
    std::optional<process_end_t> end;
    if (collected) {
        end = child.wait(time_left(deadline));
    }
    if (!end) {
        throw std::runtime_error(binary + " did not end in time: " + result.errors);
    }
    result.status = end->status;
    result.signal = end->signal;
    return result;
}

}  // namespace orvelin::test
