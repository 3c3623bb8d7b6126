#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

#include "analyse/pgn_reader.h"
#include "analyse/pgn_writer.h"
#include "bodies/fuzz_bodies.h"
#include "bodies/position_queries.h"
#include "bodies/require.h"

namespace orvelin::fuzz {

namespace {

using analyse::Game;

struct read_t {
    Game game;
    std::string reason;
};

std::vector<read_t> read_all(std::string_view text, std::size_t block) {
    analyse::InputText input(analyse::fill_from(text, block));
    analyse::PgnReader reader(input, small_tables());
    std::vector<read_t> games;
    Game game;
    while (reader.next(game) != analyse::PgnReader::outcome::end) {
        games.push_back({game, reader.reason()});
    }
    return games;
}

std::string written(Game const& game) {
    analyse::AnnotatedGame annotated;
    annotated.tags = game.tags;
    annotated.start_fen = game.start_fen;
    annotated.chess960 = game.chess960;
    annotated.result = game.result;
    for (Move const& move : game.moves) {
        // The move itself is the only other one that is sure to be legal.
        std::string const comment = game.tags.empty() ? "" : game.tags.front().value;
        annotated.moves.push_back({move, {1}, comment, {{comment, {{move, {}, comment, {}}}}}});
    }
    std::ostringstream out;
    analyse::write_pgn(out, annotated, small_tables());
    return out.str();
}

bool same(Game const& one, Game const& other) {
    return one.moves == other.moves && one.result == other.result &&
           one.start_fen == other.start_fen && one.chess960 == other.chess960;
}

}  // namespace

void fuzz_pgn(std::string_view input) {
    std::vector<read_t> const games = read_all(input, input.size() + 1);
    std::vector<read_t> const again = read_all(input, 1 + input.size() % 7);
    require(games.size() == again.size(), "as many games whatever the blocks");
    for (std::size_t i = 0; i < games.size(); ++i) {
        Game const& game = games[i].game;
        require(same(game, again[i].game) && games[i].reason == again[i].reason,
                "the same game whatever the blocks");
        require(game.number == i + 1, "games are counted");
        if (games[i].reason.empty()) {
            std::vector<read_t> const back = read_all(written(game), 4096);
            require(back.size() == 1 && back[0].reason.empty() && same(back[0].game, game),
                    "what was written is read back");
        }
    }
}

}  // namespace orvelin::fuzz
