#pragma once

#include <gtest/gtest.h>
#include <string>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::test {

/// A position, and the test that it stands as a new game.
class SetupTest : public testing::Test {
 protected:
    static inline const std::string start_fen = positions::start;

    void play(std::string const& text) { position.make_move(position.convert_to_move(text)); }

    /// The position differs in nothing from one that reads its text, and begins with itself.
    void expect_new_game() {
        const std::string text = position.fen();
        ChessPosition fresh(shared_tables());
        fresh.fen(text);
        EXPECT_TRUE(position == fresh) << text;
        EXPECT_EQ(position.initial_position(), text);
        EXPECT_EQ(position.get_hash(), fresh.get_hash()) << text;
        EXPECT_EQ(position.get_pawnhash(), fresh.get_pawnhash()) << text;
        EXPECT_EQ(position.materialindex().index(), fresh.materialindex().index()) << text;
        EXPECT_EQ(position.check(), fresh.check()) << text;
        EXPECT_EQ(position.white_kingsfield(), fresh.white_kingsfield()) << text;
        EXPECT_EQ(position.black_kingsfield(), fresh.black_kingsfield()) << text;
        EXPECT_EQ(position.white_queencheck_squares(), fresh.white_queencheck_squares()) << text;
        EXPECT_EQ(position.black_queencheck_squares(), fresh.black_queencheck_squares()) << text;
        EXPECT_EQ(position.history().size(), 1U);
        EXPECT_EQ(position.history().back().make_move_counter, 0U);
        EXPECT_EQ(position.last_move(), Move());
        EXPECT_EQ(position.get_make_move_counter(), 0U);
        EXPECT_FALSE(position.draw_by_threefold_repetition());
    }

    ChessPosition position{shared_tables()};
};

}  // namespace orvelin::test
