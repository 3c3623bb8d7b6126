// What is asked of a FEN as a whole and of its pieces.

#include <cctype>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <string_view>

#include "play/fen_expectations.h"
#include "support/positions.h"

namespace orvelin::play::test {

namespace {

using namespace std::string_view_literals;

TEST(FenCheck, GoodTextsAreLeftAsTheyAre) {
    expect_untouched(positions::start);
    expect_untouched(positions::kiwipete);
    expect_untouched("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 3");
    expect_untouched("1r2k1r1/8/8/8/8/8/8/1R2K1R1 b GBgb - 12 34");
}

TEST(FenCheck, AnEmptyTextIsRefused) {
    expect_refused("", "FEN is empty");
    expect_refused("  \t ", "FEN is empty");
}

TEST(FenCheck, MoreThanSixFieldsAreRefused) {
    expect_refused("4k3/8/8/8/8/8/8/4K3 w - - 0 1 e1e2",
                   "7 fields, the 7th is \"e1e2\": 6 at most");
}

TEST(FenCheck, TooFewRanksAreRefused) {
    expect_refused("4k3/8/8/8/8/8/4K3 w - - 0 1", "field 1 (pieces): there are 7 ranks");
}

TEST(FenCheck, TooManyRanksAreRefused) {
    expect_refused("4k3/8/8/8/8/8/8/4K3/8 w - - 0 1", "field 1 (pieces): there are more than 8");
}

TEST(FenCheck, AShortRankIsRefusedWithItsNumber) {
    expect_refused("4k3/8/8/7/8/8/8/4K3 w - - 0 1", "rank 5 has 7 files instead of 8");
    expect_refused("4k3/8/8/8/8/8/8/4K2 w - - 0 1", "rank 1 has 7 files instead of 8");
}

TEST(FenCheck, ALongRankIsRefusedWithItsNumber) {
    expect_refused("4k3/8/8/8/8/44p/8/4K3 w - - 0 1", "rank 3 has more than 8 files");
    expect_refused("4k3/8/8/8/8/8/8/4K4 w - - 0 1", "rank 1 has more than 8 files");
}

TEST(FenCheck, ALetterThatIsNoPieceIsRefusedWithItsRank) {
    expect_refused("4k3/8/8/8/3x4/8/8/4K3 w - - 0 1", "\"x\" in rank 4 is neither a piece nor");
    expect_refused("4k3/8/8/9/8/8/8/4K3 w - - 0 1", "\"9\" in rank 5");
    expect_refused("4k3/8/8/80/8/8/8/4K3 w - - 0 1", "\"0\" in rank 5");
    expect_refused("4k3/8/8/\0007/8/8/8/4K3 w - - 0 1"sv, "the byte 0x00 in rank 5");
}

TEST(FenCheck, ASideNeedsOneKing) {
    expect_refused("8/8/8/8/8/8/8/4K3 w - - 0 1", "Black has no king");
    expect_refused("4k3/8/8/8/8/8/8/8 w - - 0 1", "White has no king");
    expect_refused("4k3/8/8/8/8/8/8/K3K3 w - - 0 1", "White has 2 kings");
    expect_refused("4k2k/8/8/8/8/8/8/4K3 w - - 0 1", "Black has 2 kings");
}

TEST(FenCheck, KingsSideBySideAreRefused) {
    expect_refused("8/8/8/3k4/4K3/8/8/8 w - - 0 1", "side by side, on e4 and d5");
    expect_refused("8/8/8/4k3/4K3/8/8/8 b - - 0 1", "side by side");
    expect_untouched("8/8/4k3/8/4K3/8/8/8 b - - 0 1");
    expect_untouched("8/8/8/7k/K7/8/8/8 b - - 0 1");
}

TEST(FenCheck, PawnsOnTheFirstAndLastRankAreRefused) {
    expect_refused("P3k3/8/8/8/8/8/8/4K3 w - - 0 1", "a pawn stands on a8");
    expect_refused("4k3/8/8/8/8/8/8/4K2p w - - 0 1", "a pawn stands on h1");
    expect_refused("4k3/8/8/8/8/8/8/P3K3 w - - 0 1", "a pawn stands on a1");
}

TEST(FenCheck, MoreThanEightPawnsAreRefused) {
    expect_refused("4k3/8/8/8/8/P7/PPPPPPPP/4K3 w - - 0 1", "White has 9 pawns");
    expect_refused("4k3/pppppppp/p7/8/8/8/8/4K3 w - - 0 1", "Black has 9 pawns");
}

TEST(FenCheck, MoreThanSixteenPiecesAreRefused) {
    expect_refused("4k3/8/8/8/8/N7/PPPPPPPP/RNBQKBNR w - - 0 1", "White has 17 pieces");
    expect_refused("rnbqkbnr/pppppppp/n7/8/8/8/8/4K3 w - - 0 1", "Black has 17 pieces");
}

TEST(FenCheck, MorePiecesThanPromotionsExplainArePassed) {
    expect_untouched("4k3/8/8/8/8/8/PPPPPPPP/NNNQKNNN w - - 0 1");
}

TEST(FenCheck, AKingThatCouldBeCapturedIsRefused) {
    expect_refused("4k3/8/8/8/8/8/8/4RK2 w - - 0 1",
                   "White is to move and could capture the king on e8");
    expect_untouched("4k3/8/8/8/8/8/8/4RK2 b - - 0 1");
}

/// The pieces seen from the other side, with the colours changed.
std::string mirrored(std::string const& pieces) {
    std::string mirror;
    std::string rank;
    std::istringstream ranks(pieces);
    while (std::getline(ranks, rank, '/')) {
        mirror.insert(0, rank + (mirror.empty() ? "" : "/"));
    }
    for (char& letter : mirror) {
        auto const code = static_cast<unsigned char>(letter);
        letter = static_cast<char>(std::islower(code) ? std::toupper(code) : std::tolower(code));
    }
    return mirror;
}

TEST(FenCheck, EveryKindOfPieceGivesCheck) {
    for (char const* pieces :
         {"8/8/8/8/4k3/3P4/8/K7", "8/8/8/8/4k3/5P2/8/K7", "8/8/3N4/8/4k3/8/8/K7",
          "8/8/8/8/4k3/6N1/8/K7", "8/8/8/8/4k3/8/5N2/K7", "8/1B6/8/8/4k3/8/8/K7",
          "8/8/8/8/4k3/8/8/KB6", "8/8/8/8/R3k3/8/8/K7", "4R3/8/8/8/4k3/8/8/K7",
          "8/8/8/8/4k2Q/8/8/K7", "8/8/8/8/4k3/8/4R3/K7", "8/8/8/5Q2/4k3/8/8/K7"}) {
        expect_refused(std::string(pieces) + " w - - 0 1",
                       "White is to move and could capture the king on e4");
        expect_refused(mirrored(pieces) + " b - - 0 1",
                       "Black is to move and could capture the king on e5");
    }
}

TEST(FenCheck, PiecesThatDoNotReachTheKingGiveNoCheck) {
    for (char const* pieces :
         {"8/8/8/3P4/4k3/8/8/K7", "8/8/8/8/4k3/8/4P3/K7", "8/8/8/8/R2pk3/8/8/K7",
          "8/1B6/2p5/8/4k3/8/8/K7", "8/8/8/8/4kp1Q/8/8/K7", "8/8/8/8/4k3/8/R7/K6N",
          "8/8/8/4B3/3BkB2/4B3/8/K7", "8/8/8/3R1R2/4k3/3R1R2/8/K7"}) {
        expect_untouched(std::string(pieces) + " w - - 0 1");
        expect_untouched(mirrored(pieces) + " b - - 0 1");
    }
}

TEST(FenCheck, RepeatedBlanksAreTakenOut) {
    expect_repaired("4k3/8/8/8/8/8/8/4K3  w -\t\t- 0 1", "4k3/8/8/8/8/8/8/4K3 w - - 0 1",
                    "more blanks");
    expect_repaired(" 4k3/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/4K3 w - - 0 1",
                    "more blanks");
}

}  // namespace

}  // namespace orvelin::play::test
