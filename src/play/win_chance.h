#pragma once

namespace orvelin::play {

/// The model behind both functions: the side to move wins at score s, in engine units, with the
/// chance 1 / (1 + exp((a - s) / b)), loses with that of -s, and draws else. The two numbers are
/// those of tools/fit_win_chance/fit.py for its games.csv, rounded.
///
/// This is a: the score at which every second game is won.
constexpr double even_chance_score = 299.1;
/// This is b: the chance of a win grows from 27 to 73 percent between a - b and a + b.
constexpr double chance_spread = 260.4;

/// Chances of the side to move in thousandths; they add up to 1000.
struct WinDrawLoss {
    int win;
    int draw;
    int loss;
};

/// The engine's score as users know it: at 100 the side to move wins every second game.
/// Fitted on games of the engine with itself, see docs/play.md. Monotone, odd; 0 stays 0. A score
/// beyond infinite_score is taken for that; the distance of a mate is not told by it.
int to_centipawns(int engine_score);

/// By the same fit. A mate is 1000 for the one side.
WinDrawLoss win_draw_loss(int engine_score);

}  // namespace orvelin::play
