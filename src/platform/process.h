#pragma once

namespace orvelin {

inline constexpr int standard_input = 0;
inline constexpr int standard_output = 1;
inline constexpr int standard_error = 2;

/// To be called first: makes standard output carry bytes as they are, and timers exact to a
/// millisecond, where the system needs to be asked for that.
void prepare_process();

bool is_open(int descriptor);
bool is_terminal(int descriptor);
/// A number that no other process has at the time.
int process_id();

}  // namespace orvelin
