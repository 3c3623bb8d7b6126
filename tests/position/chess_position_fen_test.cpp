#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

using test::start_fen;

class FenTest : public ::testing::Test {
 protected:
    std::uint16_t rights_of(std::string const& placement, std::string const& castling) {
        position.fen(placement + " w " + castling + " - 0 1");
        return position.castlingrights();
    }

    ChessPosition position{test::shared_tables()};
};

TEST_F(FenTest, StartPositionReadsAndWritesTheSameText) {
    position.fen(start_fen);
    EXPECT_EQ(position.fen(), start_fen);
    EXPECT_EQ(position.castlingrights(), 0x8181);
    EXPECT_EQ(position.initial_position(), start_fen);
}

TEST_F(FenTest, EmptyBoardHasNoKingsAndNoPins) {
    position.fen(positions::empty_board);
    EXPECT_EQ(position.fen(), positions::empty_board);
    EXPECT_EQ(position.white_kingsfield().id(), 64);
    EXPECT_EQ(position.black_kingsfield().id(), 64);
    EXPECT_FALSE(position.pinned_pieces());
    EXPECT_FALSE(position.discovering_pieces());
    EXPECT_FALSE(position.white_queencheck_squares());
    EXPECT_FALSE(position.black_queencheck_squares());
    EXPECT_FALSE(position.check());
}

TEST_F(FenTest, OneMissingKingLeavesTheSetsEmpty) {
    position.fen("4k3/8/8/4n3/8/8/8/4R3 w - - 0 1");
    EXPECT_EQ(position.black_kingsfield().id(), 64);
    EXPECT_FALSE(position.pinned_pieces());
}

TEST_F(FenTest, KingSideLetterTakesTheOutermostRook) {
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/4K1RR", "K"), 0x0080);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/4K1R1", "K"), 0x0040);
    EXPECT_EQ(rights_of("4k1rr/8/8/8/8/8/8/4K3", "k"), 0x8000);
    EXPECT_EQ(rights_of("2r1k3/8/8/8/8/8/8/4K3", "k"), 0x0400);
}

TEST_F(FenTest, KingSideLetterWithoutARookFallsToTheBFile) {
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/1R2K3", "K"), 0x0002);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/R3K3", "K"), 0x0002);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/7R/4K3", "K"), 0x0002);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/4K3", "k"), 0x0200);
    EXPECT_EQ(rights_of("4k3/7r/8/8/8/8/8/4K3", "k"), 0x0200);
}

TEST_F(FenTest, QueenSideLetterTakesTheOutermostRook) {
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/RR2K3", "Q"), 0x0001);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/1R2K3", "Q"), 0x0002);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/4KR2", "Q"), 0x0020);
    EXPECT_EQ(rights_of("1r2k3/8/8/8/8/8/8/4K3", "q"), 0x0200);
}

TEST_F(FenTest, QueenSideLetterWithoutARookFallsToTheGFile) {
    EXPECT_EQ(rights_of("4k3/r7/8/8/8/8/8/4K3", "q"), 0x4000);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/R7/4K3", "Q"), 0x0040);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/4K1RR", "Q"), 0x0040);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/4K3", "Q"), 0x0040);
    EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/4K3", "q"), 0x4000);
}

TEST_F(FenTest, RooksOfTheOtherColourDoNotCount) {
    EXPECT_EQ(rights_of("R3k2R/8/8/8/8/8/8/r3K2r", "KQkq"), 0x4242);
}

TEST_F(FenTest, FileLettersReadLikeSideLettersInTheCorners) {
    EXPECT_EQ(rights_of("r3k2r/8/8/8/8/8/8/R3K2R", "AHah"), 0x8181);
    EXPECT_EQ(position.fen(), positions::all_castlings);
}

TEST_F(FenTest, EveryFileLetterSetsItsBit) {
    for (int file = 0; file < 8; ++file) {
        const std::string upper(1, static_cast<char>('A' + file));
        const std::string lower(1, static_cast<char>('a' + file));
        EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/4K3", upper), 1 << file);
        EXPECT_EQ(rights_of("4k3/8/8/8/8/8/8/4K3", lower), 0x100 << file);
    }
}

TEST_F(FenTest, OtherCastlingCharactersAreSkipped) {
    EXPECT_EQ(rights_of("r3k2r/8/8/8/8/8/8/R3K2R", "-xK?1q"), 0x0180);
    EXPECT_EQ(rights_of("r3k2r/8/8/8/8/8/8/R3K2R", "-"), 0);
}

TEST_F(FenTest, WriterUsesFileLettersForShiftedRooks) {
    position.fen("nbbnqrkr/pppppppp/8/8/8/1N6/PPPPPPPP/1BBNQRKR b HFhf - 1 1");
    EXPECT_EQ(position.fen(), "nbbnqrkr/pppppppp/8/8/8/1N6/PPPPPPPP/1BBNQRKR b FHfh - 1 1");
    EXPECT_EQ(position.castlingrights(), 0xA0A0);
    EXPECT_EQ(position.get_hash(), 0x41B4447FC3F8B8ADU);
}

TEST_F(FenTest, WriterUsesFileLettersUnderTheChess960Flag) {
    position.set_chess960(true);
    position.fen(start_fen);
    EXPECT_EQ(position.fen(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w AHah - 0 1");
    position.set_chess960(false);
    EXPECT_EQ(position.fen(), start_fen);
}

TEST_F(FenTest, WriterKeepsTheOrderOfTheLetters) {
    position.fen("r3k2r/8/8/8/8/8/8/R3K2R w qkQK - 0 1");
    EXPECT_EQ(position.fen(), positions::all_castlings);
    position.fen("r3k2r/8/8/8/8/8/8/R3K2R w kQ - 0 1");
    EXPECT_EQ(position.fen(), "r3k2r/8/8/8/8/8/8/R3K2R w Qk - 0 1");
}

TEST_F(FenTest, EnPassantSquareIsReadByFileAndRankThree) {
    const std::pair<char const*, char const*> fields[] = {{"e3", "e3"}, {"a6", "a6"},  {"h5", "h6"},
                                                          {"c", "c6"},  {"b39", "b3"}, {"-", "-"},
                                                          {"i3", "-"},  {"E3", "-"},   {"3", "-"}};
    for (auto const& [field, written] : fields) {
        position.fen("4k3/8/8/8/8/8/8/4K3 w - " + std::string(field) + " 0 1");
        EXPECT_EQ(position.fen(), "4k3/8/8/8/8/8/8/4K3 w - " + std::string(written) + " 0 1");
    }
}

TEST_F(FenTest, MissingCountersReadAsZeroAndOne) {
    position.fen("4k3/8/8/8/8/8/8/4K3 w - -");
    EXPECT_EQ(position.get_dfz(), 0);
    EXPECT_EQ(position.move_number(), 1);
    EXPECT_EQ(position.initial_position(), positions::bare_kings);
}

TEST_F(FenTest, MissingFieldsReadAsEmptyText) {
    position.fen("4k3/8/8/8/8/8/8/4K3");
    EXPECT_EQ(position.stm(), 0);
    EXPECT_EQ(position.initial_position(), "4k3/8/8/8/8/8/8/4K3    0 1");
    position.fen("");
    EXPECT_EQ(position.fen(), "8/8/8/8/8/8/8/8 b - - 0 1");
}

TEST_F(FenTest, CountersThatAreNoNumberAreReplaced) {
    position.fen("4k3/8/8/8/8/8/8/4K3 w - - x y");
    EXPECT_EQ(position.initial_position(), positions::bare_kings);
    EXPECT_EQ(position.fen(), positions::bare_kings);
}

TEST_F(FenTest, CountersOutOfRangeAreReplaced) {
    position.fen("4k3/8/8/8/8/8/8/4K3 w - - 2147483648 99999999999999999999");
    EXPECT_EQ(position.initial_position(), positions::bare_kings);
    EXPECT_EQ(position.get_dfz(), 0);
    EXPECT_EQ(position.move_number(), 1);
}

TEST_F(FenTest, CountersThatBeginWithANumberReadAsIt) {
    position.fen("4k3/8/8/8/8/8/8/4K3 w - - 5x 12th");
    EXPECT_EQ(position.get_dfz(), 5);
    EXPECT_EQ(position.move_number(), 12);
    EXPECT_EQ(position.initial_position(), "4k3/8/8/8/8/8/8/4K3 w - - 5x 12th");
}

TEST_F(FenTest, HalfmoveIsAnUnsignedSixteenBitNumber) {
    position.fen("4k3/8/8/8/8/8/8/4K3 w - - 65535 1");
    EXPECT_EQ(position.get_dfz(), 65535);
    position.fen("4k3/8/8/8/8/8/8/4K3 w - - 70000 1");
    EXPECT_EQ(position.get_dfz(), 65535);
    position.make_move(Move());
    EXPECT_EQ(position.get_dfz(), 0);
    position.fen("4k3/8/8/8/8/8/8/4K3 w - - -5 1");
    EXPECT_EQ(position.get_dfz(), 65531);
    EXPECT_EQ(position.initial_position(), "4k3/8/8/8/8/8/8/4K3 w - - -5 1");
}

TEST_F(FenTest, FenReplacesTheWholePosition) {
    position.newgame();
    position.make_move(position.convert_to_move("e2e4"));
    position.fen("4k3/8/8/8/8/8/8/R3K3 b - - 3 9");
    EXPECT_EQ(position.history().size(), 1U);
    EXPECT_EQ(position.get_make_move_counter(), 0U);
    EXPECT_EQ(position.last_move(), Move());
    EXPECT_EQ(position.materialindex().str(), "KRk");
    EXPECT_EQ(position.fen(), "4k3/8/8/8/8/8/8/R3K3 b - - 3 9");
}

TEST_F(FenTest, OwnInitialPositionCanBeReadAgain) {
    position.newgame();
    position.make_move(position.convert_to_move("e2e4"));
    position.fen(position.initial_position());
    EXPECT_EQ(position.fen(), start_fen);
}

TEST_F(FenTest, CheckIsFoundFromTheBoard) {
    position.fen("7k/6Q1/6K1/8/8/8/8/8 b - - 0 1");
    EXPECT_TRUE(position.check());
    EXPECT_EQ(position.get_hash(), 0xEFCD3646ED05F14CU);
}

TEST_F(FenTest, BadPlacementIsReported) {
    const std::string text = "4k3/8/8/8/8/8/9/4K3 w - - 0 1";
    try {
        position.fen(text);
        FAIL() << "no exception";
    } catch (std::logic_error const& error) {
        EXPECT_EQ(std::string(error.what()),
                  "ChessPosition::fen(" + text + ") \nunkown piece 0x39");
    }
}

TEST_F(FenTest, WrongRanksAndExtraPiecesTouchNoForeignMemory) {
    for (char const* text :
         {"QQQQQQQQQQQQQQQQQQQQ/QQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQQ/K/k w KQkq a3 0 1",
          "////////////////////////pppppppp b KQkq h3 0 1", "88888888888888888888K w - - 0 1",
          "KKKKKKKK/8/8/8/8/8/8/kkkkkkkk w KQkq - 0 1"}) {
        position.fen(std::string(text));
        position.make_move(Move());
        position.unmake_move();
        EXPECT_EQ(position.history().size(), 1U) << text;
        EXPECT_FALSE(position.fen().empty());
    }
}

struct reference_t {
    char const* fen;
    std::uint64_t key;
    std::uint64_t pawn_key;
    std::uint64_t material;
    bool check;
    std::uint64_t pinned;
    std::uint64_t discovering;
};

TEST_F(FenTest, ReferencePositionsHaveTheirKeysAndSets) {
    const reference_t references[] = {
        {positions::promotions, 0x297175BA443B0558, 0xB1FEC8C12DF81BF1, 0x0001222800012227, true, 0,
         0},
        {"7k/8/8/K1pP4/8/8/8/8 w - c6 0 1", 0xA508CEEFB4FA8F00, 0xFCE53E37373BD57A,
         0x0000000100000001, false, 0, 0},
        {"7k/8/8/8/8/8/8/rRK5 w B - 0 1", 0xED05C1512CD94267, 0, 0x0000100000001000, false, 2, 0},
        {"1R3Qk1/5pp1/8/5P1p/n7/6P1/2P2P1P/6K1 b - - 0 29", 0xE6C961F20AB810D5, 0x8ECEA74352D21982,
         0x0001100500000013, true, 0, 0x2000000000000000},
        {"rnbqkbnr/pppp2pp/8/4pp2/8/N3P3/PPPP1PPP/R1BQKBNR w KQkq e6 0 3", 0x3DD62FF4F82CCC97,
         0x7C104A11220BCED7, 0x0001222800012228, false, 0, 0},
        {"nrkrb3/pp1pppqp/4n1p1/8/6PP/1P3P2/P1PKpB2/R2R1NQB w bd - 0 9", 0x6569112C94FC5C66,
         0x9DCB53023C51CD66, 0x0001221600012128, false, 0, 0x0008000000000000}};
    for (reference_t const& reference : references) {
        position.fen(std::string(reference.fen));
        EXPECT_EQ(position.fen(), reference.fen);
        EXPECT_EQ(position.get_hash(), reference.key) << reference.fen;
        EXPECT_EQ(position.get_pawnhash(), reference.pawn_key) << reference.fen;
        EXPECT_EQ(position.materialindex().index(), reference.material) << reference.fen;
        EXPECT_EQ(position.check(), reference.check) << reference.fen;
        EXPECT_EQ(position.pinned_pieces(), BitBoard(reference.pinned)) << reference.fen;
        EXPECT_EQ(position.discovering_pieces(), BitBoard(reference.discovering)) << reference.fen;
    }
}

TEST_F(FenTest, IdsThatAreNoPieceAreWrittenAsBlanks) {
    for (int const id : {7, 8, 15}) {
        position.fen(positions::bare_kings);
        position.set_piece_on(Square("c3"), Piece(id));
        EXPECT_EQ(position.fen(), "4k3/8/8/8/8/2 5/8/4K3 w - - 0 1") << id;
    }
}

TEST_F(FenTest, EpdIsTheFirstFourFields) {
    position.fen("rnbqkbnr/pppp2pp/8/4pp2/8/N3P3/PPPP1PPP/R1BQKBNR w KQkq e6 0 3");
    EXPECT_EQ(position.epd(), "rnbqkbnr/pppp2pp/8/4pp2/8/N3P3/PPPP1PPP/R1BQKBNR w KQkq e6");
    position.fen("4k3/8/8/8/8/8/8/4K3 b - - 12 34");
    EXPECT_EQ(position.epd(), "4k3/8/8/8/8/8/8/4K3 b - -");
}

}  // namespace
}  // namespace orvelin
