#pragma once

#include <string>

namespace orvelin::test {

/// Folder of the test data.
inline const std::string data_folder = ORVELIN_TEST_DATA;

}  // namespace orvelin::test
