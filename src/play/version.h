#pragma once

#include <string_view>

namespace orvelin::play {

/// The version of all programs on this core.
inline constexpr std::string_view version = "0.40.1";

/// What every build on every machine searches alike: the nodes of a fixed list of searches and a
/// hash over all that they print. A test holds it; it changes when the search does.
inline constexpr std::string_view search_signature = "765566 e424c16217d2885d";

}  // namespace orvelin::play
