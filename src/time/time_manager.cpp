#include "time/time_manager.h"

#include <csignal>

namespace orvelin {

namespace {

constexpr int fallback_movestogo = 30;

}  // namespace

void TimeManager::reset() {
    put(movestogo_, start_movestogo);
    put(mate_, start_mate);
    put(wtime_, not_given);
    put(btime_, not_given);
    put(winc_, 0U);
    put(binc_, 0U);
    put(movetime_, not_given);
    put(infinite_, false);
    put(pondering_, false);
    timer_.reset();
}

void TimeManager::start() {
    timer_.reset();
    timer_.start();
}

void TimeManager::set_movetime(std::uint64_t milliseconds) {
    put(movetime_, milliseconds == 0 ? std::uint64_t{1} : milliseconds);
}

void TimeManager::set_movestogo(int moves) {
    put(movestogo_, moves < 1 ? fallback_movestogo : moves);
}

std::uint64_t TimeManager::moves() const {
    return sign_extended(get(movestogo_));
}

std::uint64_t TimeManager::slice() const {
    std::uint64_t const n = moves();
    return (clock() + increment() * n) / (n + 2);
}

// About 2.5 shares, which is more than an increment brings (oddity 36).
std::uint64_t TimeManager::hard_limit() const {
    std::uint64_t const q = slice();
    return 2 * (q - q / 4 + ((q / 2) * moves()) / 40);
}

std::uint64_t TimeManager::soft_budget() const {
    std::uint64_t const movetime = get(movetime_);
    // The lag is no part of this: a fixed time is stopped softly by its full length.
    if (movetime > 0 && movetime < not_given) {
        return movetime;
    }
    std::uint64_t const q = slice();
    return q + (moves() * q) / 40 - q / 2;
}

bool TimeManager::time_to_move() {
    return time_to_move(elapsed());
}

bool TimeManager::time_to_move(std::uint64_t elapsed) const {
    if (!clock_counts()) {
        return false;
    }
    std::uint64_t const movetime = get(movetime_);
    if (movetime == 0) {
        return false;
    }
    // A time per move below the lag wraps around and so is never stopped here, but softly by
    // percentage() (oddity 38).
    if (movetime - sign_extended(get(lag_)) <= elapsed) {
        return true;
    }
    if (movetime != not_given) {
        return false;
    }
    return hard_limit() < elapsed;
}

int TimeManager::percentage() {
    return percentage(elapsed());
}

int TimeManager::percentage(std::uint64_t elapsed) const {
    if (!clock_counts()) {
        return 0;
    }
    // A 32-bit product, which overflows after some six hours (oddity 41).
    auto const used = static_cast<std::int32_t>(static_cast<std::uint32_t>(elapsed) * 100U);
    std::uint64_t const budget = soft_budget();
    if (budget == 0) {
        // The fault that a division by zero is on this machine, in defined form (oddity 39).
        std::raise(SIGFPE);
        return 0;
    }
    return static_cast<int>(sign_extended(used) / budget);
}

int TimeManager::remaining_time() {
    return remaining_time(elapsed());
}

int TimeManager::remaining_time(std::uint64_t elapsed) const {
    std::uint64_t const movetime = get(movetime_);
    std::uint64_t const limit = movetime != not_given ? movetime : clock();
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(limit) -
                                     static_cast<std::uint32_t>(elapsed));
}

}  // namespace orvelin
