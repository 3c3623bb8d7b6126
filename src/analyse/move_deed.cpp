#include "analyse/move_deed.h"

#include <array>
#include <cstddef>

#include "analyse/material_balance.h"
#include "analyse/move_reason.h"
#include "analyse/term_names.h"

namespace orvelin::analyse {

namespace {

/// In hundreds.
constexpr int pawn = 100;

/// What a move does when a group lost most: where the other side is then ahead in it, and where the
/// own side has less of an advantage.
struct Deed {
    char const* behind;
    char const* less;
};

constexpr std::array<Deed, term_group_count> deeds{{
    {"comes out behind in material", "keeps less of the lead in material"},
    {"ends with the less safe king", "keeps less of the lead in king safety"},
    {"ends with the less active pieces", "keeps less of the lead in activity"},
    {"ends with the weaker pawns", "makes less of the better pawns"},
    {"falls behind in passed pawns", "makes less of the passed pawns"},
    {"leaves more pieces in danger", "eases the threats"},
    {"falls behind in development", "keeps less of the lead in development"},
    {"ends with the less active king", "keeps less of the lead in king activity"},
}};

/// By so little material no pieces are told: it is the bishop pair, or which pieces are left.
constexpr Deed hardly_material{"ends slightly behind in material",
                               "keeps slightly less of the lead in material"};

/// Where the bishop pair is what differs in the material; else empty.
std::string deed_of_pair(Leaf const& better, Leaf const& worse, bool white) {
    if (has_bishop_pair(better.fen, white) && !has_bishop_pair(worse.fen, white)) {
        return "gives up the bishop pair";
    }
    if (has_bishop_pair(worse.fen, !white) && !has_bishop_pair(better.fen, !white)) {
        return std::string("leaves ") + (white ? "Black" : "White") + " the bishop pair";
    }
    return "";
}

}  // namespace

// The sums of the group's terms at one leaf decide who is ahead.
std::string deed_of(GroupChange const& group, Leaf const& better, Leaf const& worse, bool white) {
    bool const is_hardly = group.group == term_group::material && group.change > -least_material;
    if (is_hardly) {
        std::string pair = deed_of_pair(better, worse, white);
        if (!pair.empty()) {
            return pair;
        }
    }
    double sum = 0;
    for (std::size_t i = 0; i < term::count; ++i) {
        if (term_names()[i].group == group.group) {
            sum += static_cast<double>(worse.terms[i]);
        }
    }
    Deed const& deed = is_hardly ? hardly_material : deeds[static_cast<std::size_t>(group.group)];
    return (white ? sum : -sum) < 0 ? deed.behind : deed.less;
}

bool recaptures(MoveInGame const& move, Line const& line) {
    return move.taken && line.moves[0].to().id() == move.taken->square.id();
}

std::string deed_of_material(MoveInGame const& move, Line const& better, Line const& worse,
                             bool& is_missed_chance) {
    MaterialBalance const best = material_change(move, better);
    MaterialBalance const won = material_change(move, worse);
    if (best.value() >= pawn && recaptures(move, better) && !recaptures(move, worse)) {
        is_missed_chance = true;
        return "does not recapture";
    }
    if (won.value() <= -pawn && best.value() > -pawn) {
        std::string const lost = won_text(-won);
        if (lost.empty()) {
            return "";
        }
        // Who does not win a rook and loses a pawn has lost more than a pawn.
        std::string const missed = best.value() > -won.value() ? won_text(best) : "";
        return (missed.empty() ? "loses " : "misses winning " + missed + " and loses ") + lost;
    }
    if (best.value() >= pawn && won.value() < pawn) {
        is_missed_chance = true;
        std::string const missed = won_text(best);
        return missed.empty() ? "" : "misses winning " + missed;
    }
    std::string less = won_text(best - won);
    if (less.starts_with("the queen")) {
        less.replace(0, 3, "a");
    }
    bool const is_plain = !less.empty() && less.find(" for ") == std::string::npos;
    return is_plain ? "ends " + less + " worse" : "";
}

}  // namespace orvelin::analyse
