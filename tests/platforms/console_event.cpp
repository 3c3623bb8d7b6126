// Starts a program, and has an event of the console happen to it, for tests:
// console_event EVENT FILE PROGRAM [WORD...]    EVENT is 0 for Ctrl-C, 1 for Ctrl-Break, 2 for
// closing Waits until there is the file, and ends as the program does. Wine lets one process cause
// Ctrl-C in others and no other event; so the thread is started by which the system itself tells of
// events.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <windows.h>

namespace {

int fail(char const* what) {
    std::fprintf(stderr, "console_event: %s: error %lu\n", what, GetLastError());
    return 250;
}

bool is_there(char const* file) {
    return GetFileAttributesA(file) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace

int main(int number, char** words) {
    if (number < 4) {
        return fail("too few words");
    }
    std::string line;
    for (int i = 3; i < number; ++i) {
        line += std::string(i > 3 ? " " : "") + '"' + words[i] + '"';
    }
    STARTUPINFOA start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION program{};
    if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                       &program) == 0) {
        return fail("no start");
    }
    while (!is_there(words[2]) && WaitForSingleObject(program.hProcess, 10) == WAIT_TIMEOUT) {
    }
    // Libraries of the system lie at one place in all processes.
    auto const tell = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernelbase"), "CtrlRoutine")));
    auto const event = static_cast<ULONG_PTR>(std::atoi(words[1]));
    if (tell == nullptr ||
        CreateRemoteThread(program.hProcess, nullptr, 0, tell, reinterpret_cast<void*>(event), 0,
                           nullptr) == nullptr) {
        return fail("no event");
    }
    WaitForSingleObject(program.hProcess, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(program.hProcess, &status);
    return static_cast<int>(status);
}
