#pragma once

#include <string>

/// Positions that several tests begin from, each with one name.
namespace orvelin::positions {

/// The start of a game.
inline constexpr char const* start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
/// Every kind of move but a promotion, known from perft suites under this name.
inline constexpr char const* kiwipete =
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";
/// Kings and rooks with all rights.
inline constexpr char const* all_castlings = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
/// Pins along a rank and an en passant that opens it, from a perft suite.
inline constexpr char const* rook_ending = "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1";
/// Promotions with and without a capture, White in check, from a perft suite.
inline constexpr char const* promotions =
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1";
/// A pawn that promotes by a capture, from a perft suite.
inline constexpr char const* promotion_by_capture =
    "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8";
/// A symmetrical middle game, from a perft suite.
inline constexpr char const* quiet_middle_game =
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10";
/// The last position of `bench`.
inline constexpr char const* last_of_bench =
    "r2q2k1/pp1rbppp/4pn2/2P5/1P3B2/6P1/P3QPBP/1R3RK1 w - - 0 1";
/// Nothing but the kings, on e1 and e8.
inline constexpr char const* bare_kings = "4k3/8/8/8/8/8/8/4K3 w - - 0 1";
/// Nothing but the kings, on a1 and h8.
inline constexpr char const* bare_kings_in_corners = "7k/8/8/8/8/8/8/K7 w - - 0 1";
/// No piece at all.
inline constexpr char const* empty_board = "8/8/8/8/8/8/8/8 w - - 0 1";
/// White may castle on both sides.
inline constexpr char const* white_castlings = "4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1";
/// White may castle short.
inline constexpr char const* white_short_castling = "4k3/8/8/8/8/8/8/4K2R w K - 0 1";

}  // namespace orvelin::positions

namespace orvelin::test {

/// The same start, for what adds to it.
inline std::string const start_fen = positions::start;

}  // namespace orvelin::test
