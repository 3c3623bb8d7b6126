// The real engine with positions that no game reaches: each search comes back with an answer, and
// the engine ends well afterwards.

#include <csignal>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "support/engine_process.h"
#include "support/text_pattern.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;

struct hostile_position_t {
    char const* name;
    char const* fen;
};

void PrintTo(hostile_position_t const& position, std::ostream* out) {
    *out << position.name << ": " << position.fen;
}

class ProcessHostilePosition : public testing::TestWithParam<hostile_position_t> {
 protected:
    void SetUp() override { engine_.send("position fen " + std::string(GetParam().fen)); }

    void expect_answer() {
        std::string const line = engine_.find("bestmove");
        std::string const move = "([a-h][1-8][a-h][1-8][qrbn]?|0000)";
        EXPECT_TRUE(matches(line, "bestmove " + move + "( ponder " + move + ")?")) << line;
    }

    void expect_good_end() {
        engine_.send("quit");
        auto const end = engine_.wait();
        ASSERT_TRUE(end.has_value());
        EXPECT_EQ(end->signal, 0);
        EXPECT_EQ(end->status, 0);
        EXPECT_EQ(engine_.error_text(), "");
    }

    EngineProcess engine_;
};

TEST_P(ProcessHostilePosition, IsAnsweredAtTheNodeLimit) {
    engine_.send("go nodes 500");
    expect_answer();
    expect_good_end();
}

// The time is looked at every 16384 nodes, so that the time given is short and the test is not.
TEST_P(ProcessHostilePosition, IsAnsweredAtTheEndOfTheTime) {
    engine_.send("go movetime 250");
    expect_answer();
    expect_good_end();
}

TEST_P(ProcessHostilePosition, IsAnsweredWhenStopped) {
    engine_.send_all({"go infinite", "eval", "isready"});
    engine_.read_until("readyok");
    engine_.send("stop");
    expect_answer();
    expect_good_end();
}

constexpr hostile_position_t hostile_positions[] = {
    {"NoKings", "8/pppp4/8/8/8/8/PPPP4/8 w - - 0 1"},
    {"NoKingOfTheMover", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQ1BNR w KQkq - 0 1"},
    {"NoKingOfTheOther", "rnbq1bnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
    {"ManyKings", "kkkkkkkk/kkkkkkkk/8/8/8/8/KKKKKKKK/KKKKKKKK w KQkq - 0 1"},
    {"KingsTouch", "8/8/8/3kK3/8/8/8/8 w - - 0 1"},
    {"KingInCheckOffMove", "4k3/8/8/8/8/8/8/4R1K1 w - - 0 1"},
    {"ChecksWithoutEnd", "8/1Q6/8/4k3/q7/Q7/K5k1/nB1Q4 w - - 0 1"},
    {"PawnsOnLastRanks", "ppppkppp/PPPPPPPP/8/8/8/8/pppppppp/PPPPKPPP b - - 0 1"},
    {"PawnsOnFirstRanks", "PPPPkPPP/pppppppp/8/8/8/8/PPPPPPPP/ppppKppp w - - 0 1"},
    {"MoreThanSixteenMen",
     "rnbqkbnr/pppppppp/pppppppp/8/8/PPPPPPPP/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
    {"SixtyQueens", "QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQQQ/QQQQQQ2/k1K5 w - - 0 1"},
    {"MoreThan256Moves", "QQQQQQQQ/Q6Q/Q6Q/Q6Q/Q6Q/Q6Q/Q6Q/kQQQQQQK w - - 0 1"},
    {"CapturesWithoutEnd",
     "qrqrqrqr/rqrqrqrq/qrqrkrqr/rqrqrqrq/QRQRQRQR/RQRQRQRQ/QRQRKRQR/RQRQRQRQ b - - 0 1"},
    {"RightsWithoutRooks", "4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1"},
    {"RightsOfAllFiles", "rrrrkrrr/8/8/8/8/8/8/RRRRKRRR w ABCDEFGHabcdefgh - 0 1"},
    {"EnPassantWithoutPawn", "4k3/8/8/4P3/8/8/8/4K3 w - d6 0 1"},
    {"EnPassantOverAQueen", "4k3/8/8/3qP3/8/8/8/4K3 w - d6 0 1"},
    {"RanksTooLong", "rnbqkbnrrr/pppppppppppp/88/8/8/8/PPPPPPPPP/RNBQKBNRR w KQkq - 0 1"},
    {"RanksTooShort", "rnbqk/ppp/8/8/8/8/PP/RNBQK w KQkq - 0 1"},
    {"RanksTooMany", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/pppp/PPPP/8/KKKK w KQkq - 0 1"},
    {"TwoMenOnOneSquare", "k7/pppppppprr/8/8/8/8/8/K7 w - - 0 1"},
    {"EmptyBoard", "8/8/8/8/8/8/8/8 w KQkq e3 0 1"},
    {"NegativeNumbers", "4k3/8/8/8/8/8/8/4K2R w - - -5 -7"},
};

std::string test_name(testing::TestParamInfo<hostile_position_t> const& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(All, ProcessHostilePosition, testing::ValuesIn(hostile_positions),
                         test_name);

/// The lines end the process, by a signal and with a text on the standard error.
void expect_end(lines_t const& lines, std::string const& text) {
    EngineProcess engine;
    engine.send_all(lines);
    auto const end = engine.wait();
    ASSERT_TRUE(end.has_value()) << lines.back();
    EXPECT_EQ(end->signal, SIGABRT);
    EXPECT_NE(engine.error_text().find(text + "\n"), std::string::npos) << engine.error_text();
}

TEST(ProcessHostile, ACharacterThatIsNoManEndsTheProcess) {
    expect_end({"position fen 4k3/8/8/9/8/8/8/4K3 w - - 0 1"},
               "ChessPosition::fen(4k3/8/8/9/8/8/8/4K3 w - - 0 1) \nunkown piece 0x39");
}

TEST(ProcessHostile, AManThatIsNoneEndsTheProcessWhenHeIsTaken) {
    expect_end({"position fen 4k3/8/8/8/3r4/8/8/R3K3 w - - 0 1 moves a1a4r", "go depth 4"},
               "Piece::abs_value out of range:");
}

TEST(ProcessHostile, IllegalMovesAreMadeAndSearchedOn) {
    for (std::string const moves :
         {"e1e8", "e4e5", "e2e2", "b1c3q", "a1h8 h1a8 e8e1", "e1h1 e8a8", "e2e4x"}) {
        EngineProcess engine;
        engine.send_all({"position startpos moves " + moves, "go nodes 500"});
        EXPECT_TRUE(engine.find("bestmove").starts_with("bestmove ")) << moves;
    }
}

}  // namespace
}  // namespace orvelin::test
