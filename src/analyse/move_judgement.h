#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "analyse/position_search.h"
#include "analyse/taken.h"
#include "position/move.h"

namespace orvelin {
class ChessPosition;
struct Tables;
}  // namespace orvelin

namespace orvelin::analyse {

// What a move costs is told in points of the game: 1 for a win, a half for a draw. Twenty moves
// that are just dubious, ten mistakes or five blunders throw away a whole game.

/// From this loss on a move is dubious: "?!". What is less, a deeper search often takes back.
inline constexpr double dubious_loss = 0.05;
/// From here on it is a mistake: "?".
inline constexpr double mistake_loss = 0.10;
/// From here on it is a blunder: "??".
inline constexpr double blunder_loss = 0.20;
/// "!" is for a move beside which the best of the rest would be a blunder, ...
inline constexpr double praise_margin = blunder_loss;
/// ... and with which there is something left to play for.
inline constexpr double praise_points = 0.25;
/// A mate in so many moves is one that a player can see: to miss or to allow it is dubious even
/// where the game is decided anyway.
inline constexpr int near_mate = 5;

/// The mark behind a move.
enum class move_mark : std::uint8_t { none, good, dubious, mistake, blunder };

/// "", "!", "?!", "?", "??".
std::string_view mark_text(move_mark mark);
/// The mark of such a text; nothing for another one.
std::optional<move_mark> parse_mark(std::string_view text);
/// The numeric annotation glyph of the mark; 0 for none.
int mark_glyph(move_mark mark);

/// A move of a game and what is known of the position in which it was played. The result must
/// outlive it.
struct MoveInGame {
    /// The position before the move, such as play::check_fen() takes.
    std::string fen;
    Move played;
    /// What the move before it took; nothing when that is not known.
    std::optional<Taken> taken;
    Result const* result = nullptr;

    /// The best line of the search; null when none was found.
    Line const* best() const;
    /// The line that begins with the move; null when it was not searched.
    Line const* line() const;
    /// The best line that begins with another move than the best one; null when it was not
    /// searched.
    Line const* rest() const;
    /// Whether the move is the first of the best line.
    bool is_best() const;
    /// Whether the move takes what took something.
    bool takes_back() const;
};

/// Whether two moves from one position are the same, whatever is known of check.
bool is_same_move(Move const& one, Move const& other);

/// What is said of one move.
struct Judgement {
    /// False when the move was not searched: nothing else is known then.
    bool known = false;
    move_mark mark = move_mark::none;
    /// There was no other legal move. Such a move has no mark.
    bool forced = false;
    bool is_best = false;
    /// Expected points before and behind the move.
    double best_points = 0;
    double points = 0;
    /// The mate that the best line gives and the move does not, in moves from the position.
    std::optional<int> mate_missed;
    /// The mate that the move allows and the best line does not, in moves of the other side.
    std::optional<int> mate_allowed;

    /// Never below 0.
    double loss() const { return best_points - points; }
};

/// Judges a move. Whether there are others and whether it only takes what stands there is seen on
/// the board, all else is taken from the result.
Judgement judge(MoveInGame const& move, Tables const& tables);

/// How well a move was chosen, 0 to 100 in steps of a tenth; nothing for a forced move.
///
/// A formula of our own: 100, halved for every sixth of a point that the move loses. A loss of 0.05
/// points leaves 81.2, of 0.10 66.0, of 0.20 43.5: one blunder costs about as much as three moves
/// that are just dubious.
std::optional<double> move_accuracy(Judgement const& judgement);

/// How well a side played: the mean over its moves that were not forced, and how often it was given
/// each mark.
class Accuracy {
 public:
    void add(move_mark mark, std::optional<double> accuracy);

    /// 0 to 100; nothing when no move counted.
    std::optional<double> percent() const;
    /// How often the mark was given.
    int count(move_mark mark) const { return marks_[static_cast<std::size_t>(mark)]; }

 private:
    double sum_ = 0;
    int moves_ = 0;
    std::array<int, 5> marks_{};
};

}  // namespace orvelin::analyse
