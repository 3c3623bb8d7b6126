#include <algorithm>
#include <array>
#include <sstream>

#include "analyse/pgn_reader.h"
#include "analyse/pgn_writer.h"
#include "analyse/san.h"
#include "analyse/utf8.h"
#include "board/board_game.h"
#include "board/commands.h"
#include "board/core_state.h"

namespace orvelin::board {

namespace {

constexpr std::size_t most_text = std::size_t{16} << 20;
/// So many games are told at once, and no game begun behind so many half-moves: what is more is
/// asked for by its number.
constexpr std::int64_t most_games = 1000;
constexpr std::size_t most_half_moves = 100000;
/// Of a game so many tags are told.
constexpr std::size_t most_tags = 100;

using outcome = analyse::PgnReader::outcome;

/// The first of several tags with one name.
void write_tags(analyse::Game const& game, JsonWriter& answer) {
    answer.open("tags", '{');
    for (auto tag = game.tags.begin(); tag != game.tags.end(); ++tag) {
        bool const again = std::any_of(game.tags.begin(), tag, [&tag](analyse::Tag const& other) {
            return other.name == tag->name;
        });
        if (!again) {
            answer.text(tag->name, analyse::valid_utf8(tag->value));
        }
    }
    answer.close('}');
}

void write_game(analyse::Game const& game, std::string const& error, Tables const& tables,
                JsonWriter& answer) {
    answer.open('{');
    answer.number("number", static_cast<std::int64_t>(game.number));
    answer.number("line", static_cast<std::int64_t>(game.line));
    write_tags(game, answer);
    answer.text("start", game.start_fen);
    answer.flag("chess960", game.chess960);
    answer.open("moves", '[');
    for (Move const& move : game.moves) {
        answer.text(move.algebraic(game.chess960));
    }
    answer.close(']');
    answer.open("sans", '[');
    for (std::string const& san : analyse::san_line(game.start_fen, tables, game.moves)) {
        answer.text(san);
    }
    answer.close(']');
    answer.text("result", game.result);
    if (error.empty()) {
        answer.null("error");
    } else {
        answer.text("error", error);
    }
    answer.close('}');
}

/// A game that is too long for the board is told up to there.
std::string shorten(analyse::Game& game) {
    if (game.moves.size() <= BoardGame::most_moves) {
        return "";
    }
    game.moves.resize(BoardGame::most_moves);
    return "game " + std::to_string(game.number) + " has more than " +
           std::to_string(BoardGame::most_moves) + " half-moves";
}

}  // namespace

void answer_pgn(Request const& request, CoreState& core, JsonWriter& answer) {
    std::string_view const text = request.text("text");
    std::int64_t const first = request.number("first", 1, 1, most_text);
    std::int64_t const most = request.number("most", most_games, 1, most_games);
    if (text.size() > most_text) {
        throw RequestError("the text is longer than 16 MiB");
    }
    analyse::InputText input(analyse::fill_from(text));
    analyse::PgnReader reader(input, core.tables());
    analyse::Game game;
    std::int64_t told = 0;
    std::size_t half_moves = 0;
    std::int64_t games = 0;
    std::int64_t broken = 0;
    answer.open("games", '[');
    for (outcome read = reader.next(game); read != outcome::end; read = reader.next(game)) {
        ++games;
        broken += read == outcome::broken ? 1 : 0;
        if (games < first || told == most || half_moves >= most_half_moves) {
            continue;
        }
        ++told;
        game.tags.resize(std::min(game.tags.size(), most_tags));
        std::string const too_long = shorten(game);
        half_moves += game.moves.size();
        write_game(game, reader.reason().empty() ? too_long : reader.reason(), core.tables(),
                   answer);
    }
    answer.close(']');
    answer.number("count", games);
    answer.number("broken", broken);
    bool const more = first + told <= games;
    if (more) {
        answer.number("next", first + told);
    } else {
        answer.null("next");
    }
}

void answer_to_pgn(Request const& request, CoreState& core, JsonWriter& answer) {
    BoardGame game(request, core.tables());
    analyse::AnnotatedGame written;
    written.start_fen = game.start_fen();
    written.chess960 = game.chess960();
    for (auto const& [name, value] : request.pairs("tags")) {
        written.tags.push_back({std::string(name), std::string(value)});
    }
    for (Move const& move : game.moves()) {
        written.moves.emplace_back().move = move;
    }
    written.result = request.text("result", "*");
    constexpr std::array results{"1-0", "0-1", "1/2-1/2", "*"};
    if (std::find(results.begin(), results.end(), written.result) == results.end()) {
        throw RequestError("result: 1-0, 0-1, 1/2-1/2 or * is expected");
    }
    std::ostringstream text;
    analyse::write_pgn(text, written, core.tables());
    answer.text("pgn", text.str());
}

}  // namespace orvelin::board
