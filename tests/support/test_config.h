#pragma once

#include <string>

namespace orvelin::test {

/// True in the sanitizer builds, where the long tests run on a part of their input.
inline constexpr bool short_tests = ORVELIN_SHORT_TESTS != 0;

/// Path of the engine binary under test.
inline const std::string engine_binary = ORVELIN_BINARY;

/// Folder of the test data.
inline const std::string data_folder = ORVELIN_TEST_DATA;

}  // namespace orvelin::test
