#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>

namespace orvelin::tools {

class EndingTable;

/// How often each value occurs in a table, by key.
///
/// A position has one key, but for those with White's king on a long diagonal: they and their
/// reflections in it count apart.
class Statistics {
 public:
    explicit Statistics(EndingTable const& table);

    /// Prints for each winner and distance the keys with White and with Black to move, then the
    /// draws and the illegal keys.
    void print_distances(std::ostream& out) const;
    /// Prints for each winner a bar a mate distance in moves, in lines of at most `width` letters.
    void print_histogram(std::ostream& out, int width) const;
    /// Prints the longest win of each winner with the FEN of the first such key of the table.
    void print_longest_wins(std::ostream& out, EndingTable& table) const;

 private:
    static constexpr int last_distance = 100;
    static constexpr std::size_t byte_values = 256;

    /// The byte of a win of this colour (1 White, 0 Black) in so many plies.
    static int byte_of(int winner, int plies) { return winner == 1 ? plies : 128 + plies; }
    std::uint32_t count(int byte, int side) const {
        return counts_[static_cast<std::size_t>(byte)][static_cast<std::size_t>(side)];
    }
    std::uint32_t count(int byte) const { return count(byte, 0) + count(byte, 1); }
    /// -1 when this colour never wins.
    int longest_win(int winner) const;

    /// By byte, then by the side to move.
    std::array<std::array<std::uint32_t, 2>, byte_values> counts_{};
};

/// Width of the terminal as the environment tells it (COLUMNS), 80 when it does not; never too
/// small for a histogram.
int terminal_width();

}  // namespace orvelin::tools
