#include "play/go_reader.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "play/hostile_lines.h"
#include "play/reader_text.h"
#include "position/chess_position.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::shared_tables;

GoText read(std::string_view arguments, std::string const& fen = positions::start) {
    static ChessPosition position(shared_tables());
    position.fen(fen);
    GoText text = read_go(arguments, position, shared_tables());
    expect_presentable(text.refusal.reason);
    expect_presentable(text.remarks);
    return text;
}

/// One remark, which is this.
void expect_remark(std::string_view arguments, std::string const& remark) {
    GoText const text = read(arguments);
    EXPECT_EQ(text.refusal.reason, "");
    EXPECT_EQ(text.remarks, std::vector<std::string>{remark});
}

std::vector<std::string> searchmoves(GoText const& text) {
    std::vector<std::string> texts;
    for (Move const& move : text.limits.searchmoves) {
        texts.push_back(move.algebraic(true));
    }
    return texts;
}

using texts_t = std::vector<std::string>;

TEST(GoReader, NothingIsNoLimit) {
    GoLimits const limits = read("").limits;
    EXPECT_FALSE(limits.wtime || limits.btime || limits.movestogo || limits.movetime);
    EXPECT_FALSE(limits.depth || limits.mate || limits.nodes || limits.perft);
    EXPECT_EQ(limits.winc.count(), 0);
    EXPECT_EQ(limits.binc.count(), 0);
    EXPECT_FALSE(limits.infinite || limits.ponder);
    EXPECT_TRUE(limits.searchmoves.empty());
    EXPECT_TRUE(read("").remarks.empty());
}

TEST(GoReader, ReadsAllWordsInAnyOrder) {
    GoText const text = read(
        "ponder binc 2 mate 7 wtime 300000 searchmoves e2e4 d2d4 btime 200000 winc 1 movestogo 40 "
        "depth 9 nodes 12345678901 movetime 500 infinite perft 3");
    GoLimits const& limits = text.limits;
    EXPECT_TRUE(text.remarks.empty());
    EXPECT_EQ(limits.wtime->count(), 300000);
    EXPECT_EQ(limits.btime->count(), 200000);
    EXPECT_EQ(limits.winc.count(), 1);
    EXPECT_EQ(limits.binc.count(), 2);
    EXPECT_EQ(limits.movestogo, 40);
    EXPECT_EQ(limits.movetime->count(), 500);
    EXPECT_EQ(limits.depth, 9);
    EXPECT_EQ(limits.mate, 7);
    EXPECT_EQ(limits.nodes, 12345678901U);
    EXPECT_EQ(limits.perft, 3);
    EXPECT_TRUE(limits.infinite);
    EXPECT_TRUE(limits.ponder);
    EXPECT_EQ(searchmoves(text), (texts_t{"e2e4", "d2d4"}));
}

TEST(GoReader, TheLastOfAWordHolds) {
    EXPECT_EQ(read("depth 3 depth 5").limits.depth, 5);
    EXPECT_FALSE(read("movestogo 5 movestogo 0").limits.movestogo);
}

TEST(GoReader, ATimeOfZeroIsAMillisecondWithARemark) {
    expect_remark("wtime 0", "go wtime: \"0\" is not in 1 to 1000000000, 1 is taken");
    GoText const text = read("wtime 0 btime 0 movetime 0 winc 0 binc 0");
    EXPECT_EQ(text.limits.wtime->count(), 1);
    EXPECT_EQ(text.limits.btime->count(), 1);
    EXPECT_EQ(text.limits.movetime->count(), 1);
    EXPECT_EQ(text.limits.winc.count(), 0);
    EXPECT_EQ(text.remarks.size(), 3U);
}

TEST(GoReader, AClockBelowZeroIsAMillisecondWithoutARemark) {
    EXPECT_TRUE(read("wtime -5 btime -99999999999999999999").remarks.empty());
    EXPECT_EQ(read("wtime -5").limits.wtime->count(), 1);
    EXPECT_EQ(read("btime -99999999999999999999").limits.btime->count(), 1);
    EXPECT_EQ(read("movetime -1").limits.movetime->count(), 1);
    EXPECT_EQ(read("winc -1").limits.winc.count(), 0);
    EXPECT_EQ(read("binc -1").limits.binc.count(), 0);
    expect_remark("movetime -5", "go movetime: \"-5\" is not in 1 to 1000000000, 1 is taken");
    expect_remark("infinite binc -5", "go binc: \"-5\" is not in 0 to 1000000000, 0 is taken");
}

TEST(GoReader, HugeTimesAreClamped) {
    for (std::string const word : {"wtime", "btime", "winc", "binc", "movetime"}) {
        EXPECT_TRUE(read(word + " 1000000000").remarks.empty());
        expect_remark(word + " 1000000001", "go " + word + ": \"1000000001\" is not in " +
                                                (word[1] == 'i' ? "0" : "1") +
                                                " to 1000000000, 1000000000 is taken");
    }
    EXPECT_EQ(read("wtime 99999999999999999999").limits.wtime->count(), 1'000'000'000);
    EXPECT_EQ(read("winc 99999999999999999999").limits.winc.count(), 1'000'000'000);
}

TEST(GoReader, NumbersAreClamped) {
    EXPECT_EQ(read("depth 0").limits.depth, 1);
    EXPECT_EQ(read("depth -3").limits.depth, 1);
    EXPECT_EQ(read("depth 101").limits.depth, 100);
    EXPECT_EQ(read("mate 0").limits.mate, 1);
    EXPECT_EQ(read("mate 101").limits.mate, 100);
    EXPECT_EQ(read("nodes 0").limits.nodes, 1U);
    EXPECT_EQ(read("nodes 4611686018427387904").limits.nodes, 4611686018427387903U);
    EXPECT_EQ(read("movestogo 1001").limits.movestogo, 1000);
    EXPECT_EQ(read("perft 0").limits.perft, 1);
    EXPECT_EQ(read("perft 21").limits.perft, 20);
    for (char const* line :
         {"depth 1", "depth 100", "mate 1", "mate 100", "nodes 1", "nodes 4611686018427387903",
          "movestogo 1", "movestogo 1000", "perft 1", "perft 20"}) {
        EXPECT_TRUE(read(line).remarks.empty()) << line;
    }
    expect_remark("depth 0", "go depth: \"0\" is not in 1 to 100, 1 is taken");
    expect_remark("nodes 0", "go nodes: \"0\" is not in 1 to 4611686018427387903, 1 is taken");
}

TEST(GoReader, NoMovesToGoAreNoControl) {
    EXPECT_FALSE(read("movestogo 0").limits.movestogo);
    EXPECT_TRUE(read("movestogo 0").remarks.empty());
    EXPECT_FALSE(read("movestogo -3").limits.movestogo);
    expect_remark("movestogo -3", "go movestogo: \"-3\" is not in 0 to 1000, 0 is taken");
}

TEST(GoReader, AFractionIsLeftAway) {
    EXPECT_EQ(read("wtime 1000.75").limits.wtime->count(), 1000);
    expect_remark("wtime 1000.75", "go wtime: \"1000.75\" is no whole number, 1000 is taken");
}

TEST(GoReader, WhatIsNoNumberIsLeftOut) {
    expect_remark("depth x infinite", "go depth: \"x\" is no number, left out");
    EXPECT_FALSE(read("depth x").limits.depth);
    EXPECT_EQ(read("depth x nodes 5").limits.nodes, 5U);
}

TEST(GoReader, AMissingNumberTakesNoOtherWord) {
    expect_remark("nodes 5 depth", "go depth: without a number, left out");
    GoText const text = read("wtime btime 100 depth infinite");
    EXPECT_FALSE(text.limits.wtime);
    EXPECT_EQ(text.limits.btime->count(), 100);
    EXPECT_TRUE(text.limits.infinite);
    EXPECT_EQ(text.remarks.size(), 2U);
}

// A slip of the keyboard must not become a search that never ends.
TEST(GoReader, AMistakeWithoutAnotherLimitIsRefused) {
    std::string const nothing = ", and nothing else says when to end: nothing is searched";
    for (auto const& [line, fault] : std::vector<std::pair<std::string, std::string>>{
             {"depth", "go depth: without a number"},
             {"depth abc", "go depth: \"abc\" is no number"},
             {"movetime", "go movetime: without a number"},
             {"5", "go: \"5\" is unknown"},
             {"5 6 7", "go: \"5\" is unknown"},
             {"ponder wtime x", "go wtime: \"x\" is no number"},
             {"searchmoves e2e4 depth", "go depth: without a number"},
             {"winc 5 depth", "go depth: without a number"},
             {"searchmoves", "go searchmoves: without a move"}}) {
        GoText const text = read(line);
        EXPECT_EQ(text.refusal.reason, fault + nothing) << line;
        EXPECT_TRUE(text.remarks.empty()) << line;
        EXPECT_FALSE(text.counts) << line;
    }
    for (char const* line : {"", "infinite", "ponder", "searchmoves e2e4", "movestogo 5",
                             "infinite 5", "depth x movetime 5", "wtime x btime 5"}) {
        EXPECT_FALSE(read(line).refusal.refused()) << line;
    }
}

TEST(GoReader, ACountWithoutItsNumberIsRefused) {
    for (auto const& [line, fault] : std::vector<std::pair<std::string, std::string>>{
             {"perft", "go perft: without a number"},
             {"perft x", "go perft: \"x\" is no number"},
             {"depth 3 perft", "go perft: without a number"}}) {
        GoText const text = read(line);
        EXPECT_EQ(text.refusal.reason, fault + ", nothing is counted") << line;
        EXPECT_TRUE(text.counts) << line;
        EXPECT_TRUE(text.remarks.empty()) << line;
    }
    EXPECT_FALSE(read("perft 3 x").refusal.refused());
}

TEST(GoReader, UnknownWordsAreLeftOut) {
    expect_remark("fast depth 3", "go: \"fast\" is unknown, left out");
    EXPECT_EQ(read("fast depth 3").limits.depth, 3);
}

TEST(GoReader, SearchmovesGoOnToTheNextWord) {
    GoText const text = read("searchmoves g1f3 b1c3 depth 4 a2a3");
    EXPECT_EQ(searchmoves(text), (texts_t{"g1f3", "b1c3"}));
    EXPECT_EQ(text.limits.depth, 4);
    EXPECT_EQ(text.remarks.size(), 1U);
}

TEST(GoReader, SearchmovesAreMovesOfTheGenerator) {
    GoText const text = read("searchmoves a1a8 e1c1", "4k3/8/8/8/8/8/8/R3K3 w Q - 0 1");
    ASSERT_EQ(searchmoves(text), (texts_t{"a1a8", "e1a1"}));
    EXPECT_TRUE(text.limits.searchmoves[0].check());
}

TEST(GoReader, ASearchmoveThatIsNotLegalIsLeftOut) {
    expect_remark("searchmoves e2e4 e2e5", "go searchmoves: \"e2e5\" is not legal and left out");
    EXPECT_EQ(searchmoves(read("searchmoves e2e5 e2e4")), texts_t{"e2e4"});
}

TEST(GoReader, ASearchmoveWithoutThePromotionGetsAHint) {
    GoText const text = read("searchmoves a7a8", "8/P1k5/8/8/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(text.remarks, texts_t{"go searchmoves: \"a7a8\" is not legal and left out; a "
                                    "promotion has a letter: a7a8q"});
}

TEST(GoReader, ASearchmoveGivenTwiceIsOne) {
    EXPECT_EQ(searchmoves(read("searchmoves e2e4 e2e4 depth 1 searchmoves d2d4 e2e4")),
              (texts_t{"e2e4", "d2d4"}));
}

TEST(GoReader, SearchmovesWithoutALegalOneAreRefused) {
    GoText const text = read("searchmoves e2e5 x depth 3");
    EXPECT_EQ(text.refusal.reason, "go searchmoves: none of the moves is legal");
    EXPECT_EQ(text.remarks.size(), 2U);
}

TEST(GoReader, SearchmovesWithoutAMoveAreLeftOut) {
    expect_remark("searchmoves movetime 9", "go searchmoves: without a move, left out");
    expect_remark("searchmoves depth 3", "go searchmoves: without a move, left out");
}

TEST(GoReader, AMegabyteGivesFewShortRemarks) {
    std::string words;
    for (int i = 0; i < 200'000; ++i) {
        words += " junk";
    }
    GoText const unknown = read("infinite" + words);
    ASSERT_EQ(unknown.remarks.size(), Remarks::most + 1);
    EXPECT_EQ(unknown.remarks.back(), "199992 more of this kind");
    EXPECT_TRUE(read("searchmoves" + words).refusal.refused());
    EXPECT_EQ(read("depth " + std::string(1'000'000, '9')).limits.depth, 100);
    EXPECT_EQ(read("infinite " + std::string(1'000'000, '\0')).remarks.size(), 1U);
}

bool is_time(milliseconds time, int least) {
    return time.count() >= least && time.count() <= 1'000'000'000;
}

TEST(GoReader, RandomBytesAreReadInRange) {
    HostileLines lines({"wtime",  "btime", "winc",        "binc",     "movestogo",
                        "depth",  "nodes", "mate",        "movetime", "infinite",
                        "ponder", "perft", "searchmoves", "e2e4",     "e1g1",
                        "0",      "1",     "-5",          "1000",     "99999999999999999999",
                        "1.5"});
    for (int i = 0; i < 20'000; ++i) {
        GoLimits const limits = read(lines.next()).limits;
        EXPECT_TRUE(!limits.wtime || is_time(*limits.wtime, 1));
        EXPECT_TRUE(!limits.btime || is_time(*limits.btime, 1));
        EXPECT_TRUE(!limits.movetime || is_time(*limits.movetime, 1));
        EXPECT_TRUE(is_time(limits.winc, 0));
        EXPECT_TRUE(is_time(limits.binc, 0));
        EXPECT_TRUE(!limits.movestogo || (*limits.movestogo >= 1 && *limits.movestogo <= 1000));
        EXPECT_TRUE(!limits.depth || (*limits.depth >= 1 && *limits.depth <= 100));
        EXPECT_TRUE(!limits.mate || (*limits.mate >= 1 && *limits.mate <= 100));
        EXPECT_TRUE(!limits.nodes || *limits.nodes >= 1);
        EXPECT_TRUE(!limits.perft || (*limits.perft >= 1 && *limits.perft <= 20));
        EXPECT_LE(limits.searchmoves.size(), 20U);
    }
}

}  // namespace

}  // namespace orvelin::play::test
