#pragma once

#include <string>

#include "analyse/ending.h"

namespace orvelin::tools {

using ending_t = analyse::Ending;
using analyse::endings;

/// All names, for help and error texts.
inline constexpr char const* ending_names = "KBNK, KQKR or KRKN";

/// The ending of this name, in any case; nullptr when there is none.
ending_t const* find_ending(std::string const& name);

}  // namespace orvelin::tools
