#include <csignal>
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <windows.h>
// They need the one before them.
#include <shellapi.h>
#include <timeapi.h>

#include "platform/path.h"
#include "platform/process.h"

namespace orvelin {

namespace {

/// What there is no such signal for here has its number elsewhere.
constexpr int hang_up = 1;

/// The signal that an event of the console is elsewhere.
int signal_of(DWORD event) {
    switch (event) {
        case CTRL_C_EVENT:
            return SIGINT;
        case CTRL_BREAK_EVENT:
            return SIGTERM;
        default:
            // The console is closed, or the user logs off.
            return hang_up;
    }
}

/// Called in a thread of the system's. Nothing is kept beyond the lines that are written already,
/// and what the other threads hold is not to be waited for.
BOOL WINAPI end_process(DWORD event) {
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(128 + signal_of(event)));
    return TRUE;
}

}  // namespace

void prepare_process() {
    SetConsoleCtrlHandler(end_process, TRUE);
    _setmode(standard_output, _O_BINARY);
    // Without this a sleep of 5 ms may take 16.
    timeBeginPeriod(1);
}

// A console that is read hears of Ctrl-C as of an end, often before the process is told.
void outlast_interruption(int input) {
    constexpr DWORD patience = 500;
    if (is_terminal(input)) {
        Sleep(patience);
    }
}

// What the library hands over has lost the letters that the code page of the user lacks.
std::vector<std::string> command_line(int, char const* const*) {
    int number = 0;
    LPWSTR* const wide = CommandLineToArgvW(GetCommandLineW(), &number);
    std::vector<std::string> words;
    for (int i = 0; i < number; ++i) {
        words.push_back(name_of(wide[i]));
    }
    LocalFree(wide);
    return words;
}

bool is_open(int descriptor) {
    // For a descriptor that never was, the library says -2.
    auto const handle = _get_osfhandle(descriptor);
    return handle != reinterpret_cast<intptr_t>(INVALID_HANDLE_VALUE) && handle != -2;
}

bool is_terminal(int descriptor) {
    return _isatty(descriptor) != 0;
}

int process_id() {
    return _getpid();
}

}  // namespace orvelin
