#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/sleep.h"
#include "protocol/arguments.h"
#include "protocol/engine.h"

namespace orvelin {

namespace {

/// Depth limit of a `go` that names none: above every iteration.
constexpr int go_depth_limit = 102;

/// Moves to the next time control for a `go` that names none.
constexpr int go_movestogo = 40;

}  // namespace

// The limits are reset even when the command is then refused, and also under a search that runs on
// in the states of the held-back `bestmove` (oddities 19 and 20). The opening book may answer all
// the same.
bool Engine::command_go(std::istringstream& arguments) {
    reset_go_limits();
    if (answer_from_book()) {
        return true;
    }
    if (engine_state_ == thinking) {
        write_log("Error: received go while already thinking");
        return false;
    }
    engine_state_ = thinking;
    while (read_limit(read_token(arguments), arguments)) {
    }
    gate_.begin_search();
    return true;
}

void Engine::reset_go_limits() {
    analysis_.reset();
    analysis_.set_depth(go_depth_limit);
    analysis_.reset_max_nodes();
    set_movestogo(go_movestogo);
}

// Under a running search the position is mid-line; the side that is to move at its root is what
// the time manager already holds.
void Engine::set_movestogo(int moves) {
    if (gate_.search_runs_or_waits()) {
        analysis_.time_manager().set_movestogo(moves);
    } else {
        analysis_.set_movestogo(moves);
    }
}

// What cannot be read is 0, and an unknown word ends the line (oddity 22); `mate` is another word
// for `depth` (oddity 23).
bool Engine::read_limit(std::string const& token, std::istringstream& arguments) {
    using setter_t = void (AnalysisState::*)(int);
    static constexpr std::array<std::pair<std::string_view, setter_t>, 7> numbers{{
        {"wtime", &Analysis::set_wtime},
        {"btime", &Analysis::set_btime},
        {"winc", &Analysis::set_winc},
        {"binc", &Analysis::set_binc},
        {"depth", &Analysis::set_depth},
        {"mate", &Analysis::set_mate},
        {"movetime", &Analysis::set_movetime},
    }};
    for (auto const& [name, setter] : numbers) {
        if (token == name) {
            (analysis_.*setter)(read_number(arguments));
            return true;
        }
    }
    if (token == "movestogo") {
        set_movestogo(read_number(arguments));
    } else if (token == "nodes") {
        // Read as an int and sign-extended, so that a negative limit is an enormous one.
        analysis_.set_nodes(sign_extended(read_number(arguments)));
    } else if (token == "infinite") {
        analysis_.set_infinite(true);
        engine_state_ = infinite;
    } else if (token == "ponder") {
        analysis_.set_pondering(true);
        engine_state_ = pondering;
    } else if (token == "searchmoves") {
        read_searchmoves(arguments);
    } else {
        return false;
    }
    return true;
}

void Engine::read_searchmoves(std::istringstream& arguments) {
    std::optional<ChessPosition> root;
    if (gate_.search_runs_or_waits()) {
        root.emplace(gate_.searched_position());
    }
    ChessPosition& position = root ? *root : position_;
    std::vector<Move> moves;
    for (std::string text = read_token(arguments); !text.empty(); text = read_token(arguments)) {
        moves.push_back(position.convert_to_move(text));
    }
    analysis_.set_searchmoves(std::move(moves));
}

// The clock is not restarted: the time spent pondering counts against the budget (oddity 26).
// Without a search the state alone changes (oddity 25).
bool Engine::command_ponderhit(std::istringstream&) {
    analysis_.ponderhit();
    engine_state_ = thinking;
    return true;
}

// Neither hashfull nor the position line follow a stopped search, so that the next `position` is
// parsed in full (oddity 16).
bool Engine::command_stop(std::istringstream&) {
    if (engine_state_ == idle) {
        return true;
    }
    set_action(2);
    engine_state_ = idle;
    while (analysis_.get_status() == searching_status) {
        sleep_milliseconds(5);
    }
    report_lines(finished_status);
    Move const best_move = analysis_.best_move();
    position_.make_foreign_move(best_move);
    position_line_lags_ = true;
    send(bestmove_line(best_move));
    analysis_.set_status(ready_status);
    gate_.catch_up();
    return true;
}

// A `go` that waits is held off until the old move is made: its search must not begin on a position
// that is being changed. If it has begun already, its own end brings the move. The best move is
// made on the board (oddity 15). A status that a stop has left behind gives the old move to the
// next `go` (oddity 21).
void Engine::answer_search() {
    bool const go_waits = gate_.withdraw_search();
    if (analysis_.get_status() != finished_status) {
        return;
    }
    engine_state_ = idle;
    analysis_.set_status(ready_status);
    send_hashfull(analysis_);
    command_.clear();
    Move const best_move = analysis_.best_move();
    position_line_ += ' ' + best_move.algebraic(chess960_);
    position_.make_foreign_move(best_move);
    send(bestmove_line(best_move));
    gate_.catch_up();
    if (go_waits) {
        gate_.begin_search();
    }
}

std::string Engine::bestmove_line(Move const& best_move) const {
    std::string text = "bestmove " + best_move.algebraic(chess960_);
    Move const ponder_move = analysis_.pondermove();
    if (ponder_move.code() != 0) {
        text += " ponder " + ponder_move.algebraic(chess960_);
    }
    return text;
}

}  // namespace orvelin
