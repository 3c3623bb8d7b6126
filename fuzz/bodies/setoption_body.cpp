#include <string>
#include <vector>

#include "bodies/fuzz_bodies.h"
#include "bodies/session_player.h"

namespace orvelin::fuzz {

void fuzz_setoption(std::string_view input) {
    std::vector<std::string> lines = lines_of(input);
    for (std::string& line : lines) {
        line = "setoption " + line;
    }
    lines.insert(lines.end(), {"position startpos moves d2d4", "go depth 3", ""});
    play_session(lines);
}

}  // namespace orvelin::fuzz
