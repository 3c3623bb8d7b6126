#include "evaluation/mobility.h"

#include "evaluation/mobility_find.h"

namespace orvelin {

Mobility::Mobility(Attacks const& attacks) : attacks_(attacks) {}

// The maps of the king's own attacks stay empty, all others are overwritten.
void Mobility::compute(ChessPosition const& position) {
    mobility_t mobility;
    find_king_maps<white>(position);
    find_king_maps<black>(position);
    find_pawn_attacks<white>(position);
    find_pawn_attacks<black>(position);
    mobility.knight += find_knight_attacks<white>(position);
    mobility.knight -= find_knight_attacks<black>(position);
    mobility.bishop += find_bishop_attacks<white>(position);
    mobility.bishop -= find_bishop_attacks<black>(position);
    mobility.rook += find_rook_attacks<white>(position);
    mobility.rook -= find_rook_attacks<black>(position);
    mobility.queen += find_queen_attacks<white>(position);
    mobility.queen -= find_queen_attacks<black>(position);
    mobility.all = mobility.knight + mobility.bishop + mobility.rook + mobility.queen;
    mobility_ = mobility;
    find_safe_queen_checks<white>(position);
    find_safe_queen_checks<black>(position);
    add_king_attacks<white>(position);
    add_king_attacks<black>(position);
}

}  // namespace orvelin
