#include "tables/statistics.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <iomanip>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "endgame/egt4_pieces.h"
#include "support/counted.h"
#include "tables/ending_table.h"
#include "tables/words.h"

namespace orvelin::tools {

namespace {

constexpr int name_width = 15;
constexpr int side_width = 14;
constexpr int label_width = 5;
constexpr int count_width = 9;

char const* colour_name(int colour) {
    return colour == 1 ? "White" : "Black";
}

template <typename Cell>
void print_row(std::ostream& out, std::string const& name, Cell white_moves, Cell black_moves) {
    out << std::left << std::setw(name_width) << name << std::right << std::setw(side_width)
        << white_moves << std::setw(side_width) << black_moves << '\n';
}

/// Bars of at most `longest` letters; whatever is not 0 has one.
std::string bar_of(std::uint64_t count, std::uint64_t most, std::uint64_t longest) {
    return std::string(static_cast<std::size_t>((count * longest + most - 1) / most), '#');
}

void print_bars(std::ostream& out, std::vector<std::uint32_t> const& counts, int width) {
    std::uint32_t const most = *std::max_element(counts.begin(), counts.end());
    auto const longest = static_cast<std::uint64_t>(width - label_width - count_width - 1);
    for (std::size_t moves = 0; moves < counts.size(); ++moves) {
        out << std::setw(label_width) << moves << std::setw(count_width) << counts[moves];
        if (counts[moves] > 0) {
            out << ' ' << bar_of(counts[moves], most, longest);
        }
        out << '\n';
    }
}

}  // namespace

Statistics::Statistics(EndingTable const& table) {
    for (unsigned int key = 0; key < table.size(); ++key) {
        ++counts_[table[key]][key & 1];
    }
}

int Statistics::longest_win(int winner) const {
    int plies = last_distance;
    while (plies >= 0 && count(byte_of(winner, plies)) == 0) {
        --plies;
    }
    return plies;
}

void Statistics::print_distances(std::ostream& out) const {
    print_row(out, "plies to mate", "White to move", "Black to move");
    for (int const winner : {1, 0}) {
        int const longest = longest_win(winner);
        if (longest < 0) {
            continue;
        }
        out << colour_name(winner) << " wins\n";
        for (int plies = 0; plies <= longest; ++plies) {
            int const byte = byte_of(winner, plies);
            if (count(byte) == 0) {
                continue;
            }
            print_row(out, "  " + std::to_string(plies), count(byte, 1), count(byte, 0));
        }
    }
    print_row(out, "draws", count(Egt4Pieces::drawn, 1), count(Egt4Pieces::drawn, 0));
    print_row(out, "illegal keys", count(Egt4Pieces::illegal, 1), count(Egt4Pieces::illegal, 0));
}

void Statistics::print_histogram(std::ostream& out, int width) const {
    for (int const winner : {1, 0}) {
        int const longest = longest_win(winner);
        if (longest < 0) {
            continue;
        }
        std::vector<std::uint32_t> by_moves(static_cast<std::size_t>(moves_of(longest)) + 1);
        for (int plies = 0; plies <= longest; ++plies) {
            by_moves[static_cast<std::size_t>(moves_of(plies))] += count(byte_of(winner, plies));
        }
        out << '\n' << colour_name(winner) << " wins, by moves to mate\n";
        print_bars(out, by_moves, width);
    }
}

void Statistics::print_longest_wins(std::ostream& out, EndingTable& table) const {
    out << '\n';
    for (int const winner : {1, 0}) {
        int const plies = longest_win(winner);
        out << "longest win of " << colour_name(winner) << ": ";
        if (plies < 0) {
            out << "none\n";
            continue;
        }
        unsigned int key = 0;
        while (table[key] != byte_of(winner, plies)) {
            ++key;
        }
        out << counted(moves_of(plies), "move", "moves") << " (" << counted(plies, "ply", "plies")
            << "), " << table.fen(key) << '\n';
    }
}

int terminal_width() {
    constexpr int narrowest = 40;
    constexpr int widest = 400;
    int width = 80;
    char const* const columns = std::getenv("COLUMNS");
    if (columns != nullptr) {
        std::string_view const text = columns;
        int told = 0;
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), told);
        if (error == std::errc() && end == text.data() + text.size()) {
            width = told;
        }
    }
    return std::clamp(width, narrowest, widest);
}

}  // namespace orvelin::tools
