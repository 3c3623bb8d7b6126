#include "analyse/asked.h"

namespace orvelin::analyse {

std::optional<WantedMoves> parse_wanted_moves(std::string_view text) {
    WantedMoves moves;
    bool best = false;
    while (true) {
        std::string_view const word = text.substr(0, text.find(','));
        bool* const wanted = word == "best"     ? &best
                             : word == "played" ? &moves.played
                             : word == "rest"   ? &moves.rest
                                                : nullptr;
        if (wanted == nullptr || *wanted) {
            return std::nullopt;
        }
        *wanted = true;
        if (word.size() == text.size()) {
            return best ? std::optional(moves) : std::nullopt;
        }
        text.remove_prefix(word.size() + 1);
    }
}

}  // namespace orvelin::analyse
