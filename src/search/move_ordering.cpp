#include <array>
#include <cstdint>
#include <utility>

#include "position/chess_position.h"
#include "position/set_steps.h"
#include "search/analysis.h"

namespace orvelin {

struct Analysis::QuietCandidates {
    std::array<Move, 4> counter;
    std::array<Move, 3> history;
    Move killer_a;
    Move killer_b;
    BitBoard pawn_attacks;  ///< squares attacked by enemy pawns
};

namespace {

/// The running values are kept in 32 bits, as the ranking has always been done.
std::int32_t low_word(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

/// The best few moves by a value above 0; the earlier of two equal moves stays ahead.
template <std::size_t Places>
struct Ranking {
    std::array<Move, Places> moves{};
    std::array<std::int32_t, Places> values{};

    void enter(Move const& move, std::int64_t value) {
        if (value <= 0) {
            return;
        }
        for (std::size_t place = 0; place < Places; ++place) {
            if (value <= values[place]) {
                continue;
            }
            for (std::size_t i = Places - 1; i > place; --i) {
                values[i] = values[i - 1];
                moves[i] = moves[i - 1];
            }
            values[place] = low_word(value);
            moves[place] = move;
            return;
        }
    }
};

BitBoard enemy_pawn_attacks(ChessPosition const& position) {
    return position.stm() == 1 ? pawn_attacks<0>(position.black_pawn())
                               : pawn_attacks<1>(position.white_pawn());
}

constexpr int pawn_value = 100;

}  // namespace

void Analysis::localsort(MoveList& list, int depth, bool pv, Move hash_move) {
    int const size = static_cast<int>(list.size());
    if (size < 2) {
        return;
    }
    QuietCandidates candidates;
    find_counter_moves(list, candidates);
    find_history_moves(list, candidates);
    candidates.killer_a = killers_.get_killerA(ply_);
    candidates.killer_b = killers_.get_killerB(ply_);
    candidates.pawn_attacks = enemy_pawn_attacks(position_);
    bool const threat_tests = (pv || ply_ < 3) && depth > 4;
    for (int i = 0; i < size; ++i) {
        Move& move = list[i];
        if (move == hash_move) {
            move.xcode(hashtable_move);
            continue;
        }
        move.xcode(classify(move, candidates));
        if (threat_tests) {
            test_mate_threat(move, depth);
        }
    }
    sort_by_class(list);
}

// An exchange sort that is not stable. The order that it leaves within a class decides which
// moves are reduced and pruned by index, so the procedure is part of the search.
void Analysis::sort_by_class(MoveList& list) {
    int const size = static_cast<int>(list.size());
    for (int i = 0; i < size; ++i) {
        for (int j = i + 1; j < size; ++j) {
            if (list[i].xcode() > list[j].xcode()) {
                std::swap(list[i], list[j]);
            }
        }
    }
}

Move Analysis::move_before_last() const {
    auto const& history = position_.history();
    return history.size() < 2 ? Move() : history[history.size() - 2].last_move;
}

// All moves of the list take part, captures included.
void Analysis::find_counter_moves(MoveList const& list, QuietCandidates& candidates) const {
    Move const previous = position_.last_move();
    if (previous != Move()) {
        Ranking<2> ranking;
        for (Move const& move : list) {
            // Here the entry itself is cut to 32 bits before it is compared.
            ranking.enter(move, low_word(counter_moves_->value(previous, move)));
        }
        candidates.counter[0] = ranking.moves[0];
        candidates.counter[1] = ranking.moves[1];
    }
    Move const before_previous = move_before_last();
    if (before_previous != Move()) {
        Ranking<2> ranking;
        for (Move const& move : list) {
            ranking.enter(move, counter_moves_->value(before_previous, move));
        }
        candidates.counter[2] = ranking.moves[0];
        candidates.counter[3] = ranking.moves[1];
    }
}

void Analysis::find_history_moves(MoveList const& list, QuietCandidates& candidates) const {
    Ranking<3> ranking;
    for (Move const& move : list) {
        ranking.enter(move, history_table_.value(move));
    }
    candidates.history = ranking.moves;
}

xmove_t Analysis::classify(Move const& move, QuietCandidates const& candidates) {
    if (move.capture_id() != 0) {
        if (move.piece().abs_value() > move.capture().abs_value() && see(move) < 0) {
            return losing_capture;
        }
        return good_capture;
    }
    // A queen promotion that loses material goes on to the quiet classes, as do all
    // under-promotions.
    if (move.code() == promo_queen && see(move) >= 0) {
        return promotion;
    }
    return classify_quiet(move, candidates);
}

xmove_t Analysis::classify_quiet(Move const& move, QuietCandidates const& candidates) const {
    if (move == candidates.killer_a || move == candidates.killer_b) {
        return killer;
    }
    for (Move const& counter : candidates.counter) {
        if (move == counter) {
            return counter_move;
        }
    }
    if (move == candidates.history[0]) {
        return historical_move1;
    }
    if (move == candidates.history[1]) {
        return historical_move2;
    }
    if (move == candidates.history[2]) {
        return historical_move3;
    }
    if (move.piece().abs_value() > pawn_value && (move.to().bitboard() & candidates.pawn_attacks)) {
        return bad_move;
    }
    return xnormal_move;
}

// The opponent passes and the moving side looks for a mate. A move that gives check is not
// tested. The count of mate attacks is lowered by the class as it stands after the test: a
// move marked here takes one off without having added one, by design, and the count drifts.
void Analysis::test_mate_threat(Move& move, int depth) {
    make_move(move);
    if (!position_.check() &&
        nullmove_search(depth, -min_mate_score, -max_ordinary_score) < -max_ordinary_score) {
        move.xcode(mate_attack);
    }
    unmake_move(move);
}

}  // namespace orvelin
