#include <array>
#include <cstddef>
#include <cstdint>

#include "position/chess_position.h"
#include "position/set_steps.h"
#include "position/side.h"
#include "search/analysis.h"
#include "search/move_sort.h"

namespace orvelin {

namespace {

/// The running values of a ranking have 32 bits (oddity 50).
std::int32_t low_word(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

/// The places in the list of the best few moves by a value above 0; the earlier of two equal moves
/// stays ahead. Places that are not taken hold -1.
template <std::size_t Places>
struct Ranking {
    std::array<int, Places> indices;
    std::array<std::int32_t, Places> values{};

    Ranking() { indices.fill(-1); }

    void enter(int index, std::int64_t value) {
        if (value <= 0) {
            return;
        }
        for (std::size_t place = 0; place < Places; ++place) {
            if (value <= values[place]) {
                continue;
            }
            for (std::size_t i = Places - 1; i > place; --i) {
                values[i] = values[i - 1];
                indices[i] = indices[i - 1];
            }
            values[place] = low_word(value);
            indices[place] = index;
            return;
        }
    }
};

BitBoard enemy_pawn_attacks(ChessPosition const& position) {
    return position.stm() == 1 ? pawn_attacks<side::black>(position.black_pawn())
                               : pawn_attacks<side::white>(position.white_pawn());
}

constexpr int pawn_value = 100;

/// Smallest depth at which moves are tested for a mate threat, and the number of plies from the
/// root at which this is done off the principal variation too.
constexpr int mate_threat_depth = 5;
constexpr int mate_threat_plies = 3;

/// A move that no rule of its own has put forward, so that the rankings may.
bool is_unclaimed(Move const& move) {
    return move.xcode() == xnormal_move || move.xcode() == bad_move;
}

void give_class_to_all(MoveList& list, Move const wanted, xmove_t xcode) {
    for (Move& move : list) {
        if (move == wanted) {
            move.xcode(xcode);
        }
    }
}

}  // namespace

void Analysis::localsort(MoveList& list, int depth, bool pv, Move hash_move) {
    give_classes(list, depth, pv, hash_move);
    MoveSort::sort_by_class(list);
}

// A list of one move keeps its class (oddity 55).
void Analysis::give_classes(MoveList& list, int depth, bool pv, Move hash_move) {
    int const size = static_cast<int>(list.size());
    if (size < 2) {
        return;
    }
    classify(list);
    promote_quiet_moves(list);
    if (hash_move != Move()) {
        for (Move& move : list) {
            if (move == hash_move) {
                move.xcode(hashtable_move);
            }
        }
    }
    if ((pv || counters_.ply < mate_threat_plies) && depth >= mate_threat_depth) {
        for (Move& move : list) {
            if (move != hash_move) {
                test_mate_threat(move, depth);
            }
        }
    }
}

Move Analysis::move_before_last() const {
    auto const& history = position_.history();
    return history.size() < 2 ? Move() : history[history.size() - 2].last_move;
}

// Each move by what is known of it alone. The moves that counters and history put forward are
// found behind this, as they go by the whole list.
void Analysis::classify(MoveList& list) {
    Move const killer_a = killers_.get_killerA(counters_.ply);
    Move const killer_b = killers_.get_killerB(counters_.ply);
    BitBoard const attacked = enemy_pawn_attacks(position_);
    for (Move& move : list) {
        if (move.capture_id() != 0) {
            bool const loses =
                move.piece().abs_value() > move.capture().abs_value() && see(move) < 0;
            move.xcode(loses ? losing_capture : good_capture);
        } else if (move.code() == promo_queen && see(move) >= 0) {
            // A queen promotion that loses material goes on to the quiet classes, as do all
            // under-promotions.
            move.xcode(promotion);
        } else if (move == killer_a || move == killer_b) {
            move.xcode(killer);
        } else if (move.piece().abs_value() > pawn_value && (move.to().bitboard() & attacked)) {
            move.xcode(bad_move);
        } else {
            move.xcode(xnormal_move);
        }
    }
}

// All moves of the list take part in the rankings, captures included: one that has a class already
// takes its place and keeps its class (oddity 54).
void Analysis::promote_quiet_moves(MoveList& list) const {
    int const size = static_cast<int>(list.size());
    // Only a `searchmoves` limit can name a move more than once, and it holds at the root alone:
    // there the class goes to each of the equal moves.
    bool const may_repeat = counters_.ply == 0;
    auto const put_forward = [&list, may_repeat](int index, xmove_t xcode) {
        if (index < 0 || !is_unclaimed(list[index])) {
            return;
        }
        if (may_repeat) {
            give_class_to_all(list, list[index], xcode);
        } else {
            list[index].xcode(xcode);
        }
    };
    Move const previous = position_.last_move();
    Move const before_previous = move_before_last();
    CounterMove::answers_t const answers = counter_moves_->answers(previous);
    CounterMove::answers_t const own_answers = counter_moves_->answers(before_previous);
    Ranking<2> counters;
    Ranking<2> own_counters;
    Ranking<3> history;
    for (int i = 0; i < size; ++i) {
        std::size_t const index = HistoryTable::index(list[i]);
        // Here the entry itself is cut to 32 bits before it is compared.
        if (answers.is_above_zero(index)) {
            counters.enter(i, low_word(answers.values[index]));
        }
        if (own_answers.is_above_zero(index)) {
            own_counters.enter(i, own_answers.values[index]);
        }
        history.enter(i, history_table_.value(index));
    }
    for (int const index : counters.indices) {
        put_forward(index, counter_move);
    }
    for (int const index : own_counters.indices) {
        put_forward(index, counter_move);
    }
    put_forward(history.indices[0], historical_move1);
    put_forward(history.indices[1], historical_move2);
    put_forward(history.indices[2], historical_move3);
}

// The opponent makes a null move and the moving side looks for a mate. A move that gives check is
// not tested. The count of mate attacks is lowered by the class as it stands after the test: a move
// marked here takes one off without having added one, and the count drifts (oddity 51).
void Analysis::test_mate_threat(Move& move, int depth) {
    make_move(move);
    if (!position_.check() &&
        nullmove_search(depth, -min_mate_score, -max_ordinary_score) < -max_ordinary_score) {
        move.xcode(mate_attack);
    }
    unmake_move(move);
}

}  // namespace orvelin
