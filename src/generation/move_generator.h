#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "generation/attack_sets.h"
#include "position/bit_board.h"
#include "position/move.h"
#include "position/move_list.h"
#include "position/square.h"

namespace orvelin {

class Attacks;
class ChessPosition;
class Connections;
struct Tables;

/// For each from square the set of squares its piece reaches; own pieces are not excluded.
using movetable_t = std::array<std::uint64_t, 64>;

/// Strictly legal move generation, with the check bit of every move found before it is made.
///
/// First a move table is built, then it is serialised into a list: captures and promotions, then
/// quiet moves. Nothing is made and unmade. The object owns only the working state of the
/// generation that runs (own pieces, pins, check squares, ...), which the serialisers fill before
/// any test is called; table and list are the caller's. One object serves one thread.
/// The template parameter is the side to move, 1 White and 0 Black, as `stm()` gives it.
class MoveGenerator {
 public:
    explicit MoveGenerator(Tables const& tables);
    /// Copies the references to the tables; the working state starts empty.
    MoveGenerator(MoveGenerator const& other);
    MoveGenerator& operator=(MoveGenerator const&) = delete;

    /// Zeroes `table` and fills it for the side to move.
    void create_movetable(ChessPosition const& position, movetable_t& table);
    /// Adds the pieces of `Side` to a zeroed table, at the occupancy that `create_movetable`
    /// cached.
    template <int Side>
    void generate_movetable(ChessPosition const& position, movetable_t& table);

    /// Fills `list` with the legal captures and promotions of a table made for `position`.
    void serialize_captures(ChessPosition const& position, movetable_t& table, MoveList& list);
    /// The same list without a table: what a piece reaches is looked up when its turn comes.
    void generate_captures_directly(ChessPosition const& position, MoveList& list) {
        generate_captures_directly(position, unknown_attacks, list);
    }
    /// The same list for whoever knows what the side to move attacks at most: what attacks no enemy
    /// is not looked at.
    void generate_captures_directly(ChessPosition const& position, attack_sets_t const& attacks,
                                    MoveList& list);
    /// Fills `list` with all legal moves of a table made for `position`.
    void serialize_moves(ChessPosition const& position, movetable_t& table, MoveList& list);
    /// `create_movetable` on a table of its own, then `serialize_moves`.
    void generate_moves(ChessPosition const& position, MoveList& list);

    /// The two stages; called by the serialisers only. Captures come sorted by victim.
    template <int Side>
    void generate_captures(ChessPosition const& position, movetable_t& table, MoveList& list);
    template <int Side>
    void generate_quiet_moves(ChessPosition const& position, movetable_t& table, MoveList& list);

    /// Legality of moves of knights, bishops, rooks, queens and of quiet pawn moves.
    bool is_legal(ChessPosition const& position, Move const& move) const;
    /// Legality of pawn captures, en passant included, and of promotions.
    bool is_legal_pawnmove(ChessPosition const& position, Move const& move) const;
    /// Legality of king moves, castling excepted.
    template <int Side>
    bool is_legal_kingmove(ChessPosition const& position, Move const& move) const;
    /// Writes the check bit and the class `xnormal_move` into `move`.
    template <int Side>
    void set_checkstatus(ChessPosition const& position, Move& move);

    /// Takes the target of `move` out of the table, for a search that serialises stage by stage.
    void remove(Move const& move, movetable_t& table);

 private:
    struct TableReach;
    struct DirectReach;

    template <int Side>
    void prepare(ChessPosition const& position);
    template <int Side, bool CapturesOnly>
    void serialize(ChessPosition const& position, movetable_t& table, MoveList& list);

    /// Enters what each piece of this id reaches; `enemies` are for pawns.
    template <int Side, int PieceId>
    void fill(ChessPosition const& position, BitBoard enemies, movetable_t& table) const;
    template <int Side>
    void serialize_captures_directly(ChessPosition const& position, attack_sets_t const& attacks,
                                     MoveList& list);
    /// False when the side has neither a capture nor a promotion; else it may have one.
    template <int Side>
    static bool may_capture(ChessPosition const& position, attack_sets_t const& attacks);

    /// The stage of the captures; `Reach` tells what a piece reaches.
    template <int Side, typename Reach>
    void captures(ChessPosition const& position, Reach const& reach, MoveList& list);
    template <int Side>
    void captures_directly(ChessPosition const& position, attack_sets_t const& attacks,
                           MoveList& list);
    template <int Side, typename Reach>
    void pawn_captures(ChessPosition const& position, Reach const& reach, MoveList& list);
    template <int Side>
    void en_passant_capture(ChessPosition const& position, Square from, MoveList& list);
    template <int Side>
    void promotions(ChessPosition const& position, Square from, BitBoard to_set, MoveList& list);
    /// Appends the moves of one piece other than the king to squares that were found legal.
    template <int Side, int PieceId>
    void append_moves(ChessPosition const& position, Square from, BitBoard to_set,
                      BitBoard check_squares, MoveList& list);
    template <int Side, int PieceId, typename Reach>
    void piece_captures(ChessPosition const& position, Reach const& reach, MoveList& list);
    template <int Side, int PieceId, typename Reach>
    void piece_moves(ChessPosition const& position, Reach const& reach, BitBoard to_mask,
                     MoveList& list);
    template <int Side, typename Reach>
    void king_moves(ChessPosition const& position, Reach const& reach, BitBoard to_mask,
                    MoveList& list);
    /// What a piece on `from` reaches at the cached occupancy; `enemies` are for pawns.
    template <int Side, int PieceId>
    BitBoard reached_from(Square from, BitBoard enemies) const;
    template <int Side>
    void castlings(ChessPosition const& position, MoveList& list);
    template <int Side>
    bool castling_allowed(ChessPosition const& position, Square king, Square rook) const;

    template <int Side>
    bool checks_by_normal_move(ChessPosition const& position, Move const& move) const;
    template <int Side>
    bool checks_by_promotion(ChessPosition const& position, Move const& move) const;
    bool checks_by_castling(Move const& move) const;
    template <int Side>
    bool checks_by_en_passant(ChessPosition const& position, Move const& move) const;
    template <int Side>
    bool slider_reaches_king(ChessPosition const& position, BitBoard const& occupied) const;

    /// The squares to which a piece on `from`, the king excepted, may go without leaving the own
    /// king in check: the common form of the tests of legality, for all targets at once.
    BitBoard legal_targets(ChessPosition const& position, Square from) const;
    /// The squares from which a piece of this type, in either colour, gives check directly.
    BitBoard direct_check_squares(Piece piece) const;
    template <int PieceId>
    BitBoard direct_check_squares() const;
    bool en_passant_keeps_king_safe(Move const& move) const;
    /// Appends a move. What a list cannot hold is dropped: no game reaches 256 moves, only a
    /// position made by hand does.
    void store(MoveList& list, Move const& move);
    void sort_by_victim(MoveList& list) const;

    Connections const* connections_;
    Attacks const* attacks_;
    int move_count_ = 0;
    BitBoard occupied_;
    BitBoard pinned_;
    BitBoard discovering_;
    BitBoard own_pieces_;
    BitBoard enemy_pieces_;
    BitBoard targets_;
    BitBoard own_king_;
    BitBoard enemy_king_;
    BitBoard rook_check_squares_;
    BitBoard bishop_check_squares_;
    BitBoard knight_check_squares_;
    BitBoard pawn_check_squares_;
    /// Enemy pieces that attack the own king or stand on one of its lines. Filled when a move can
    /// need them: in check, with pieces pinned, or where an en passant capture is possible.
    std::vector<Square> potential_checkers_;
};

}  // namespace orvelin
