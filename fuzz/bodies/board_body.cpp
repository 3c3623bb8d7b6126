#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "board/board_core.h"
#include "board/board_game.h"
#include "board/ending_tables.h"
#include "board/json_writer.h"
#include "board/request.h"
#include "bodies/fuzz_bodies.h"
#include "bodies/position_queries.h"
#include "bodies/require.h"

namespace orvelin::fuzz {

namespace {

using board::BoardCore;
using board::BoardGame;
using board::Request;
using board::RequestError;

constexpr int most_requests = 4;
constexpr std::int64_t most_nodes = 200;

/// One core for all inputs: to make one takes longer than most requests do.
BoardCore& the_core() {
    static BoardCore core;
    return core;
}

/// Whether the answer would come by and by alone: from a table of an ending, or from a long search,
/// which one to a depth can be in any position.
bool takes_long(Request const& request) {
    std::string_view const ask = request.text("ask");
    if (ask == "record") {
        std::optional<Request> const limit = request.part("limit");
        return limit && (limit->number("depth") || limit->number("nodes").value_or(0) > most_nodes);
    }
    if (ask == "ending") {
        BoardGame game(request, small_tables());
        return board::EndingTables::find(game.position().fen()).has_value();
    }
    return false;
}

bool is_wanted(std::string_view request) {
    try {
        return !takes_long(Request(request));
    } catch (RequestError const&) {
        return true;
    }
}

/// @throws RequestError for an answer that is no object of JSON, which ends the process.
Request ask(std::string const& request, std::string& answer) {
    answer = the_core().answer(request);
    return Request(answer);
}

std::string written_request(char const* name, std::string_view start, bool chess960,
                            std::vector<std::string_view> const& moves) {
    board::JsonWriter request;
    request.open('{');
    request.text("ask", name);
    request.text("start", start);
    request.flag("chess960", chess960);
    request.open("moves", '[');
    for (std::string_view const move : moves) {
        request.text(move);
    }
    request.close(']');
    request.close('}');
    return request.written();
}

/// A position that was told is understood, and told as it is.
void require_same_position(Request const& told) {
    std::string answer;
    Request const again =
        ask(written_request("position", told.text("fen"), told.flag("chess960"), {}), answer);
    require(again.text("fen", "") == told.text("fen"), "a position that was told is understood");
    require(again.texts("remarks", 1).empty(), "nothing is put right in a position that was told");
}

/// What is written as a PGN is read back with as many moves.
void require_read_back(std::string_view pgn, std::size_t moves) {
    board::JsonWriter request;
    request.open('{');
    request.text("ask", "pgn");
    request.text("text", pgn);
    request.close('}');
    std::string answer;
    Request const read = ask(request.written(), answer);
    require(read.number("count") == 1 && read.number("broken") == 0,
            "a game that was written is read back");
    // Each move of the answer stands between quotes; so do the tags, which the game has anyway.
    std::size_t const begin = answer.find("\"moves\":[");
    std::size_t const end = answer.find(']', begin);
    require(begin != std::string::npos && end != std::string::npos, "a game has moves");
    auto const quotes = static_cast<std::size_t>(
        std::count(answer.begin() + static_cast<std::ptrdiff_t>(begin) + 9,
                   answer.begin() + static_cast<std::ptrdiff_t>(end), '"'));
    require(quotes == 2 * moves, "all moves that were written are read back");
}

void ask_and_look(std::string const& line) {
    std::string answer;
    Request const told = ask(line, answer);
    std::string again;
    ask(line, again);
    require(answer == again, "what was asked before makes no difference");
    if (!told.text("error", "").empty()) {
        return;
    }
    Request const request(line);
    std::string_view const name = request.text("ask");
    if (name == "position") {
        require_same_position(told);
    } else if (name == "to-pgn") {
        require_read_back(told.text("pgn"), request.texts("moves", BoardGame::most_moves).size());
    }
}

}  // namespace

void fuzz_board(std::string_view input) {
    the_core().take_book("");
    for (int count = 0; count < most_requests && !input.empty(); ++count) {
        std::size_t const size = std::min(input.find('\n'), input.size());
        std::string const line(input.substr(0, size));
        input.remove_prefix(std::min(size + 1, input.size()));
        if (line.starts_with('b')) {
            Request const told(the_core().take_book(std::string_view(line).substr(1)));
        } else if (is_wanted(line)) {
            ask_and_look(line);
        }
    }
}

}  // namespace orvelin::fuzz
