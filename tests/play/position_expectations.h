#pragma once

#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "play/hostile_lines.h"
#include "play/position_reader.h"
#include "position/chess_position.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

/// Reads a line; whatever is said about it is fit to be shown.
inline PositionText read(std::string_view arguments, ChessPosition& position) {
    PositionText text = read_position(arguments, orvelin::test::shared_tables(), position);
    expect_presentable(text.refusal.reason);
    expect_presentable(text.remarks);
    return text;
}

/// Everything that a search can see of the two positions, but the counter of moves made.
inline void expect_same(ChessPosition const& left, ChessPosition const& right) {
    std::string const text = left.fen();
    EXPECT_TRUE(left == right) << text;
    EXPECT_EQ(text, right.fen());
    EXPECT_EQ(left.initial_position(), right.initial_position());
    EXPECT_EQ(left.get_hash(), right.get_hash()) << text;
    EXPECT_EQ(left.get_pawnhash(), right.get_pawnhash()) << text;
    EXPECT_EQ(left.materialindex().index(), right.materialindex().index()) << text;
    EXPECT_EQ(left.repetition_filter(), right.repetition_filter()) << text;
    ASSERT_EQ(left.history().size(), right.history().size()) << text;
    for (std::size_t i = 0; i < left.history().size(); ++i) {
        history_t const& one = left.history()[i];
        history_t const& other = right.history()[i];
        EXPECT_EQ(one.last_move.word(), other.last_move.word()) << text << " move " << i;
        EXPECT_EQ(one.check, other.check) << text << " move " << i;
        EXPECT_EQ(one.castlingrights, other.castlingrights) << text << " move " << i;
        EXPECT_EQ(one.dfz, other.dfz) << text << " move " << i;
        EXPECT_EQ(one.ep, other.ep) << text << " move " << i;
        EXPECT_EQ(one.pinned_pieces, other.pinned_pieces) << text << " move " << i;
        EXPECT_EQ(one.discovering_pieces, other.discovering_pieces) << text << " move " << i;
        EXPECT_EQ(one.white_queencheck_squares, other.white_queencheck_squares) << text;
        EXPECT_EQ(one.black_queencheck_squares, other.black_queencheck_squares) << text;
        EXPECT_EQ(one.white_kingsfield, other.white_kingsfield) << text;
        EXPECT_EQ(one.black_kingsfield, other.black_kingsfield) << text;
    }
}

}  // namespace orvelin::play::test
