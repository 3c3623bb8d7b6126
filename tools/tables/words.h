#pragma once

#include <chrono>
#include <string>

namespace orvelin::tools {

/// The value of a position as `Egt4Pieces::eval` gives it, in words.
std::string value_text(int value);

/// The moves that the winner makes in so many plies to mate.
constexpr int moves_of(int plies) {
    return (plies + 1) / 2;
}

/// Seconds with one decimal and their unit.
std::string seconds_text(std::chrono::duration<double> time);

}  // namespace orvelin::tools
