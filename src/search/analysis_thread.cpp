#include "platform/sleep.h"
#include "search/analysis.h"

namespace orvelin {

void Analysis::operator()() {
    for (;;) {
        if (control_.take_think()) {
            iterative_search();
            // The action is left alone: a stop that ended this search stays until the next
            // tick, which reports it a second time.
            control_.set_status(finished_status);
        } else {
            control_.take_stop();
        }
        if (control_.quit()) {
            return;
        }
        sleep_milliseconds(5);
    }
}

}  // namespace orvelin
