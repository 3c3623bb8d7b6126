#include <iostream>
#include <string>

#include "endgame/egt4_pieces.h"

namespace orvelin {

namespace {

constexpr int mate_value = 30000;

/// What must hold between the value of a position and those of its successors, all taken with the
/// sign of the side that wins.
struct rule_t {
    std::string test;
    std::string fault;
    int winner_sign;
    bool winner_moves;
    bool draw;

    bool allows(int value, int next) const {
        if (draw || winner_moves) {
            return next * winner_sign <= value * winner_sign + (draw ? 0 : 1);
        }
        return next * winner_sign > value * winner_sign;
    }
    bool needs(int value, int next) const { return next == value + winner_sign; }
};

rule_t rule_for(int value, bool white_moves) {
    if (value == 0) {
        return {"Test for draw:", "new eval > old eval", white_moves ? 1 : -1, true, true};
    }
    bool const white_wins = value > 0;
    bool const winner_moves = white_wins == white_moves;
    std::string const test = std::string(winner_moves ? "test1" : "test2") + " for " +
                             (white_wins ? "white" : "black") + " winning";
    if (winner_moves) {
        return {test, white_wins ? "new eval > old eval + 1" : "new eval < old eval - 1",
                white_wins ? 1 : -1, true, false};
    }
    return {test, white_wins ? "new eval < old eval" : "new eval > old eval", white_wins ? 1 : -1,
            false, false};
}

}  // namespace

bool Egt4Pieces::is_consistent() {
    for (unsigned int key = 0; key < size_; ++key) {
        if (!is_legal_key(key)) {
            continue;
        }
        set_key(key);
        if (is_legal() && !successors_agree(key)) {
            return false;
        }
    }
    return true;
}

bool Egt4Pieces::successors_agree(unsigned int key) {
    int const value = eval(key);
    // A mate has no successors.
    if (value >= mate_value || value <= -mate_value) {
        return true;
    }
    rule_t const rule = rule_for(value, stm_ == white);
    bool reached = rule.draw;
    Move last;
    generate_moves(moves_);
    for (Move const& move : moves_) {
        make_move(move);
        bool const legal = is_legal();
        int const next = eval(get_key());
        unmake_move(move);
        if (!legal) {
            continue;
        }
        if (!rule.allows(value, next)) {
            return report_fault(rule.test, rule.fault, move);
        }
        reached = reached || rule.needs(value, next);
        last = move;
    }
    if (reached) {
        return true;
    }
    return report_fault(rule.test, "no new eval is one step from the old eval", last);
}

/// False always. A position without any legal move is its own successor in the report.
bool Egt4Pieces::report_fault(std::string const& test, std::string const& fault, Move const& move) {
    auto const describe = [this] {
        unsigned int const key = get_key();
        return fen() + "  eval()=" + std::to_string(eval(key)) + "   key=" + std::to_string(key);
    };
    bool const moved = move.word() != 0;
    std::cerr << test << '\n' << fault << '\n' << "orig fen: " << describe() << '\n';
    if (moved) {
        make_move(move);
    }
    std::cerr << "next fen: " << describe() << "  sign=" << sign_ << std::endl;
    if (moved) {
        unmake_move(move);
    }
    return false;
}

}  // namespace orvelin
