#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "analyse/position_search.h"
#include "analyse/record_judgement.h"
#include "analyse/score.h"

namespace orvelin::analyse {

/// The version of the form of a record, as docs/analyse.md has it. A change of a field's name,
/// meaning or unit is another version; a new field is not.
inline constexpr int record_schema = 1;

/// Where a position comes from. Texts are UTF-8.
struct Source {
    /// As the user named it; "-" for standard input.
    std::string file;
    /// The line of the file at which the position or its game begins, from 1.
    std::uint64_t line = 0;
    /// The number of the game in its file, from 1; 0 for a position without a game.
    std::uint64_t game = 0;
    /// The number of moves made in the game before the position.
    int ply = 0;
    /// Tags of the game; empty without a game.
    std::string white;
    std::string black;
    std::string result;
    std::string event;
    std::string date;
    /// The name of a position without a game, as its line gives it; mostly empty.
    std::string id;

    bool operator==(Source const& other) const = default;
};

/// What is needed, with the position, to get the same answer again.
struct Receipt {
    /// As Limit::text() has it.
    std::string limit;
    /// Lines asked for.
    int lines = 1;
    bool leaves = true;
    /// Whether the move that was played was searched by itself.
    bool played = false;
    /// Whether all moves but the best one were.
    bool rest = false;
    std::string version;
    std::string signature;

    bool operator==(Receipt const& other) const = default;
};

/// The receipt of a question to this program.
Receipt receipt_of(Limit const& limit, int lines, bool leaves, bool played, bool rest);

struct RecordLeaf {
    /// UCI moves with a space between.
    std::string moves;
    std::string fen;
    /// Static evaluation from the side to move of the position that was searched, multiplied by the
    /// fading, as the terms are.
    int score = 0;
    /// What the search takes of the value near the fifty-move limit; 1 far from it.
    float fading = 1;
    term_scores_t terms{};

    bool operator==(RecordLeaf const& other) const = default;
};

struct RecordLine {
    int depth = 0;
    Score score;
    /// The score is a lower bound.
    bool at_least = false;
    /// UCI moves with a space between, and the same as players write them; the latter may be
    /// missing.
    std::string moves;
    std::string san;
    /// Why there is no leaf; empty when there is one.
    std::string unexplained;
    std::optional<RecordLeaf> leaf;

    bool operator==(RecordLine const& other) const = default;
};

struct PlayedMove {
    std::string move;
    std::string san;
    /// What the move before it took, as taken_text() has it; empty when it took nothing. The
    /// judgement needs it.
    std::string taken;
    /// When it was searched.
    std::optional<RecordLine> line;
    std::optional<RecordJudgement> judgement;

    bool operator==(PlayedMove const& other) const = default;
};

/// All that is told of one position, in the form in which it is written and read.
struct Record {
    /// The place of the position among those of the run, from 1, whoever looks at it.
    std::uint64_t number = 0;
    Source source;
    std::string fen;
    bool chess960 = false;
    std::uint64_t nodes = 0;
    int depth = 0;
    /// Of the best line; the static one without a search; what it counts where the game is over.
    Score score;
    int static_score = 0;
    term_scores_t terms{};
    std::vector<RecordLine> lines;
    /// The best line of all moves but the best one, when they were searched by themselves.
    std::optional<RecordLine> rest;
    std::optional<PlayedMove> played;
    Receipt receipt;

    bool operator==(Record const& other) const = default;
};

/// UCI moves with a space between.
std::string moves_text(std::vector<Move> const& moves, bool chess960);

/// A line as it is recorded, without the moves as players write them.
RecordLine record_line(Line const& line, bool leaf_asked, bool chess960);

}  // namespace orvelin::analyse
