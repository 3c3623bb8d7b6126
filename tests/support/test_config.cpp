// All paths of the build stand in this file and data_folder.cpp. Every other object is the same in
// every folder, and a compiler cache need not make it again for another copy of the sources.

#include "support/test_config.h"

#include <cstdlib>

namespace orvelin::test {

bool whole_tests() {
    return !short_tests || std::getenv("ORVELIN_WHOLE_TESTS") != nullptr;
}

char const* const engine_binary = ORVELIN_BINARY;
char const* const play_binary = ORVELIN_PLAY;
char const* const perft_binary = ORVELIN_PERFT;
char const* const book_binary = ORVELIN_BOOK;
char const* const tables_binary = ORVELIN_TABLES;
char const* const analyse_binary = ORVELIN_ANALYSE;
char const* const signature_binary = ORVELIN_SIGNATURE;
char const* const without_installed_book = ORVELIN_WITHOUT_INSTALLED_BOOK;

}  // namespace orvelin::test
