#include "protocol/console_input.h"

#include <string>

namespace orvelin {

void ConsoleInput::operator()() {
    std::string line;
    while (line != "quit") {
        line.clear();
        // The failing read at end of input is not tested (oddity 3): every further read fails at
        // once, is counted all the same, and so the limit ends a process whose GUI has gone away
        // without a word.
        std::getline(input_, line);
        ++line_counter_;
        if (line_counter_ > limit_) {
            line = "quit";
        }
        if (!line.empty()) {
            communicator_.to_engine(line);
        }
    }
}

}  // namespace orvelin
