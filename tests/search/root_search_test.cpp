#include <string>
#include <vector>

#include "support/analysis_fixture.h"
#include "support/positions.h"

namespace orvelin::test {

namespace {

std::string const knights = "4k3/pp3p2/2n5/8/8/2N5/PP3P2/4K3 w - - 0 1";
/// White is a queen down: scores are far below 0.
std::string const lost = "3qk3/pp3p2/2n5/8/8/2N5/PP3P2/4K3 w - - 0 1";
constexpr int infinity = 32000;

class RootSearch : public AnalysisFixture {
 protected:
    ~RootSearch() override { analysis_.set_multipv(1); }

    int search(int depth, int alpha = -infinity, int beta = infinity) {
        MoveList unread;
        return analysis_.root_search(unread, depth, alpha, beta);
    }
};

}  // namespace

TEST_F(RootSearch, PublishesTheRootLine) {
    set(start_fen);
    int const score = search(3);
    MultiPV const lines = analysis_.mpv();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0].str(), analysis_.root_line().str());
    EXPECT_EQ(lines[0].score(), score);
    EXPECT_EQ(lines[0].depth(), 3);
    EXPECT_EQ(analysis_.mpv_version(), 1);
}

TEST_F(RootSearch, ListIsNotRead) {
    set(start_fen);
    int const plain = search(3);
    std::uint64_t const nodes = node_count();
    set(start_fen);
    MoveList list = list_of({"a2a3"});
    EXPECT_EQ(analysis_.root_search(list, 3, -infinity, infinity), plain);
    EXPECT_EQ(node_count(), nodes);
    EXPECT_EQ(texts_of(list), texts_t{"a2a3"});
}

TEST_F(RootSearch, FailHighAndFailLowKeepTheFormerLine) {
    set(start_fen);
    int const score = search(2);
    std::string const line = analysis_.root_line().str();
    Move const best = analysis_.best_move();
    for (auto const& [alpha, beta] : {std::pair{-infinity, -3000}, std::pair{3000, infinity}}) {
        EXPECT_EQ(search(3, alpha, beta), alpha == -infinity ? beta : alpha);
        EXPECT_EQ(analysis_.root_line().str(), line);
        EXPECT_EQ(analysis_.best_move(), best);
        EXPECT_EQ(analysis_.eval(), score);
        // It is published all the same, with its own depth and score.
        MultiPV const lines = analysis_.mpv();
        ASSERT_EQ(lines.size(), 1);
        EXPECT_EQ(lines[0].depth(), 2);
        EXPECT_EQ(lines[0].score(), score);
    }
}

TEST_F(RootSearch, EmptyRootLineLeavesNoLine) {
    set(start_fen);
    search(2);
    int const version = analysis_.mpv_version();
    set("7k/8/8/8/8/8/5q2/7K w - - 0 1");
    probe_.root_line().clear();
    EXPECT_EQ(search(2), 0);
    EXPECT_EQ(analysis_.mpv().size(), 0);
    EXPECT_EQ(analysis_.mpv_version(), version);
}

TEST_F(RootSearch, FurtherLinesAreSearchedOnePlyLessWithTheWindowUnflipped) {
    for (std::string const& fen : {knights, lost}) {
        set(fen);
        analysis_.set_multipv(3);
        search(3);
        std::uint64_t const nodes = node_count();
        MultiPV const published = analysis_.mpv();

        // The same by hand, from an equal state.
        set(fen);
        PrincipalVariation local;
        analysis_.pv_search(3, -infinity, infinity, local);
        MultiPV expected;
        expected.set_number(3);
        expected.add(analysis_.root_line());
        MoveList list;
        probe_.generator().generate_moves(position_, list);
        analysis_.remove(analysis_.best_move(), list);
        PrincipalVariation line;
        for (int n = 1; n < 3; ++n) {
            int best = -infinity;
            Move best_move;
            for (Move const& candidate : list) {
                PrincipalVariation child;
                analysis_.make_move(candidate);
                int const score = -analysis_.pv_search(2, best, infinity, child);
                analysis_.unmake_move(candidate);
                if (score <= best) {
                    continue;
                }
                best = score;
                best_move = candidate;
                line = candidate + child;
                line.set_score(score);
                line.set_depth(3);
            }
            expected.add(line);
            analysis_.remove(best_move, list);
        }
        EXPECT_EQ(node_count(), nodes) << fen;
        ASSERT_EQ(published.size(), expected.size()) << fen;
        for (int i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(published[i].str(), expected[i].str()) << fen << i;
            EXPECT_EQ(published[i].score(), expected[i].score()) << fen << i;
            EXPECT_EQ(published[i].depth(), 3) << fen << i;
        }
    }
}

TEST_F(RootSearch, FurtherLinesLeaveBestScoreAndMove) {
    set(knights);
    analysis_.set_multipv(4);
    int const score = search(3);
    EXPECT_EQ(analysis_.eval(), score);
    EXPECT_EQ(analysis_.best_move(), analysis_.root_line()[0]);
    EXPECT_EQ(analysis_.ply(), 0);
    EXPECT_TRUE(analysis_.evaluation().piece_square_tables().verify_score());
}

TEST_F(RootSearch, FurtherLinesHaveDifferentFirstMoves) {
    set(start_fen);
    analysis_.set_multipv(20);
    search(2);
    MultiPV const lines = analysis_.mpv();
    EXPECT_EQ(lines.size(), 20);
    for (int i = 0; i < lines.size(); ++i) {
        for (int j = i + 1; j < lines.size(); ++j) {
            EXPECT_NE(lines[i][0], lines[j][0]);
        }
    }
}

TEST_F(RootSearch, LinesBeyondTheMovesAreTheLastLineAgain) {
    set("k7/8/8/8/8/8/7p/7K w - - 0 1");
    ASSERT_EQ(moves().size(), 2U);
    int const before = analysis_.mpv_version();
    analysis_.set_multipv(5);
    search(2);
    EXPECT_EQ(analysis_.mpv().size(), 2);
    // One add for the root line and one for each pass, also for those without moves.
    EXPECT_EQ(analysis_.mpv_version(), before + 5);
}

TEST_F(RootSearch, SingleMoveLeavesOneLine) {
    set("7k/8/8/8/8/p7/P3q3/7K w - - 0 1");
    ASSERT_EQ(moves().size(), 1U);
    int const before = analysis_.mpv_version();
    analysis_.set_multipv(3);
    search(2);
    // The passes have no move and no line to add.
    EXPECT_EQ(analysis_.mpv().size(), 1);
    EXPECT_EQ(analysis_.mpv_version(), before + 1);
}

TEST_F(RootSearch, StoppedPassesScoreAMateInOne) {
    set(knights);
    search(2);
    analysis_.set_multipv(3);
    analysis_.set_action(stop_action);
    Move const best = analysis_.best_move();
    search(3);
    MultiPV const lines = analysis_.mpv();
    ASSERT_EQ(lines.size(), 3);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(lines[i].score(), 29999);
        EXPECT_EQ(lines[i].depth(), 3);
        EXPECT_EQ(lines[i].size(), 1);
        EXPECT_NE(lines[i][0], best);
    }
    EXPECT_EQ(lines[2][0], best);
    EXPECT_EQ(lines[2].depth(), 2);
    EXPECT_EQ(analysis_.best_move(), best);
}

}  // namespace orvelin::test
