#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "search/analysis.h"
#include "search/transposition_table.h"

namespace orvelin {

namespace {

/// Index of the last bucket that is lent to an endgame table: more than its memory.
constexpr std::uint64_t lent_buckets = 93750;

/// A table is built on only while more than this remains, in milliseconds, so that a search
/// follows in any case.
constexpr int kbnk_time_floor = 2000;
constexpr int kqkr_time_floor = 4000;

constexpr std::array<std::string_view, 2> kbnk_materials = {"KBNk", "Kkbn"};
constexpr std::array<std::string_view, 6> kqkr_materials = {"KQkr", "KRkq", "KQk",
                                                            "Kkq",  "KRk",  "Kkr"};

template <typename Materials>
bool contains(Materials const& materials, std::string const& material) {
    return std::find(materials.begin(), materials.end(), material) != materials.end();
}

/// Without pawns and with two pieces at most beside the kings, as far as there can be a table.
bool few_pieces(ChessPosition const& position) {
    return !(position.white_pawn() | position.black_pawn()) &&
           (position.pieces() & ~(position.white_king() | position.black_king())).popcount() <= 2;
}

}  // namespace

// The tables are filled in the memory of the transposition table. Nothing looks a finished one
// up, so that it costs time and buckets and changes no score (oddity 117).
void Analysis::build_endgame_table() {
    if (few_pieces(position_)) {
        std::string const material = position_.materialindex().str();
        if (contains(kbnk_materials, material) && lend_memory(kbnk_table_)) {
            build_while_time_remains(kbnk_table_, kbnk_time_floor);
            return;
        }
        if (contains(kqkr_materials, material) && lend_memory(kqkr_table_)) {
            build_while_time_remains(kqkr_table_, kqkr_time_floor);
            return;
        }
    }
    kbnk_table_.clear();
    kqkr_table_.clear();
    transposition_table_.set_threshold_buckets(0);
}

/// Readies the memory for a table that is not finished; false when there is too little of it.
/// The buckets are taken out of use also where no time is left to build (oddity 119).
bool Analysis::lend_memory(Egt4Pieces& table) {
    if (transposition_table_.buckets() <= lent_buckets) {
        return false;
    }
    if (table.ready()) {
        return true;
    }
    transposition_table_.set_threshold_buckets(lent_buckets);
    if (!table.busy()) {
        table.set_memory(transposition_table_.get_uchar_adress());
    }
    return true;
}

// A stop does not end this (oddity 118); no slice takes long.
void Analysis::build_while_time_remains(Egt4Pieces& table, int time_floor) {
    while (time_manager_.remaining_time() > time_floor && !table.ready()) {
        table.create();
    }
}

}  // namespace orvelin
