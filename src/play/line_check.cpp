#include "play/line_check.h"

#include <algorithm>
#include <cstddef>

#include "play/dead_draw.h"
#include "position/move_buffer.h"
#include "position/move_list.h"

namespace orvelin::play {

LineCheck::LineCheck(Tables const& tables, ChessPosition const& root)
    : position_(root), generator_(tables), root_moves_(legal_moves()) {}

std::vector<Move> LineCheck::legal_moves() {
    MoveBuffer buffer;
    MoveList list(buffer.data());
    generator_.generate_moves(position_, list);
    return {list.begin(), list.end()};
}

bool LineCheck::is_drawn() const {
    return position_.draw_by_threefold_repetition() || position_.get_dfz() > last_reversible_ply;
}

bool LineCheck::ends_game(std::vector<Move> const& moves) {
    for (Move const& move : moves) {
        position_.make_move(move);
    }
    bool const over = is_drawn() || legal_moves().empty();
    for (std::size_t i = 0; i < moves.size(); ++i) {
        position_.unmake_move();
    }
    return over;
}

std::vector<Move> LineCheck::true_part(PrincipalVariation const& line) {
    std::vector<Move> moves;
    for (Move const& move : line) {
        std::vector<Move> const legal = legal_moves();
        if (std::find(legal.begin(), legal.end(), move) == legal.end()) {
            break;
        }
        moves.push_back(move);
        position_.make_move(move);
        if (is_drawn()) {
            break;
        }
    }
    for (std::size_t i = 0; i < moves.size(); ++i) {
        position_.unmake_move();
    }
    return moves;
}

}  // namespace orvelin::play
