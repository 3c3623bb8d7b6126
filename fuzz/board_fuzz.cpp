#include <cstddef>
#include <cstdint>

#include "bodies/as_text.h"
#include "bodies/fuzz_bodies.h"

/// Called by the fuzzer for each input.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    orvelin::fuzz::fuzz_board(orvelin::fuzz::as_text(data, size));
    return 0;
}
