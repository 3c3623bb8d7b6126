#include "analyse/game.h"

namespace orvelin::analyse {

std::string Game::tag(std::string const& name) const {
    for (Tag const& tag : tags) {
        if (tag.name == name) {
            return tag.value;
        }
    }
    return "";
}

}  // namespace orvelin::analyse
