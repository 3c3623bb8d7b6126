#include "support/perft.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "support/positions.h"
#include "support/session_player.h"
#include "support/session_reader.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

/// Leaf counts of one position at depths 1, 2, 3 and so on.
struct perft_case_t {
    std::string name;
    std::string fen;
    std::vector<std::uint64_t> leaves;
};

std::vector<perft_case_t> well_known_positions() {
    return {
        {"start", positions::start, {20, 400, 8902, 197281, 4865609, 119060324}},
        {"kiwipete", positions::kiwipete, {48, 2039, 97862, 4085603, 193690690}},
        {"rook_ending", positions::rook_ending, {14, 191, 2812, 43238, 674624}},
        {"promotions", positions::promotions, {6, 264, 9467, 422333, 15833292}},
        {"discovery", positions::promotion_by_capture, {44, 1486, 62379, 2103487, 89941194}},
        {"middle_game", positions::quiet_middle_game, {46, 2079, 89890, 3894594, 164075551}},
    };
}

class WellKnownPerft : public testing::TestWithParam<perft_case_t> {};

TEST_P(WellKnownPerft, CountsTheLeavesOfEveryDepth) {
    constexpr std::uint64_t leaf_limit = short_tests ? 5'000'000 : 200'000'000;
    Tables const& tables = shared_tables();
    Perft perft(tables);
    ChessPosition position(tables);
    position.fen(GetParam().fen);
    int depth = 0;
    for (const std::uint64_t leaves : GetParam().leaves) {
        ++depth;
        if (leaves > leaf_limit) {
            break;
        }
        EXPECT_EQ(perft.count(position, depth), leaves) << "depth " << depth;
    }
    EXPECT_EQ(position.fen(), GetParam().fen);
}

INSTANTIATE_TEST_SUITE_P(perft, WellKnownPerft, testing::ValuesIn(well_known_positions()),
                         [](testing::TestParamInfo<perft_case_t> const& known) {
                             return known.param.name;
                         });

}  // namespace

TEST(PerftSessions, CountTheLeavesOfEachPosition) {
    SessionPlayer player;
    for (session_t const& session : read_sessions("perft.txt")) {
        std::string position;
        for (session_command_t const& command : session.commands) {
            if (command.text.starts_with("pos ")) {
                position = command.text;
            }
            EXPECT_EQ(player.play(command.text), command.answer) << position;
        }
    }
}

}  // namespace orvelin::test
