#pragma once

#include <string>

// Part of what is configured, and alone in its file for programs that know nothing of the rest.
#include "support/data_folder.h"

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
#ifdef ORVELIN_SIGNATURE
inline const std::string signature_binary = ORVELIN_SIGNATURE;
#endif

}  // namespace orvelin::test
