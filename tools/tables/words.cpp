#include "tables/words.h"

#include <cstdlib>
#include <iomanip>
#include <sstream>

#include "endgame/egt4_pieces.h"
#include "support/counted.h"

namespace orvelin::tools {

namespace {

constexpr int mate_value = 30000;

}  // namespace

std::string value_text(int value) {
    if (value == 0) {
        return "draw";
    }
    if (value == Egt4Pieces::illegal) {
        return "illegal position";
    }
    if (value == Egt4Pieces::unknown) {
        return "not known";
    }
    bool const white_wins = value > 0;
    int const plies = mate_value - std::abs(value);
    if (plies == 0) {
        return white_wins ? "Black is mated" : "White is mated";
    }
    return std::string(white_wins ? "White" : "Black") + " mates in " +
           counted(plies, "ply", "plies") + " (" + counted(moves_of(plies), "move", "moves") + ")";
}

std::string seconds_text(std::chrono::duration<double> time) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << time.count() << " s";
    return text.str();
}

}  // namespace orvelin::tools
