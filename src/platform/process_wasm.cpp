#include "platform/process.h"

namespace orvelin {

void prepare_process() {}

void outlast_interruption(int) {}

std::vector<std::string> command_line(int number, char const* const* words) {
    return {words, words + number};
}

bool is_open(int) {
    return true;
}

bool is_terminal(int) {
    return false;
}

int process_id() {
    return 1;
}

}  // namespace orvelin
