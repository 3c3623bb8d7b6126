// Prints src/evaluation/material_warmup.h: the configurations that warm the material table up.
//
//     cmake -B build -DORVELIN_BUILD_TOOLS=ON && cmake --build build --target material_rows
//     build/tools/material_rows > src/evaluation/material_warmup.h
//
// Takes the configurations that games see most, by a simple measure: few steps away from an even
// exchange, every side's pieces a set that trading down the first set can leave. A configuration
// whose slot is taken already is passed over, so that no row evicts another while the table is
// filled. The output depends on nothing but this file and the slot function.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "evaluation/material.h"

namespace {

using orvelin::Material;

constexpr std::size_t row_count = 1000;

// Configurations that have to be in the table; bare kings close it.
constexpr std::array<std::uint64_t, 5> wanted{0x100000000, 0x100000001, 0x100000001000,
                                              0x1212800012128, 0x212600002215};
constexpr std::uint64_t bare_kings = 0;

// Pieces of one side.
struct army_t {
    int pawns;
    int knights;
    int bishops;
    int rooks;
    int queens;

    std::uint64_t word() const {
        return static_cast<std::uint64_t>(pawns | knights << 4 | bishops << 8 | rooks << 12 |
                                          queens << 16);
    }
    int minors() const { return knights + bishops; }
    // Pieces in units of a minor piece and a bit: enough to tell how far a game has gone.
    int pieces() const { return 3 * minors() + 5 * rooks + 9 * queens; }
};

struct candidate_t {
    int rarity;
    std::uint64_t key;
};

std::vector<army_t> all_armies() {
    std::vector<army_t> armies;
    for (int queens = 0; queens <= 1; ++queens) {
        for (int rooks = 0; rooks <= 2; ++rooks) {
            for (int bishops = 0; bishops <= 2; ++bishops) {
                for (int knights = 0; knights <= 2; ++knights) {
                    for (int pawns = 0; pawns <= 8; ++pawns) {
                        armies.push_back({pawns, knights, bishops, rooks, queens});
                    }
                }
            }
        }
    }
    return armies;
}

// How seldom two armies meet; lower is more frequent. Differences between the sides weigh most,
// then pawns that left the board earlier or later than pieces usually do.
int rarity(army_t const& white, army_t const& black) {
    int const pieces = white.pieces() + black.pieces();
    int const pawns = white.pawns + black.pawns;
    int const usual_pawns = 4 + pieces * 12 / 62;
    return 6 * std::abs(white.queens - black.queens) + 5 * std::abs(white.rooks - black.rooks) +
           4 * std::abs(white.minors() - black.minors()) + std::abs(white.bishops - black.bishops) +
           3 * std::abs(white.pawns - black.pawns) + 2 * std::abs(pawns - usual_pawns) +
           std::abs(white.pieces() - black.pieces());
}

std::vector<candidate_t> candidates() {
    constexpr int rarest = 12;
    std::vector<candidate_t> found;
    std::vector<army_t> const armies = all_armies();
    for (army_t const& white : armies) {
        for (army_t const& black : armies) {
            if (int const value = rarity(white, black); value <= rarest) {
                found.push_back({value, white.word() << 32 | black.word()});
            }
        }
    }
    std::sort(found.begin(), found.end(), [](candidate_t const& a, candidate_t const& b) {
        return a.rarity != b.rarity ? a.rarity < b.rarity : a.key > b.key;
    });
    return found;
}

class Rows {
 public:
    void take(std::uint64_t key) {
        std::size_t const slot = Material::slot(key);
        if (keys_.size() == row_count - 1 || taken_[slot]) {
            return;
        }
        taken_[slot] = true;
        keys_.push_back(key);
    }
    std::vector<std::uint64_t> const& keys() const { return keys_; }
    void reserve(std::uint64_t key) { taken_[Material::slot(key)] = true; }

 private:
    std::vector<bool> taken_ = std::vector<bool>(Material::size, false);
    std::vector<std::uint64_t> keys_;
};

constexpr char const* head =
    "#pragma once\n"
    "\n"
    "// Made by tools/material_rows.cpp; build the target material_rows and run\n"
    "//     build/tools/material_rows > src/evaluation/material_warmup.h\n"
    "\n"
    "#include <array>\n"
    "#include <cstdint>\n"
    "\n"
    "namespace orvelin {\n"
    "\n"
    "/// A material configuration that the material table holds from the start.\n"
    "struct tp_row_t {\n"
    "    std::uint64_t key;     ///< packed piece counts\n"
    "    std::uint64_t unused;  ///< never read\n"
    "};\n"
    "\n"
    "/// Frequent configurations, no two of them in one slot of the table; bare kings last.\n"
    "// clang-format off\n"
    "inline constexpr std::array<tp_row_t, 1000> tp{{";

constexpr char const* tail =
    "\n}};\n"
    "// clang-format on\n"
    "\n"
    "static_assert(sizeof(tp) == 16000 && tp.back().key == 0);\n"
    "\n"
    "}  // namespace orvelin\n";

}  // namespace

int main() {
    constexpr std::size_t rows_a_line = 4;
    Rows rows;
    rows.reserve(bare_kings);
    for (std::uint64_t const key : wanted) {
        rows.take(key);
    }
    for (candidate_t const& candidate : candidates()) {
        rows.take(candidate.key);
    }

    std::vector<std::uint64_t> keys = rows.keys();
    std::sort(keys.rbegin(), keys.rend());
    keys.push_back(bare_kings);
    if (keys.size() != row_count) {
        return EXIT_FAILURE;
    }

    std::fputs(head, stdout);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        std::printf("%s{0x%llx, 0},", i % rows_a_line == 0 ? "\n    " : " ",
                    static_cast<unsigned long long>(keys[i]));
    }
    std::fputs(tail, stdout);
    return EXIT_SUCCESS;
}
