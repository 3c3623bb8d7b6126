#include "support/self_play.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <random>
#include <thread>

#include "support/chess960_positions.h"
#include "support/data_file.h"
#include "support/engine_process.h"
#include "support/positions.h"
#include "support/referee.h"
#include "support/shared_tables.h"

namespace orvelin::test {

namespace {

constexpr int max_plies = 2000;

constexpr std::array<char const*, 12> phase_fens{
    positions::kiwipete,
    positions::last_of_bench,
    positions::quiet_middle_game,
    positions::rook_ending,
    "8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - - 0 1",
    "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1",
    "8/8/8/3k4/8/3K4/8/Q7 w - - 0 1",
    "8/8/3k4/8/8/3K4/8/R6r b - - 0 1",
    "4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1",
    "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3",
    "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1",
    "2b1k3/8/8/8/8/8/8/4KBN1 w - - 90 80",
};

/// Two processes that play each other.
class EnginePair {
 public:
    game_record_t play(game_start_t const& start) {
        for (EngineProcess& engine : engines_) {
            engine.send("ucinewgame");
        }
        game_record_t record;
        record.start = start.fen;
        Referee referee(start.fen);
        for (std::string const& move : start.moves) {
            referee.play(move);
        }
        for (; (record.verdict = referee.verdict()).empty(); ++record.plies) {
            std::string const line = referee.command();
            if (record.plies == max_plies) {
                record.fault = "no end: " + line;
                return record;
            }
            std::string const move = answer(line, record.plies);
            if (!referee.play(move)) {
                record.fault.append("illegal answer '").append(move).append("' to ").append(line);
                return record;
            }
        }
        return record;
    }

    /// True when both processes end as they should.
    bool quit() {
        bool clean = true;
        for (EngineProcess& engine : engines_) {
            engine.send("quit");
            auto const end = engine.wait();
            clean = clean && end.has_value() && end->status == 0 && end->signal == 0;
        }
        return clean;
    }

 private:
    /// The move that the engine whose turn it is gives; depth and node limits take turns.
    std::string answer(std::string const& position_line, int ply) {
        EngineProcess& engine = engines_[static_cast<std::size_t>(ply % 2)];
        engine.send_all({position_line, ply % 4 < 2 ? "go depth 2" : "go nodes 300"});
        std::vector<std::string> const words = split_words(engine.find("bestmove"));
        return words.size() < 2 ? "" : words[1];
    }

    std::array<EngineProcess, 2> engines_;
};

game_start_t with_random_moves(std::string const& fen, std::size_t count, std::mt19937_64& random) {
    game_start_t start{fen, {}};
    Referee referee(fen);
    while (start.moves.size() < count && referee.verdict().empty()) {
        std::vector<std::string> const legal = referee.legal_moves();
        start.moves.push_back(legal[random() % legal.size()]);
        referee.play(start.moves.back());
    }
    return start;
}

}  // namespace

std::vector<game_start_t> varied_starts(int count) {
    std::mt19937_64 random(20);
    std::vector<std::string> const chess960 = random_chess960_fens(shared_tables(), count);
    std::vector<game_start_t> starts;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        if (i % 3 == 0) {
            starts.push_back(with_random_moves(start_fen, i % 10, random));
        } else if (i % 3 == 1) {
            starts.push_back(with_random_moves(chess960[i], i % 4, random));
        } else {
            char const* const fen = phase_fens[i / 3 % phase_fens.size()];
            starts.push_back(with_random_moves(fen, i / 36 * 3, random));
        }
    }
    return starts;
}

std::vector<game_record_t> play_games(std::vector<game_start_t> const& starts, int pairs) {
    std::vector<game_record_t> records(starts.size());
    std::atomic<std::size_t> next{0};
    std::atomic<int> unclean{0};
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(pairs));
    for (int i = 0; i < pairs; ++i) {
        threads.emplace_back([&] {
            EnginePair pair;
            for (std::size_t game = next++; game < starts.size(); game = next++) {
                records[game] = pair.play(starts[game]);
            }
            if (!pair.quit()) {
                ++unclean;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    if (unclean > 0) {
        records.front().fault += " a process did not end as it should";
    }
    return records;
}

}  // namespace orvelin::test
