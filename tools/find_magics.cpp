// Prints src/generation/magic_number_table.h: a magic multiplier for each square and slider.
//
//     cmake -B build -DORVELIN_BUILD_TOOLS=ON && cmake --build build --target find_magics
//     build/tools/find_magics > src/generation/magic_number_table.h
//
// The shifts are given, and so are the multipliers of five squares of each slider; these stand
// as they are and are only checked. The others are the first sparse random words that send no
// two subsets of the square's mask with different attack sets to one index. The output depends
// on nothing but this file: the random words come from a fixed seed for each square.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

struct step_t {
    int file;
    int rank;
};

struct given_t {
    int square;
    std::uint64_t magic;
};

struct slider_t {
    char const* name;
    step_t steps[4];
    int shifts[64];
    given_t given[5];
};

constexpr slider_t bishop = {"bishop",
                             {{1, 1}, {-1, 1}, {1, -1}, {-1, -1}},
                             {58, 59, 59, 59, 59, 59, 59, 58,  //
                              59, 59, 59, 59, 59, 59, 59, 59,  //
                              59, 59, 57, 57, 57, 57, 59, 59,  //
                              59, 59, 57, 54, 55, 57, 59, 59,  //
                              59, 59, 57, 55, 55, 57, 59, 59,  //
                              59, 59, 57, 57, 57, 57, 59, 59,  //
                              59, 59, 59, 59, 59, 59, 59, 59,  //
                              58, 59, 59, 59, 59, 59, 59, 58},
                             {{0, 0x014501040C040041},
                              {1, 0x000921040C004602},
                              {27, 0x0C01001214004202},
                              {35, 0x5108020180080080},
                              {63, 0x0C40020821002482}}};

constexpr slider_t rook = {"rook",
                           {{1, 0}, {-1, 0}, {0, 1}, {0, -1}},
                           {52, 53, 53, 53, 53, 53, 53, 52,  //
                            53, 54, 54, 54, 54, 54, 54, 53,  //
                            53, 54, 54, 54, 54, 54, 54, 53,  //
                            53, 54, 54, 54, 54, 54, 54, 53,  //
                            53, 54, 54, 54, 54, 54, 54, 53,  //
                            53, 54, 54, 54, 54, 53, 54, 53,  //
                            53, 54, 54, 54, 54, 54, 54, 53,  //
                            52, 53, 53, 53, 52, 53, 53, 52},
                           {{0, 0x108001228011C002},
                            {1, 0xA04010004004E000},
                            {27, 0x092100210010010C},
                            {35, 0x8405080181801001},
                            {63, 0x82010000820C2145}}};

bool on_board(int file, int rank) {
    return file >= 0 && file < 8 && rank >= 0 && rank < 8;
}

std::uint64_t bit(int file, int rank) {
    return std::uint64_t{1} << (8 * rank + file);
}

/// The squares of the rays, without the last square of each.
std::uint64_t mask_of(slider_t const& slider, int square) {
    std::uint64_t mask = 0;
    for (step_t const& step : slider.steps) {
        int file = square % 8 + step.file;
        int rank = square / 8 + step.rank;
        while (on_board(file + step.file, rank + step.rank)) {
            mask |= bit(file, rank);
            file += step.file;
            rank += step.rank;
        }
    }
    return mask;
}

std::uint64_t attacks_of(slider_t const& slider, int square, std::uint64_t occupied) {
    std::uint64_t attacks = 0;
    for (step_t const& step : slider.steps) {
        int file = square % 8 + step.file;
        int rank = square / 8 + step.rank;
        while (on_board(file, rank)) {
            attacks |= bit(file, rank);
            if (occupied & bit(file, rank)) {
                break;
            }
            file += step.file;
            rank += step.rank;
        }
    }
    return attacks;
}

struct example_t {
    std::uint64_t occupied;
    std::uint64_t attacks;
};

std::vector<example_t> examples_of(slider_t const& slider, int square) {
    std::uint64_t const mask = mask_of(slider, square);
    std::vector<example_t> examples;
    std::uint64_t occupied = 0;
    do {
        examples.push_back({occupied, attacks_of(slider, square, occupied)});
        occupied = (occupied - mask) & mask;
    } while (occupied != 0);
    return examples;
}

bool valid(std::uint64_t magic, int shift, std::vector<example_t> const& examples) {
    std::vector<std::uint64_t> table(std::size_t{1} << (64 - shift), 0);
    for (example_t const& example : examples) {
        std::uint64_t& entry = table[static_cast<std::size_t>((example.occupied * magic) >> shift)];
        if (entry == 0) {
            entry = example.attacks;
        }
        if (entry != example.attacks) {
            return false;
        }
    }
    return true;
}

std::uint64_t find_magic(slider_t const& slider, int square) {
    std::vector<example_t> const examples = examples_of(slider, square);
    for (given_t const& given : slider.given) {
        if (given.square != square) {
            continue;
        }
        if (valid(given.magic, slider.shifts[square], examples)) {
            return given.magic;
        }
        std::fprintf(stderr, "the given %s magic of square %d is not valid\n", slider.name, square);
        std::exit(EXIT_FAILURE);
    }
    std::mt19937_64 random(static_cast<std::uint64_t>(square));
    for (;;) {
        std::uint64_t magic = random();
        magic &= random();
        magic &= random();
        if (valid(magic, slider.shifts[square], examples)) {
            return magic;
        }
    }
}

void print_table(slider_t const& slider) {
    std::printf("inline constexpr magic_t %s_magics[64] = {\n", slider.name);
    for (int square = 0; square < 64; ++square) {
        std::printf("    {0x%016llX, %d},  // %c%c\n",
                    static_cast<unsigned long long>(find_magic(slider, square)),
                    slider.shifts[square], 'a' + square % 8, '1' + square / 8);
    }
    std::printf("};\n\n");
}

}  // namespace

int main() {
    std::printf(
        "#pragma once\n\n"
        "// Made by tools/find_magics.cpp, do not edit:\n"
        "//     build/tools/find_magics > src/generation/magic_number_table.h\n\n"
        "#include \"generation/magic_number.h\"\n\n"
        "namespace orvelin {\n\n");
    print_table(bishop);
    print_table(rook);
    std::printf(
        "static_assert(bishop_magics[0].magic == 0x014501040C040041);\n"
        "static_assert(bishop_magics[63].magic == 0x0C40020821002482);\n"
        "static_assert(rook_magics[0].magic == 0x108001228011C002);\n"
        "static_assert(rook_magics[63].magic == 0x82010000820C2145);\n\n"
        "}  // namespace orvelin\n");
}
