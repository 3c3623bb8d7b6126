#pragma once

#include <array>

#include "generation/tables.h"

namespace orvelin::bench {

/// A quiet, a tactical and an end-game position.
inline constexpr std::array<char const*, 3> positions{
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1"};

/// Tables built once for all benchmarks.
inline Tables& shared_tables() {
    static Tables tables;
    return tables;
}

}  // namespace orvelin::bench
