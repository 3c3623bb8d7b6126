#pragma once

#include <string>

namespace orvelin::play {

class Searcher;

/// The usual depth of the benchmark.
constexpr int bench_depth = 12;

/// Searches fixed positions to a depth, each as in a new game, on the calling thread: a line each,
/// and last `Nodes searched: N` and `Nodes/second: N`, as tools for engines expect it. At the usual
/// depth the number of nodes is that of the command `bench` of the exact engine. Forgets what was
/// learnt; the hash table has its usual size afterwards.
std::string bench(Searcher& searcher, int depth, int hash_megabytes);

}  // namespace orvelin::play
