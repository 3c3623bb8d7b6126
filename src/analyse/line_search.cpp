#include "analyse/line_search.h"

#include <algorithm>
#include <utility>

#include "search/analysis.h"
#include "search/score.h"

namespace orvelin::analyse {

namespace {

/// Above every iteration, as the engine has it for a search without a depth.
constexpr int no_depth_limit = 102;

/// Too little time for the tables of endgames, which nothing reads, to be built. The memory that
/// they would take is kept from the search all the same, so that its nodes are the engine's.
constexpr int no_time_for_tables = 1;

}  // namespace

LineSearch::LineSearch(Tables const& tables, Analysis& analysis,
                       std::atomic<bool> const& interrupted)
    : analysis_(analysis), interrupted_(interrupted), check_(tables, analysis.chessposition()) {}

void LineSearch::run(Limit const& limit, int lines, std::vector<Move> const& among) {
    prepare(limit, lines, among);
    // Behind the first step above, which takes back what interrupt() asks for; from there on it is
    // heeded by the search.
    if (!interrupted_.load()) {
        analysis_.iterative_search(
            [this](int alpha, int beta, int score) { root_returned(alpha, beta, score); });
        nodes_ = analysis_.get_node_count();
        take_unfinished();
    }
    if (lines_.empty()) {
        take_any_move(among);
    }
}

void LineSearch::prepare(Limit const& limit, int lines, std::vector<Move> const& among) {
    lines_.clear();
    depth_ = 0;
    nodes_ = 0;
    known_to_reach_.reset();
    analysis_.init(analysis_.chessposition());
    analysis_.reset();
    analysis_.forget();
    bool const by_depth = limit.what == Limit::kind::depth;
    analysis_.set_depth(by_depth ? static_cast<int>(limit.value) : no_depth_limit);
    analysis_.reset_max_nodes();
    if (!by_depth) {
        analysis_.set_nodes(limit.value);
    }
    analysis_.set_movetime(no_time_for_tables);
    analysis_.set_infinite(true);
    analysis_.set_multipv(static_cast<unsigned int>(std::max(lines, 1)));
    if (!among.empty()) {
        analysis_.set_searchmoves(among);
    }
}

// Called by the search behind each search of the root: the iteration has ended, or its score fell
// out of the window and it is searched again, or it was stopped and its lines are not true.
void LineSearch::root_returned(int alpha, int beta, int score) {
    if (analysis_.get_action() == stop_action) {
        return;
    }
    if (analysis_.mpv().number() == 1) {
        if (score <= alpha && alpha != -infinite_score) {
            return;
        }
        if (score >= beta && beta != infinite_score) {
            known_to_reach_ = score;
            return;
        }
    }
    known_to_reach_.reset();
    take_iteration();
}

/// As the generator makes them, without the class that the search has given to each.
std::vector<Move> LineSearch::true_moves(PrincipalVariation const& line) {
    std::vector<Move> moves = check_.true_part(line);
    for (Move& move : moves) {
        move.xcode(xnormal_move);
    }
    return moves;
}

void LineSearch::take_iteration() {
    lines_.clear();
    depth_ = analysis_.get_iteration();
    for (PrincipalVariation const& found : analysis_.mpv()) {
        Line line;
        line.depth = depth_;
        line.score = found.score();
        line.moves = true_moves(found);
        if (line.moves.empty()) {
            continue;
        }
        // The search has no upper bound for its further lines. Where it gives no reply, the score
        // is known to be no less, and no more is known.
        line.at_least = depth_ > 1 && line.moves.size() == 1 && !check_.ends_game(line.moves);
        lines_.push_back(std::move(line));
    }
}

// A line that was found before the iteration failed high is not the best one.
void LineSearch::take_unfinished() {
    PrincipalVariation const& newest = analysis_.root_line();
    if (newest.size() == 0 || newest.depth() <= depth_ ||
        (known_to_reach_ && newest.score() < *known_to_reach_)) {
        return;
    }
    Line line;
    line.depth = newest.depth();
    line.score = newest.score();
    line.moves = true_moves(newest);
    if (line.moves.empty()) {
        return;
    }
    std::erase_if(lines_, [&line](Line const& other) { return other.moves[0] == line.moves[0]; });
    lines_.insert(lines_.begin(), std::move(line));
}

void LineSearch::take_any_move(std::vector<Move> const& among) {
    Line line;
    // The sums that a search was ended with may be off by what was rounded.
    analysis_.evaluation().init();
    line.score = analysis_.static_eval();
    line.moves = {among.empty() ? check_.root_moves().front() : among.front()};
    lines_.push_back(std::move(line));
}

}  // namespace orvelin::analyse
