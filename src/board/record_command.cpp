#include "analyse/record_json.h"
#include "board/board_game.h"
#include "board/commands.h"
#include "board/core_state.h"

namespace orvelin::board {

namespace {

constexpr std::int64_t most_number = std::int64_t{1} << 53;
constexpr std::int64_t deepest = 100;

analyse::Limit limit_of(Request const& request) {
    std::optional<Request> const limit = request.part("limit");
    bool const by_depth = limit && limit->number("depth");
    bool const by_nodes = limit && limit->number("nodes");
    if (by_depth == by_nodes) {
        throw RequestError("limit: a depth or a number of nodes is expected");
    }
    char const* const name = by_depth ? "depth" : "nodes";
    std::int64_t const value = limit->number(name, 1, 1, by_depth ? deepest : most_number);
    return {by_depth ? analyse::Limit::kind::depth : analyse::Limit::kind::nodes,
            static_cast<std::uint64_t>(value)};
}

analyse::Request wanted_of(Request const& request) {
    auto const moves = analyse::parse_wanted_moves(request.text("search", "best,played"));
    if (!moves) {
        throw RequestError("search: best, best,played, best,rest or best,played,rest is expected");
    }
    analyse::Request wanted;
    wanted.limit = limit_of(request);
    wanted.lines = static_cast<int>(request.number("lines", 1, 1, analyse::most_lines));
    wanted.played = moves->played;
    wanted.rest = moves->rest;
    return wanted;
}

/// Text of a page is UTF-8 already.
analyse::Source source_of(Request const& request, std::size_t ply) {
    analyse::Source source;
    source.file = request.text("file", "-");
    source.line = static_cast<std::uint64_t>(request.number("line", 1, 1, most_number));
    source.game = static_cast<std::uint64_t>(request.number("game", 1, 1, most_number));
    source.ply = static_cast<int>(ply);
    for (auto const& [name, value] : request.pairs("tags")) {
        std::string* const field = name == "White"   ? &source.white
                                   : name == "Black" ? &source.black
                                   : name == "Event" ? &source.event
                                   : name == "Date"  ? &source.date
                                                     : nullptr;
        if (field != nullptr) {
            *field = value;
        }
    }
    source.result = request.text("result", "*");
    return source;
}

}  // namespace

void answer_record(Request const& request, CoreState& core, JsonWriter& answer) {
    BoardGame game(request, core.tables());
    std::vector<Move> const& moves = game.moves();
    auto const size = static_cast<std::int64_t>(moves.size());
    auto const ply = static_cast<std::size_t>(request.number("ply", size, 0, size));
    analyse::Request const wanted = wanted_of(request);
    analyse::Asked asked;
    asked.number = static_cast<std::uint64_t>(
        request.number("number", static_cast<std::int64_t>(ply) + 1, 1, most_number));
    asked.source = source_of(request, ply);
    asked.fen = game.fen_at(ply);
    asked.chess960 = game.chess960();
    asked.played = ply < moves.size() ? moves[ply] : Move();
    asked.taken = analyse::taken_by(ply == 0 ? Move() : moves[ply - 1]);
    std::string text;
    analyse::append_json(text, core.recorder.record(asked, wanted));
    text.pop_back();
    answer.members(text);
}

}  // namespace orvelin::board
