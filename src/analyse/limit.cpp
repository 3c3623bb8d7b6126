#include "analyse/limit.h"

#include <charconv>

namespace orvelin::analyse {

namespace {

constexpr std::uint64_t deepest = 100;

std::optional<std::uint64_t> read_number(std::string_view text) {
    std::uint64_t value = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value == 0) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

std::string Limit::text() const {
    switch (what) {
        case kind::static_eval:
            return "static";
        case kind::depth:
            return "depth=" + std::to_string(value);
        case kind::nodes:
            break;
    }
    return "nodes=" + std::to_string(value);
}

std::optional<Limit> parse_limit(std::string_view text) {
    constexpr std::string_view depth = "depth=";
    constexpr std::string_view nodes = "nodes=";
    if (text == "static") {
        return Limit{Limit::kind::static_eval, 0};
    }
    if (text.starts_with(depth)) {
        auto const value = read_number(text.substr(depth.size()));
        if (value && *value <= deepest) {
            return Limit{Limit::kind::depth, *value};
        }
    }
    if (text.starts_with(nodes)) {
        if (auto const value = read_number(text.substr(nodes.size()))) {
            return Limit{Limit::kind::nodes, *value};
        }
    }
    return std::nullopt;
}

}  // namespace orvelin::analyse
