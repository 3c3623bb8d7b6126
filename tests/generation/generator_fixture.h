#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "support/shared_tables.h"

namespace orvelin::test {

/// A position and a generator, and lists of moves as texts: "e1g1" with castling as the king
/// taking the rook, promotions with their letter.
class GeneratorFixture : public testing::Test {
 protected:
    using texts_t = std::vector<std::string>;

    /// All moves of the position, in the generator's order.
    std::vector<Move> moves(std::string const& fen) {
        position_.fen(fen);
        MoveList list;
        generator_.generate_moves(position_, list);
        return {list.begin(), list.end()};
    }

    /// The list of the captures stage alone.
    std::vector<Move> captures(std::string const& fen) {
        position_.fen(fen);
        movetable_t table;
        MoveList list;
        generator_.create_movetable(position_, table);
        generator_.serialize_captures(position_, table, list);
        return {list.begin(), list.end()};
    }

    static texts_t texts(std::vector<Move> const& list) {
        texts_t result;
        for (Move const& move : list) {
            result.push_back(move.algebraic(true));
        }
        return result;
    }

    /// Texts of the moves that leave one square.
    texts_t moves_from(std::string const& fen, std::string const& from) {
        texts_t result;
        for (std::string const& text : texts(moves(fen))) {
            if (text.substr(0, 2) == from) {
                result.push_back(text);
            }
        }
        return result;
    }

    /// The move with this text, the empty move when it is not generated.
    Move find(std::string const& fen, std::string const& text) {
        for (Move const& move : moves(fen)) {
            if (move.algebraic(true) == text) {
                return move;
            }
        }
        return Move();
    }

    bool generates(std::string const& fen, std::string const& text) {
        return find(fen, text) != Move();
    }

    /// The check bit of a move that must be generated.
    bool checks(std::string const& fen, std::string const& text) {
        Move const move = find(fen, text);
        EXPECT_NE(move, Move()) << text << " is missing in " << fen;
        return move.check();
    }

    ChessPosition position_{shared_tables()};
    MoveGenerator generator_{shared_tables()};
};

}  // namespace orvelin::test
