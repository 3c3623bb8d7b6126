// Texts in great numbers: what passes the check is read in full by a position.

#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "play/fen_expectations.h"
#include "play/hostile_lines.h"
#include "position/chess_position.h"
#include "support/chess960_positions.h"
#include "support/data_file.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::shared_tables;

TEST(FenCheck, AMegabyteIsRefusedWithAShortReason) {
    std::string const million(1'000'000, '8');
    expect_refused(million, "rank 8 has more than 8 files");
    expect_refused(std::string(1'000'000, '/'), "rank 8 has 0 files");
    expect_refused(std::string(1'000'000, '\0'), "the byte 0x00 in rank 8");
    std::string const pieces = "4k3/8/8/8/8/8/8/4K3 ";
    expect_refused(pieces + million, "is neither w nor b");
    expect_refused(pieces + "w " + million, "\"8\" at its place 1");
    expect_refused(pieces + "w - " + million, "is neither a square nor -");
    checked_t const counters = check(pieces + "w - - " + million + ' ' + million);
    EXPECT_EQ(counters.repaired, pieces + "w - - 20000 20000");
    checked_t const rights = check(pieces + "w " + std::string(1'000'000, 'K') + " - 0 1");
    EXPECT_EQ(rights.repaired, pieces + "w - - 0 1");
    EXPECT_EQ(rights.remarks.size(), 1U);
}

/// Whatever passes is read by a position and comes out as it went in.
void expect_read_whole(ChessPosition& position, std::string const& repaired) {
    position.fen(repaired);
    std::string const written = position.fen();
    checked_t const again = check(written);
    EXPECT_EQ(again.reason, "") << repaired;
    EXPECT_TRUE(again.remarks.empty()) << repaired;
    EXPECT_EQ(again.repaired, written);
    EXPECT_FALSE(position.board_is_inconsistent());
}

TEST(FenCheck, RandomBytesAreReadOrRefused) {
    HostileLines lines({"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", "4k3/8/8/8/8/8/8/4K3",
                        "r3k2r/8/8/3pP3/8/8/8/R3K2R", "w", "w", "b", "KQkq", "-", "d6", "HAha", "0",
                        "1", "-5", "99999999999"});
    ChessPosition position(shared_tables());
    int read = 0;
    for (int i = 0; i < 20'000; ++i) {
        std::string const line = lines.next();
        checked_t const checked = check(line);
        if (checked.reason.empty()) {
            ++read;
            expect_read_whole(position, checked.repaired);
        }
    }
    EXPECT_GT(read, 10);
}

TEST(FenCheck, ChangedBytesOfGoodTextsAreReadOrRefused) {
    ChessPosition position(shared_tables());
    std::mt19937_64 random(5);
    auto const fens = orvelin::test::random_chess960_fens(shared_tables(), 200);
    int read = 0;
    for (int i = 0; i < 20'000; ++i) {
        std::string fen = fens[random() % fens.size()];
        for (std::size_t changes = 1 + random() % 3; changes > 0; --changes) {
            static constexpr std::string_view letters = "pnbrqkPNBRQK12345678/ wb-KQkqAHahe36";
            fen[random() % fen.size()] = letters[random() % letters.size()];
        }
        checked_t const checked = check(fen);
        if (checked.reason.empty()) {
            ++read;
            expect_read_whole(position, checked.repaired);
        }
    }
    EXPECT_GT(read, 500);
}

/// The state that the text gives is the same with and without the check.
void expect_same_state(std::string const& fen, std::string const& repaired) {
    ChessPosition plain(shared_tables());
    ChessPosition checked(shared_tables());
    plain.fen(fen);
    checked.fen(repaired);
    EXPECT_TRUE(plain == checked) << fen;
    EXPECT_EQ(plain.fen(), checked.fen());
    EXPECT_EQ(plain.get_hash(), checked.get_hash()) << fen;
    EXPECT_EQ(plain.castlingrights(), checked.castlingrights()) << fen;
}

std::vector<std::string> recorded_fens() {
    std::vector<std::string> fens;
    for (char const* file : {"positions.txt", "endings.txt"}) {
        for (auto const& block : orvelin::test::read_data_blocks(file)) {
            fens.push_back(block.at(0).substr(std::string("position ").size()));
        }
    }
    return fens;
}

TEST(FenCheck, RecordedPositionsAreReadAsTheyAre) {
    std::size_t refused = 0;
    for (std::string const& fen : recorded_fens()) {
        checked_t const checked = check(fen);
        if (!checked.reason.empty()) {
            ++refused;
            ADD_FAILURE() << fen << ": " << checked.reason;
            continue;
        }
        for (std::string const& remark : checked.remarks) {
            ADD_FAILURE() << fen << ": " << remark;
        }
        expect_same_state(fen, checked.repaired);
    }
    EXPECT_EQ(refused, 0U);
}

TEST(FenCheck, WhatTheEngineWritesInChess960IsReadAsItIs) {
    for (std::string const& fen : orvelin::test::random_chess960_fens(shared_tables(), 300)) {
        expect_untouched(fen);
    }
}

}  // namespace

}  // namespace orvelin::play::test
