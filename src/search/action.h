#pragma once

#include <cstdint>

namespace orvelin {

/// What the analysis thread is asked to do.
enum action_t : std::int32_t {
    no_action = 0,     ///< nothing to do
    think_action = 1,  ///< start a search
    stop_action = 2    ///< end the running search
};

/// What the analysis thread is doing.
enum status_t : std::int32_t {
    ready_status = 0,      ///< nothing to report
    searching_status = 1,  ///< a search runs
    finished_status = 2    ///< a search has ended, or a stop was taken while idle
};

}  // namespace orvelin
