#pragma once

#include <string>
#include <vector>

namespace orvelin::test {

/// How a game begins: a position and moves played from it before the engines take over.
struct game_start_t {
    std::string fen;
    std::vector<std::string> moves;
};

/// How a game went. Without a verdict it was broken off, for the reason told by `fault`.
struct game_record_t {
    std::string start;
    std::string verdict;
    std::string fault;
    int plies = 0;
};

/// Starts of all kinds: the standard array, Chess960 arrays and positions of every phase, each
/// with some random legal moves; always the same ones.
std::vector<game_start_t> varied_starts(int count);

/// Plays the games, each between two engine processes that are told the moves by a growing
/// `position` line, on several pairs of processes at once.
std::vector<game_record_t> play_games(std::vector<game_start_t> const& starts, int pairs);

}  // namespace orvelin::test
