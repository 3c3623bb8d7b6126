#pragma once

namespace orvelin::test {

/// Folder of the test data.
extern char const* const data_folder;

}  // namespace orvelin::test
