#pragma once

#include <array>

namespace orvelin {

/// The positions of the benchmark, and the size of the hash table that they are searched with.
constexpr int bench_hash_megabytes = 128;

constexpr std::array<char const*, 3> bench_positions{
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1",
    "r2q2k1/pp1rbppp/4pn2/2P5/1P3B2/6P1/P3QPBP/1R3RK1 w - - 0 1",
};

}  // namespace orvelin
