#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "position/move_list.h"
#include "search/analysis.h"
#include "search/tt_record.h"
#include "support/analysis_probe.h"

namespace orvelin::test {

using texts_t = std::vector<std::string>;

/// The texts of the moves of a list, in its order.
template <typename Moves>
texts_t texts_of(Moves const& moves) {
    texts_t texts;
    for (Move const& move : moves) {
        texts.push_back(move.algebraic(true));
    }
    return texts;
}

/// The tables of the search tests; their transposition table is small, so that clearing it
/// costs little.
inline Tables& search_tables() {
    static Tables& tables = []() -> Tables& {
        static Tables built;
        built.transposition_table.set_size(6);
        return built;
    }();
    return tables;
}

/// A position and a search object on it, with the means to set up the state of one node.
///
/// Moves are named by their texts, castling as the king taking his own rook.
class AnalysisFixture : public testing::Test {
 protected:
    /// Sets up a node: the position after the moves, with cleared tables, at ply 0.
    void set(std::string const& fen, texts_t const& texts = {}) {
        position_.fen(fen);
        for (std::string const& text : texts) {
            position_.make_move(move(text));
        }
        analysis_.init(position_);
        analysis_.reset();
        analysis_.reset_max_nodes();
        analysis_.clear();
        probe_.ply(0);
        probe_.iteration(50);
        probe_.seldepth(0);
        probe_.mate_attack_count(0);
        probe_.leaf_count(0);
        // Empty entries have date 0: a search never has it before its stamp wraps.
        probe_.date(1);
    }

    /// All legal moves in the generator's order.
    std::vector<Move> moves() {
        MoveList list;
        probe_.generator().generate_moves(position_, list);
        return {list.begin(), list.end()};
    }

    /// The legal move with this text; a failed test and the empty move if there is none.
    Move move(std::string const& text) {
        for (Move const& candidate : moves()) {
            if (candidate.algebraic(true) == text) {
                return candidate;
            }
        }
        ADD_FAILURE() << text << " is no legal move in " << position_.fen();
        return Move();
    }

    /// The legal moves with these texts, in their order.
    MoveList list_of(texts_t const& texts) {
        MoveList list;
        for (std::string const& text : texts) {
            list[static_cast<int>(list.size())] = move(text);
            list.set_size(static_cast<int>(list.size()) + 1);
        }
        return list;
    }

    /// The legal moves with their classes, sorted as a node of the search sorts them.
    std::vector<Move> sorted_moves(int depth = 1, bool pv = false, Move hash_move = Move()) {
        MoveList list;
        probe_.generator().generate_moves(position_, list);
        analysis_.localsort(list, depth, pv, hash_move);
        return {list.begin(), list.end()};
    }

    /// The class that sorting gives to a legal move.
    xmove_t class_of(std::string const& text, int depth = 1, bool pv = false,
                     Move hash_move = Move()) {
        for (Move const& candidate : sorted_moves(depth, pv, hash_move)) {
            if (candidate.algebraic(true) == text) {
                return candidate.xcode();
            }
        }
        ADD_FAILURE() << text << " is no legal move in " << position_.fen();
        return no_xmove_t;
    }

    /// Stores an entry for the current node.
    void store(bound_t bound, int depth, int score, Move move = Move()) {
        analysis_.put_in_tt(bound, depth, score, move, probe_.date());
    }

    /// Stores an entry for the node behind a move.
    void store_behind(Move const& move, bound_t bound, int depth, int score) {
        analysis_.make_move(move);
        store(bound, depth, score);
        analysis_.unmake_move(move);
    }

    /// The entry of the current node, nullptr when there is none.
    TTrecord const* record() { return probe_.table().find(position_.get_hash()); }

    /// The entry of the node behind a move, nullptr when there is none.
    TTrecord const* record_behind(Move const& move) {
        analysis_.make_move(move);
        TTrecord const* const found = record();
        analysis_.unmake_move(move);
        return found;
    }

    /// Static evaluation of the current node, with the maps of the evaluation brought up to it.
    int eval() { return analysis_.static_eval(); }

    /// Nodes that the function counts.
    template <typename Search>
    std::uint64_t nodes_of(Search search) {
        std::uint64_t const before = analysis_.get_node_count();
        search();
        return analysis_.get_node_count() - before;
    }

    std::uint64_t node_count() const { return analysis_.get_node_count(); }

    ChessPosition position_{search_tables()};
    Analysis analysis_{position_, search_tables()};
    AnalysisProbe probe_{analysis_};
};

}  // namespace orvelin::test
