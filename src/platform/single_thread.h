#pragma once

#include <chrono>
#include <functional>
#include <optional>

namespace orvelin {

#ifdef __EMSCRIPTEN__
inline constexpr bool single_thread = true;
#else
/// Whether the system gives a program one thread alone, so that a long computation has to look
/// around by itself. The functions below are defined there alone, and to be called nowhere else.
inline constexpr bool single_thread = false;
#endif

/// Does what other threads do elsewhere; without something to do it waits for that until the
/// deadline, without one for ever.
using interlude_t =
    std::function<void(std::optional<std::chrono::steady_clock::time_point> deadline)>;

/// What look_around() and wait_around() call; an empty function is nothing.
void set_interlude(interlude_t interlude);
/// To be called now and then by what takes long.
void look_around();
/// To be called, again and again, by what waits for something that the interlude brings about.
void wait_around(std::optional<std::chrono::steady_clock::time_point> deadline);
/// Whether the system can wait in the middle of a computation. Where it cannot, wait_around() comes
/// back at once, and what is waited for may never come.
bool can_wait();

}  // namespace orvelin
