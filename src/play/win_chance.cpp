#include "play/win_chance.h"

#include <algorithm>
#include <cmath>

#include "search/score.h"

namespace orvelin::play {

namespace {

double win_chance(double engine_score) {
    return 1.0 / (1.0 + std::exp((even_chance_score - engine_score) / chance_spread));
}

int thousandths(double chance) {
    return static_cast<int>(std::lround(1000.0 * chance));
}

}  // namespace

int to_centipawns(int engine_score) {
    int const score = std::clamp(engine_score, -infinite_score, infinite_score);
    return static_cast<int>(std::lround(100.0 * score / even_chance_score));
}

// Each rounded by itself, the chances of a win and of a loss leave at least 0 for the draw: their
// sum is below 1. At the scores of mates nothing is left of the curve.
WinDrawLoss win_draw_loss(int engine_score) {
    double const score = engine_score;
    int const win = thousandths(win_chance(score));
    int const loss = thousandths(win_chance(-score));
    return {win, 1000 - win - loss, loss};
}

}  // namespace orvelin::play
