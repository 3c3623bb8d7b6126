#pragma once

// Part of what is configured, and alone in its file for programs that know nothing of the rest.
#include "support/data_folder.h"

namespace orvelin::test {

/// True in the sanitizer builds, where the long tests run on a part of their input.
inline constexpr bool short_tests = ORVELIN_SHORT_TESTS != 0;

/// False in these builds, but for `./check --whole`: the tests that take longest there then run on
/// less still. True in all others.
bool whole_tests();

/// Path of the engine binary under test.
extern char const* const engine_binary;

/// Path of the program for players.
extern char const* const play_binary;

/// Paths of the command-line tools; empty where a tool is not built.
extern char const* const perft_binary;
extern char const* const book_binary;
extern char const* const tables_binary;
extern char const* const analyse_binary;
extern char const* const signature_binary;

/// The script that runs the tests without the opening book that is installed on this machine.
extern char const* const without_installed_book;

}  // namespace orvelin::test
