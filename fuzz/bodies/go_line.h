#pragma once

#include <cstdint>
#include <string>

namespace orvelin::fuzz {

/// Whether the clocks of a `go` line give a budget of 0 to either side. By design the engine ends
/// by SIGFPE then, which no harness can tell apart from a fault.
bool has_zero_budget(std::string const& line);

/// The number behind `nodes` in a `go` line, but at most `most`, and `most` when there is none.
std::uint64_t nodes_of(std::string const& line, std::uint64_t most);

}  // namespace orvelin::fuzz
