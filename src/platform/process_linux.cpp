#include <fcntl.h>

#include "platform/process.h"

namespace orvelin {

void prepare_process() {}

bool is_open(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

}  // namespace orvelin
