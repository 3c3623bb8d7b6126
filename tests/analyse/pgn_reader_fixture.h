#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "analyse/pgn_reader.h"
#include "support/shared_tables.h"

namespace orvelin::analyse::test {

/// A game as it was read, for comparison with what is expected.
struct ReadGame {
    Game game;
    std::string reason;
    std::vector<std::string> remarks;

    /// The moves in UCI form between blanks, castling onto the rook.
    std::string moves() const {
        std::string text;
        for (Move const& move : game.moves) {
            text += (text.empty() ? "" : " ") + move.algebraic(true);
        }
        return text;
    }
};

/// All games of a text that comes in blocks of this size.
inline std::vector<ReadGame> read_games(std::string_view text, std::size_t block = 65536) {
    InputText input(fill_from(text, block));
    auto const reader = std::make_unique<PgnReader>(input, orvelin::test::shared_tables());
    std::vector<ReadGame> games;
    ReadGame read;
    for (auto outcome = reader->next(read.game); outcome != PgnReader::outcome::end;
         outcome = reader->next(read.game)) {
        read.reason = reader->reason();
        read.remarks = reader->remarks();
        EXPECT_EQ(read.reason.empty(), outcome == PgnReader::outcome::game);
        games.push_back(read);
    }
    return games;
}

/// The only game of a text.
inline ReadGame read_game(std::string_view text) {
    std::vector<ReadGame> games = read_games(text);
    EXPECT_EQ(games.size(), 1U) << text;
    return games.empty() ? ReadGame() : games.front();
}

}  // namespace orvelin::analyse::test
