#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "analyse/asked.h"

namespace orvelin::tools {

using analyse::Asked;
using analyse::Request;

/// Where the positions come from, in order. One thread at a time.
class PositionSource {
 public:
    virtual ~PositionSource() = default;
    /// The next position, all but its number; false at the end.
    virtual bool next(Asked& asked) = 0;
    /// Whether next() will not have to wait for input.
    virtual bool ready() { return true; }
};

/// Which positions of the input are those of this run: those whose number leaves the remainder
/// index - 1 when divided by count.
struct Shard {
    std::uint64_t index = 1;
    std::uint64_t count = 1;

    bool takes(std::uint64_t number) const { return (number - 1) % count == index - 1; }
};

/// "2/8".
std::optional<Shard> parse_shard(std::string_view text);

}  // namespace orvelin::tools
