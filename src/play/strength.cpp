#include "play/strength.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdlib>
#include <optional>

#include "search/score.h"

namespace orvelin::play {

namespace {

struct Anchor {
    int elo;
    Level level;
};

/// Placed by the games of results/ladder, as docs/strength.md has them. Between two of these a
/// level is interpolated on a straight line, in whole numbers: floating point could differ by a
/// node from one machine to the next. The smallest budget still lets about every second search of a
/// line see each move and the captures behind it; with less the first move that is looked at would
/// be played.
constexpr std::array<Anchor, 13> anchors{{
    {800, {800, 8, 420}},
    {900, {900, 8, 300}},
    {1000, {1200, 8, 240}},
    {1100, {2000, 7, 180}},
    {1200, {5000, 6, 110}},
    {1300, {9000, 5, 80}},
    {1400, {14500, 4, 60}},
    {1500, {22000, 4, 42}},
    {1700, {34000, 3, 28}},
    {1800, {60000, 3, 16}},
    {2000, {110000, 2, 8}},
    {2200, {250000, 1, 0}},
    {2400, {800000, 1, 0}},
}};
static_assert(anchors.front().elo == min_elo && anchors.back().elo == max_elo);

int in_range(int elo) {
    return std::clamp(elo, min_elo, max_elo);
}

/// Value at `part` of `whole` on the way from `first` to `last`.
std::int64_t between(std::int64_t first, std::int64_t last, int part, int whole) {
    return first + (last - first) * part / whole;
}

/// Spreads the bits of a word so that words close together have nothing in common.
std::uint64_t mixed(std::uint64_t word) {
    word += 0x9E3779B97F4A7C15;
    word = (word ^ (word >> 30)) * 0xBF58476D1CE4E5B9;
    word = (word ^ (word >> 27)) * 0x94D049BB133111EB;
    return word ^ (word >> 31);
}

/// A number of exponential distribution, found in whole numbers: the negative logarithm to base 2
/// of the word as a fraction, times 2 to the 16th. Between powers of 2 it goes on a straight line,
/// which gives it this mean.
constexpr std::int64_t exponential_mean = 98304;

std::int64_t exponential(std::uint64_t word) {
    int const zeros = std::countl_zero(word | 1);
    std::uint64_t const behind = (word << zeros) << 1;
    return ((std::int64_t{zeros} + 1) << 16) - static_cast<std::int64_t>(behind >> 48);
}

/// What makes a move look worse than it is, of exponential distribution, for each key and level
/// another. A level goes by how it plays, so that its games stay what they are when its number is
/// placed by them.
std::int64_t disfavour(Move move, std::uint64_t key, Level const& level) {
    // Without class and check bit: they tell how a move was found, not which it is.
    auto const square = [](Square place) { return static_cast<std::uint64_t>(place.id()); };
    std::uint64_t const name =
        square(move.from()) | square(move.to()) << 8 | std::uint64_t{move.code()} << 16;
    std::uint64_t const play = level.nodes | static_cast<std::uint64_t>(level.lines) << 32 |
                               static_cast<std::uint64_t>(level.margin) << 40;
    return exponential(mixed(mixed(key) ^ mixed(mixed(play) ^ name)));
}

enum mate_t : std::uint8_t { gets_mated, no_mate, mates };

mate_t mate_in(int score) {
    if (score >= min_mate_score) {
        return mates;
    }
    return score <= -min_mate_score ? gets_mated : no_mate;
}

/// The score as a weak player feels it: differences in a decided game count for less, and a mate
/// is worth more than what is left on the board, the sooner the more.
int felt(int score) {
    constexpr int decided = 500;
    constexpr int limit = 3000;
    constexpr int mate = 1500;
    int const size = std::min(std::abs(score), mate_score);
    int worth = size;
    if (mate_in(score) != no_mate) {
        worth = mate - 25 * std::min(mate_score - size, 10);
    } else if (size > decided) {
        worth = decided + (std::min(size, limit) - decided) / 4;
    }
    return score < 0 ? -worth : worth;
}

}  // namespace

Level level_of(int elo) {
    int const wanted = in_range(elo);
    auto const upper = std::find_if(anchors.begin() + 1, anchors.end() - 1,
                                    [&](Anchor const& anchor) { return wanted <= anchor.elo; });
    Anchor const& high = *upper;
    Anchor const& low = *(upper - 1);
    int const part = wanted - low.elo;
    int const whole = high.elo - low.elo;
    auto const nodes = between(static_cast<std::int64_t>(low.level.nodes),
                               static_cast<std::int64_t>(high.level.nodes), part, whole);
    return {static_cast<std::uint64_t>(nodes),
            static_cast<int>(between(low.level.lines, high.level.lines, part, whole)),
            static_cast<int>(between(low.level.margin, high.level.margin, part, whole))};
}

std::size_t choose(std::vector<Candidate> const& candidates, std::uint64_t key, int elo) {
    Level const level = level_of(elo);
    if (level.margin == 0) {
        return 0;
    }
    mate_t best_mate = gets_mated;
    for (Candidate const& candidate : candidates) {
        best_mate = std::max(best_mate, mate_in(candidate.score));
    }
    std::optional<std::size_t> chosen;
    std::int64_t best = 0;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        auto const& [move, score] = candidates[i];
        if (level.margin <= mate_aware_margin && mate_in(score) != best_mate) {
            continue;
        }
        std::int64_t const value =
            felt(score) * exponential_mean - level.margin * disfavour(move, key, level);
        if (!chosen || value > best) {
            chosen = i;
            best = value;
        }
    }
    return chosen.value_or(0);
}

milliseconds thinking_pause(GoLimits const& limits, bool white_to_move, std::uint64_t key) {
    constexpr milliseconds longest{2000};
    constexpr milliseconds short_clock{5000};
    bool const clock_counts =
        !limits.movetime && !limits.infinite && !limits.ponder && !limits.perft;
    milliseconds const clock =
        (white_to_move ? limits.wtime : limits.btime).value_or(milliseconds{0});
    if (!clock_counts || clock < short_clock) {
        return milliseconds{0};
    }
    milliseconds const increment =
        std::max(white_to_move ? limits.winc : limits.binc, milliseconds{0});
    milliseconds const most = std::min(clock / 50 + increment / 2, longest);
    // A quarter to the whole of it: nobody thinks equally long about every move.
    auto const quarters = static_cast<std::int64_t>(mixed(key) % 1024) * 3 + 1024;
    return most * quarters / 4096;
}

}  // namespace orvelin::play
