#include "analyse/position_source.h"

#include <charconv>

namespace orvelin::tools {

std::optional<Shard> parse_shard(std::string_view text) {
    Shard shard;
    char const* const end = text.data() + text.size();
    auto const index = std::from_chars(text.data(), end, shard.index);
    if (index.ec != std::errc() || index.ptr == end || *index.ptr != '/') {
        return std::nullopt;
    }
    auto const count = std::from_chars(index.ptr + 1, end, shard.count);
    if (count.ec != std::errc() || count.ptr != end || shard.index == 0 ||
        shard.index > shard.count) {
        return std::nullopt;
    }
    return shard;
}

}  // namespace orvelin::tools
