// Answers each line of standard input as the core of the board does: what its module of WebAssembly
// is compared with. For developers.

#include <iostream>
#include <string>

#include "board/board_core.h"

int main() {
    orvelin::board::BoardCore core;
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << core.answer(line) << '\n';
    }
    return std::cout.flush() ? 0 : 1;
}
