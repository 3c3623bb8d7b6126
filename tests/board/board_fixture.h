#pragma once

#include <memory>
#include <rapidjson/fwd.h>
#include <string>
#include <string_view>

#include "board/board_core.h"

namespace orvelin::board::test {

/// One for all tests: an answer depends on its request alone, but for the book.
inline BoardCore& shared_core() {
    static BoardCore core;
    return core;
}

/// An answer, which must be JSON.
class Answer {
 public:
    explicit Answer(std::string const& text);

    std::string text(char const* name) const;
    int number(char const* name) const;
    bool flag(char const* name) const;
    bool is_null(char const* name) const;
    Answer part(char const* name) const;
    std::size_t size(char const* name) const;
    Answer element(char const* name, std::size_t index) const;
    /// The texts of an array, with a space between.
    std::string words(char const* name) const;
    double real(char const* name) const;
    /// The sentence why there is no answer; empty when there is one.
    std::string error() const;

 private:
    explicit Answer(rapidjson::Value const& value);
    rapidjson::Value const& at(char const* name) const;

    std::shared_ptr<rapidjson::Document> document_;
};

/// The answer to the members of a request, in which ' stands for ".
Answer ask(std::string members);

/// "'moves':['e2e4','e7e5']" for the words of a text.
std::string moves_member(std::string_view moves, char const* name = "moves");

}  // namespace orvelin::board::test
