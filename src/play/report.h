#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "play/go_limits.h"
#include "position/move.h"

namespace orvelin::play {

/// Which side of the true score a told one is on.
enum class bound { exact, lower, upper };

/// A line as it is told: its moves are legal, and it belongs to an iteration that ended, or is the
/// best line of one that did not.
struct ReportedLine {
    int depth = 0;
    int score = 0;  ///< in engine units
    std::vector<Move> moves;
    bound kind = bound::exact;
};

/// How the GUI wants to be told.
struct ReportStyle {
    bool chess960 = false;
    bool show_wdl = false;
    bool engine_units = false;
    /// Lines that are told; they are numbered when there are several.
    int lines = 1;
    /// Whatever the search says, the game is drawn.
    bool drawn = false;
};

/// What the search has used so far.
struct SearchUse {
    int seldepth = 0;
    std::uint64_t nodes = 0;
    milliseconds time{0};
    int hashfull = 0;  ///< in thousandths
};

/// `score cp 31` or `score mate -4`, with `wdl` if wanted.
std::string score_text(int score, ReportStyle const& style);

/// ` nodes .. nps .. hashfull .. time ..`, with a leading blank.
std::string use_text(SearchUse const& use);

/// The `info` line of the line with this rank, 0 the best.
std::string line_text(ReportedLine const& line, int rank, SearchUse const& use,
                      ReportStyle const& style);

/// The `info` line of a score that fell out of the window of its iteration.
std::string bound_text(int depth, int score, bound kind, SearchUse const& use,
                       ReportStyle const& style);

/// The answer: `bestmove`, with the expected reply if there is one.
std::string bestmove_text(std::vector<Move> const& moves, bool chess960);

}  // namespace orvelin::play
