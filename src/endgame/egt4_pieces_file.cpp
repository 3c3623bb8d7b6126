#include <fstream>
#include <stdexcept>

#include "endgame/egt4_pieces.h"

namespace orvelin {

namespace {

constexpr unsigned int bytes_in_line = 16;

bool contains(std::string const& text, char const* part) {
    return text.find(part) != std::string::npos;
}

/// Any one of the three letters in its place is enough (oddity 121).
bool is_end(std::string const& word) {
    auto const has = [&](std::size_t place, char letter) {
        return word.size() > place && word[place] == letter;
    };
    return has(0, 'e') || has(1, 'n') || has(2, 'd');
}

}  // namespace

void Egt4Pieces::save(std::string const& path) const {
    std::ofstream file(path);
    if (file) {
        file << "begin{" << name_ << '}';
        for (unsigned int key = 0; key < size_; ++key) {
            if (key % bytes_in_line == 0) {
                file << '\n';
            }
            file << static_cast<int>((*this)[key]) << ' ';
        }
        file << "\nend{" << name_ << '}' << std::flush;
    }
    if (!file) {
        throw std::runtime_error("Egt4Pieces::save  error");
    }
}

void Egt4Pieces::load(std::string const& path) {
    std::ifstream file(path);
    std::string word;
    file >> word;
    if (!contains(word, "begin")) {
        throw std::runtime_error("Error: EGT not recognized");
    }
    if (contains(word, "KQKR")) {
        piece1_id_ = white_queen;
        piece2_id_ = black_rook;
        name_ = "KQKR";
    } else if (contains(word, "KBNK")) {
        // Not the pair that the table is built with (oddity 120). The values can be looked up by
        // key, but no position with these pieces is legal here.
        piece1_id_ = black_knight;
        piece2_id_ = white_bishop;
        name_ = "KBNK";
    }
    // What is half read is no table.
    progress_ = -1;
    allocate();
    for (unsigned int key = 0; key < size_; ++key) {
        int value = 0;
        if (!(file >> value)) {
            throw std::runtime_error("Egt4Pieces::load(" + path +
                                     ") failed    i=" + std::to_string(key) + "\n");
        }
        table_[key] = static_cast<unsigned char>(value);
    }
    word.clear();
    file >> word;
    if (!is_end(word)) {
        throw std::runtime_error("Error while reading EGT");
    }
    progress_ = finished;
}

}  // namespace orvelin
