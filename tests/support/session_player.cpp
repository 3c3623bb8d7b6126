#include "support/session_player.h"

#include <array>
#include <cstdio>
#include <stdexcept>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "search/analysis.h"
#include "search/multi_pv.h"
#include "search/principal_variation.h"
#include "search/transposition_table.h"
#include "support/data_file.h"
#include "support/perft.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

/// The depth limit that a search starts from before its own limits are read.
constexpr int go_depth_limit = 102;
constexpr int go_movestogo = 40;

constexpr std::array<char const*, 3> bench_positions = {
    positions::start, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1",
    positions::last_of_bench};
constexpr int bench_depth = 12;
constexpr int bench_clock = 6000000;
constexpr int bench_megabytes = 128;

/// A blank and the text of each move of the line.
std::string moves_of(PrincipalVariation const& line, bool chess960) {
    std::string text;
    for (int i = 0; i < line.size(); ++i) {
        text += ' ' + line[i].algebraic(chess960);
    }
    return text;
}

std::string ebf_text(float ebf) {
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%g", static_cast<double>(ebf));
    return buffer.data();
}

}  // namespace

/// What a newly started engine builds, in its order.
struct SessionPlayer::Engine {
    Engine() : position(tables), analysis(position, tables) {
        position.newgame();
        analysis.init(position);
    }

    Tables tables;
    ChessPosition position;
    Analysis analysis;
};

SessionPlayer::SessionPlayer() = default;
SessionPlayer::~SessionPlayer() = default;

SessionPlayer::Engine& SessionPlayer::engine() {
    if (!engine_) {
        engine_ = std::make_unique<Engine>();
    }
    return *engine_;
}

Analysis& SessionPlayer::analysis() {
    return engine().analysis;
}

std::vector<std::string> SessionPlayer::play(std::string const& command) {
    const words_t words = split_words(command);
    std::string const& name = words.at(0);
    if (name == "new") {
        engine_.reset();
        chess960_ = false;
    } else if (name == "ucinewgame") {
        ucinewgame();
    } else if (name == "hash") {
        analysis().set_hash_size(std::stoi(words.at(1)));
    } else if (name == "option") {
        set_option(words);
    } else if (name == "pos") {
        set_position(words);
    } else if (name == "go") {
        return go(words);
    } else if (name == "bench") {
        return bench();
    } else if (name == "perft") {
        int const depth = std::stoi(words.at(1));
        return {command + ' ' +
                std::to_string(Perft(engine().tables).count(engine().position, depth))};
    } else {
        throw std::runtime_error("unknown session command: " + command);
    }
    return {};
}

void SessionPlayer::ucinewgame() {
    engine().position.newgame();
    analysis().clear_hash();
    analysis().clear_killer();
    analysis().clear_history();
}

void SessionPlayer::set_option(words_t const& words) {
    std::string const& name = words.at(1);
    if (name == "MultiPV") {
        analysis().set_multipv(static_cast<unsigned int>(std::stoul(words.at(2))));
    } else if (name == "UCI_Chess960") {
        chess960_ = words.at(2) == "true";
    } else {
        throw std::runtime_error("unknown session option: " + name);
    }
}

void SessionPlayer::set_position(words_t const& words) {
    constexpr std::size_t moves_index = 7;
    ChessPosition& position = engine().position;
    position.fen(join_words({words.begin() + 1, words.begin() + moves_index}));
    for (std::size_t i = moves_index + 1; i < words.size(); ++i) {
        position.make_move(position.convert_to_move(words[i]));
    }
    analysis().init(position);
    analysis().reset();
}

std::vector<std::string> SessionPlayer::go(words_t const& words) {
    analysis().reset();
    analysis().set_depth(go_depth_limit);
    analysis().set_movestogo(go_movestogo);
    analysis().reset_max_nodes();
    analysis().set_action(no_action);
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (words[i] == "depth") {
            analysis().set_depth(std::stoi(words.at(++i)));
        } else if (words[i] == "nodes") {
            analysis().set_nodes(std::stoull(words.at(++i)));
        } else if (words[i] == "searchmoves") {
            std::vector<Move> moves;
            while (++i < words.size()) {
                moves.push_back(engine().position.convert_to_move(words[i]));
            }
            analysis().set_searchmoves(moves);
        } else {
            throw std::runtime_error("unknown session limit: " + words[i]);
        }
    }
    return search();
}

std::vector<std::string> SessionPlayer::search() {
    std::vector<std::string> lines;
    analysis().iterative_search([&](int alpha, int beta, int score) {
        lines.push_back(root_return_text(alpha, beta, score));
    });
    for (std::string& line : result_text()) {
        lines.push_back(std::move(line));
    }
    return lines;
}

std::string SessionPlayer::root_return_text(int alpha, int beta, int score) {
    return "it " + std::to_string(analysis().get_iteration()) + " alpha " + std::to_string(alpha) +
           " beta " + std::to_string(beta) + " score " + std::to_string(score) + " nodes " +
           std::to_string(analysis().get_node_count()) + " leafs " +
           std::to_string(analysis().leaf_count()) + " seldepth " +
           std::to_string(analysis().get_seldepth()) + " pv" +
           moves_of(analysis().root_line(), chess960_);
}

std::vector<std::string> SessionPlayer::result_text() {
    std::vector<std::string> lines;
    const MultiPV ranked = analysis().mpv();
    lines.push_back("lines " + std::to_string(ranked.size()));
    for (PrincipalVariation const& line : ranked) {
        lines.push_back("line depth " + std::to_string(line.depth()) + " score " +
                        std::to_string(line.score()) + moves_of(line, chess960_));
    }
    lines.push_back("ebf " + ebf_text(analysis().get_ebf()));
    lines.push_back("hashfull " + std::to_string(analysis().get_hashfull()));
    lines.push_back("best " + analysis().best_move().algebraic(chess960_) + " ponder " +
                    analysis().pondermove().algebraic(chess960_) + " nodes " +
                    std::to_string(analysis().get_node_count()));
    return lines;
}

void SessionPlayer::set_bench_position(std::string const& fen) {
    engine().position.fen(fen);
    analysis().init(engine().position);
    analysis().clear_hash();
    analysis().clear_killer();
    analysis().clear_history();
    analysis().reset();
    analysis().set_hash_size(bench_megabytes);
    analysis().set_wtime(bench_clock);
    analysis().set_btime(bench_clock);
    analysis().set_movestogo(1);
    analysis().set_depth(bench_depth);
}

std::vector<std::string> SessionPlayer::bench() {
    std::vector<std::string> lines;
    std::uint64_t total = 0;
    for (std::size_t i = 0; i < bench_positions.size(); ++i) {
        set_bench_position(bench_positions[i]);
        analysis().iterative_search();
        total += analysis().get_node_count();
        lines.push_back("bench " + std::to_string(i + 1) + " nodes " +
                        std::to_string(analysis().get_node_count()) + " eval " +
                        std::to_string(analysis().eval()) + " ebf " +
                        ebf_text(analysis().get_ebf()) + " best " +
                        analysis().best_move().algebraic(false));
    }
    lines.push_back("total " + std::to_string(total));
    return lines;
}

}  // namespace orvelin::test
