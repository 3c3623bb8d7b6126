// orvelin-fit-games GAMES NODES SEED > games.csv
//
// Plays games of the search with itself, a fixed number of nodes a move, and counts how those
// games ended in which it saw a score. The same arguments give the same table on every machine.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "generation/move_generator.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/move_list.h"
#include "search/analysis.h"

namespace orvelin {
namespace {

constexpr int hash_megabytes = 4;
constexpr int depth_limit = 102;

/// Random moves before the search takes over: six to ten.
constexpr int min_random_plies = 6;
constexpr int random_plies_choices = 5;
/// A start with a score beyond this is thrown away.
constexpr int lopsided_score = 100;

/// Positions before this ply are not counted: they are more alike than those of other games.
constexpr int first_counted_ply = 8;
/// A game that is not over by then is drawn.
constexpr int max_plies = 300;

/// Scores are counted in bins, each named by its middle, up to this one on both sides.
constexpr int bin_width = 10;
constexpr int outer_bin = 1000;
/// Games are dealt out to groups, so that the error of a fit can be told from how it changes
/// without one of them: positions of one game are no independent witnesses.
constexpr int groups = 10;

enum result_t : std::uint8_t { white_wins, drawn, black_wins };

/// A game so far, with what the rules ask about its past.
class Game {
 public:
    explicit Game(Tables const& tables) : position_(tables), generator_(tables) {
        position_.newgame();
        enter();
    }

    ChessPosition& position() { return position_; }
    MoveList const& moves() const { return moves_; }

    /// Makes the generator's own word of the move: that with which a search ends may have come
    /// from another position by the hash table, with its check bit.
    void make(Move const& move) {
        auto const legal = std::find_if(moves_.cbegin(), moves_.cend(), [&](Move const& other) {
            return other.from() == move.from() && other.to() == move.to() &&
                   other.code() == move.code();
        });
        if (legal == moves_.cend()) {
            throw std::logic_error("no legal move: " + move.dump());
        }
        position_.make_move(Move(*legal));
        enter();
    }

    std::optional<result_t> result() const {
        if (moves_.size() == 0) {
            if (!position_.check()) {
                return drawn;
            }
            return position_.white_to_move() ? black_wins : white_wins;
        }
        bool const repeated = seen_.at(position_.get_hash()) >= 3;
        if (repeated || position_.get_dfz() >= 100 || bare()) {
            return drawn;
        }
        return std::nullopt;
    }

 private:
    void enter() {
        ++seen_[position_.get_hash()];
        moves_.clear();
        generator_.generate_moves(position_, moves_);
    }

    /// One minor piece beside the kings at most.
    bool bare() const {
        BitBoard const mating_material = position_.white_pawn() | position_.black_pawn() |
                                         position_.white_rook() | position_.black_rook() |
                                         position_.white_queen() | position_.black_queen();
        return !mating_material && position_.pieces().popcount() <= 3;
    }

    ChessPosition position_;
    MoveGenerator generator_;
    MoveList moves_;
    std::map<std::uint64_t, int> seen_;
};

/// What a search found: the move, and the score of the last iteration that ended, as White sees
/// it. No score where no iteration ended inside its window.
struct Found {
    Move move;
    std::optional<int> score;
};

class Player {
 public:
    Player(ChessPosition& position, Tables& tables, std::uint64_t nodes)
        : position_(position), analysis_(position, tables), nodes_(nodes) {
        analysis_.set_hash_size(hash_megabytes);
    }

    Found search() {
        analysis_.init(position_);
        analysis_.reset();
        analysis_.set_depth(depth_limit);
        analysis_.set_nodes(nodes_);
        Found found{};
        bool const white = position_.white_to_move();
        analysis_.iterative_search([&](int alpha, int beta, int score) {
            if (analysis_.get_action() != stop_action && alpha < score && score < beta) {
                found.score = white ? score : -score;
            }
        });
        found.move = analysis_.best_move();
        return found;
    }

 private:
    ChessPosition& position_;
    Analysis analysis_;
    std::uint64_t nodes_;
};

using counts_t = std::array<int, 3>;

/// The counts of all games.
class Table {
 public:
    void count(int group, std::vector<int> const& scores, result_t result, int plies) {
        ++results_[result];
        plies_ += plies;
        for (int const score : scores) {
            int const bin = (std::abs(score) + bin_width / 2) / bin_width * bin_width;
            if (bin <= outer_bin) {
                ++counts_[{score < 0 ? -bin : bin, group}][result];
            }
        }
    }
    void count_unfinished() { ++unfinished_; }

    void print(int thrown_away, std::string_view arguments) const {
        int const games = results_[white_wins] + results_[drawn] + results_[black_wins];
        std::cout
            << "# Made by: orvelin-fit-games " << arguments << '\n'
            << "# " << games << " games of the search with itself, " << plies_ / std::max(games, 1)
            << " plies on average: White won " << results_[white_wins] << ", drawn "
            << results_[drawn] << ", Black won " << results_[black_wins] << ".\n"
            << "# " << unfinished_ << " of the draws were broken off after " << max_plies
            << " plies; " << thrown_away << " lopsided starts were thrown away.\n"
            << "# How many positions with this score, as White sees it, were in games that\n"
            << "# White won, that were drawn, that Black won; a score is named by the middle\n"
            << "# of its bin, " << bin_width << " wide. Game n counts in group n mod " << groups
            << ".\n"
            << "score,group,won,drawn,lost\n";
        for (auto const& [key, counts] : counts_) {
            std::cout << key.first << ',' << key.second << ',' << counts[white_wins] << ','
                      << counts[drawn] << ',' << counts[black_wins] << '\n';
        }
    }

 private:
    std::map<std::pair<int, int>, counts_t> counts_;
    counts_t results_{};
    int unfinished_ = 0;
    std::int64_t plies_ = 0;
};

/// Plays random moves; false when the game ended by them.
bool play_opening(Game& game, std::mt19937_64& random) {
    int const plies = min_random_plies + static_cast<int>(random() % random_plies_choices);
    for (int ply = 0; ply < plies && !game.result(); ++ply) {
        game.make(game.moves()[static_cast<int>(random() % game.moves().size())]);
    }
    return !game.result();
}

/// Plays one game and counts it. False for a start that is thrown away.
bool play_game(Tables& tables, std::uint64_t nodes, std::uint64_t seed, int group, Table& table) {
    std::mt19937_64 random(seed);
    Game game(tables);
    if (!play_opening(game, random)) {
        return false;
    }
    Player player(game.position(), tables, nodes);
    std::vector<int> scores;
    int plies = static_cast<int>(game.position().history().size()) - 1;
    bool first = true;
    std::optional<result_t> result;
    for (; !(result = game.result()) && plies < max_plies; ++plies) {
        Found const found = player.search();
        if (first && std::abs(found.score.value_or(0)) > lopsided_score) {
            return false;
        }
        first = false;
        // The score of a mate is beyond all bins.
        if (plies >= first_counted_ply && found.score) {
            scores.push_back(*found.score);
        }
        game.make(found.move);
    }
    if (!result) {
        table.count_unfinished();
    }
    table.count(group, scores, result.value_or(drawn), plies);
    return true;
}

std::uint64_t number(char const* text) {
    std::string_view const view(text);
    std::uint64_t value = 0;
    auto const [end, error] = std::from_chars(view.data(), view.data() + view.size(), value);
    if (error != std::errc{} || end != view.data() + view.size()) {
        std::cerr << "orvelin-fit-games: not a number: " << text << '\n';
        std::exit(2);
    }
    return value;
}

int run(int games, std::uint64_t nodes, std::uint64_t seed, std::string_view arguments) {
    auto const tables = std::make_unique<Tables>();
    Table table;
    int thrown_away = 0;
    for (int game = 0; game < games;) {
        std::uint64_t const start = seed + static_cast<std::uint64_t>(game + thrown_away);
        if (!play_game(*tables, nodes, start, game % groups, table)) {
            ++thrown_away;
            continue;
        }
        if (++game % 100 == 0) {
            std::cerr << game << " games\n";
        }
    }
    table.print(thrown_away, arguments);
    return 0;
}

}  // namespace
}  // namespace orvelin

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: orvelin-fit-games GAMES NODES SEED > games.csv\n";
        return 2;
    }
    std::string const arguments = std::string(argv[1]) + ' ' + argv[2] + ' ' + argv[3];
    return orvelin::run(static_cast<int>(orvelin::number(argv[1])), orvelin::number(argv[2]),
                        orvelin::number(argv[3]), arguments);
}
