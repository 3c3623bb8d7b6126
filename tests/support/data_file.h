#pragma once

#include <string>
#include <vector>

namespace orvelin::test {

/// The lines of one block of a data file.
using data_block_t = std::vector<std::string>;

/// Reads a file of the test data folder, or any by its absolute path, and cuts it into blocks at
/// its empty lines. Throws std::runtime_error when the file cannot be read or holds no block.
std::vector<data_block_t> read_data_blocks(std::string const& file_name);

/// The blank-separated words of a text.
std::vector<std::string> split_words(std::string const& text);

/// The words from index `first` on, joined by single blanks.
std::string join_words(std::vector<std::string> const& words, std::size_t first = 0);

}  // namespace orvelin::test
