#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/session_player.h"
#include "support/session_reader.h"

namespace orvelin::test {

TEST(BenchSession, GivesNodesScoreBranchingFactorAndMove) {
    SessionPlayer player;
    const session_t session = read_sessions("bench.txt").at(0);
    for (session_command_t const& command : session.commands) {
        EXPECT_EQ(player.play(command.text), command.answer) << command.text;
    }
}

}  // namespace orvelin::test
