// orvelin-signature where there is not all of POSIX: the nodes, and a hash over all lines, of the
// sessions in a file. Fails when a line is not the one on record.

#include <cstddef>
#include <exception>
#include <iostream>
#include <vector>

#include "support/session_player.h"
#include "support/session_reader.h"
#include "support/signature.h"

int main(int number, char** words) {
    using namespace orvelin::test;
    if (number != 2) {
        return 2;
    }
    try {
        std::vector<session_t> played;
        bool equal = true;
        for (session_t const& session : read_sessions(words[1])) {
            played.push_back(play_again(session));
            for (std::size_t i = 0; i < session.commands.size(); ++i) {
                equal = equal && played.back().commands[i].answer == session.commands[i].answer;
            }
        }
        std::cout << signature_of(played) << std::endl;
        return equal ? 0 : 1;
    } catch (std::exception const& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
