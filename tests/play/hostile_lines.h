#pragma once

#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace orvelin::play::test {

/// A message is one short line that any terminal can show.
inline void expect_presentable(std::string const& message) {
    EXPECT_LE(message.size(), 400U) << message;
    for (char const letter : message) {
        EXPECT_TRUE(letter >= ' ' && letter <= '~')
            << static_cast<int>(letter) << " in " << message;
    }
}

inline void expect_presentable(std::vector<std::string> const& messages) {
    EXPECT_LE(messages.size(), 20U);
    for (std::string const& message : messages) {
        expect_presentable(message);
    }
}

/// Random lines, always the same ones: words that mean something, some of them with a byte changed
/// or cut, and among them bytes of any kind.
class HostileLines {
 public:
    explicit HostileLines(std::vector<std::string> words) : words_(std::move(words)) {}

    std::string next() {
        std::string line;
        for (std::size_t left = below(12); left > 0; --left) {
            line += next_word();
            line.append(1 + below(20) / 19, ' ');
        }
        return line;
    }

 private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    std::string next_word() {
        if (below(8) == 0) {
            std::string bytes(below(30), '\0');
            for (char& byte : bytes) {
                byte = static_cast<char>(below(256));
            }
            return bytes;
        }
        std::string word = words_[below(words_.size())];
        if (!word.empty() && below(4) == 0) {
            word[below(word.size())] = static_cast<char>(below(256));
        }
        if (below(10) == 0) {
            word.resize(below(word.size() + 1));
        }
        return word;
    }

    std::vector<std::string> words_;
    std::mt19937_64 random_{13};
};

}  // namespace orvelin::play::test
