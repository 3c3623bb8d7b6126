#pragma once

#include <string>
#include <vector>

namespace orvelin {

inline constexpr int standard_input = 0;
inline constexpr int standard_output = 1;
inline constexpr int standard_error = 2;

/// To be called first: makes standard output carry bytes as they are, timers exact to a
/// millisecond, and Ctrl-C and its like end the process with 128 and the number of the signal,
/// where the system needs to be asked for that.
void prepare_process();
/// To be called behind the end of an input: where Ctrl-C ends the input too, and the process only a
/// moment later, this waits for the latter.
void outlast_interruption(int input);

/// The words of the command line, the name of the program among them, as text that path_of() takes.
std::vector<std::string> command_line(int number, char const* const* words);

bool is_open(int descriptor);
bool is_terminal(int descriptor);
/// A number that no other process has at the time.
int process_id();

}  // namespace orvelin
