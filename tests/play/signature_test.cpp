// The searches of the signature through the searcher of orvelin-play.

#include "support/signature.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/play_signature.h"
#include "support/session_reader.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::played_outcomes;
using orvelin::test::read_sessions;
using orvelin::test::recorded_outcomes;
using orvelin::test::session_t;

TEST(PlaySignature, IsThatOfTheRecord) {
    std::vector<session_t> played;
    std::vector<session_t> recorded;
    for (session_t const& session : read_sessions(orvelin::test::signature_file)) {
        played.push_back(played_outcomes(session));
        recorded.push_back(recorded_outcomes(session));
        ASSERT_EQ(played.back().commands.size(), recorded.back().commands.size());
        for (std::size_t i = 0; i < played.back().commands.size(); ++i) {
            EXPECT_EQ(played.back().commands[i].answer, recorded.back().commands[i].answer)
                << played.back().commands[i].text;
        }
    }
    EXPECT_EQ(signature_of(played), signature_of(recorded));
    // All but what is left out, so that the row says something.
    EXPECT_GT(signature_of(recorded).nodes, 765000U);
}

TEST(PlaySignature, TellsTheIterationsThatEnded) {
    session_t const session{{{"go depth 2",
                              {"it 1 alpha -32000 beta 32000 score 144 nodes 26 pv e2e4",
                               "it 2 alpha 119 beta 169 score 119 nodes 79 pv e2e4",
                               "it 2 alpha 69 beta 169 score 120 nodes 129 pv e2e4", "lines 1",
                               "line depth 2 score 120 e2e4", "best e2e4 ponder 0000 nodes 129"}}}};
    session_t const outcomes = recorded_outcomes(session);
    EXPECT_EQ(outcomes.commands[0].answer,
              (std::vector<std::string>{"it 1 score cp 144 nodes 26 e2e4",
                                        "it 2 score cp 120 nodes 129 e2e4",
                                        "line score cp 120 e2e4", "best e2e4 nodes 129"}));
}

}  // namespace

}  // namespace orvelin::play::test
