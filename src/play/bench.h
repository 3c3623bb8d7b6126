#pragma once

#include <atomic>
#include <string>

namespace orvelin::play {

class Searcher;

/// The usual depth of the benchmark.
constexpr int bench_depth = 12;

/// Searches fixed positions to a depth, each as in a new game, on the calling thread: a line each,
/// and last `Nodes searched: N` and `Nodes/second: N` of the searches alone, as tools for engines
/// expect it. At the usual depth the number of nodes is that of the command `bench` of the exact
/// engine. Forgets what was learnt; the position is the same afterwards, and the hash table has so
/// many MiB.
///
/// Once stopped it ends at the end of an iteration, or at once when the search is stopped too, with
/// the lines that are true and without the last two.
/// @throws std::bad_alloc when there is no memory for the table that it needs.
std::string bench(Searcher& searcher, int depth, int hash_megabytes,
                  std::atomic<bool> const& stopped);

}  // namespace orvelin::play
