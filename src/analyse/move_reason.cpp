#include "analyse/move_reason.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "analyse/move_deed.h"
#include "analyse/term_names.h"

namespace orvelin::analyse {

namespace {

/// What rounds to a tenth of a pawn.
constexpr double least_told = 0.05;

/// Behind the largest loss others are told that are not much smaller.
constexpr double least_share = 0.25;
constexpr double least_further = 0.15;
constexpr std::size_t most_losses = 3;

/// What makes up for such a part of the largest loss is told too.
constexpr double least_return = 0.4;

/// What is told must leave such a part of itself in the difference of all terms: else other things
/// decide, each too small to be told.
constexpr double least_left = 0.4;

/// In hundreds.
constexpr int pawn = 100;

bool white_to_move(MoveInGame const& move) {
    std::size_t const blank = move.fen.find(' ');
    return move.fen.substr(blank + 1, 1) == "w";
}

/// Who promotes in the line of a leaf.
bool promotes(Leaf const& leaf, bool mover) {
    for (std::size_t i = mover ? 0 : 1; i < leaf.moves.size(); i += 2) {
        if (leaf.moves[i].code() >= promo_queen && leaf.moves[i].code() <= promo_knight) {
            return true;
        }
    }
    return false;
}

/// True when material is told of.
bool tell_material(MoveInGame const& move, Line const& better, Line const& worse,
                   MoveReason& reason) {
    bool const lets_promote = promotes(worse.leaf, false) && !promotes(better.leaf, false);
    bool const misses_promotion = promotes(better.leaf, true) && !promotes(worse.leaf, true);
    if ((material_change(move, worse) - material_change(move, better)).value() > -pawn) {
        return false;
    }
    bool is_missed_chance = misses_promotion && !lets_promote;
    if (lets_promote || misses_promotion) {
        reason.deed = lets_promote ? "lets a pawn promote" : "misses the promotion of a pawn";
    } else {
        reason.deed = deed_of_material(move, better, worse, is_missed_chance);
    }
    if (reason.deed.empty()) {
        return false;
    }
    reason.is_missed_chance = is_missed_chance;
    reason.moves_needed = moves_to_material(is_missed_chance ? better.leaf : worse.leaf);
    return true;
}

/// It changes hands with every move: a line that is a move shorter has not lost it.
bool is_told(TermChange const& one) {
    return one.index != term::stm;
}

/// All terms that changed and are told, the largest loss first.
std::vector<TermChange> by_loss(Explanation const& explanation) {
    std::vector<TermChange> terms;
    for (GroupChange const& group : explanation.groups) {
        std::copy_if(group.terms.begin(), group.terms.end(), std::back_inserter(terms), is_told);
    }
    std::stable_sort(
        terms.begin(), terms.end(),
        [](TermChange const& one, TermChange const& other) { return one.change < other.change; });
    return terms;
}

/// Tells of the group first when it is many small terms that make it the one that lost most.
void tell_losses(std::vector<TermChange> const& terms, GroupChange const& group,
                 MoveReason& reason) {
    // Its sum is named as a whole, with the right to move in it.
    bool const by_group = term_names()[terms.front().index].group != group.group &&
                          group.group != term_group::development;
    if (by_group) {
        reason.losses.push_back({group_name(group.group), group.change});
    }
    for (TermChange const& one : terms) {
        TermName const& name = term_names()[one.index];
        if (reason.losses.size() == most_losses || one.change > -least_told) {
            break;
        }
        double const largest = reason.losses.empty() ? 0 : -reason.losses.front().change;
        bool const further = -one.change >= std::max(least_further, largest * least_share);
        if (reason.losses.empty() || (further && !(by_group && name.group == group.group))) {
            reason.losses.push_back({name.full, one.change});
        }
    }
    TermChange const& gain = terms.back();
    double const largest = reason.losses.empty() ? 0 : -reason.losses.front().change;
    if (gain.change >= least_told && gain.change >= largest * least_return) {
        reason.gain = {term_names()[gain.index].full, gain.change};
    }
}

/// Without what is not told. What rounds to nothing is none.
double told_change(GroupChange const& group) {
    double change = 0;
    for (TermChange const& one : group.terms) {
        change += is_told(one) ? one.change : 0;
    }
    return change;
}

/// Whether the changes that are named account for the difference of all.
bool explains(MoveReason const& reason, double change) {
    double named = reason.gain ? reason.gain->change : 0;
    for (NamedChange const& loss : reason.losses) {
        named += loss.change;
    }
    return named <= -least_told && change <= named * least_left;
}

}  // namespace

MaterialBalance material_change(MoveInGame const& move, Line const& line) {
    MaterialBalance const change = material_of(line.leaf.fen) - material_of(move.fen);
    return white_to_move(move) ? change : -change;
}

MaterialBalance material_after(MoveInGame const& move, Line const& line) {
    MaterialBalance const after = material_of(line.leaf.fen);
    return white_to_move(move) ? after : -after;
}

MaterialBalance material_won(MoveInGame const& move, Line const& line) {
    MaterialBalance won = material_change(move, line);
    if (move.taken) {
        won.more[static_cast<std::size_t>(move.taken->kind - white_pawn)] -= 1;
    }
    return won;
}

std::size_t moves_to_material(Leaf const& leaf) {
    std::size_t needed = leaf.moves.size();
    while (needed > 0) {
        Move const& last = leaf.moves[needed - 1];
        if (last.capture_id() != no_piece || last.code() == en_passant ||
            (last.code() >= promo_queen && last.code() <= promo_knight)) {
            break;
        }
        --needed;
    }
    return needed;
}

MoveReason find_reason(MoveInGame const& move, Line const& better, Line const& worse) {
    MoveReason reason;
    Explanation const explanation = explain(move.fen, better.leaf, worse.leaf);
    std::vector<TermChange> const terms = by_loss(explanation);
    if (explanation.change > -least_told || terms.empty()) {
        return reason;
    }
    auto const least = std::min_element(explanation.groups.begin(), explanation.groups.end(),
                                        [](GroupChange const& one, GroupChange const& other) {
                                            return told_change(one) < told_change(other);
                                        });
    tell_losses(terms, *least, reason);
    if (reason.losses.empty() || !explains(reason, explanation.change)) {
        return {};
    }
    reason.change = explanation.change;
    double const material =
        explanation.groups[static_cast<std::size_t>(term_group::material)].change;
    // A piece that hangs in the one leaf and is gone in the other has lost nothing yet.
    bool const is_material = material <= std::min(told_change(*least) / 2, -least_material);
    if (is_material && tell_material(move, better, worse, reason)) {
        return reason;
    }
    reason.deed = deed_of(*least, better.leaf, worse.leaf, white_to_move(move));
    return reason;
}

}  // namespace orvelin::analyse
