#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "position/bit_board.h"
#include "position/move.h"
#include "position/piece.h"
#include "position/square.h"

namespace orvelin {

/// The placement of the pieces and the side to move, and nothing else of a game.
///
/// A ChessPosition owns it, and one thread uses it at a time. Between two calls a bit s is set in
/// the board of piece id p exactly when square s holds p, unless board_is_inconsistent(), and the
/// aggregates agree with the piece boards once compute_pieces() has run. Copies allocate nothing.
///
/// make_move() and unmake_move() run at every node of the search and take the move as legal. A
/// word that is no legal move leaves a position without meaning, but stays inside the object: ids
/// have four bits and find one of sixteen boards, and square 64 has an entry of its own.
class BoardPosition {
 public:
    /// An empty board, White to move.
    BoardPosition() = default;

    /// Empties the piece boards and the squares, White to move. The aggregates stay as they were
    /// until compute_pieces() (oddity 125).
    void clear();
    /// Puts a piece of id 0..14 on a square; no square takes none. The aggregates stay.
    void set_piece_on(Square const& square, int id);
    /// Takes a piece of id 0..14 from a square. The aggregates stay.
    void remove_piece_from(Square const& square, int id);
    /// Makes the aggregates agree with the piece boards.
    void compute_pieces();

    /// Moves the pieces and changes the side to move.
    void make_move(Move const& move);
    /// Undoes make_move() of the same word.
    void unmake_move(Move const& move);
    /// To be called before make_move() of a word that was found on another board: what contradicts
    /// this one makes it inconsistent. Of normal moves between two squares and of null moves
    /// make_move() itself does not find it out.
    void note_foreign_move(Move const& move) { contradicted_ = contradicted_ || contradicts(move); }

    /// Side to move: 1 White, 0 Black.
    int stm() const { return stm_; }
    bool white_to_move() const { return stm_ == 1; }
    bool black_to_move() const { return stm_ == 0; }
    void set_white_to_move() { stm_ = 1; }
    void set_black_to_move() { stm_ = 0; }
    void switch_color_to_move() { stm_ ^= 1; }

    BitBoard const& white_pawn() const { return boards_[orvelin::white_pawn]; }
    BitBoard const& white_knight() const { return boards_[orvelin::white_knight]; }
    BitBoard const& white_bishop() const { return boards_[orvelin::white_bishop]; }
    BitBoard const& white_rook() const { return boards_[orvelin::white_rook]; }
    BitBoard const& white_queen() const { return boards_[orvelin::white_queen]; }
    BitBoard const& white_king() const { return boards_[orvelin::white_king]; }
    BitBoard const& black_pawn() const { return boards_[orvelin::black_pawn]; }
    BitBoard const& black_knight() const { return boards_[orvelin::black_knight]; }
    BitBoard const& black_bishop() const { return boards_[orvelin::black_bishop]; }
    BitBoard const& black_rook() const { return boards_[orvelin::black_rook]; }
    BitBoard const& black_queen() const { return boards_[orvelin::black_queen]; }
    BitBoard const& black_king() const { return boards_[orvelin::black_king]; }
    /// The board of one piece id, 0..14. Ids 0, 7 and 8 hold no pieces.
    BitBoard const& piece(int id) const { return boards_[static_cast<std::size_t>(id)]; }
    BitBoard const& white_pieces() const { return white_pieces_; }
    BitBoard const& black_pieces() const { return black_pieces_; }
    BitBoard const& pieces() const { return pieces_; }
    /// The piece on square id 0..64, no piece on 64.
    Piece const& operator[](int const& square) const {
        return board_[static_cast<std::size_t>(square)];
    }

    /// True while sets, squares and the material that is kept beside the board may disagree, so
    /// that what is found from the one need not be what is found from the other. No legal move
    /// brings it about. A move whose word alone is odd does, until it is unmade: one that stays on
    /// its square, promotes what is no pawn, or captures by a null move. For good, until clear(),
    /// does a word that contradicts the board, since unmaking it leaves another board than before;
    /// a change by hand; and a FEN text with two pieces on one square. Whether a normal move
    /// between two squares or a null move contradicts the board only note_foreign_move() finds out.
    bool board_is_inconsistent() const { return contradicted_ || odd_moves_ != 0; }
    /// Makes it true for good, for a copy of such a board.
    void set_board_inconsistent() { contradicted_ = true; }

    /// Same side to move and same piece boards; squares and aggregates are not compared.
    bool operator==(BoardPosition const& other) const {
        return stm_ == other.stm_ && boards_ == other.boards_;
    }

    /// Exchanges the colours and mirrors top to bottom, side to move included.
    void flip();
    /// Mirrors left to right; the side to move stays.
    void flop();

    /// Replaces the position by placement and side to move of a FEN text. Rank lengths are not
    /// tested, and pieces beside the board are ignored (oddity 84).
    /// Any side but "w" means Black.
    /// @throws std::logic_error for a placement character other than a piece, a digit 1-8 or '/';
    /// the position is half filled then.
    void fen(std::string const& text);

    /// True when a side has not exactly one king or two piece boards overlap. The argument is
    /// ignored. For diagnosis.
    bool corrupt(std::uint64_t ignored) const;
    /// Compares squares with piece boards, for diagnosis. An entry whose own board lacks the
    /// square passes when no other board holds it (oddity 92).
    bool consistent() const;
    /// Side to move and the twelve boards as text.
    std::string dump() const;

 private:
    bool contradicts(Move const& move) const;
    void make_normal_move(Move const& move);
    void unmake_normal_move(Move const& move);
    // Rare, or, as null moves, little work, and kept out of make_move() and unmake_move(), so that
    // these stay small enough to be put in line.
    [[gnu::noinline]] void make_special_move(Move const& move);
    [[gnu::noinline]] void unmake_special_move(Move const& move);
    [[gnu::noinline]] void note_odd_move(Move const& move);
    [[gnu::noinline]] void forget_odd_move(Move const& move);
    void place(std::size_t square, std::size_t id);
    void lift(std::size_t square, std::size_t id);

    BitBoard white_pieces_;
    BitBoard black_pieces_;
    BitBoard pieces_;
    /// By piece id 0..14, and a spare entry that makes every four-bit id an index. An array and
    /// not a vector, so that copies do not allocate.
    std::array<BitBoard, 16> boards_{};
    /// By square id, and an empty entry for no square.
    std::array<Piece, 65> board_{};
    int stm_ = 1;
    /// Moves made and not unmade whose word alone is odd.
    std::uint32_t odd_moves_ = 0;
    bool contradicted_ = false;
};

}  // namespace orvelin
