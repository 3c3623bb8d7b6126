#include "position/material_index.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace orvelin {
namespace {

constexpr std::uint64_t start_word = 0x0001222800012228;

MaterialIndex index_of(std::uint64_t word) {
    MaterialIndex index;
    index.set_index(word);
    return index;
}

/// The material of a text such as "KRPkr".
MaterialIndex index_of(std::string const& pieces) {
    const std::string letters = " PNBRQK  pnbrqk";
    MaterialIndex index;
    for (char const letter : pieces) {
        index.add_piece(static_cast<int>(letters.find(letter)));
    }
    return index;
}

int value_of(std::string const& pieces) {
    return index_of(pieces).value();
}

Move move_of(unsigned int code, int piece, int capture) {
    return Move(Square(10), Square(20), code, Piece(piece), Piece(capture));
}

TEST(MaterialIndex, IncrementTable) {
    const std::array<std::uint64_t, 15> expected{
        0, 0x100000000, 0x1000000000, 0x10000000000, 0x100000000000, 0x1000000000000, 0, 0,
        0, 0x1,         0x10,         0x100,         0x1000,         0x10000,         0};
    for (std::size_t id = 0; id < expected.size(); ++id) {
        EXPECT_EQ(MaterialIndex::inc_table[id], expected[id]) << id;
    }
    for (std::size_t id = expected.size(); id < MaterialIndex::inc_table.size(); ++id) {
        EXPECT_EQ(MaterialIndex::inc_table[id], 0U) << id;
    }
}

TEST(MaterialIndex, StartPosition) {
    const MaterialIndex index = index_of("KQRRBBNNPPPPPPPPkqrrbbnnpppppppp");
    EXPECT_EQ(index.index(), start_word);
    EXPECT_EQ(index.str(), "KQRRBBNNPPPPPPPPkqrrbbnnpppppppp");
    EXPECT_TRUE(index.equal());
}

TEST(MaterialIndex, FieldsAreSetAndRead) {
    MaterialIndex index;
    index.set_whitequeen(1);
    index.set_whiterook(2);
    index.set_whitebishop(3);
    index.set_whiteknight(4);
    index.set_whitepawn(5);
    index.set_blackqueen(6);
    index.set_blackrook(7);
    index.set_blackbishop(8);
    index.set_blackknight(9);
    index.set_blackpawn(10);
    EXPECT_EQ(index.index(), 0x000123450006789AU);
    EXPECT_EQ(index.get_whitequeen(), 1);
    EXPECT_EQ(index.get_whiterook(), 2);
    EXPECT_EQ(index.get_whitebishop(), 3);
    EXPECT_EQ(index.get_whiteknight(), 4);
    EXPECT_EQ(index.get_whitepawn(), 5);
    EXPECT_EQ(index.get_blackqueen(), 6);
    EXPECT_EQ(index.get_blackrook(), 7);
    EXPECT_EQ(index.get_blackbishop(), 8);
    EXPECT_EQ(index.get_blackknight(), 9);
    EXPECT_EQ(index.get_blackpawn(), 10);
}

TEST(MaterialIndex, SettersOrIntoTheField) {
    MaterialIndex index;
    index.set_whitepawn(5);
    index.set_whitepawn(2);
    EXPECT_EQ(index.get_whitepawn(), 7);
}

TEST(MaterialIndex, NineQueensFitTheirField) {
    MaterialIndex index;
    for (int i = 0; i < 9; ++i) {
        index.add_piece(white_queen);
    }
    for (int i = 0; i < 9; ++i) {
        index.add_piece(black_queen);
    }
    EXPECT_EQ(index.get_whitequeen(), 9);
    EXPECT_EQ(index.get_blackqueen(), 9);
    EXPECT_EQ(index.index(), 0x0009000000090000U);
    index.remove_piece(black_queen);
    EXPECT_EQ(index.get_blackqueen(), 8);
}

TEST(MaterialIndex, HalvesCompareAsNumbers) {
    EXPECT_TRUE(index_of("Qrrrrrrrrrr").white_wins());
    EXPECT_FALSE(index_of("Qrrrrrrrrrr").black_wins());
    EXPECT_TRUE(index_of("PPPPPPPPn").black_wins());
    EXPECT_FALSE(index_of("PPPPPPPPn").equal());
    EXPECT_TRUE(index_of("RPpr").equal());
    EXPECT_FALSE(index_of("RPpr").white_wins());
    EXPECT_FALSE(index_of("RPpr").black_wins());
}

TEST(MaterialIndex, ComparesWords) {
    EXPECT_TRUE(index_of("pppp") < index_of("P"));
    EXPECT_FALSE(index_of("P") < index_of("P"));
    EXPECT_TRUE(index_of("P") == index_of("P"));
    EXPECT_TRUE(index_of("P") != index_of("N"));
}

TEST(MaterialIndex, FlipColorsTwiceIsTheIdentity) {
    MaterialIndex index = index_of("KQRBNPPkrp");
    const MaterialIndex before = index;
    index.flip_colors();
    EXPECT_EQ(index.str(), "KRPkqrbnpp");
    index.flip_colors();
    EXPECT_EQ(index, before);
}

TEST(MaterialIndex, PawnTakingARookAndPromotingIsUndone) {
    MaterialIndex index = index_of(start_word);
    const Move move = move_of(promo_queen, white_pawn, black_rook);
    index.make_move(move);
    EXPECT_EQ(index.str(), "KQQRRBBNNPPPPPPPkqrbbnnpppppppp");
    index.unmake_move(move);
    EXPECT_EQ(index.index(), start_word);
}

TEST(MaterialIndex, PromotionsAddThePieceAndTakeThePawn) {
    const std::array<std::uint64_t, 4> change{0xFFFF, 0xFFF, 0xFF, 0xF};
    for (unsigned int code = promo_queen; code <= promo_knight; ++code) {
        MaterialIndex index = index_of(start_word);
        index.make_move(move_of(code, white_pawn, 0));
        EXPECT_EQ(index.index(), start_word + (change[code - promo_queen] << 32));
        index.unmake_move(move_of(code, white_pawn, 0));
        EXPECT_EQ(index.index(), start_word);
        index.make_move(move_of(code, black_pawn, 0));
        EXPECT_EQ(index.index(), start_word + change[code - promo_queen]);
        index.unmake_move(move_of(code, black_pawn, 0));
        EXPECT_EQ(index.index(), start_word);
    }
}

TEST(MaterialIndex, PromotionCodesChangeNothingForPiecesThatAreNoPawns) {
    for (unsigned int code = promo_queen; code <= promo_knight; ++code) {
        for (int id = 0; id < 16; ++id) {
            if (id == white_pawn || id == black_pawn) {
                continue;
            }
            MaterialIndex index = index_of(start_word);
            index.make_move(move_of(code, id, 0));
            EXPECT_EQ(index.index(), start_word) << id;
            index.make_move(move_of(code, id, black_rook));
            EXPECT_EQ(index.index(), start_word - 0x1000) << id;
            index.unmake_move(move_of(code, id, black_rook));
            EXPECT_EQ(index.index(), start_word) << id;
        }
    }
}

TEST(MaterialIndex, OtherMovesChangeOnlyTheCapturedPiece) {
    for (unsigned int const code : {0U, 1U, 6U, 7U}) {
        MaterialIndex index = index_of(start_word);
        index.make_move(move_of(code, white_pawn, black_pawn));
        EXPECT_EQ(index.index(), start_word - 1) << code;
        index.unmake_move(move_of(code, white_pawn, black_pawn));
        EXPECT_EQ(index.index(), start_word) << code;
        index.make_move(move_of(code, white_king, 0));
        EXPECT_EQ(index.index(), start_word) << code;
    }
}

TEST(MaterialIndex, TextOfBareKings) {
    EXPECT_EQ(MaterialIndex().str(), "Kk");
}

TEST(MaterialValue, BareKingsAndStartMaterialAreEven) {
    EXPECT_EQ(MaterialIndex().value(), 0);
    EXPECT_EQ(index_of(start_word).value(), 0);
}

TEST(MaterialValue, QueenAgainstRookWithoutPawns) {
    EXPECT_EQ(value_of("KQkr"), 450);
    EXPECT_EQ(value_of("KRkq"), -450);
}

TEST(MaterialValue, RookAgainstKnightIsMostlyADraw) {
    EXPECT_EQ(value_of("KRkn"), 27);
    EXPECT_EQ(value_of("KNkr"), -27);
}

TEST(MaterialValue, RookAgainstMinorAndPawn) {
    EXPECT_EQ(value_of("KRkbp"), -50);
    EXPECT_EQ(value_of("KBPkr"), 50);
    EXPECT_EQ(value_of("KNPkr"), 50);
    EXPECT_EQ(value_of("KRknp"), -50);
}

TEST(MaterialValue, LoneMinorAgainstPawns) {
    EXPECT_EQ(value_of("KNkp"), -50);
    EXPECT_EQ(value_of("KNkpp"), -50);
    EXPECT_EQ(value_of("KNkppp"), -65);
    EXPECT_EQ(value_of("KPkb"), 50);
    EXPECT_EQ(value_of("KPPkn"), 50);
}

TEST(MaterialValue, BishopPairWithTradeDown) {
    EXPECT_EQ(value_of("KBBPPPPkbpppp"), 480);
    EXPECT_EQ(value_of("KBPPPPkbbpppp"), -480);
}

TEST(MaterialValue, ThreeBishopsGetNoPairBonus) {
    // Three minors at 325 against nothing, no bonus.
    EXPECT_EQ(value_of("KBBBk"), 975);
    EXPECT_EQ(value_of("KBBk"), 700);
}

TEST(MaterialValue, LoneBishopAgainstNothing) {
    EXPECT_EQ(value_of("KBk"), 25);
    EXPECT_EQ(value_of("Kkb"), -25);
}

TEST(MaterialValue, FivePawnsAgainstFour) {
    EXPECT_EQ(value_of("KPPPPPkpppp"), 145);
    EXPECT_EQ(value_of("KPPPPkppppp"), -145);
}

TEST(MaterialValue, PawnTablesByCount) {
    // White with n pawns against nothing: both tables, 100 a pawn and the rule that the side
    // ahead keeps its pawns (10 each); a bare king has table values of -20.
    const std::array<int, 9> adjustment{-20, -15, -10, -5, 0, -5, -5, -10, -15};
    for (int pawns = 1; pawns <= 8; ++pawns) {
        MaterialIndex index;
        index.set_whitepawn(pawns);
        int const sum = adjustment[static_cast<std::size_t>(pawns)] + 20 + 110 * pawns;
        EXPECT_EQ(index.value(), sum) << pawns;
    }
}

TEST(MaterialValue, MorePawnsThanChessAllowsAreDefined) {
    MaterialIndex index;
    index.set_whitepawn(15);
    EXPECT_EQ(index.value(), -15 + 20 + 110 * 15);
}

TEST(MaterialValue, RookForMinorPieceAtEqualQueens) {
    // 25 less for a second rook and 25 less for each major beyond the first.
    EXPECT_EQ(value_of("KRRkrn"), (525 - 325 - 25 - 25) / 10);
    EXPECT_EQ(value_of("KQRRPkqrnp"), 525 - 325 - 25 - 2 * 25 + 10 - 30);
    EXPECT_EQ(value_of("KQRNPkqrrp"), -(525 - 325 - 25 - 2 * 25 + 10 - 30));
    // With unequal queens neither adjustment acts.
    EXPECT_EQ(value_of("KQNkrr"), (1000 + 325 - 1050) / 10);
}

TEST(MaterialValue, TradeDownNeedsMoreThanSeventyAndAPawn) {
    EXPECT_EQ(value_of("KNPPPknpp"), (-5 + 10) + 100 + 10 * 3 - 10);
    EXPECT_EQ(value_of("KNPPknppp"), (-10 + 5) - 100 - 10 * 3 + 10);
    // Ahead without a pawn, and a margin inside the band: no change.
    EXPECT_EQ(value_of("KRBkrp"), (-20 + 15) + 325 - 100);
    EXPECT_EQ(value_of("KQPkrrp"), 1000 - 1050);
}

TEST(MaterialValue, TradeDownBeginsBeyondSeventy) {
    EXPECT_EQ(value_of("KNNPPPPkq"), 70);
    EXPECT_EQ(value_of("KQknnpppp"), -70);
    EXPECT_EQ(value_of("KQRPkqnpp"), 70);
}

TEST(MaterialValue, MarginOfFourHundredWithoutPawnsIsWhole) {
    EXPECT_EQ(value_of("KNNkn"), 400);
    EXPECT_EQ(value_of("KNknn"), -400);
    EXPECT_EQ(value_of("KNNkr"), 12);
    EXPECT_EQ(value_of("KRknn"), -12);
}

TEST(MaterialValue, QueenAgainstRookIsSpecialOnlyWithEqualNumbersOfMajorsAlone) {
    EXPECT_EQ(value_of("KQNkrn"), 475);
    EXPECT_EQ(value_of("KRNkqn"), -475);
    EXPECT_EQ(value_of("KQRkr"), 1000);
    EXPECT_EQ(value_of("KRkqr"), -1000);
}

TEST(MaterialValue, PawnAndMinorAgainstARookAndNothingElse) {
    EXPECT_EQ(value_of("KNPkrn"), -495);
    EXPECT_EQ(value_of("KNPkrp"), -275);
    EXPECT_EQ(value_of("KNPkq"), -645);
    EXPECT_EQ(value_of("KRNPkr"), 430);
    EXPECT_EQ(value_of("KNBPkr"), 230);
    EXPECT_EQ(value_of("KNPPkr"), -65);
    EXPECT_EQ(value_of("KPkr"), -420);
    EXPECT_EQ(value_of("KRNkbp"), 495);
    EXPECT_EQ(value_of("KRPkbp"), 275);
    EXPECT_EQ(value_of("KQkbp"), 645);
    EXPECT_EQ(value_of("KRkrbp"), -430);
    EXPECT_EQ(value_of("KRkbnp"), -230);
    EXPECT_EQ(value_of("KRkbpp"), 65);
}

TEST(MaterialValue, MajorsOnlyAndEqualInNumberKeepTheSum) {
    EXPECT_EQ(value_of("KQQkqr"), 475);
    EXPECT_EQ(value_of("KQRkrr"), 475);
    EXPECT_EQ(value_of("KRRkqr"), -475);
}

}  // namespace
}  // namespace orvelin
