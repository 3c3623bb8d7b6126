#pragma once

#include <cstdio>
#include <cstdlib>

namespace orvelin::fuzz {

/// Ends the process when what must hold does not: the fuzzer and the tests take that for a fault.
inline void require(bool holds, char const* what) {
    if (holds) {
        return;
    }
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

}  // namespace orvelin::fuzz
