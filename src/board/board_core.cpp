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

}  // namespace

BoardCore::BoardCore() : state_(std::make_unique<CoreState>()) {}

BoardCore::~BoardCore() = default;

std::string BoardCore::answer(std::string_view request) {
    try {
        Request const read(request);
        JsonWriter answer;
        answer.open('{');
        find_command(read.text("ask"))(read, *state_, answer);
        answer.close('}');
        return answer.written();
    } catch (RequestError const& error) {
        return error_text(error.what());
    } catch (std::bad_alloc const&) {
        return error_text("there is too little memory for this");
    } catch (std::exception const& error) {
        return error_text(error.what());
    }
}

}  // namespace orvelin::board
