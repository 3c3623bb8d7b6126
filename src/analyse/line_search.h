#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <vector>

#include "analyse/limit.h"
#include "analyse/position_search.h"
#include "play/line_check.h"
#include "position/move.h"
#include "search/principal_variation.h"

namespace orvelin {
class Analysis;
struct Tables;
}  // namespace orvelin

namespace orvelin::analyse {

/// One search of the position that stands on the board of an engine, from a fresh state, on the
/// caller's thread.
class LineSearch {
 public:
    /// `interrupted` ends the search at its next look; it is not written.
    LineSearch(Tables const& tables, Analysis& analysis, std::atomic<bool> const& interrupted);

    /// Searches so many lines that begin with one of these moves, or with any where there are
    /// none. The position must have a legal move.
    void run(Limit const& limit, int lines, std::vector<Move> const& among);

    std::vector<Line> const& lines() const { return lines_; }
    /// Of the last iteration that ended.
    int depth() const { return depth_; }
    std::uint64_t nodes() const { return nodes_; }
    std::vector<Move> const& root_moves() const { return check_.root_moves(); }

 private:
    void prepare(Limit const& limit, int lines, std::vector<Move> const& among);
    void root_returned(int alpha, int beta, int score);
    std::vector<Move> true_moves(PrincipalVariation const& line);
    void take_iteration();
    void take_unfinished();
    void take_any_move(std::vector<Move> const& among);

    Analysis& analysis_;
    std::atomic<bool> const& interrupted_;
    play::LineCheck check_;
    std::vector<Line> lines_;
    int depth_ = 0;
    std::uint64_t nodes_ = 0;
    /// A move of the iteration that is searched again is known to be worth as much as this.
    std::optional<int> known_to_reach_;
};

}  // namespace orvelin::analyse
