#include "position/board_position.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

#include "position/masks.h"
#include "support/logic_error_text.h"
#include "support/positions.h"

namespace orvelin {
namespace {

using test::logic_error_text;

const std::string start = positions::start;
const std::string middle_game = positions::kiwipete;

BoardPosition board_of(std::string const& fen) {
    BoardPosition board;
    board.fen(fen);
    return board;
}

Move move_of(char const* from, char const* to, move_t code, int piece, int capture = 0) {
    return Move(Square(from), Square(to), code, Piece(piece), Piece(capture));
}

int id_on(BoardPosition const& board, char const* square) {
    return board[Square(square).id()].id();
}

/// Every member agrees with the 64 squares.
void expect_sound(BoardPosition const& board) {
    std::array<BitBoard, 15> expected;
    for (int square = 0; square < 64; ++square) {
        auto const id = static_cast<std::size_t>(board[square].id());
        ASSERT_LT(id, expected.size());
        if (id != 0) {
            expected[id].set_square(Square(square));
        }
    }
    BitBoard white;
    BitBoard black;
    for (int id = 0; id < 15; ++id) {
        const BitBoard set = expected[static_cast<std::size_t>(id)];
        EXPECT_EQ(board.piece(id), set) << id;
        (id < 8 ? white : black) |= set;
    }
    EXPECT_EQ(board.white_pieces(), white);
    EXPECT_EQ(board.black_pieces(), black);
    EXPECT_EQ(board.pieces(), white | black);
    EXPECT_EQ(board[64].id(), 0);
}

/// Equal in every member, the squares included.
void expect_same(BoardPosition const& left, BoardPosition const& right) {
    EXPECT_TRUE(left == right);
    EXPECT_EQ(left.stm(), right.stm());
    for (int square = 0; square < 65; ++square) {
        EXPECT_EQ(left[square], right[square]) << square;
    }
    EXPECT_EQ(left.white_pieces(), right.white_pieces());
    EXPECT_EQ(left.black_pieces(), right.black_pieces());
    EXPECT_EQ(left.pieces(), right.pieces());
}

/// Makes `move` on the position, compares with `after` and unmakes it.
void expect_move(std::string const& before, Move const& move, std::string const& after) {
    BoardPosition board = board_of(before);
    board.make_move(move);
    expect_same(board, board_of(after));
    expect_sound(board);
    board.unmake_move(move);
    expect_same(board, board_of(before));
    expect_sound(board);
}

TEST(BoardPosition, StartsEmptyWithWhiteToMove) {
    const BoardPosition board;
    EXPECT_EQ(board.stm(), 1);
    EXPECT_TRUE(board.white_to_move());
    expect_sound(board);
    EXPECT_FALSE(static_cast<bool>(board.pieces()));
}

TEST(BoardPosition, ReadsTheStartPosition) {
    const BoardPosition board = board_of(start);
    expect_sound(board);
    EXPECT_EQ(board.white_pawn(), rank2);
    EXPECT_EQ(board.white_knight(), BitBoard({Square("b1"), Square("g1")}));
    EXPECT_EQ(board.white_bishop(), BitBoard({Square("c1"), Square("f1")}));
    EXPECT_EQ(board.white_rook(), BitBoard({Square("a1"), Square("h1")}));
    EXPECT_EQ(board.white_queen(), BitBoard({Square("d1")}));
    EXPECT_EQ(board.white_king(), BitBoard({Square("e1")}));
    EXPECT_EQ(board.black_pawn(), rank7);
    EXPECT_EQ(board.black_knight(), BitBoard({Square("b8"), Square("g8")}));
    EXPECT_EQ(board.black_bishop(), BitBoard({Square("c8"), Square("f8")}));
    EXPECT_EQ(board.black_rook(), BitBoard({Square("a8"), Square("h8")}));
    EXPECT_EQ(board.black_queen(), BitBoard({Square("d8")}));
    EXPECT_EQ(board.black_king(), BitBoard({Square("e8")}));
    EXPECT_EQ(&board.piece(13), &board.black_queen());
    EXPECT_EQ(board.white_pieces(), rank1 | rank2);
    EXPECT_EQ(board.black_pieces(), rank7 | rank8);
    EXPECT_EQ(board.pieces(), rank1 | rank2 | rank7 | rank8);
}

TEST(BoardPosition, SideToMoveAccessors) {
    BoardPosition board;
    board.set_black_to_move();
    EXPECT_EQ(board.stm(), 0);
    EXPECT_TRUE(board.black_to_move());
    EXPECT_FALSE(board.white_to_move());
    board.switch_color_to_move();
    EXPECT_EQ(board.stm(), 1);
    EXPECT_FALSE(board.black_to_move());
    board.switch_color_to_move();
    EXPECT_EQ(board.stm(), 0);
    board.set_white_to_move();
    EXPECT_TRUE(board.white_to_move());
}

TEST(BoardPosition, ClearLeavesTheAggregates) {
    BoardPosition board = board_of("4k3/8/8/8/8/8/8/4K3 b - -");
    const BitBoard both({Square("e1"), Square("e8")});
    board.clear();
    EXPECT_EQ(board.stm(), 1);
    for (int id = 0; id < 15; ++id) {
        EXPECT_FALSE(static_cast<bool>(board.piece(id)));
    }
    for (int square = 0; square < 65; ++square) {
        EXPECT_EQ(board[square].id(), 0);
    }
    EXPECT_EQ(board.pieces(), both);
    board.compute_pieces();
    EXPECT_EQ(board.pieces(), BitBoard());
}

TEST(BoardPosition, SetAndRemoveLeaveTheAggregates) {
    BoardPosition board;
    board.set_piece_on(Square("c3"), white_queen);
    EXPECT_EQ(id_on(board, "c3"), 5);
    EXPECT_EQ(board.white_queen(), Square("c3").bitboard());
    EXPECT_EQ(board.white_pieces(), BitBoard());
    board.compute_pieces();
    EXPECT_EQ(board.white_pieces(), Square("c3").bitboard());
    board.remove_piece_from(Square("c3"), white_queen);
    EXPECT_EQ(id_on(board, "c3"), 0);
    EXPECT_EQ(board.white_queen(), BitBoard());
    EXPECT_EQ(board.pieces(), Square("c3").bitboard());
}

TEST(BoardPosition, NoSquareTakesNoPiece) {
    BoardPosition board;
    board.set_piece_on(Square(), white_king);
    board.set_piece_on(Square(-1), white_king);
    board.remove_piece_from(Square(), white_king);
    expect_same(board, BoardPosition());
}

TEST(BoardPosition, CopiesEveryMember) {
    BoardPosition board = board_of(middle_game);
    board.set_black_to_move();
    const BoardPosition copy(board);
    expect_same(copy, board);
    BoardPosition assigned;
    assigned = board;
    expect_same(assigned, board);
}

TEST(BoardPosition, ComparesSideAndPieceBoardsOnly) {
    const BoardPosition board = board_of(start);
    BoardPosition other = board;
    other.set_black_to_move();
    EXPECT_TRUE(board != other);
    other = board;
    other.remove_piece_from(Square("a1"), white_rook);
    EXPECT_TRUE(board != other);
    other.set_piece_on(Square("a1"), white_rook);
    EXPECT_TRUE(board == other);
    // The square array differs, the boards do not.
    other.remove_piece_from(Square("a1"), no_piece);
    EXPECT_EQ(id_on(other, "a1"), 0);
    EXPECT_TRUE(board == other);
}

TEST(BoardPosition, QuietMoveIsUndone) {
    expect_move(start, move_of("g1", "f3", normal_move, 2),
                "rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b");
}

TEST(BoardPosition, CaptureIsUndone) {
    expect_move(middle_game, move_of("e2", "a6", normal_move, 3, 11),
                "r3k2r/p1ppqpb1/Bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPB1PPP/R3K2R b");
}

TEST(BoardPosition, NullMoveChangesTheSideOnly) {
    expect_move(start, Move(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b");
    expect_move(start, move_of("e2", "e4", nullmove, 1),
                "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b");
}

TEST(BoardPosition, EnPassantRestoresThePawnBehindTheTarget) {
    expect_move("4k3/8/8/3Pp3/8/8/8/4K3 w", move_of("d5", "e6", en_passant, 1, 9),
                "4k3/8/4P3/8/8/8/8/4K3 b");
    expect_move("4k3/8/8/8/3pP3/8/8/4K3 b", move_of("d4", "e3", en_passant, 9, 1),
                "4k3/8/8/8/8/4p3/8/4K3 w");
}

// Not the direction of the pawn, and not its colour: only illegal words tell them apart.
TEST(BoardPosition, SideToMoveTellsWhereTheEnPassantVictimStands) {
    const Move up = move_of("d5", "e6", en_passant, white_pawn, black_pawn);
    expect_move("4k3/4p3/8/3Pp3/8/8/8/4K3 w", up, "4k3/4p3/4P3/8/8/8/8/4K3 b");
    expect_move("4k3/4p3/8/3Pp3/8/8/8/4K3 b", up, "4k3/8/4P3/4p3/8/8/8/4K3 w");
    const Move down = move_of("d4", "e3", en_passant, black_pawn, white_pawn);
    expect_move("4k3/8/8/8/3pP3/8/4P3/4K3 b", down, "4k3/8/8/8/8/4p3/4P3/4K3 w");
    expect_move("4k3/8/8/8/3pP3/8/4P3/4K3 w", down, "4k3/8/8/8/4P3/4p3/8/4K3 b");
}

TEST(BoardPosition, PromotionsOfBothSidesAreUndone) {
    const std::array<move_t, 4> codes{promo_queen, promo_rook, promo_bishop, promo_knight};
    const std::string white_pieces = "QRBN";
    const std::string black_pieces = "qrbn";
    for (std::size_t i = 0; i < codes.size(); ++i) {
        expect_move("r3k3/1P6/8/8/8/8/8/4K3 w", move_of("b7", "b8", codes[i], 1),
                    std::string("r") + white_pieces[i] + "2k3/8/8/8/8/8/8/4K3 b");
        expect_move("r3k3/1P6/8/8/8/8/8/4K3 w", move_of("b7", "a8", codes[i], 1, 12),
                    std::string(1, white_pieces[i]) + "3k3/8/8/8/8/8/8/4K3 b");
        expect_move("4k3/8/8/8/8/8/6p1/4K2R b", move_of("g2", "g1", codes[i], 9),
                    std::string("4k3/8/8/8/8/8/8/4K1") + black_pieces[i] + "R w");
        expect_move("4k3/8/8/8/8/8/6p1/4K2R b", move_of("g2", "h1", codes[i], 9, 4),
                    std::string("4k3/8/8/8/8/8/8/4K2") + black_pieces[i] + " w");
    }
}

TEST(BoardPosition, StandardCastlingIsUndone) {
    const std::string white = "r3k2r/8/8/8/8/8/8/R3K2R w";
    const std::string black = "r3k2r/8/8/8/8/8/8/R3K2R b";
    expect_move(white, move_of("e1", "h1", castling, 6), "r3k2r/8/8/8/8/8/8/R4RK1 b");
    expect_move(white, move_of("e1", "a1", castling, 6), "r3k2r/8/8/8/8/8/8/2KR3R b");
    expect_move(black, move_of("e8", "h8", castling, 14), "r4rk1/8/8/8/8/8/8/R3K2R w");
    expect_move(black, move_of("e8", "a8", castling, 14), "2kr3r/8/8/8/8/8/8/R3K2R w");
}

TEST(BoardPosition, Chess960CastlingToTheGFile) {
    expect_move("4k3/8/8/8/8/8/8/6KR w", move_of("g1", "h1", castling, 6),
                "4k3/8/8/8/8/8/8/5RK1 b");
    // King f1 and rook g1 are simply exchanged.
    expect_move("4k3/8/8/8/8/8/8/5KR1 w", move_of("f1", "g1", castling, 6),
                "4k3/8/8/8/8/8/8/5RK1 b");
    expect_move("5kr1/8/8/8/8/8/8/4K3 b", move_of("f8", "g8", castling, 14),
                "5rk1/8/8/8/8/8/8/4K3 w");
}

TEST(BoardPosition, Chess960CastlingToTheCFile) {
    expect_move("4k3/8/8/8/8/8/8/R1K5 w", move_of("c1", "a1", castling, 6),
                "4k3/8/8/8/8/8/8/2KR4 b");
    expect_move("4k3/8/8/8/8/8/8/RK6 w", move_of("b1", "a1", castling, 6),
                "4k3/8/8/8/8/8/8/2KR4 b");
    expect_move("2rk4/8/8/8/8/8/8/4K3 b", move_of("d8", "c8", castling, 14),
                "2kr4/8/8/8/8/8/8/4K3 w");
}

TEST(BoardPosition, AnyMoveWordStaysInsideTheObject) {
    // Every code with every pair of four-bit ids, from and to corner squares included.
    for (int code = 0; code < 8; ++code) {
        for (int ids = 0; ids < 256; ++ids) {
            for (int const squares : {0, 63, 63 * 64, 63 * 65}) {
                BoardPosition board = board_of(middle_game);
                const Move move(Square(squares / 64), Square(squares % 64),
                                static_cast<unsigned int>(code), Piece(ids / 16), Piece(ids % 16));
                board.make_move(move);
                EXPECT_EQ(board.stm(), 0);
                board.unmake_move(move);
                EXPECT_EQ(board.stm(), 1);
                EXPECT_EQ(board[64].id(), 0);
                EXPECT_EQ(board.piece(0), BitBoard());
            }
        }
    }
}

TEST(BoardPosition, FlipExchangesTheSides) {
    BoardPosition board = board_of(middle_game);
    board.flip();
    expect_same(board, board_of("r3k2r/pppbbppp/2n2q1P/1P2p3/3pn3/BN2PNP1/P1PPQPB1/R3K2R b"));
    expect_sound(board);
    board.flip();
    expect_same(board, board_of(middle_game));
}

TEST(BoardPosition, FlopMirrorsAndKeepsTheSideToMove) {
    BoardPosition board = board_of(middle_game);
    board.flop();
    expect_same(board, board_of("r2k3r/1bpqpp1p/1pnp2nb/3NP3/3P2p1/p1Q2N2/PPPBBPPP/R2K3R w"));
    expect_sound(board);
    board.flop();
    expect_same(board, board_of(middle_game));
    board.set_black_to_move();
    board.flop();
    EXPECT_EQ(board.stm(), 0);
}

TEST(BoardPosition, FenReadsTheSideToMove) {
    EXPECT_EQ(board_of("8/8/8/8/8/8/8/8 w").stm(), 1);
    EXPECT_EQ(board_of("8/8/8/8/8/8/8/8 b").stm(), 0);
    EXPECT_EQ(board_of("8/8/8/8/8/8/8/8 W").stm(), 0);
    EXPECT_EQ(board_of("8/8/8/8/8/8/8/8 white").stm(), 0);
    EXPECT_EQ(board_of("8/8/8/8/8/8/8/8").stm(), 0);
    EXPECT_EQ(board_of("").stm(), 0);
}

TEST(BoardPosition, FenIgnoresTheOtherFields) {
    expect_same(board_of("4k3/8/8/8/8/8/8/4K3 w QWERTY ## x 99999999999999999999"),
                board_of("  4k3/8/8/8/8/8/8/4K3\tw"));
}

TEST(BoardPosition, FenReplacesWhatStoodBefore) {
    BoardPosition board = board_of(start);
    board.fen("4k3/8/8/8/8/8/8/4K3 b");
    expect_same(board, board_of("4k3/8/8/8/8/8/8/4K3 b"));
    expect_sound(board);
}

TEST(BoardPosition, FenDoesNotTestRankLengths) {
    // Ten pieces run on into the rank above; the separator takes 16 off wherever the walk stands.
    BoardPosition board = board_of("8/ppppppppPP/K w");
    EXPECT_EQ(id_on(board, "a8"), 1);
    EXPECT_EQ(id_on(board, "b8"), 1);
    EXPECT_EQ(id_on(board, "c6"), 6);
    expect_sound(board);
}

TEST(BoardPosition, FenIgnoresPiecesBesideTheBoard) {
    BoardPosition board = board_of("8PPP w");
    EXPECT_EQ(board.pieces(), BitBoard());
    board = board_of("////////QQ b");
    EXPECT_EQ(board.pieces(), BitBoard());
    board = board_of(std::string(100000, '8') + "K" + std::string(100000, '/') + "k w");
    EXPECT_EQ(board.pieces(), BitBoard());
    expect_sound(board);
}

TEST(BoardPosition, FenRefusesOtherCharacters) {
    EXPECT_EQ(logic_error_text([] { board_of("4k3/9 w - - 0 1"); }),
              "ChessPosition::fen(4k3/9 w - - 0 1) \nunkown piece 0x39");
    EXPECT_EQ(logic_error_text([] { board_of("0"); }), "ChessPosition::fen(0) \nunkown piece 0x30");
    EXPECT_EQ(logic_error_text([] { board_of("kz b"); }),
              "ChessPosition::fen(kz b) \nunkown piece 0x7a");
    EXPECT_EQ(logic_error_text([] { board_of("\xe4"); }),
              "ChessPosition::fen(\xe4) \nunkown piece 0xe4");
}

TEST(BoardPosition, FenFailureLeavesThePositionHalfFilled) {
    BoardPosition board = board_of("8/8/8/8/8/8/8/K7 b");
    EXPECT_THROW(board.fen("qx b"), std::logic_error);
    EXPECT_EQ(id_on(board, "a8"), 13);
    EXPECT_EQ(id_on(board, "a1"), 0);
    EXPECT_EQ(board.stm(), 1);
    EXPECT_EQ(board.pieces(), Square("a1").bitboard());
}

TEST(BoardPosition, CorruptTellsWrongKingsAndOverlaps) {
    EXPECT_FALSE(board_of(start).corrupt(0));
    EXPECT_TRUE(board_of("4k3/8/8/8/8/8/8/8 w").corrupt(0));
    EXPECT_TRUE(board_of("8/8/8/8/8/8/8/4K3 w").corrupt(1));
    EXPECT_TRUE(board_of("4k2k/8/8/8/8/8/8/4K3 w").corrupt(0));
    EXPECT_TRUE(board_of("4k3/8/8/8/8/8/8/K3K3 w").corrupt(0));
    for (int const id : {1, 7, 8, 14}) {
        BoardPosition board = board_of("4k3/8/8/8/8/8/8/R3K3 w");
        board.set_piece_on(id == 14 ? Square("a2") : Square("a1"), id);
        EXPECT_TRUE(board.corrupt(0)) << id;
    }
}

TEST(BoardPosition, ConsistentComparesSquaresWithBoards) {
    EXPECT_TRUE(board_of(start).consistent());
    BoardPosition board = board_of(start);
    // A board bit without an entry.
    board.set_piece_on(Square("a1"), no_piece);
    EXPECT_FALSE(board.consistent());
    // An entry of a piece whose board comes behind one that holds the square.
    board = board_of(start);
    board.set_piece_on(Square("a1"), black_king);
    EXPECT_FALSE(board.consistent());
}

TEST(BoardPosition, ConsistentLooksNoFurtherThanTheOwnBoard) {
    BoardPosition board = board_of(start);
    board.set_piece_on(Square("a1"), white_pawn);
    EXPECT_TRUE(board.white_rook() & Square("a1").bitboard());
    EXPECT_TRUE(board.consistent());
}

TEST(BoardPosition, ConsistentSkipsIdsThatAreNoPiece) {
    for (int const id : {7, 8, 15}) {
        BoardPosition board = board_of(start);
        board.set_piece_on(Square("a1"), id);
        EXPECT_TRUE(board.consistent()) << id;
    }
}

TEST(BoardPosition, DumpShowsAllBoards) {
    const BoardPosition board = board_of(start);
    const std::array<char const*, 12> labels{
        "white pawn: ",   "white knight: ", "white bishop: ", "white rook: ",
        "white queen: ",  "white king: ",   "black pawn: ",   "black knight: ",
        "black bishop: ", "black rook: ",   "black queen: ",  "black king: "};
    const std::array<int, 12> ids{1, 2, 3, 4, 5, 6, 9, 10, 11, 12, 13, 14};
    std::string expected = "side to move: 1\n";
    for (std::size_t i = 0; i < labels.size(); ++i) {
        expected += std::string(labels[i]) + "\n" + board.piece(ids[i]).dump() + "\n";
    }
    EXPECT_EQ(board.dump(), expected);
    BoardPosition black = board;
    black.set_black_to_move();
    EXPECT_EQ(black.dump().substr(0, 16), "side to move: 0\n");
}

TEST(BoardPosition, IsConsistentUntilItIsChangedByHandOrATextPutsTwoPiecesOnOneSquare) {
    EXPECT_FALSE(board_of(start).board_is_inconsistent());
    // The ninth pawn of the second rank comes to a3, which is taken.
    EXPECT_TRUE(board_of("4k3/8/8/8/8/p7/PPPPPPPPP/4K3 w - - 0 1").board_is_inconsistent());
    EXPECT_FALSE(board_of("4k3/8/8/8/8/1p6/PPPPPPPPP/4K3 w - - 0 1").board_is_inconsistent());
    BoardPosition board = board_of(start);
    board.set_piece_on(Square(30), white_queen);
    EXPECT_TRUE(board.board_is_inconsistent());
    board.fen(start);
    EXPECT_FALSE(board.board_is_inconsistent());
    board.remove_piece_from(Square(0), white_rook);
    EXPECT_TRUE(board.board_is_inconsistent());
}

TEST(BoardPosition, OddWordMakesTheBoardInconsistentUntilItIsUnmade) {
    BoardPosition board = board_of(start);
    const std::array<Move, 5> odd_moves{
        move_of("d1", "d1", normal_move, white_queen, white_queen),
        move_of("e2", "e2", promo_queen, white_pawn, white_pawn),
        move_of("b1", "c3", promo_queen, white_knight),
        move_of("a1", "a7", promo_rook, white_rook, black_pawn),
        // What the text e4d8 gives here.
        move_of("e4", "d8", nullmove, no_piece, black_queen),
    };
    for (Move const& move : odd_moves) {
        board.make_move(move);
        EXPECT_TRUE(board.board_is_inconsistent()) << move.dump();
        board.unmake_move(move);
        EXPECT_FALSE(board.board_is_inconsistent()) << move.dump();
        expect_same(board, board_of(start));
    }
}

TEST(BoardPosition, OddCastlingAndEnPassantAreForgottenWhenUnmade) {
    struct case_t {
        char const* fen;
        Move move;
    };
    const case_t cases[] = {
        {"r3k3/8/8/8/8/8/8/4K3 b", move_of("a8", "a8", castling, black_rook)},
        {"4k3/8/8/4p3/8/8/8/4K3 w", move_of("e6", "e6", en_passant, no_piece, black_pawn)},
    };
    for (case_t const& c : cases) {
        BoardPosition board = board_of(c.fen);
        board.make_move(c.move);
        EXPECT_TRUE(board.board_is_inconsistent()) << c.move.dump();
        board.unmake_move(c.move);
        EXPECT_FALSE(board.board_is_inconsistent()) << c.move.dump();
        expect_same(board, board_of(c.fen));
    }
}

TEST(BoardPosition, NullMoveWithoutACaptureLeavesTheBoardConsistent) {
    BoardPosition board = board_of(start);
    for (Move const& move : {Move(), move_of("e4", "e5", nullmove, no_piece)}) {
        board.make_move(move);
        EXPECT_FALSE(board.board_is_inconsistent()) << move.dump();
        board.unmake_move(move);
        EXPECT_FALSE(board.board_is_inconsistent()) << move.dump();
    }
}

TEST(BoardPosition, BoardStaysInconsistentUntilTheFirstOddMoveIsUnmade) {
    BoardPosition board = board_of(start);
    const Move queen = move_of("d1", "d1", normal_move, white_queen, white_queen);
    const Move pawn = move_of("e7", "e5", normal_move, black_pawn);
    const Move knight = move_of("b1", "c3", promo_rook, white_knight);
    for (Move const& move : {queen, pawn, knight}) {
        board.make_move(move);
    }
    board.unmake_move(knight);
    EXPECT_TRUE(board.board_is_inconsistent());
    board.unmake_move(pawn);
    EXPECT_TRUE(board.board_is_inconsistent());
    board.unmake_move(queen);
    EXPECT_FALSE(board.board_is_inconsistent());
}

TEST(BoardPosition, LegalWordsLeaveTheBoardConsistent) {
    struct case_t {
        char const* fen;
        Move move;
    };
    const case_t cases[] = {
        {"4k3/8/8/3Pp3/8/8/8/4K3 w", move_of("d5", "e6", en_passant, 1, 9)},
        {"4k3/8/8/8/3pP3/8/8/4K3 b", move_of("d4", "e3", en_passant, 9, 1)},
        {"r3k3/1P6/8/8/8/8/8/4K3 w", move_of("b7", "a8", promo_knight, 1, 12)},
        {"4k3/8/8/8/8/8/8/R3K3 w", move_of("e1", "a1", castling, 6)},
        {"5kr1/8/8/8/8/8/8/4K3 b", move_of("f8", "g8", castling, 14)},
        {"4k3/8/8/3p4/4P3/8/8/4K3 w", move_of("e4", "d5", normal_move, 1, 9)},
    };
    for (case_t const& c : cases) {
        BoardPosition board = board_of(c.fen);
        board.make_move(c.move);
        EXPECT_FALSE(board.board_is_inconsistent()) << c.move.dump();
        board.unmake_move(c.move);
        EXPECT_FALSE(board.board_is_inconsistent()) << c.move.dump();
    }
}

// Unmaking such a move leaves another board than before, so that there is nothing to restore.
TEST(BoardPosition, WordThatContradictsTheBoardMakesItInconsistentForGood) {
    struct case_t {
        char const* fen;
        Move move;
    };
    const case_t cases[] = {
        // A knight and a bishop stand on the targets.
        {start.c_str(), move_of("e1", "h1", castling, 6)},
        {"4k3/8/8/8/8/8/8/4K3 w", move_of("e1", "h1", castling, 6)},
        {"4k3/8/8/8/8/8/8/R6K w", move_of("e1", "a1", castling, 6)},
        {"4k3/8/8/8/8/8/8/R1N1K3 w", move_of("e1", "a1", castling, 6)},
        {"4k3/8/8/8/8/8/8/R2NK3 w", move_of("e1", "a1", castling, 6)},
        {"4k3/8/8/3P4/8/8/8/4K3 w", move_of("d5", "e6", en_passant, 1, 9)},
        {"4k3/8/4n3/3Pp3/8/8/8/4K3 w", move_of("d5", "e6", en_passant, 1, 9)},
        {"4k3/8/8/4p3/8/8/8/4K3 w", move_of("d5", "e6", en_passant, 1, 9)},
        {"r3k3/1P6/8/8/8/8/8/4K3 w", move_of("b7", "a8", promo_queen, 1)},
        {"4k3/8/8/8/8/8/8/4K3 w", move_of("b7", "a8", promo_queen, 1)},
        {"4k3/8/8/8/8/8/8/4K3 w", move_of("b7", "b7", normal_move, 1, 1)},
        {"4k3/1P6/8/8/8/8/8/4K3 w", move_of("b7", "b7", normal_move, 1)},
    };
    for (case_t const& c : cases) {
        BoardPosition board = board_of(c.fen);
        board.make_move(c.move);
        EXPECT_TRUE(board.board_is_inconsistent()) << c.move.dump();
        board.unmake_move(c.move);
        EXPECT_TRUE(board.board_is_inconsistent()) << c.move.dump();
        board.clear();
        EXPECT_FALSE(board.board_is_inconsistent());
    }
}

TEST(BoardPosition, ForeignNormalMoveThatContradictsTheBoardMakesItInconsistentForGood) {
    const Move moves[] = {
        // From a rook, from an empty square, and to a square that is not as the word says.
        move_of("a1", "a3", normal_move, white_pawn),
        move_of("a4", "a5", normal_move, white_pawn),
        move_of("b1", "d2", normal_move, white_knight),
        move_of("b1", "c3", normal_move, white_knight, black_pawn),
    };
    for (Move const& move : moves) {
        BoardPosition board = board_of(start);
        board.note_foreign_move(move);
        board.make_move(move);
        EXPECT_TRUE(board.board_is_inconsistent()) << move.dump();
        board.unmake_move(move);
        EXPECT_TRUE(board.board_is_inconsistent()) << move.dump();
        // What is true does not make it good again.
        board.note_foreign_move(Move());
        EXPECT_TRUE(board.board_is_inconsistent()) << move.dump();
        board.clear();
        EXPECT_FALSE(board.board_is_inconsistent());
    }
}

TEST(BoardPosition, ForeignMoveThatIsTrueLeavesTheBoardConsistent) {
    BoardPosition board = board_of(middle_game);
    for (Move const& move : {Move(), move_of("e2", "a6", normal_move, white_bishop, black_bishop),
                             move_of("a1", "b1", normal_move, white_rook),
                             move_of("e1", "h1", castling, white_king)}) {
        board.note_foreign_move(move);
        EXPECT_FALSE(board.board_is_inconsistent()) << move.dump();
    }
}

}  // namespace
}  // namespace orvelin
