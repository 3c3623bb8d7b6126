#include "analyse/explanation.h"

#include <algorithm>
#include <cmath>

#include "analyse/term_scores.h"

namespace orvelin::analyse {

namespace {

bool white_to_move(std::string_view fen) {
    std::size_t const blank = fen.find(' ');
    return blank != std::string_view::npos && fen.substr(blank + 1, 1) == "w";
}

/// Larger by the number without its sign.
bool is_larger(double one, double other) {
    return std::abs(one) > std::abs(other);
}

}  // namespace

// The differences are taken in engine units and double precision, in which differences and sums of
// single precision numbers of this size are exact, and divided behind that.
Explanation explain(std::string_view fen, Leaf const& best, Leaf const& played) {
    Explanation result;
    result.pawn = pawn_value(fen);
    double const unit = (white_to_move(fen) ? 1.0 : -1.0) / result.pawn;
    double total = 0;
    for (std::size_t g = 0; g < term_group_count; ++g) {
        GroupChange& group = result.groups[g];
        group.group = static_cast<term_group>(g);
        double sum = 0;
        for (std::size_t i = 0; i < term::count; ++i) {
            if (term_names()[i].group != group.group) {
                continue;
            }
            double const before = static_cast<double>(best.terms[i]);
            double const after = static_cast<double>(played.terms[i]);
            sum += after - before;
            if (after != before) {
                group.terms.push_back({i, before * unit, after * unit, (after - before) * unit});
            }
        }
        group.change = sum * unit;
        total += sum;
        std::stable_sort(group.terms.begin(), group.terms.end(),
                         [](TermChange const& one, TermChange const& other) {
                             return is_larger(one.change, other.change);
                         });
    }
    result.change = total * unit;
    return result;
}

std::vector<GroupChange const*> Explanation::largest_first() const {
    std::vector<GroupChange const*> order;
    for (GroupChange const& group : groups) {
        if (group.change != 0) {
            order.push_back(&group);
        }
    }
    std::stable_sort(order.begin(), order.end(),
                     [](GroupChange const* one, GroupChange const* other) {
                         return is_larger(one->change, other->change);
                     });
    return order;
}

}  // namespace orvelin::analyse
