// What is told of a search that is stopped at any moment: every line is true.

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "play/play_process.h"
#include "support/positions.h"
#include "support/referee.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::Referee;
using orvelin::test::short_tests;

/// Openings, middle games, endings, checks, promotions, few moves, mates to be found and suffered.
std::vector<std::string> const& fens() {
    static std::vector<std::string> const all{
        positions::start,
        positions::kiwipete,
        positions::rook_ending,
        positions::promotions,
        positions::promotion_by_capture,
        positions::quiet_middle_game,
        positions::last_of_bench,
        positions::all_castlings,
        "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1",
        "6k1/5ppp/8/8/8/8/r7/6K1 b - - 0 1",
        "8/8/8/8/8/5k2/6q1/7K w - - 0 1",
        "7k/8/5K2/8/8/8/8/6Q1 w - - 0 1",
        "k7/8/1K6/8/8/8/8/7R b - - 0 1",
        "8/8/8/4k3/8/8/3QK3/8 w - - 90 120",
        "r1bqkb1r/pppp1Qpp/2n2n2/4p3/2B1P3/8/PPPP1PPP/RNB1K1NR b KQkq - 0 4",
        "r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4",
        "5rk1/5p1p/5P1B/8/8/8/5PPP/6K1 w - - 0 1",
        "7k/P7/8/8/8/8/p7/7K w - - 0 1",
    };
    return all;
}

std::string joined(std::vector<std::string> const& lines) {
    std::string text;
    for (std::string const& line : lines) {
        text += line + '\n';
    }
    return text;
}

/// A mate in so many moves that a line tells, negative when the side to move is mated. A line that
/// ends on the board, in the right number of moves and by the right side, shows it; others are
/// shown by a later search of the position alone.
struct told_mate_t {
    std::string fen;
    std::string first_move;
    int moves;

    friend auto operator<=>(told_mate_t const&, told_mate_t const&) = default;
};

/// Whether the line itself is the mate.
bool mates_on_board(Referee& board, info_t const& info) {
    std::size_t const plies = *info.mate > 0 ? 2 * static_cast<std::size_t>(*info.mate) - 1
                                             : 2 * static_cast<std::size_t>(-*info.mate);
    return info.moves.size() <= plies && board.verdict() == "checkmate" &&
           (info.moves.size() % 2 == 1) == (*info.mate > 0);
}

class ProcessPlayLines : public testing::Test {
 protected:
    /// Plays each line out; notes mates that their lines do not show.
    void check_lines(std::string const& fen, std::vector<std::string> const& answer) {
        for (info_t const& info : read_infos(answer)) {
            if (info.moves.empty()) {
                continue;
            }
            Referee board(fen);
            for (std::string const& move : info.moves) {
                ASSERT_TRUE(board.play(move)) << move << " in " << fen << '\n' << joined(answer);
            }
            if (info.mate && !info.bounded && !mates_on_board(board, info)) {
                to_show_.insert({fen, info.moves[0], *info.mate});
            }
        }
    }

    void check_answer(std::string const& fen, std::vector<std::string> const& answer) {
        std::string const best = best_move(answer);
        Referee const board(fen);
        if (board.over()) {
            EXPECT_EQ(best, "0000") << fen;
            return;
        }
        ASSERT_TRUE(board.legal(best)) << best << " in " << fen;
        auto const first = latest_first_line(answer);
        ASSERT_TRUE(first) << fen << '\n' << joined(answer);
        EXPECT_TRUE(first->has_score());
        EXPECT_EQ(best, first->moves[0]) << fen << '\n' << joined(answer);
    }

    /// A search of this move alone, deep enough for the mate, tells one that is as short.
    void show_mates() {
        for (told_mate_t const& told : to_show_) {
            PlayProcess process;
            process.send("position fen " + told.fen);
            int const depth = 2 * std::abs(told.moves) + 4;
            auto const answer = process.ask("go depth " + std::to_string(depth) + " searchmoves " +
                                            told.first_move);
            auto const first = latest_first_line(answer);
            ASSERT_TRUE(first && first->mate)
                << "mate " << told.moves << " by " << told.first_move << " in " << told.fen << '\n'
                << joined(answer);
            EXPECT_EQ(*first->mate > 0, told.moves > 0);
            EXPECT_LE(std::abs(*first->mate), std::abs(told.moves)) << told.fen;
        }
    }

    std::size_t mates_to_show() const { return to_show_.size(); }

 private:
    std::set<told_mate_t> to_show_;
};

TEST_F(ProcessPlayLines, AreTrueWheneverTheSearchIsStopped) {
    constexpr int stops = short_tests ? 60 : 1000;
    std::mt19937 random(17);
    PlayProcess process;
    for (int i = 0; i < stops; ++i) {
        std::string const& fen = fens()[random() % fens().size()];
        process.set_option("MultiPV", std::to_string(1 + random() % 50));
        process.send_all({"position fen " + fen, "go infinite"});
        // Most stops fall into the first iterations, some come at once.
        auto const wait = std::chrono::microseconds(random() % 4 * (random() % 12000));
        std::this_thread::sleep_for(wait);
        std::vector<std::string> const answer = process.ask("stop");
        check_lines(fen, answer);
        check_answer(fen, answer);
        if (HasFailure()) {
            return;
        }
    }
    show_mates();
}

TEST_F(ProcessPlayLines, AreThereWhenStopComesWithGo) {
    constexpr int stops = short_tests ? 20 : 200;
    PlayProcess process;
    for (int i = 0; i < stops; ++i) {
        std::string const& fen = fens()[static_cast<std::size_t>(i) % fens().size()];
        process.set_option("MultiPV", i % 2 == 0 ? "1" : "50");
        process.send_all({"position fen " + fen, "go infinite", "stop"});
        std::vector<std::string> const answer = process.answer();
        check_lines(fen, answer);
        check_answer(fen, answer);
        if (HasFailure()) {
            return;
        }
    }
    show_mates();
}

// The move that is searched first need not be one that was asked for.
TEST_F(ProcessPlayLines, KeepToTheMovesThatWereAskedFor) {
    PlayProcess process;
    for (std::string const limit : {"nodes 1", "depth 3", "infinite"}) {
        for (std::string const lines : {"1", "3"}) {
            process.set_option("MultiPV", lines);
            process.send_all({"ucinewgame", "position startpos"});
            process.send("go " + limit + " searchmoves h2h3 a2a4");
            process.send("stop");
            std::vector<std::string> const answer = process.answer();
            EXPECT_TRUE(best_move(answer) == "h2h3" || best_move(answer) == "a2a4")
                << limit << ", " << lines << " lines\n"
                << joined(answer);
        }
    }
}

TEST_F(ProcessPlayLines, AreToldOncePerIterationInTheirOrder) {
    PlayProcess process;
    process.set_option("MultiPV", "7");
    process.send("position fen " + std::string(positions::last_of_bench));
    std::map<std::pair<int, int>, int> told;
    int rank = 0;
    for (info_t const& info : read_infos(process.ask("go depth 5"))) {
        if (info.moves.empty()) {
            continue;
        }
        EXPECT_EQ(info.rank, rank % 7 + 1);
        rank = info.rank;
        EXPECT_EQ((++told[{info.depth, info.rank}]), 1) << info.depth << ' ' << info.rank;
    }
    EXPECT_EQ(told.size(), 5U * 7U);
}

TEST_F(ProcessPlayLines, OfOneReportHaveDifferentMovesAndFallingScores) {
    PlayProcess process;
    process.set_option("Score Unit", "engine");
    process.set_option("MultiPV", "50");
    process.send("position fen " + std::string(positions::quiet_middle_game));
    std::string const depth = orvelin::test::whole_tests() ? "go depth 3" : "go depth 2";
    std::set<std::string> moves;
    int last_score = 0;
    for (info_t const& info : read_infos(process.ask(depth))) {
        if (info.moves.empty() || !info.cp) {
            continue;
        }
        if (info.rank == 1) {
            moves.clear();
        } else {
            EXPECT_LE(*info.cp, last_score);
        }
        last_score = *info.cp;
        EXPECT_TRUE(moves.insert(info.moves[0]).second) << info.moves[0];
    }
    EXPECT_EQ(moves.size(), Referee(positions::quiet_middle_game).legal_moves().size());
}

}  // namespace

}  // namespace orvelin::play::test
