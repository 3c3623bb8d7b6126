#include <fcntl.h>
#include <unistd.h>

#include "platform/process.h"

namespace orvelin {

void prepare_process() {}

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
