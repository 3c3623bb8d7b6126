#pragma once

#include <bit>
#include <cstdint>

namespace orvelin {

#if defined(__x86_64__)

/// Whether the processor counts bits by one instruction. A program for every processor of this kind
/// may not contain what the first of them lacked, so it is asked for at the start. False until this
/// is initialised, which changes no count.
inline bool const counts_in_hardware =
    (__builtin_cpu_init(), __builtin_cpu_supports("popcnt") != 0);

/// The instruction by its name, as the compiler would not take it for every processor. Only where
/// the processor has it: it is volatile so that it is not moved in front of that question.
inline int count_in_hardware(std::uint64_t word) {
    std::uint64_t number = 0;
    asm volatile("popcnt %1, %0" : "=r"(number) : "r"(word) : "cc");
    return static_cast<int>(number);
}

#else

/// Every other processor that is built for has an instruction that the compiler may take.
inline constexpr bool counts_in_hardware = true;

inline int count_in_hardware(std::uint64_t word) {
    return std::popcount(word);
}

#endif

}  // namespace orvelin
