#include <fcntl.h>
#include <unistd.h>

#include "platform/process.h"

namespace orvelin {

void prepare_process() {}

// A signal comes before the end of the input.
void outlast_interruption(int) {}

std::vector<std::string> command_line(int number, char const* const* words) {
    return {words, words + number};
}

bool is_open(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

bool is_terminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

int process_id() {
    return ::getpid();
}

}  // namespace orvelin
