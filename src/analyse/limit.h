#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvelin::analyse {

/// How far one position is looked into.
struct Limit {
    enum class kind : std::uint8_t {
        /// The static evaluation alone, without a search.
        static_eval,
        depth,
        nodes,
    };

    kind what = kind::depth;
    /// The depth in plies, 1 to 100, or the number of nodes, from 1; 0 for the static evaluation.
    std::uint64_t value = 10;

    bool operator==(Limit const& other) const = default;
    /// As the user writes it: "static", "depth=10", "nodes=50000".
    std::string text() const;
};

/// What the text means, if it means a limit.
std::optional<Limit> parse_limit(std::string_view text);

}  // namespace orvelin::analyse
