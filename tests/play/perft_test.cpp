#include "play/perft.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <thread>

#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::shared_tables;

class PlayPerft : public testing::Test {
 protected:
    ChessPosition& at(std::string const& fen) {
        position_.fen(fen);
        return position_;
    }

 private:
    ChessPosition position_{shared_tables()};
};

TEST_F(PlayPerft, CountsLeaves) {
    EXPECT_EQ(perft(at(positions::start), shared_tables(), 0), 1U);
    EXPECT_EQ(perft(at(positions::start), shared_tables(), 1), 20U);
    EXPECT_EQ(perft(at(positions::start), shared_tables(), 3), 8902U);
    EXPECT_EQ(perft(at(positions::kiwipete), shared_tables(), 3), 97862U);
    EXPECT_EQ(perft(at(positions::promotions), shared_tables(), 3), 9467U);
}

TEST_F(PlayPerft, LeavesThePositionAsItWas) {
    ChessPosition& position = at(positions::kiwipete);
    perft_report(position, shared_tables(), 2, false, false);
    EXPECT_EQ(position.fen(), positions::kiwipete);
}

TEST_F(PlayPerft, ReportsEachMoveAndTheSum) {
    std::string const text =
        perft_report(at(positions::white_castlings), shared_tables(), 1, false, false);
    EXPECT_NE(text.find("e1g1: 1\n"), std::string::npos);
    EXPECT_TRUE(text.ends_with("\n\nNodes searched: 26\n")) << text;
    std::string const other =
        perft_report(at(positions::white_castlings), shared_tables(), 1, true, false);
    EXPECT_NE(other.find("e1h1: 1\n"), std::string::npos);
}

TEST_F(PlayPerft, ReportsAnEndedGame) {
    EXPECT_EQ(perft_report(at("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"), shared_tables(), 3, false, false),
              "\nNodes searched: 0\n");
}

TEST_F(PlayPerft, EndsWhenItIsStopped) {
    ChessPosition& position = at(positions::start);
    EXPECT_EQ(perft_report(position, shared_tables(), 20, false, true), "");
    EXPECT_EQ(position.fen(), positions::start);
    std::atomic<bool> stopped = false;
    std::thread stopping([&stopped] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        stopped = true;
    });
    std::string const text = perft_report(position, shared_tables(), 20, false, stopped);
    stopping.join();
    EXPECT_EQ(text.find("Nodes searched"), std::string::npos);
    EXPECT_EQ(position.fen(), positions::start);
}

}  // namespace

}  // namespace orvelin::play::test
