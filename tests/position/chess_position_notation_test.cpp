#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "generation/tables.h"
#include "position/chess_position.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin {
namespace {

class NotationTest : public ::testing::Test {
 protected:
    Move pair(char const* from, char const* to, move_t code = normal_move) const {
        return position.convert_to_move(Square(std::string(from)), Square(std::string(to)), code);
    }

    Move text(std::string const& move) { return position.convert_to_move(move); }

    ChessPosition position{test::shared_tables()};
};

TEST_F(NotationTest, QuietPairTakesPieceAndCodeFromTheBoard) {
    position.newgame();
    const Move move = pair("g1", "f3");
    EXPECT_EQ(move.from(), Square("g1"));
    EXPECT_EQ(move.to(), Square("f3"));
    EXPECT_EQ(move.code(), normal_move);
    EXPECT_EQ(move.piece_id(), 2);
    EXPECT_EQ(move.capture_id(), 0);
    EXPECT_EQ(move.xcode(), xnormal_move);
    EXPECT_FALSE(move.check());
}

TEST_F(NotationTest, CapturePairTakesTheCapturedPiece) {
    position.fen("4k3/8/8/3n4/4P3/8/8/4K3 w - - 0 1");
    EXPECT_EQ(pair("e4", "d5").capture_id(), 10);
    EXPECT_EQ(pair("e4", "d5").code(), normal_move);
}

TEST_F(NotationTest, PairWithoutAPieceHasCodeZero) {
    position.newgame();
    EXPECT_EQ(pair("e4", "e5").code(), nullmove);
    EXPECT_EQ(pair("e4", "e5", promo_queen).code(), nullmove);
    EXPECT_EQ(pair("e4", "e7").capture_id(), 9);
}

TEST_F(NotationTest, KingOnOwnRookIsCastling) {
    position.fen(positions::all_castlings);
    EXPECT_EQ(pair("e1", "h1").code(), castling);
    EXPECT_EQ(pair("e1", "h1").capture_id(), 0);
    EXPECT_EQ(pair("e1", "a1").code(), castling);
    EXPECT_EQ(pair("e8", "h8").code(), castling);
    EXPECT_EQ(pair("e8", "a8").code(), castling);
    EXPECT_EQ(pair("e1", "a8").code(), normal_move);
    EXPECT_EQ(pair("e1", "a8").capture_id(), 12);
}

TEST_F(NotationTest, KingOnOwnRookIsCastlingOnAnyRank) {
    position.fen("8/2rk4/8/8/4K2R/8/8/8 w - - 0 1");
    EXPECT_EQ(pair("e4", "h4").code(), castling);
    EXPECT_EQ(pair("e4", "h4").capture_id(), 0);
    EXPECT_EQ(pair("d7", "c7").code(), castling);
    EXPECT_EQ(pair("d7", "c7").capture_id(), 0);
    EXPECT_EQ(text("e4h4").code(), castling);
}

TEST_F(NotationTest, CallersCastlingCodeClearsTheCapture) {
    position.newgame();
    const Move move = pair("g1", "f1", castling);
    EXPECT_EQ(move.code(), castling);
    EXPECT_EQ(move.capture_id(), 0);
}

TEST_F(NotationTest, WhiteEnPassantIsToldFromTheBoard) {
    position.fen("4k3/8/8/2pPp3/8/8/8/4K3 w - - 0 1");
    for (char const* to : {"c6", "e6"}) {
        EXPECT_EQ(pair("d5", to).code(), en_passant);
        EXPECT_EQ(pair("d5", to).capture_id(), 9);
    }
    EXPECT_EQ(pair("d5", "d6").code(), normal_move);
    position.fen("4k3/8/2n5/2pP4/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(pair("d5", "c6").code(), normal_move);
    EXPECT_EQ(pair("d5", "c6").capture_id(), 10);
    EXPECT_EQ(pair("d5", "e6").code(), normal_move);
    EXPECT_EQ(pair("d5", "e6").capture_id(), 0);
}

TEST_F(NotationTest, BlackEnPassantIsToldFromTheBoard) {
    position.fen("4k3/8/8/8/2PpP3/8/8/4K3 b - - 0 1");
    for (char const* to : {"c3", "e3"}) {
        EXPECT_EQ(pair("d4", to).code(), en_passant);
        EXPECT_EQ(pair("d4", to).capture_id(), 1);
    }
    position.fen("4k3/8/8/8/3pB3/8/8/4K3 b - - 0 1");
    EXPECT_EQ(pair("d4", "e3").code(), normal_move);
}

TEST_F(NotationTest, EnPassantAtTheEdgeOfTheBoardIsNone) {
    position.fen("4k3/8/8/8/8/8/8/P3K3 w - - 0 1");
    EXPECT_EQ(pair("a1", "h1").code(), normal_move);
    position.fen("4k2p/8/8/8/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(pair("h8", "a8").code(), normal_move);
}

TEST_F(NotationTest, OtherwiseTheCallersCodeStays) {
    position.fen("4k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    for (const move_t code : {promo_queen, promo_rook, promo_bishop, promo_knight, normal_move}) {
        EXPECT_EQ(pair("a7", "a8", code).code(), code);
        EXPECT_EQ(pair("a7", "a8", code).piece_id(), 1);
    }
    // Also on pieces that cannot promote.
    position.fen("1nrb4/4k3/8/8/8/8/4K3/1NRB4 w - - 0 1");
    const std::pair<char const*, char const*> moves[] = {{"b1", "a3"}, {"c1", "c8"}, {"d1", "b3"},
                                                         {"e2", "e3"}, {"b8", "a6"}, {"c8", "c1"},
                                                         {"d8", "b6"}, {"e7", "e6"}};
    for (auto const& [from, to] : moves) {
        for (char const letter : {'q', 'r', 'b', 'n'}) {
            const Move move = text(std::string(from) + to + letter);
            EXPECT_EQ(move.algebraic(false), std::string(from) + to + letter);
            EXPECT_EQ(pair(from, to, move.code()).code(), move.code());
            EXPECT_EQ(move.piece(), position.get_piece_from(Square(std::string(from))));
            EXPECT_EQ(move.capture(), position.get_piece_from(Square(std::string(to))));
        }
    }
}

TEST_F(NotationTest, StandardCastlingTextIsRewritten) {
    const std::string fen = positions::all_castlings;
    const std::pair<char const*, char const*> texts[] = {
        {"e1g1", "h1"}, {"e1c1", "a1"}, {"e8g8", "h8"}, {"e8c8", "a8"}};
    for (auto const& [standard, rook] : texts) {
        position.fen(fen);
        if (standard[1] == '8') {
            position.switch_color_to_move();
        }
        const Move move = text(standard);
        EXPECT_EQ(move.code(), castling) << standard;
        EXPECT_EQ(move.to(), Square(std::string(rook)));
        EXPECT_EQ(move.from().file(), 'e');
        EXPECT_EQ(move.algebraic(false), standard);
        EXPECT_EQ(text(move.algebraic(true)), move);
    }
}

TEST_F(NotationTest, CastlingTextWithTheRookElsewhereIsAKingMove) {
    position.fen("4k3/8/8/8/8/8/8/1R2K1R1 w BG - 0 1");
    EXPECT_EQ(text("e1c1").code(), normal_move);
    EXPECT_EQ(text("e1c1").to(), Square("c1"));
    position.fen("4k3/8/8/8/8/8/8/4KR2 w F - 0 1");
    EXPECT_EQ(text("e1g1").code(), normal_move);
    EXPECT_EQ(text("e1g1").to(), Square("g1"));
}

TEST_F(NotationTest, CastlingTextLooksAtTheKingsTargetOnly) {
    struct case_t {
        char const* fen;
        char const* text;
        move_t code;
    };
    const case_t cases[] = {{"4k3/8/8/8/8/8/8/4KB1R w K - 0 1", "e1g1", castling},
                            {"4k3/8/8/8/8/8/8/4K1NR w K - 0 1", "e1g1", normal_move},
                            {"4k3/8/8/8/8/8/8/RN1QK3 w Q - 0 1", "e1c1", castling},
                            {"4k3/8/8/8/8/8/8/R1B1K3 w Q - 0 1", "e1c1", normal_move},
                            {"4kb1r/8/8/8/8/8/8/4K3 b k - 0 1", "e8g8", castling},
                            {"4k1nr/8/8/8/8/8/8/4K3 b k - 0 1", "e8g8", normal_move},
                            {"rn1qk3/8/8/8/8/8/8/4K3 b q - 0 1", "e8c8", castling},
                            {"r1b1k3/8/8/8/8/8/8/4K3 b q - 0 1", "e8c8", normal_move}};
    for (case_t const& c : cases) {
        position.fen(std::string(c.fen));
        EXPECT_EQ(text(c.text).code(), c.code) << c.fen;
    }
}

TEST_F(NotationTest, CastlingTextNeedsAnOwnRook) {
    struct case_t {
        char const* fen;
        char const* text;
    };
    const case_t cases[] = {{"4k3/8/8/8/8/8/8/4K2r w - - 0 1", "e1g1"},
                            {"4k3/8/8/8/8/8/8/B3K3 w - - 0 1", "e1c1"},
                            {"4k2R/8/8/8/8/8/8/4K3 b - - 0 1", "e8g8"},
                            {"b3k3/8/8/8/8/8/8/4K3 b - - 0 1", "e8c8"}};
    for (case_t const& c : cases) {
        position.fen(std::string(c.fen));
        const Move move = text(c.text);
        EXPECT_EQ(move.code(), normal_move) << c.fen;
        EXPECT_EQ(move.algebraic(true), c.text);
    }
}

TEST_F(NotationTest, CastlingTextNeedsKingRookAndAnEmptySquare) {
    position.fen("4k3/8/8/8/8/8/8/4K1NR w - - 0 1");
    EXPECT_EQ(text("e1g1").code(), normal_move);
    position.fen("4k3/8/8/8/8/8/8/K3Q2R w - - 0 1");
    EXPECT_EQ(text("e1g1").piece_id(), 5);
    EXPECT_EQ(text("e1g1").code(), normal_move);
    position.fen("4k3/8/8/8/8/8/8/4K2r w - - 0 1");
    EXPECT_EQ(text("e1g1").code(), normal_move);
    position.fen("r2qk3/8/8/8/8/8/8/4K3 b q - 0 1");
    EXPECT_EQ(text("e8c8").code(), castling);
}

TEST_F(NotationTest, CastlingTextWithAFifthLetterIsNotRewritten) {
    position.fen(positions::white_short_castling);
    EXPECT_EQ(text("e1g1x").to(), Square("g1"));
}

TEST_F(NotationTest, FifthLetterGivesThePromotion) {
    position.fen("4k3/P7/8/8/8/8/8/4K3 w - - 0 1");
    const std::pair<char const*, move_t> texts[] = {
        {"a7a8q", promo_queen},  {"a7a8r", promo_rook}, {"a7a8b", promo_bishop},
        {"a7a8n", promo_knight}, {"a7a8", normal_move}, {"a7a8k", normal_move},
        {"a7a8Q", normal_move}};
    for (auto const& [move, code] : texts) {
        EXPECT_EQ(text(move).code(), code) << move;
    }
}

TEST_F(NotationTest, TextMoveCarriesItsCheckBit) {
    position.fen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    EXPECT_TRUE(text("a1a8").check());
    EXPECT_FALSE(text("a1a7").check());
    position.fen("4k3/8/8/8/8/8/4N3/K3R3 w - - 0 1");
    EXPECT_TRUE(text("e2c3").check());
}

TEST_F(NotationTest, TextLeavesThePositionButNotTheCounter) {
    position.newgame();
    const ChessPosition saved(position);
    text("e2e4");
    EXPECT_TRUE(position == saved);
    EXPECT_EQ(position.history().size(), 1U);
    EXPECT_EQ(position.get_make_move_counter(), 1U);
    EXPECT_TRUE(position.repetition_filter() == saved.repetition_filter());
}

TEST_F(NotationTest, IllegalTextInGoodFormGetsAWord) {
    position.newgame();
    const Move move = text("e1e8");
    EXPECT_EQ(move.code(), normal_move);
    EXPECT_EQ(move.capture_id(), 14);
    EXPECT_EQ(text("e4e5").code(), nullmove);
}

TEST_F(NotationTest, OddTextLeavesTheBoardConsistentWhereItCanBeUnmade) {
    position.newgame();
    for (char const* odd : {"e2e2", "d1d1q", "b1c3q", "a1a7r", "e8e7n"}) {
        const Move move = text(odd);
        EXPECT_FALSE(position.board_is_inconsistent()) << odd;
        position.make_move(move);
        EXPECT_TRUE(position.board_is_inconsistent()) << odd;
        position.unmake_move();
        EXPECT_FALSE(position.board_is_inconsistent()) << odd;
    }
    // Castling over a knight takes it off its square for good.
    text("e1h1");
    EXPECT_EQ(position.get_piece_id_from(Square("g1")), 0);
    EXPECT_TRUE(position.white_knight() & Square("g1").bitboard());
    EXPECT_TRUE(position.board_is_inconsistent());
}

TEST_F(NotationTest, BadTextIsReported) {
    position.newgame();
    for (char const* bad : {"", "e2e", "e2e4qq", "i2e4", "e9e4", "e2i4", "e2e0", "E2E4", "0000"}) {
        try {
            text(bad);
            ADD_FAILURE() << "no exception for " << bad;
        } catch (std::logic_error const& error) {
            EXPECT_EQ(std::string(error.what()),
                      "ChessPosition::convert_to_move(const string& " + std::string(bad) + ")");
        }
    }
    EXPECT_EQ(position.history().size(), 1U);
}

TEST_F(NotationTest, HistoryListsTheMovesInOrder) {
    position.fen(positions::white_short_castling);
    EXPECT_TRUE(position.moves_history().empty());
    EXPECT_EQ(position.history_str(), "");
    const Move castle = text("e1g1");
    position.make_move(castle);
    position.make_move(Move());
    const std::vector<Move> moves = position.moves_history();
    ASSERT_EQ(moves.size(), 2U);
    EXPECT_EQ(moves[0], castle);
    EXPECT_EQ(moves[1], Move());
    EXPECT_EQ(position.history_str(), "e1g1 0000");
}

}  // namespace
}  // namespace orvelin
