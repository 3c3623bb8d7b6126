#pragma once

#include <atomic>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "position/bit_board.h"
#include "position/board_position.h"
#include "position/board_tables.h"
#include "position/hasher.h"
#include "position/history.h"
#include "position/material_index.h"
#include "position/move.h"
#include "position/piece.h"
#include "position/rep3filter.h"
#include "position/square.h"

namespace orvelin {

struct Tables;

/// The full state of a game: the board plus castling rights, en passant square, fifty-move
/// counter, keys, repetition record, material and the facts derived for each ply.
///
/// Owns its board and its stacks and refers to the tables, which must outlive it. The history is
/// never empty and its last record describes the current position. Each make_move() adds one entry
/// to the history and to the key stacks and one to the repetition record (two for an irreversible
/// move); unmake_move() removes them. Engine and analysis work on one object with no lock:
/// nobody touches it from another thread while a search runs.
///
/// Moves are taken as legal and are not tested. An illegal one leaves a position without meaning,
/// but touches no memory outside the object.
class ChessPosition {
 public:
    /// Number of positions constructed so far.
    static std::atomic<int> cp_id;

    /// A cleared position with the next id.
    explicit ChessPosition(Tables const& tables);
    /// A position with a new id, read from the FEN text of `other`, with the history, the initial
    /// position, the repetition record and the logging flag of `other`. The key stacks hold the
    /// current keys only and the make-move counter is 0 (oddity 91).
    ChessPosition(ChessPosition const& other);
    /// As the copy constructor, but the id stays.
    ChessPosition& operator=(ChessPosition const& other);
    /// Closes the log if logging.
    ~ChessPosition();

    /// An empty board without kings, White to move. The aggregate boards stay as they were until
    /// they are next recomputed.
    void clear();
    /// The start position of standard chess, stored as the initial position.
    void newgame();
    /// Sets up Chess960 array `n`, or a random one when `n` is not in 0..959. The numbering is not
    /// the published one, and 384 of the arrays have one knight and one empty square (oddity 93).
    void newgame960(int n);
    /// Exchanges the colours and mirrors top to bottom, side to move included. The result is a new
    /// game that begins with itself.
    void flip();
    /// Mirrors left to right; the side to move stays. The result is a new game that begins with
    /// itself.
    void flop();

    /// Makes a move of the generator; its check bit is believed.
    void make_move(Move const& move);
    /// Makes a move that may have been found in another position. Its word need not be true here.
    void make_foreign_move(Move const& move) {
        board_.note_foreign_move(move);
        make_move(move);
    }
    /// Makes a move from outside the generator and finds out whether it gives check.
    void make_move(Square const& from, Square const& to, move_t code);
    /// Unmakes the last move.
    void unmake_move();
    /// Moves the pieces only. Undo it with undo_forced_move() before any other use.
    void force_move(Move const& move) { board_.make_move(move); }
    /// Undoes force_move() of the same word.
    void undo_forced_move(Move const& move) { board_.unmake_move(move); }

    /// Puts a piece on a square; keys and material are left alone.
    void set_piece_on(Square const& square, Piece piece);
    /// Takes a piece from a square; keys and material are left alone.
    void remove_piece_from(Square const& square, Piece piece);
    /// Writes the castling rights of the current record, see history_t.
    void set_castlingrights(short rights);
    /// With true, castling rights are always written by rook file.
    void set_chess960(bool on) { chess960_ = on; }
    /// Changes the side to move and nothing else.
    void switch_color_to_move() {
        ++set_ups_;
        board_.switch_color_to_move();
    }
    /// Counts the pieces again.
    void compute_materialindex();
    /// Opens or closes the position's own log file, "cposition_" + id + ".log".
    void set_logging(bool on);

    /// Side to move: 1 White, 0 Black.
    int stm() const { return board_.stm(); }
    bool white_to_move() const { return board_.white_to_move(); }
    bool black_to_move() const { return board_.black_to_move(); }
    std::uint16_t castlingrights() const { return record().castlingrights; }
    /// En passant target square, or no square.
    Square ep() const { return record().ep; }
    /// Half-moves since the last capture or pawn move.
    std::uint16_t get_dfz() const { return record().dfz; }
    /// Square of the king, or no square.
    Square white_kingsfield() const { return record().white_kingsfield; }
    Square black_kingsfield() const { return record().black_kingsfield; }
    /// All records, the current one last.
    std::vector<history_t> const& history() const { return history_; }
    /// The FEN with which the game began.
    std::string const& initial_position() const { return initial_position_; }
    /// The side to move is in check, as the current record says.
    bool check() const { return record().check; }
    /// The move that led here, the empty move at the start.
    Move last_move() const { return record().last_move; }
    /// Number of moves made by this object since it was cleared.
    std::uint64_t get_make_move_counter() const { return make_move_counter_; }
    /// See BoardPosition.
    bool board_is_inconsistent() const { return board_.board_is_inconsistent(); }
    /// How often the position was changed otherwise than by moves. Together with the make-move
    /// counter of a record it tells whether pieces may have moved in between.
    std::uint64_t set_ups() const { return set_ups_; }
    int id() const { return id_; }
    MaterialIndex const& materialindex() const { return material_index_; }
    BoardPosition const& board() const { return board_; }
    /// Full-move number, 1 at the start.
    int move_number() const { return move_number_; }
    Rep3filter const& repetition_filter() const { return repetition_filter_; }

    BitBoard const& pinned_pieces() const { return record().pinned_pieces; }
    BitBoard const& discovering_pieces() const { return record().discovering_pieces; }
    BitBoard const& white_queencheck_squares() const { return record().white_queencheck_squares; }
    BitBoard const& black_queencheck_squares() const { return record().black_queencheck_squares; }

    BitBoard const& white_pawn() const { return board_.white_pawn(); }
    BitBoard const& white_knight() const { return board_.white_knight(); }
    BitBoard const& white_bishop() const { return board_.white_bishop(); }
    BitBoard const& white_rook() const { return board_.white_rook(); }
    BitBoard const& white_queen() const { return board_.white_queen(); }
    BitBoard const& white_king() const { return board_.white_king(); }
    BitBoard const& black_pawn() const { return board_.black_pawn(); }
    BitBoard const& black_knight() const { return board_.black_knight(); }
    BitBoard const& black_bishop() const { return board_.black_bishop(); }
    BitBoard const& black_rook() const { return board_.black_rook(); }
    BitBoard const& black_queen() const { return board_.black_queen(); }
    BitBoard const& black_king() const { return board_.black_king(); }
    /// The board of one piece id, 0 to 14.
    BitBoard const& piece(int id) const { return board_.piece(id); }
    BitBoard const& white_pieces() const { return board_.white_pieces(); }
    BitBoard const& black_pieces() const { return board_.black_pieces(); }
    BitBoard const& pieces() const { return board_.pieces(); }
    /// The piece on a square id.
    Piece const& operator[](int const& square) const { return board_[square]; }
    Piece get_piece_from(Square const& square) const { return board_[square.id()]; }
    int get_piece_id_from(Square const& square) const { return board_[square.id()].id(); }
    /// The id on the one square of `square`.
    int get_piece_id_from(BitBoard const& square) const {
        return get_piece_id_from(square.get_unique_square());
    }

    /// The position key, equal to the published book key in standard chess.
    std::uint64_t get_hash() const { return hasher_.hash(); }
    /// The key of the pawns alone.
    std::uint64_t get_pawnhash() const { return hasher_.pawn_hash(); }
    /// Rough value of queens, rooks, bishops and knights of both sides, 6200 at the start.
    int nobelmen() const;

    /// Same pieces, side to move, move number and current state; the way there is not compared.
    bool operator==(ChessPosition const& other) const;
    bool operator!=(ChessPosition const& other) const { return !(*this == other); }
    /// A text for diagnosis.
    std::string dump() const;

    /// The first attacker found in the order pawn, knight, bishop, rook, queen, king, of one type
    /// the lowest square; no square when there is none.
    Square white_weakest_attacker(Square const& square) const;
    Square black_weakest_attacker(Square const& square) const;
    /// All pieces of one colour that attack the one square of `target`. Empty for an empty target.
    BitBoard white_attackers(BitBoard const& target) const;
    BitBoard black_attackers(BitBoard const& target) const;
    /// The pieces that attack `target` or would do so if nothing stood between.
    BitBoard white_blocked_attackers(BitBoard const& target) const;
    BitBoard black_blocked_attackers(BitBoard const& target) const;
    bool white_attacks(BitBoard const& target) const;
    bool black_attacks(BitBoard const& target) const;
    /// Finds the pinned, discovering and queencheck sets and the kingsfields of the record.
    void find_pinned_pieces();
    /// Sets the check flag of the current record from the board.
    void look_for_check();

    /// True at the first recurrence of a position since the last irreversible move (oddity 65).
    bool draw_by_threefold_repetition() const { return repetition_filter_.repetition(); }
    /// True from 100 half-moves without capture or pawn move on.
    bool draw_by_fifty_move_rule() const { return record().dfz > 99; }

    /// Replaces the whole position by a FEN text. Missing fields read as Black to move, no
    /// rights, no en passant, 0 and 1 (oddity 84). Neither ranks nor kings are tested.
    /// @throws std::logic_error on a placement character other than a piece, a digit 1-8 or '/'.
    void fen(std::string const& text);
    /// The FEN text of the position.
    std::string fen() const;
    /// The first four fields of the FEN text.
    std::string epd() const;
    /// The move word of a square pair; castling and en passant are found from the board. Neither
    /// legality nor check is looked at.
    Move convert_to_move(Square const& from, Square const& to, move_t code) const;
    /// The move word of a UCI move text, with its check bit. Makes and unmakes the move, so the
    /// make-move counter stays one higher. Legality is not looked at.
    /// @throws std::logic_error when the text is not a move in form.
    Move convert_to_move(std::string const& text);
    /// All moves made, in order.
    std::vector<Move> moves_history() const;
    /// The texts of all moves made, separated by blanks.
    std::string history_str() const;

 private:
    history_t& record() { return history_.back(); }
    history_t const& record() const { return history_.back(); }

    void copy_from(ChessPosition const& other);
    std::uint16_t castlingrights_after(Move const& move) const;
    Square ep_after(Move const& move) const;
    template <int Side>
    Square weakest_attacker(Square const& square) const;
    template <int Side>
    BitBoard pawn_attackers(BitBoard const& target) const;
    template <int Side>
    BitBoard attackers(BitBoard const& target, BitBoard const& occupied) const;
    template <int Side>
    void find_pins_to_king();
    std::uint16_t read_castlingrights(std::string const& field) const;
    std::string placement_text() const;
    std::string castling_text() const;
    std::string king_takes_rook_form(std::string const& text) const;

    int id_;
    BoardPosition board_;
    Tables const& tables_;
    BoardTables board_tables_;
    Hasher<1> hasher_;
    Rep3filter repetition_filter_;
    int move_number_ = 1;
    std::vector<history_t> history_;
    std::string initial_position_;
    MaterialIndex material_index_;
    bool chess960_ = false;
    std::uint64_t make_move_counter_ = 0;
    std::uint64_t set_ups_ = 0;
    bool logging_ = false;
    std::ofstream log_;
};

}  // namespace orvelin
