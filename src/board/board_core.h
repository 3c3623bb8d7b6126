#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace orvelin::board {

struct CoreState;

/// What a chess board in a page needs to know of chess: rules, notation, evaluations, records.
/// Answers JSON with JSON; docs/board-core.md tells the forms. It waits for nothing and knows
/// neither files nor clocks, but a search takes its time. One thread at a time.
class BoardCore {
 public:
    BoardCore();
    ~BoardCore();
    BoardCore(BoardCore const&) = delete;
    BoardCore& operator=(BoardCore const&) = delete;

    /// The answer to a request, which may be any bytes: what cannot be answered gives an object
    /// with the member "error", one sentence. Nothing is thrown.
    std::string answer(std::string_view request);
    /// Takes the bytes of an opening book in the Polyglot format, which requests can ask about from
    /// here on, or tells what is wrong with them.
    std::string take_book(std::string_view bytes);

 private:
    std::unique_ptr<CoreState> state_;
};

}  // namespace orvelin::board
