#include "generation/move_generator.h"

#include "generation/attacks.h"
#include "generation/move_generator_pieces.h"
#include "position/board_tables.h"
#include "position/chess_position.h"
#include "position/set_steps.h"
#include "position/side.h"

namespace orvelin {

namespace {

/// No position has more potential checkers than squares, so the vector never grows again.
constexpr std::size_t most_checkers = 64;

}  // namespace

MoveGenerator::MoveGenerator(Tables const& tables)
    : connections_(&BoardTables(tables).connections), attacks_(&BoardTables(tables).attacks) {
    potential_checkers_.reserve(most_checkers);
}

MoveGenerator::MoveGenerator(MoveGenerator const& other)
    : connections_(other.connections_), attacks_(other.attacks_) {
    potential_checkers_.reserve(most_checkers);
}

void MoveGenerator::create_movetable(ChessPosition const& position, movetable_t& table) {
    table.fill(0);
    occupied_ = position.pieces();
    if (position.white_to_move()) {
        generate_movetable<side::white>(position, table);
    } else {
        generate_movetable<side::black>(position, table);
    }
}

template <int Side>
void MoveGenerator::generate_movetable(ChessPosition const& position, movetable_t& table) {
    using Own = SideOf<Side>;
    BitBoard const enemies = SideOf<enemy_of<Side>>::pieces(position);
    fill<Side, Own::pawn>(position, enemies, table);
    fill<Side, Own::knight>(position, enemies, table);
    fill<Side, Own::bishop>(position, enemies, table);
    fill<Side, Own::rook>(position, enemies, table);
    fill<Side, Own::queen>(position, enemies, table);
    fill<Side, Own::king>(position, enemies, table);
}

template <int Side, int PieceId>
void MoveGenerator::fill(ChessPosition const& position, BitBoard enemies,
                         movetable_t& table) const {
    BitBoard pieces = position.piece(PieceId);
    while (pieces) {
        Square const from = pieces.take_first_square();
        table[index(from)] = to_ull(reached_from<Side, PieceId>(from, enemies));
    }
}

void MoveGenerator::serialize_captures(ChessPosition const& position, movetable_t& table,
                                       MoveList& list) {
    if (position.white_to_move()) {
        serialize<side::white, true>(position, table, list);
    } else {
        serialize<side::black, true>(position, table, list);
    }
}

void MoveGenerator::generate_captures_directly(ChessPosition const& position,
                                               attack_sets_t const& attacks, MoveList& list) {
    if (position.board_is_inconsistent()) {
        // Two pieces on a square share its entry of the table, and go where the later of them goes.
        movetable_t table;
        create_movetable(position, table);
        serialize_captures(position, table, list);
    } else if (position.white_to_move()) {
        serialize_captures_directly<side::white>(position, attacks, list);
    } else {
        serialize_captures_directly<side::black>(position, attacks, list);
    }
}

void MoveGenerator::serialize_moves(ChessPosition const& position, movetable_t& table,
                                    MoveList& list) {
    if (position.white_to_move()) {
        serialize<side::white, false>(position, table, list);
    } else {
        serialize<side::black, false>(position, table, list);
    }
}

void MoveGenerator::generate_moves(ChessPosition const& position, MoveList& list) {
    movetable_t table;
    create_movetable(position, table);
    serialize_moves(position, table, list);
}

template <int Side, bool CapturesOnly>
void MoveGenerator::serialize(ChessPosition const& position, movetable_t& table, MoveList& list) {
    list.clear();
    move_count_ = 0;
    prepare<Side>(position);
    generate_captures<Side>(position, table, list);
    if constexpr (!CapturesOnly) {
        generate_quiet_moves<Side>(position, table, list);
    }
    list.set_size(move_count_);
}

// Of several kings the sets know one.
template <int Side>
bool MoveGenerator::may_capture(ChessPosition const& position, attack_sets_t const& attacks) {
    using Own = SideOf<Side>;
    BitBoard other_kings = Own::kings(position);
    other_kings.get_reset_square();
    return (attacks.attacked & SideOf<enemy_of<Side>>::pieces(position)) ||
           (Own::pawns(position) & ahead<enemy_of<Side>>(Own::last_rank, 1)) ||
           position.ep() != Square() || other_kings;
}

template <int Side>
void MoveGenerator::serialize_captures_directly(ChessPosition const& position,
                                                attack_sets_t const& attacks, MoveList& list) {
    list.clear();
    if (!may_capture<Side>(position, attacks)) {
        return;
    }
    move_count_ = 0;
    prepare<Side>(position);
    captures_directly<Side>(position, attacks, list);
    list.set_size(move_count_);
}

template <int Side>
void MoveGenerator::prepare(ChessPosition const& position) {
    occupied_ = position.pieces();
    pinned_ = position.pinned_pieces();
    discovering_ = position.discovering_pieces();
    own_pieces_ = SideOf<Side>::pieces(position);
    enemy_pieces_ = SideOf<enemy_of<Side>>::pieces(position);
    own_king_ = position.piece(SideOf<Side>::king);
    enemy_king_ = position.piece(SideOf<enemy_of<Side>>::king);

    potential_checkers_.clear();
    if (position.check() || pinned_ || position.ep() != Square()) {
        BitBoard checkers = SideOf<enemy_of<Side>>::blocked_attackers(position, own_king_);
        while (checkers) {
            potential_checkers_.push_back(checkers.take_first_square());
        }
    }

    Square const king = enemy_king_.get_unique_square();
    rook_check_squares_ = attacks_->rook(king, occupied_);
    bishop_check_squares_ = attacks_->bishop(king, occupied_);
    knight_check_squares_ = attacks_->knight(king);
    pawn_check_squares_ = pawn_attacks<enemy_of<Side>>(enemy_king_);
}

void MoveGenerator::remove(Move const& move, movetable_t& table) {
    BitBoard const to = move.to().bitboard();
    auto const from = static_cast<std::size_t>(move.from().id());
    if (from < table.size()) {
        table[from] &= ~to_ull(to);
    }
}

void MoveGenerator::store(MoveList& list, Move const& move) {
    if (move_count_ < MoveList::capacity) {
        list[move_count_++] = move;
    }
}

template void MoveGenerator::generate_movetable<side::black>(ChessPosition const&, movetable_t&);
template void MoveGenerator::generate_movetable<side::white>(ChessPosition const&, movetable_t&);

}  // namespace orvelin
