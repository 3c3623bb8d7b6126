#pragma once

#include <string>

namespace orvelin::test {

/// True in the sanitizer builds, where the long tests run on a part of their input.
inline constexpr bool short_tests = ORVELIN_SHORT_TESTS != 0;

/// Path of the engine binary under test.
inline const std::string engine_binary = ORVELIN_BINARY;

/// Paths of the command-line tools; absent as long as a tool is not built.
#ifdef ORVELIN_PERFT
inline const std::string perft_binary = ORVELIN_PERFT;
#endif
#ifdef ORVELIN_BOOK
inline const std::string book_binary = ORVELIN_BOOK;
#endif
#ifdef ORVELIN_TABLES
inline const std::string tables_binary = ORVELIN_TABLES;
#endif

/// Folder of the test data.
inline const std::string data_folder = ORVELIN_TEST_DATA;

}  // namespace orvelin::test
