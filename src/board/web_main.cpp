// The core of the board as a module of WebAssembly: what its worker calls.

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "board/board_core.h"

namespace {

/// Bytes that come in, and those that go out.
std::string request;
std::string answer;

std::string_view first_of_request(std::size_t bytes) {
    return std::string_view(request).substr(0, bytes);
}

/// A long request is not held any longer.
std::size_t keep(std::string text) {
    answer = std::move(text);
    request = std::string();
    return answer.size();
}

orvelin::board::BoardCore& core() {
    static auto& core = *new orvelin::board::BoardCore;
    return core;
}

}  // namespace

/// Room for so many bytes of a request, which is there until the next call. It throws, and so ends
/// the module, where there is no memory.
extern "C" __attribute__((export_name("orvelin_room"))) char* orvelin_room(std::size_t bytes) {
    request.resize(bytes);
    return request.data();
}

/// Takes the opening book of so many bytes in the room, and tells as orvelin_answer() does.
extern "C" __attribute__((export_name("orvelin_book"))) std::size_t orvelin_book(
    std::size_t bytes) {
    return keep(core().take_book(first_of_request(bytes)));
}

/// Answers the request of so many bytes in the room, and tells the number of bytes of the answer.
extern "C" __attribute__((export_name("orvelin_answer"))) std::size_t orvelin_answer(
    std::size_t bytes) {
    return keep(core().answer(first_of_request(bytes)));
}

/// Where the last answer stands, until the next one.
extern "C" __attribute__((export_name("orvelin_answer_text"))) char const* orvelin_answer_text() {
    return answer.data();
}
