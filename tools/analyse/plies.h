#pragma once

#include <optional>
#include <string>

namespace orvelin::tools {

/// Which positions of a game are looked at, by the number of moves made before them.
struct Plies {
    int from = 0;
    int to = 1000000;
};

/// "3-40", "3-", "-40" or "7".
std::optional<Plies> parse_plies(std::string const& text);

}  // namespace orvelin::tools
