#include "position/piece.h"

#include <array>
#include <gtest/gtest.h>

#include "support/logic_error_text.h"

namespace orvelin {
namespace {

using test::logic_error_text;

struct expected_t {
    int id;
    char const* name;
    int value;
    int abs_value;
};

constexpr std::array<expected_t, 13> all_pieces{{{0, "no piece", 0, 0},
                                                 {1, "white pawn", 100, 100},
                                                 {2, "white knight", 300, 300},
                                                 {3, "white bishop", 300, 300},
                                                 {4, "white rook", 500, 500},
                                                 {5, "white queen", 900, 900},
                                                 {6, "white king", 4000, 4000},
                                                 {9, "black pawn", -100, 100},
                                                 {10, "black knight", -300, 300},
                                                 {11, "black bishop", -300, 300},
                                                 {12, "black rook", -500, 500},
                                                 {13, "black queen", -900, 900},
                                                 {14, "black king", -4000, 4000}}};

TEST(Piece, TableOfNamesAndValues) {
    for (expected_t const& expected : all_pieces) {
        const Piece piece(expected.id);
        EXPECT_EQ(piece.id(), expected.id);
        EXPECT_EQ(piece.name(), expected.name);
        EXPECT_EQ(piece.value(), expected.value) << expected.name;
        EXPECT_EQ(piece.abs_value(), expected.abs_value) << expected.name;
    }
}

TEST(Piece, EnumerationHasTheIds) {
    const std::array<piece_t, 13> ids{
        no_piece,   white_pawn,   white_knight, white_bishop, white_rook,  white_queen, white_king,
        black_pawn, black_knight, black_bishop, black_rook,   black_queen, black_king};
    for (std::size_t i = 0; i < ids.size(); ++i) {
        EXPECT_EQ(int{ids[i]}, all_pieces[i].id);
    }
}

TEST(Piece, DefaultIsNoPiece) {
    EXPECT_EQ(Piece().id(), 0);
    EXPECT_TRUE(Piece().no_piece());
    EXPECT_FALSE(static_cast<bool>(Piece()));
    EXPECT_TRUE(static_cast<bool>(Piece(8)));
}

TEST(Piece, NoPieceCountsAsWhite) {
    EXPECT_TRUE(Piece(0).white_piece());
    EXPECT_FALSE(Piece(0).black_piece());
}

TEST(Piece, ColourIsBitThree) {
    for (int id = 0; id < 16; ++id) {
        EXPECT_EQ(Piece(id).black_piece(), id >= 8) << id;
        EXPECT_EQ(Piece(id).white_piece(), id < 8) << id;
    }
}

TEST(Piece, TypeTestsReadTheLowThreeBits) {
    using Question = bool (Piece::*)() const;
    const std::array<Question, 6> tests{&Piece::pawn, &Piece::knight, &Piece::bishop,
                                        &Piece::rook, &Piece::queen,  &Piece::king};
    for (int id = 0; id < 16; ++id) {
        for (int type = 1; type <= 6; ++type) {
            const Question test = tests[static_cast<std::size_t>(type - 1)];
            EXPECT_EQ((Piece(id).*test)(), id % 8 == type) << id << ' ' << type;
        }
    }
}

TEST(Piece, PieceTestsCompareTheWholeId) {
    using Question = bool (Piece::*)() const;
    const std::array<Question, 13> tests{
        &Piece::no_piece,     &Piece::white_pawn,   &Piece::white_knight, &Piece::white_bishop,
        &Piece::white_rook,   &Piece::white_queen,  &Piece::white_king,   &Piece::black_pawn,
        &Piece::black_knight, &Piece::black_bishop, &Piece::black_rook,   &Piece::black_queen,
        &Piece::black_king};
    for (int id = 0; id < 16; ++id) {
        for (std::size_t i = 0; i < tests.size(); ++i) {
            EXPECT_EQ((Piece(id).*tests[i])(), id == all_pieces[i].id) << id << ' ' << i;
        }
    }
}

TEST(Piece, SettersStoreTheId) {
    using Setter = void (Piece::*)();
    const std::array<Setter, 13> setters{
        &Piece::set_no_piece,     &Piece::set_white_pawn, &Piece::set_white_knight,
        &Piece::set_white_bishop, &Piece::set_white_rook, &Piece::set_white_queen,
        &Piece::set_white_king,   &Piece::set_black_pawn, &Piece::set_black_knight,
        &Piece::set_black_bishop, &Piece::set_black_rook, &Piece::set_black_queen,
        &Piece::set_black_king};
    for (std::size_t i = 0; i < setters.size(); ++i) {
        Piece piece(7);
        (piece.*setters[i])();
        EXPECT_EQ(piece.id(), all_pieces[i].id);
    }
    Piece piece;
    piece.set_id(12);
    EXPECT_EQ(piece, Piece(12));
    EXPECT_NE(piece, Piece(4));
}

TEST(Piece, ValueRefusesUnknownIdsBehindAPrintedLine) {
    for (int const id : {7, 8, 15, 16, -1}) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(logic_error_text([id] { (void)Piece(id).value(); }), "Piece::value out of range");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "Piece: " + std::to_string(id) + "\n");
    }
}

TEST(Piece, AbsValueRefusesTypeSeven) {
    for (int const id : {7, 15}) {
        EXPECT_EQ(logic_error_text([id] { (void)Piece(id).abs_value(); }),
                  "Piece::abs_value out of range:");
    }
    EXPECT_EQ(Piece(8).abs_value(), 0);
    EXPECT_EQ(Piece(16 + 5).abs_value(), 900);
}

TEST(Piece, NameRefusesUnknownIds) {
    for (int const id : {7, 8, 15, -1}) {
        EXPECT_EQ(logic_error_text([id] { (void)Piece(id).name(); }), "Piece::unknown piece");
    }
}

static_assert(sizeof(Piece) == 4);

}  // namespace
}  // namespace orvelin
