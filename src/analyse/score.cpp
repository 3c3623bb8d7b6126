#include "analyse/score.h"

#include <cstdlib>

#include "search/score.h"

namespace orvelin::analyse {

double Score::points() const {
    play::WinDrawLoss const odds = chances();
    return (2 * odds.win + odds.draw) / 2000.0;
}

std::optional<int> Score::mate() const {
    if (units > -min_mate_score && units < min_mate_score) {
        return std::nullopt;
    }
    int const moves = (mate_score - std::abs(units) + 1) / 2;
    return units > 0 ? moves : -moves;
}

}  // namespace orvelin::analyse
