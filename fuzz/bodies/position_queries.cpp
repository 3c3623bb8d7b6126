#include "bodies/position_queries.h"

#include <cstdint>
#include <string>

#include "bodies/require.h"
#include "evaluation/evaluation.h"
#include "generation/move_generator.h"
#include "generation/tables.h"
#include "position/bit_board.h"
#include "position/board_position.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/move.h"
#include "position/move_list.h"
#include "position/piece.h"
#include "position/square.h"
#include "search/analysis.h"

namespace orvelin::fuzz {

namespace {

constexpr int hash_megabytes = 6;
constexpr std::uint64_t node_limit = 300;
constexpr int depth_limit = 8;
constexpr int squares = 64;

void query_texts(ChessPosition const& position) {
    position.fen();
    position.epd();
    position.dump();
    position.history_str();
    position.board().consistent();
    position.nobelmen();
    position.repetition_filter().result();
}

void query_attackers(ChessPosition const& position) {
    for (int id = 0; id < squares; ++id) {
        Square const square(id);
        BitBoard const target = square.bitboard();
        position.white_weakest_attacker(square);
        position.black_weakest_attacker(square);
        position.white_blocked_attackers(target);
        position.black_blocked_attackers(target);
        require(position.white_attacks(target) == !!position.white_attackers(target),
                "White attacks a square if he has attackers of it");
        require(position.black_attacks(target) == !!position.black_attackers(target),
                "Black attacks a square if he has attackers of it");
    }
}

/// Every right has its king and its rook. Without them castling is generated all the same, by
/// design, and the rook that was not there stands on the board when it is unmade.
bool rights_are_sound(ChessPosition const& position) {
    for (int bit = 0; bit < 16; ++bit) {
        if ((position.castlingrights() >> bit & 1) == 0) {
            continue;
        }
        bool const white = bit < 8;
        BitBoard const rank = white ? rank1 : rank8;
        BitBoard const king = white ? position.white_king() : position.black_king();
        int const rook = white ? bit : bit - 8 + 56;
        if (!(king & rank)) {
            return false;
        }
        if (position[rook] != Piece(white ? white_rook : black_rook)) {
            return false;
        }
    }
    return true;
}

/// A pawn has just passed the en passant square, if there is one.
bool en_passant_is_sound(ChessPosition const& position) {
    if (position.ep() == Square()) {
        return true;
    }
    int const square = position.ep().id();
    bool const white = position.white_to_move();
    return position[square].no_piece() && square / 8 == (white ? 5 : 2) &&
           position[square + (white ? -8 : 8)] == Piece(white ? black_pawn : white_pawn);
}

/// Squares and sets tell the same. A move that is not legal can leave a piece in one of them only.
bool board_is_sound(ChessPosition const& position) {
    BoardPosition written;
    written.fen(position.fen());
    return !position.board().corrupt(0) && written == position.board();
}

/// The moves of the generator can be made and unmade without harm.
bool is_sound(ChessPosition const& position) {
    return board_is_sound(position) && rights_are_sound(position) && en_passant_is_sound(position);
}

void query_moves(ChessPosition& position) {
    MoveGenerator generator(small_tables());
    MoveList list;
    movetable_t table{};
    generator.create_movetable(position, table);
    generator.serialize_captures(position, table, list);
    require(list.size() <= MoveList::capacity, "a list holds the captures");
    generator.generate_moves(position, list);
    require(list.size() <= MoveList::capacity, "a list holds the moves");

    bool const whole = is_sound(position);
    std::string const fen = position.fen();
    std::uint64_t const key = position.get_hash();
    for (Move const& move : list) {
        move.algebraic(false);
        move.algebraic(true);
        position.make_move(move);
        query_texts(position);
        position.unmake_move();
        if (!whole) {
            continue;
        }
        require(position.fen() == fen, "the text comes back when a move is unmade");
        require(position.get_hash() == key, "the key comes back when a move is unmade");
    }
}

/// One search for all inputs: building one takes longer than most inputs.
struct Searcher {
    ChessPosition position{small_tables()};
    Analysis analysis{position, small_tables()};
};

Searcher& the_searcher() {
    static Searcher searcher;
    return searcher;
}

}  // namespace

Tables& small_tables() {
    static Tables& tables = []() -> Tables& {
        static Tables built;
        built.transposition_table.set_size(hash_megabytes);
        return built;
    }();
    return tables;
}

void query(ChessPosition& position) {
    query_texts(position);
    query_attackers(position);
    query_moves(position);
    Evaluation evaluation(position, small_tables());
    evaluation.static_eval();
    evaluation.report();
    evaluation.stats();
}

void search_a_little(ChessPosition const& position) {
    Searcher& searcher = the_searcher();
    searcher.position = position;
    searcher.analysis.init(searcher.position);
    searcher.analysis.reset();
    searcher.analysis.set_depth(depth_limit);
    searcher.analysis.set_nodes(node_limit);
    // Neither may this input see what the one before left, not even one that ended by an exception.
    searcher.analysis.clear();
    searcher.analysis.iterative_search();
}

}  // namespace orvelin::fuzz
