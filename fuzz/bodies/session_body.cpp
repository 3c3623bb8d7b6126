#include "bodies/fuzz_bodies.h"
#include "bodies/session_player.h"

namespace orvelin::fuzz {

void fuzz_session(std::string_view input) {
    play_session(lines_of(input));
}

}  // namespace orvelin::fuzz
