#pragma once

#include <concepts>
#include <string>

namespace orvelin::tools {

/// "1 move", "2 moves".
std::string counted(std::integral auto count, std::string const& one, std::string const& more) {
    return std::to_string(count) + ' ' + (count == 1 ? one : more);
}

}  // namespace orvelin::tools
