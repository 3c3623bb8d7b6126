#pragma once

#include <string>

namespace orvelin::tools {

/// "0:07", "12:30", "3:00:00": so many seconds, rounded; hours have no end.
std::string duration_text(double seconds);

/// "0.3/s", "12/s", "105000/s".
std::string rate_text(double per_second);

}  // namespace orvelin::tools
