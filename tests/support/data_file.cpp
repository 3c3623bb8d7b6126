#include "support/data_file.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "support/data_folder.h"

namespace orvelin::test {

std::vector<data_block_t> read_data_blocks(std::string const& file_name) {
    std::ifstream file(std::filesystem::path(data_folder) / file_name);
    if (!file) {
        throw std::runtime_error("cannot read test data " + file_name);
    }
    std::vector<data_block_t> blocks;
    data_block_t block;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty()) {
            block.push_back(line);
        } else if (!block.empty()) {
            blocks.push_back(std::move(block));
            block.clear();
        }
    }
    if (!block.empty()) {
        blocks.push_back(std::move(block));
    }
    if (blocks.empty()) {
        throw std::runtime_error("no test data in " + file_name);
    }
    return blocks;
}

std::vector<std::string> split_words(std::string const& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::string join_words(std::vector<std::string> const& words, std::size_t first) {
    std::string text;
    for (std::size_t i = first; i < words.size(); ++i) {
        if (!text.empty()) {
            text += ' ';
        }
        text += words[i];
    }
    return text;
}

}  // namespace orvelin::test
