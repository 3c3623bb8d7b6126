#include "protocol/stress_commands.h"

#include <array>
#include <cstdlib>

#include "support/self_play.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

constexpr std::size_t longest_game = 30;

/// Mates, stalemates, and the material for which endgame tables are built.
constexpr std::array<char const*, 6> special_fens{
    "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1",  "R5k1/5ppp/8/8/8/8/5PPP/6K1 b - - 0 1",
    "8/8/8/3k4/8/3K4/8/Q6r w - - 0 1", "8/8/8/3k4/8/3K1B2/5N2/8 w - - 0 1",
    "8/P7/8/3k4/8/3K4/7p/8 w - - 0 1", "8/8/8/8/8/k7/8/K1R5 w - - 0 1",
};

std::vector<std::string> make_start_fens() {
    std::vector<std::string> fens(special_fens.begin(), special_fens.end());
    for (game_start_t const& start : varied_starts(36)) {
        fens.push_back(start.fen);
    }
    return fens;
}

std::vector<std::string> const& start_fens() {
    static std::vector<std::string> const fens = make_start_fens();
    return fens;
}

}  // namespace

std::size_t stress_rounds(std::size_t rounds) {
    char const* const times = std::getenv("ORVELIN_STRESS_TIMES");
    return rounds * (times == nullptr ? 1 : std::stoul(times)) / (short_tests ? 10 : 1);
}

stress_line_t StressCommands::line(Referee& game) {
    switch (below(13)) {
        case 0:
        case 1:
        case 2:
            return position(game);
        case 3:
        case 4:
        case 5:
        case 6:
            return go(&game);
        default:
            return simple_line();
    }
}

stress_line_t StressCommands::later_line() {
    return one_in(3) ? go(nullptr) : simple_line();
}

stress_line_t StressCommands::simple_line() {
    switch (below(14)) {
        case 0:
        case 1:
        case 2:
            return {"stop", stress_kind::stop};
        case 3:
        case 4:
            return {"ponderhit", stress_kind::ponderhit};
        case 5:
        case 6:
        case 7:
            return {"isready", stress_kind::isready};
        case 8:
            return {"ucinewgame", stress_kind::new_game};
        case 9:
            return {"eval", stress_kind::eval};
        case 10:
            return {unknown(), stress_kind::other};
        default:
            return {option(), stress_kind::option};
    }
}

void StressCommands::begin_game(Referee& game) {
    game.start(one_in(3) ? Referee().fen() : pick(start_fens()));
    for (std::size_t left = one_in(4) ? 0 : below(6); left > 0 && !game.over(); --left) {
        game.play(pick(game.legal_moves()));
    }
    if (!game.known()) {
        begin_game(game);
    }
}

stress_line_t StressCommands::position(Referee& game) {
    if (!game.known() || game.over() || game.length() >= longest_game || one_in(3)) {
        begin_game(game);
    } else if (!one_in(8)) {
        game.play(pick(game.legal_moves()));
        if (!game.known()) {
            begin_game(game);
        }
    }
    return {game.command(), stress_kind::position};
}

stress_line_t StressCommands::go(Referee const* game) {
    std::string line = "go";
    std::size_t const kind = below(10);
    stress_go_t go{.finite = kind < 8};
    if (kind < 3) {
        // With several lines a few plies more can take long, so nothing waits for those.
        std::size_t const depth = one_in(4) ? 3 + below(3) : below(3);
        line += " depth " + std::to_string(depth);
        go.may_find_nothing = depth == 0;
        go.finite = depth < 3;
    } else if (kind < 5) {
        line += " movetime " + std::to_string(below(12));
    } else if (kind < 6) {
        line += " nodes " + std::to_string(below(3000));
        go.may_find_nothing = true;
    } else if (kind < 8) {
        // The moves to go come first: a clock as short as this leaves no time at all for forty.
        line += " movestogo 1 wtime 30 btime 30 winc 1 binc 1";
        go.by_clock = true;
    }
    if (one_in(4)) {
        line += " ponder";
        go.state = 2;
    }
    if (one_in(6)) {
        line += " infinite";
        go.state = 3;
        go.finite = false;
    }
    if (game != nullptr && game->known() && !game->over() && one_in(6)) {
        line += " searchmoves " + pick(game->legal_moves()) + " " + pick(game->legal_moves());
    }
    return {line, stress_kind::go, go};
}

std::string StressCommands::option() {
    switch (below(8)) {
        case 0:
            return "setoption name Hash value " + std::to_string(6 + below(20));
        case 1:
            return std::string("setoption name UCI_Chess960 value ") + (one_in(2) ? "true" : "f");
        case 2:
            return "setoption name Debug value " + std::string(one_in(3) ? "true" : "false");
        case 3:
            return "setoption name UCI_Elo value " + std::to_string(1400 + below(900));
        case 4:
            return "setoption name OwnBook value " + std::string(one_in(3) ? "true" : "false");
        case 5:
            return "setoption name UCI_LimitStrength value " +
                   std::string(one_in(3) ? "true" : "false");
        default:
            return "setoption name MultiPV value " + std::to_string(1 + below(4));
    }
}

std::string StressCommands::unknown() {
    static constexpr std::array<char const*, 6> words{
        "xyzzy", "   ", "register later", "ISREADY", "setoption nonsense", "setoption name Clear"};
    return pick(words);
}

}  // namespace orvelin::test
