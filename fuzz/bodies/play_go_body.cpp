#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "bodies/fuzz_bodies.h"
#include "bodies/position_queries.h"
#include "bodies/require.h"
#include "generation/tables.h"
#include "play/clock.h"
#include "play/go_reader.h"
#include "play/position_reader.h"
#include "play/strength.h"
#include "position/chess_position.h"
#include "position/move.h"

namespace orvelin::fuzz {

namespace {

using play::GoLimits;
using play::milliseconds;
using play::TimePlan;

constexpr std::array<char const*, 5> positions{
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 7 90",
    "bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR b HFhf - 2 9",
    "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1",
};

constexpr milliseconds longest_time{1'000'000'000};
constexpr int most_plies = 400;
constexpr int largest_overhead = 5000;

void require_time(std::optional<milliseconds> time) {
    require(!time || (*time >= milliseconds{1} && *time <= longest_time), "a time is in range");
}

void require_number(std::optional<int> number, int most) {
    require(!number || (*number >= 1 && *number <= most), "a number is in range");
}

void require_in_range(GoLimits const& limits, std::vector<Move> const& legal) {
    require_time(limits.wtime);
    require_time(limits.btime);
    require_time(limits.movetime);
    for (milliseconds const increment : {limits.winc, limits.binc}) {
        require(increment >= milliseconds{0} && increment <= longest_time,
                "an increment is in range");
    }
    require_number(limits.movestogo, 1000);
    require_number(limits.depth, 100);
    require_number(limits.mate, 100);
    require_number(limits.perft, 20);
    require(!limits.nodes || *limits.nodes >= 1, "a limit of nodes lets a node be searched");
    for (Move const& move : limits.searchmoves) {
        require(std::find(legal.begin(), legal.end(), move) != legal.end(),
                "a search move is legal");
    }
}

/// The least time that bounds a search of this side; nothing without one.
std::optional<milliseconds> time_of(GoLimits const& limits, bool white) {
    auto const& own = white ? limits.wtime : limits.btime;
    auto const& other = white ? limits.btime : limits.wtime;
    std::optional<milliseconds> const clock = own ? own : other;
    if (clock && limits.movetime) {
        return std::min(*clock, *limits.movetime);
    }
    return clock ? clock : limits.movetime;
}

void require_plan(GoLimits const& limits, bool white, int game_ply, milliseconds overhead) {
    TimePlan const plan = play::plan_time(limits, white, game_ply, overhead);
    std::optional<milliseconds> const time = time_of(limits, white);
    require(plan.limited == (time && !limits.infinite && !limits.ponder),
            "a clock and nothing else limits a search");
    if (!plan.limited) {
        return;
    }
    require(plan.maximum >= milliseconds{1} && plan.maximum <= *time,
            "the most that a move takes is on the clock");
    require(plan.optimum >= milliseconds{1} && plan.optimum <= plan.maximum,
            "a usual move takes no more than the longest");
    require(!play::begin_next_iteration(plan, {.elapsed = plan.maximum}),
            "nothing is begun when the time is up");
    milliseconds const pause = play::thinking_pause(limits, white, 0x9E3779B97F4A7C15);
    require(pause >= milliseconds{0} && pause <= milliseconds{2000} && pause <= *time / 2,
            "a held back move is in time");
}

}  // namespace

void fuzz_play_go(std::string_view input) {
    if (input.size() < 2) {
        return;
    }
    std::size_t const chosen = static_cast<unsigned char>(input[0]);
    int const number = static_cast<unsigned char>(input[1]);
    ChessPosition position(small_tables());
    position.fen(positions[chosen % positions.size()]);
    play::GoText const text = play::read_go(input.substr(2), position, small_tables());
    require(text.remarks.size() <= 9, "a line makes few remarks");
    require_in_range(text.limits, play::legal_moves(position, small_tables()));
    GoLimits limits = text.limits;
    for (bool const ponder : {limits.ponder, false}) {
        limits.ponder = ponder;
        for (bool const white : {true, false}) {
            require_plan(limits, white, number * most_plies / 255,
                         milliseconds(number * largest_overhead / 255));
        }
    }
}

}  // namespace orvelin::fuzz
