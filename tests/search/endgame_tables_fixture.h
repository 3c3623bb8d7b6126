#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "endgame/egt4_pieces.h"
#include "search/score.h"
#include "search/transposition_table.h"
#include "support/analysis_fixture.h"

namespace orvelin::test {

inline constexpr std::uint64_t last_lent = 93750;
inline constexpr int kbnk_floor = 2000;
inline constexpr int kqkr_floor = 4000;
/// Time above a floor that is never used up before the first slice begins.
inline constexpr int spare = 400;

/// A position with these pieces, named as the material is named: "KBNk". White stands on a1 and the
/// second rank, Black on h5 and the seventh; no king is in check with White to move.
inline std::string fen_of(std::string const& material, std::string const& side = "w") {
    auto const rank = [](std::string const& row) { return row + std::to_string(8 - row.size()); };
    std::size_t const black_king = material.find('k');
    return "8/" + rank(material.substr(black_king + 1)) + "/8/7k/8/8/" +
           rank(material.substr(1, black_king - 1)) + "/K7 " + side + " - - 0 1";
}

/// What a search leaves to be reported.
struct figures_t {
    std::uint64_t nodes;
    int score;
    std::string line;
    bool operator==(figures_t const&) const = default;
};

using bytes_t = std::vector<unsigned char>;

inline bytes_t bytes_of(Egt4Pieces const& table) {
    bytes_t bytes(table.size());
    for (unsigned int key = 0; key < table.size(); ++key) {
        bytes[key] = table[key];
    }
    return bytes;
}

/// The smallest table of the transposition table that an endgame table fits in.
class EndgameTables : public AnalysisFixture {
 protected:
    EndgameTables() { analysis_.set_hash_size(8); }

    ~EndgameTables() override {
        analysis_.set_hash_size(6);
        threshold(0);
    }

    TimeManager& time() { return analysis_.time_manager(); }
    Egt4Pieces const& kbnk() const { return analysis_.kbnk_table(); }
    Egt4Pieces const& kqkr() const { return analysis_.kqkr_table(); }

    std::uint64_t threshold() { return probe_.table().threshold_buckets(); }
    void threshold(std::uint64_t index) { probe_.table().set_threshold_buckets(index); }

    /// Sets up the position as a `go` finds it, the clock standing at 0.
    void set_material(std::string const& material, std::string const& side = "w") {
        set(fen_of(material, side));
        analysis_.set_movestogo(40);
    }

    int root() {
        MoveList unread;
        return analysis_.root_search(unread, 1, -infinite_score, infinite_score);
    }

    /// One root search with this time for the move, the clock running.
    void root_with(std::string const& material, int movetime) {
        set_material(material);
        time().set_movetime(static_cast<std::uint64_t>(movetime));
        probe_.start_clock();
        root();
    }

    /// Records of the current search in the buckets from first to last.
    int records(std::uint64_t first, std::uint64_t last) {
        TranspositionTable const& table = probe_.table();
        int count = 0;
        for (std::uint64_t i = first; i <= last; ++i) {
            count += table.bucket(i).has_date(probe_.date());
        }
        return count;
    }

    /// A whole search; the clock counts for the tables and stops nothing.
    figures_t search(int depth) {
        analysis_.set_pondering(true);
        analysis_.set_depth(depth);
        analysis_.iterative_search();
        return {analysis_.get_node_count(), analysis_.eval(), analysis_.pv().str()};
    }
};

}  // namespace orvelin::test
