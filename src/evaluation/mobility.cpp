#include "evaluation/mobility.h"

#include "evaluation/mobility_find.h"
#include "position/side.h"

namespace orvelin {

Mobility::Mobility(Attacks const& attacks) : attacks_(attacks) {}

// The maps of the king's own attacks stay empty, all others are overwritten.
void Mobility::compute(ChessPosition const& position) {
    mobility_t mobility;
    find_king_maps<side::white>(position);
    find_king_maps<side::black>(position);
    find_pawn_attacks<side::white>(position);
    find_pawn_attacks<side::black>(position);
    mobility.knight += find_knight_attacks<side::white>(position);
    mobility.knight -= find_knight_attacks<side::black>(position);
    mobility.bishop += find_bishop_attacks<side::white>(position);
    mobility.bishop -= find_bishop_attacks<side::black>(position);
    mobility.rook += find_rook_attacks<side::white>(position);
    mobility.rook -= find_rook_attacks<side::black>(position);
    mobility.queen += find_queen_attacks<side::white>(position);
    mobility.queen -= find_queen_attacks<side::black>(position);
    mobility.all = mobility.knight + mobility.bishop + mobility.rook + mobility.queen;
    mobility_ = mobility;
    find_safe_queen_checks<side::white>(position);
    find_safe_queen_checks<side::black>(position);
    add_king_attacks<side::white>(position);
    add_king_attacks<side::black>(position);
}

}  // namespace orvelin
