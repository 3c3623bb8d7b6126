#include <cctype>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "position/chess_position.h"
#include "position/piece.h"
#include "position/setup_fixture.h"
#include "position/square.h"

namespace orvelin::test {
namespace {

/// What stands on the five files that bishops and queen leave free, for the last digit of the
/// number. A blank is an empty square.
const std::vector<std::string> last_five{"NRNKR", "NRKNR", "NRKRN", "NRKR ", "RNKNR",
                                         "RNKRN", "RNKR ", "RKNRN", "RKNR ", "RKRN "};

/// The first ranks of all arrays, counted through from the a-file, with blanks for empty squares.
std::vector<std::string> all_first_ranks() {
    std::vector<std::string> ranks;
    for (const std::size_t dark : {0U, 2U, 4U, 6U}) {
        for (const std::size_t light : {1U, 3U, 5U, 7U}) {
            for (std::size_t queen = 0; queen < 8; ++queen) {
                if (queen == dark || queen == light) {
                    continue;
                }
                for (std::string const& others : last_five) {
                    std::string rank = "........";
                    rank[dark] = rank[light] = 'B';
                    rank[queen] = 'Q';
                    for (char const piece : others) {
                        rank[rank.find('.')] = piece;
                    }
                    ranks.push_back(rank);
                }
            }
        }
    }
    return ranks;
}

std::string lower(std::string text) {
    for (char& letter : text) {
        letter = static_cast<char>(std::tolower(letter));
    }
    return text;
}

/// The castling field for rooks on these files, by file letter.
std::string rook_letters(std::string const& rank) {
    std::string letters;
    for (std::size_t file = 0; file < 8; ++file) {
        if (rank[file] == 'R') {
            letters += static_cast<char>('A' + static_cast<char>(file));
        }
    }
    return letters + lower(letters);
}

std::uint16_t rook_rights(std::string const& rank) {
    unsigned files = 0;
    for (std::size_t file = 0; file < 8; ++file) {
        if (rank[file] == 'R') {
            files |= 1U << file;
        }
    }
    return static_cast<std::uint16_t>(files * 0x0101U);
}

std::string array_fen(std::string rank) {
    std::string letters = rook_letters(rank);
    if (letters == "AHah") {
        letters = "KQkq";
    }
    for (char& letter : rank) {
        if (letter == ' ') {
            letter = '1';
        }
    }
    return lower(rank) + "/pppppppp/8/8/8/8/PPPPPPPP/" + rank + " w " + letters + " - 0 1";
}

class NewGame960Test : public SetupTest {};

TEST_F(SetupTest, NewGameIsTheStandardArrayAndItsOwnBeginning) {
    position.fen("7k/6Q1/6K1/8/8/8/8/8 b - - 7 40");
    position.newgame();
    EXPECT_EQ(position.fen(), start_fen);
    expect_new_game();
}

TEST_F(NewGame960Test, EveryNumberGivesItsArray) {
    const std::vector<std::string> ranks = all_first_ranks();
    ASSERT_EQ(ranks.size(), 960U);
    for (std::size_t number = 0; number < ranks.size(); ++number) {
        position.newgame960(static_cast<int>(number));
        const std::string expected = array_fen(ranks[number]);
        EXPECT_EQ(position.fen(), expected) << number;
        EXPECT_EQ(position.initial_position(), expected) << number;
        EXPECT_EQ(position.castlingrights(), rook_rights(ranks[number])) << number;
    }
}

TEST_F(NewGame960Test, NoTwoNumbersGiveTheSameArray) {
    std::set<std::string> fens;
    for (int number = 0; number < 960; ++number) {
        position.newgame960(number);
        fens.insert(position.fen());
    }
    EXPECT_EQ(fens.size(), 960U);
}

TEST_F(NewGame960Test, KnownNumbers) {
    const std::pair<int, std::string> arrays[] = {
        {0, "BBQNRNKR"},   {3, "BBQNRKR1"},   {9, "BBQRKRN1"},  {59, "BBRKRN1Q"},
        {314, "RQBBNKNR"}, {384, "RNBQKBNR"}, {959, "RKRN1QBB"}};
    for (auto const& [number, rank] : arrays) {
        position.newgame960(number);
        EXPECT_EQ(position.epd().substr(35, 8), rank) << number;
    }
    position.newgame960(384);
    EXPECT_EQ(position.fen(), start_fen);
}

TEST_F(NewGame960Test, FourDigitsOfTenLeaveOneKnightAndAnEmptySquare) {
    int single_knights = 0;
    for (int number = 0; number < 960; ++number) {
        position.newgame960(number);
        int const digit = number % 10;
        bool const single = digit == 3 || digit == 6 || digit == 8 || digit == 9;
        if (single) {
            ++single_knights;
        }
        EXPECT_EQ(position.white_knight().popcount(), single ? 1 : 2) << number;
        EXPECT_EQ(position.black_knight().popcount(), single ? 1 : 2) << number;
        EXPECT_EQ(position.pieces().popcount(), single ? 30 : 32) << number;
    }
    EXPECT_EQ(single_knights, 384);
    position.newgame960(3);
    EXPECT_EQ(position.get_piece_from(Square("h1")), Piece());
    EXPECT_EQ(position.get_piece_from(Square("h8")), Piece());
    EXPECT_EQ(position.materialindex().str(), "KQRRBBNPPPPPPPPkqrrbbnpppppppp");
}

TEST_F(NewGame960Test, KingStandsBetweenTheRooksInEveryArray) {
    for (int number = 0; number < 960; ++number) {
        position.newgame960(number);
        std::string rooks_and_king;
        for (int file = 0; file < 8; ++file) {
            const Piece piece = position[file];
            if (piece.rook()) {
                rooks_and_king += 'R';
            }
            if (piece.king()) {
                rooks_and_king += 'K';
            }
            EXPECT_EQ(position[file + 56].id(), piece ? piece.id() + 8 : 0) << number;
        }
        EXPECT_EQ(rooks_and_king, "RKR") << number;
    }
}

TEST_F(NewGame960Test, NumbersOutOfRangeGiveARandomArray) {
    std::set<std::string> fens;
    for (std::string const& rank : all_first_ranks()) {
        fens.insert(array_fen(rank));
    }
    for (int const number :
         {960, 5000, -1, -960, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        position.clear();
        position.newgame960(number);
        EXPECT_EQ(fens.count(position.fen()), 1U) << number << ' ' << position.fen();
        expect_new_game();
    }
}

/// The array that is drawn in this millisecond of the system clock.
int array_drawn_at(std::int64_t milliseconds) {
    // The number is cut to 32 bits, and the generator counts modulo 2147483647, with 1 for 0.
    auto const seed = static_cast<std::int32_t>(milliseconds);
    std::minstd_rand0 generator(static_cast<std::minstd_rand0::result_type>(seed));
    return std::uniform_int_distribution<int>(0, 959)(generator);
}

std::int64_t system_milliseconds() {
    auto const since_epoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(since_epoch).count();
}

TEST_F(NewGame960Test, NumbersOutOfRangeDrawByTheMillisecond) {
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    for (int const number : {-1, 960}) {
        std::set<int> drawn;
        while (drawn.size() < 5 && std::chrono::steady_clock::now() < deadline) {
            const std::int64_t before = system_milliseconds();
            position.newgame960(number);
            const std::int64_t after = system_milliseconds();
            // Both readings name the array only where they are of one millisecond.
            if (after != before) {
                continue;
            }
            const std::string random = position.fen();
            int const expected = array_drawn_at(before);
            position.newgame960(expected);
            ASSERT_EQ(random, position.fen()) << expected;
            drawn.insert(expected);
        }
        EXPECT_EQ(drawn.size(), 5U) << number;
    }
}

TEST_F(NewGame960Test, IsANewGameWithAllThatIsDerived) {
    position.fen("7k/6Q1/6K1/8/8/8/8/8 b - - 7 40");
    play("h8g7");
    position.newgame960(3);
    EXPECT_EQ(position.stm(), 1);
    EXPECT_EQ(position.get_dfz(), 0);
    EXPECT_EQ(position.move_number(), 1);
    EXPECT_EQ(position.ep(), Square());
    EXPECT_FALSE(position.check());
    EXPECT_EQ(position.white_kingsfield(), Square("f1"));
    EXPECT_EQ(position.black_kingsfield(), Square("f8"));
    EXPECT_FALSE(position.pinned_pieces());
    EXPECT_FALSE(position.discovering_pieces());
    expect_new_game();
}

TEST_F(NewGame960Test, ARookOffItsCornerIsWrittenByFileLetter) {
    position.newgame960(0);
    EXPECT_EQ(position.fen(), "bbqnrnkr/pppppppp/8/8/8/8/PPPPPPPP/BBQNRNKR w EHeh - 0 1");
    EXPECT_EQ(position.castlingrights(), 0x9090);
}

TEST_F(NewGame960Test, RooksInTheCornersAreWrittenByWingUnlessTheFlagIsSet) {
    position.newgame960(314);
    EXPECT_EQ(position.castlingrights(), 0x8181);
    EXPECT_EQ(position.fen(), "rqbbnknr/pppppppp/8/8/8/8/PPPPPPPP/RQBBNKNR w KQkq - 0 1");
    position.set_chess960(true);
    position.newgame960(314);
    EXPECT_EQ(position.castlingrights(), 0x8181);
    EXPECT_EQ(position.fen(), "rqbbnknr/pppppppp/8/8/8/8/PPPPPPPP/RQBBNKNR w AHah - 0 1");
    EXPECT_EQ(position.initial_position(), position.fen());
}

TEST_F(SetupTest, TheChess960FlagIsNotTouched) {
    for (bool const on : {false, true}) {
        position.set_chess960(on);
        position.newgame960(0);
        position.flip();
        position.flop();
        position.fen(start_fen);
        EXPECT_EQ(position.epd().substr(46, 4), on ? "AHah" : "KQkq");
    }
}

}  // namespace
}  // namespace orvelin::test
