#include "play/dead_draw.h"

#include <cctype>
#include <string>

#include "position/chess_position.h"

namespace orvelin::play {

bool is_mate_impossible(std::string_view fen) {
    int knights = 0;
    int bishops[2] = {};
    int square = 0;
    for (char const letter : fen.substr(0, fen.find(' '))) {
        if (letter == '/') {
            continue;
        }
        if (letter >= '1' && letter <= '8') {
            square += letter - '0';
            continue;
        }
        switch (std::tolower(static_cast<unsigned char>(letter))) {
            case 'k':
                break;
            case 'n':
                ++knights;
                break;
            case 'b':
                ++bishops[(square / 8 + square % 8) % 2];
                break;
            default:
                return false;
        }
        ++square;
    }
    if (knights > 0) {
        return knights == 1 && bishops[0] + bishops[1] == 0;
    }
    return bishops[0] == 0 || bishops[1] == 0;
}

bool is_dead_draw(ChessPosition const& position) {
    return position.get_dfz() >= last_reversible_ply || is_mate_impossible(position.fen());
}

}  // namespace orvelin::play
