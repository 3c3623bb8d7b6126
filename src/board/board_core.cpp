#include "board/board_core.h"

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <utility>

#include "board/commands.h"
#include "board/core_state.h"
#include "play/reader_text.h"

namespace orvelin::board {

namespace {

using namespace std::string_view_literals;

constexpr std::array commands{
    std::pair{"position"sv, &answer_position},
    std::pair{"line"sv, &answer_line},
    std::pair{"evaluation"sv, &answer_evaluation},
    std::pair{"leaf"sv, &answer_leaf},
    std::pair{"pgn"sv, &answer_pgn},
    std::pair{"to-pgn"sv, &answer_to_pgn},
    std::pair{"record"sv, &answer_record},
    std::pair{"book"sv, &answer_book},
    std::pair{"ending"sv, &answer_ending},
};

command_t find_command(std::string_view name) {
    auto const* const found =
        std::find_if(commands.begin(), commands.end(),
                     [name](auto const& entry) { return entry.first == name; });
    if (found == commands.end()) {
        throw RequestError("nobody knows what to do for " + play::shown(name));
    }
    return found->second;
}

std::string error_text(std::string_view reason) {
    JsonWriter answer;
    answer.open('{');
    answer.text("error", reason);
    answer.close('}');
    return answer.written();
}

/// The answer that is written by the function, or what it throws.
template <typename Function>
std::string answer_by(Function const& write) {
    try {
        JsonWriter answer;
        answer.open('{');
        write(answer);
        answer.close('}');
        return answer.written();
    } catch (std::bad_alloc const&) {
        return error_text("there is too little memory for this");
    } catch (std::exception const& error) {
        return error_text(error.what());
    }
}

}  // namespace

BoardCore::BoardCore() : state_(std::make_unique<CoreState>()) {}

BoardCore::~BoardCore() = default;

std::string BoardCore::answer(std::string_view request) {
    return answer_by([&](JsonWriter& answer) {
        Request const read(request);
        find_command(read.text("ask"))(read, *state_, answer);
    });
}

std::string BoardCore::take_book(std::string_view bytes) {
    return answer_by([&](JsonWriter& answer) {
        state_->book.take(bytes);
        answer.number("entries", static_cast<std::int64_t>(state_->book.size()));
    });
}

}  // namespace orvelin::board
