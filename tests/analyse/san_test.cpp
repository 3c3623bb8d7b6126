#include "analyse/san.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analyse/move_finder.h"
#include "play/position_reader.h"
#include "support/chess960_positions.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::analyse::test {

namespace {

using orvelin::test::shared_tables;

ChessPosition set_up(std::string const& fen) {
    ChessPosition position(shared_tables());
    position.fen(fen);
    return position;
}

/// What the text is found to be, as the UCI text with castling onto the rook, or the kind of fault.
std::string found(std::string const& fen, std::string const& text) {
    ChessPosition const position = set_up(fen);
    FoundMove const move = find_san(play::legal_moves(position, shared_tables()), text);
    switch (move.result) {
        case san_result::found:
            return move.move.algebraic(true);
        case san_result::no_move:
            return "no move";
        case san_result::null_move:
            return "null move";
        case san_result::illegal:
            return "illegal";
        case san_result::ambiguous:
            return "ambiguous";
    }
    return "";
}

std::string written(std::string const& fen, std::string const& uci) {
    ChessPosition position = set_up(fen);
    return san(position, shared_tables(), play::find_legal_move(position, shared_tables(), uci));
}

struct example_t {
    std::string fen;
    std::string uci;
    std::string san;
};

std::vector<example_t> const examples{
    {positions::start, "e2e4", "e4"},
    {positions::start, "g1f3", "Nf3"},
    {positions::kiwipete, "e5g6", "Nxg6"},
    {positions::kiwipete, "d5e6", "dxe6"},
    {positions::kiwipete, "e1h1", "O-O"},
    {positions::kiwipete, "e1a1", "O-O-O"},
    {"4k3/8/8/8/8/8/8/4K2R w K - 0 1", "h1h8", "Rh8+"},
    {"6k1/5ppp/8/8/8/8/8/4K2R w K - 0 1", "h1h3", "Rh3"},
    {"6k1/5ppp/8/8/8/8/8/R3K3 w Q - 0 1", "a1a8", "Ra8#"},
    {"5rkr/5p1p/8/8/8/8/8/4K1R1 w - - 0 1", "g1g5", "Rg5#"},
    {"8/P3k3/8/8/8/8/8/4K3 w - - 0 1", "a7a8n", "a8=N"},
    {"1r6/P3k3/8/8/8/8/8/4K3 w - - 0 1", "a7b8q", "axb8=Q"},
    {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 2", "e5d6", "exd6"},
    // By file, by rank, by both; a pinned piece needs none.
    {"4k3/8/8/8/8/8/8/R3K2R w - - 0 1", "a1d1", "Rd1"},
    {"4k3/8/8/8/8/8/4K3/R6R w - - 0 1", "a1d1", "Rad1"},
    {"4k3/R7/8/8/8/8/4K3/R7 w - - 0 1", "a1a4", "R1a4"},
    {"k7/8/8/8/4Q2Q/8/8/K6Q w - - 0 1", "h4e1", "Qh4e1"},
    {"4k3/4r3/8/8/8/2N1N3/8/4K3 w - - 0 1", "c3d5", "Nd5"},
    {"5k2/8/8/8/8/8/8/4K2R w K - 0 1", "e1h1", "O-O+"},
};

TEST(SanTest, IsWritten) {
    for (example_t const& example : examples) {
        EXPECT_EQ(written(example.fen, example.uci), example.san) << example.fen;
    }
}

TEST(SanTest, IsReadAsWritten) {
    for (example_t const& example : examples) {
        EXPECT_EQ(found(example.fen, example.san), example.uci.substr(0, 5)) << example.san;
    }
}

TEST(SanTest, IsEmptyForWhatIsNotLegal) {
    ChessPosition position = set_up(positions::start);
    EXPECT_EQ(san(position, shared_tables(), Move()), "");
    EXPECT_EQ(san(position, shared_tables(),
                  Move(Square("e2"), Square("e5"), normal_move, white_pawn, no_piece)),
              "");
    EXPECT_EQ(position.fen(), positions::start);
}

TEST(SanTest, CheckIsKnownWhateverTheMoveSaysOfIt) {
    ChessPosition position = set_up("6k1/5ppp/8/8/8/8/8/R3K3 w Q - 0 1");
    Move move = play::find_legal_move(position, shared_tables(), "a1a8");
    move.check(false);
    EXPECT_EQ(san(position, shared_tables(), move), "Ra8#");
    EXPECT_EQ(legal_form(position, shared_tables(), move).check(), true);
}

struct reading_t {
    std::string fen;
    std::vector<std::string> texts;
    std::string found;
};

TEST(SanTest, IsReadAsRealDatabasesHaveIt) {
    std::string const promotes = "1r6/P3k3/8/8/8/8/8/4K3 w - - 0 1";
    std::string const passes = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 2";
    std::vector<reading_t> const readings{
        {positions::start,
         {"e4", "e4!", "e4!?", "e4??", "e4+", "e4#", "e2e4", "e2-e4", "ee4", "Pe4", "Pe2-e4",
          "e4++"},
         "e2e4"},
        {positions::start, {"Nf3", "Ngf3", "N1f3", "Ng1f3", "Ng1-f3", "g1f3", "Nf3!!"}, "g1f3"},
        {positions::kiwipete,
         {"O-O", "0-0", "o-o", "OO", "O-O+", "0-0!", "e1g1", "e1h1", "Kg1", "Ke1-g1"},
         "e1h1"},
        {positions::kiwipete, {"O-O-O", "0-0-0", "OOO", "e1c1", "e1a1", "Kc1"}, "e1a1"},
        {positions::kiwipete, {"dxe6", "de6", "d5e6", "d5xe6", "dxe6!?", "d:e6", "d5-e6"}, "d5e6"},
        {promotes,
         {"a8=Q", "a8Q", "a8(Q)", "a8/Q", "a8=q", "a7a8q", "a7-a8=Q", "a8=Q+", "aa8=Q"},
         "a7a8q"},
        {promotes, {"axb8=N", "ab8N", "axb8(N)!", "a7b8n", "axb8n"}, "a7b8n"},
        {promotes, {"a8B", "a8=b", "a7a8b"}, "a7a8b"},
        {passes, {"exd6", "exd6e.p.", "exd6ep", "ed6", "e5d6", "exd6!"}, "e5d6"},
        {"4k3/4r3/8/8/8/2N1N3/8/4K3 w - - 0 1", {"Nd5", "Ncd5", "N3d5", "Nc3xd5"}, "c3d5"},
    };
    for (reading_t const& reading : readings) {
        for (std::string const& text : reading.texts) {
            EXPECT_EQ(found(reading.fen, text), reading.found) << text;
        }
    }
}

TEST(SanTest, CastlingAfterFischerIsToldFromSteps) {
    // The king may step to g1, and castle to it.
    std::string const step = "4k3/8/8/8/8/8/8/5K1R w H - 0 1";
    EXPECT_EQ(found(step, "O-O"), "f1h1");
    EXPECT_EQ(found(step, "Kg1"), "f1g1");
    EXPECT_EQ(found(step, "f1g1"), "f1g1");
    EXPECT_EQ(found(step, "f1h1"), "f1h1");
    // The rook stands where the king goes.
    std::string const close = "4k3/8/8/8/8/8/8/5KR1 w G - 0 1";
    EXPECT_EQ(found(close, "O-O"), "f1g1");
    EXPECT_EQ(found(close, "Kg1"), "f1g1");
    EXPECT_EQ(found(close, "Kxg1"), "f1g1");
}

TEST(SanTest, WhatIsNoMoveIsToldFromWhatIsNotLegal) {
    for (std::string const text :
         {"",   "+",   "e",     "4",    "ex",      "e9",      "i4",   "K",
          "Nf", "e4e", "hello", "O",    "O-O-O-O", "Nf3f3f3", "4e",   "e2e4e5",
          "=Q", "(Q)", "8=Q",   "Qe4=", "\xFF",    "1e2e4",   "e4=Q)"}) {
        EXPECT_EQ(found(positions::start, text), "no move") << text;
    }
    for (std::string const text :
         {"e5", "Nf4", "O-O", "exd3", "d3e4", "Kg1", "e4=Q", "a8=Q", "Ke2"}) {
        EXPECT_EQ(found(positions::start, text), "illegal") << text;
    }
    for (std::string const text : {"--", "Z0", "0000", "null"}) {
        EXPECT_EQ(found(positions::start, text), "null move") << text;
    }
    EXPECT_EQ(found("4k3/8/8/8/8/8/4K3/R6R w - - 0 1", "Rd1"), "ambiguous");
    // A pawn that goes straight names no file, one that captures does.
    EXPECT_EQ(found("4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1", "d5"), "illegal");
    EXPECT_EQ(found("1r6/P3k3/8/8/8/8/8/4K3 w - - 0 1", "a8"), "illegal");
}

TEST(SanTest, LineIsWrittenWithNumbers) {
    Tables& tables = shared_tables();
    ChessPosition position = set_up("6k1/5ppp/8/8/8/8/8/R3K3 b Q - 3 17");
    std::vector<Move> moves;
    for (std::string const text : {"h7h6", "a1a8", "g8h7", "a8a7"}) {
        moves.push_back(play::find_legal_move(position, tables, text));
        position.make_move(moves.back());
    }
    std::string const fen = "6k1/5ppp/8/8/8/8/8/R3K3 b Q - 3 17";
    EXPECT_EQ(san_line(fen, tables, moves), (std::vector<std::string>{"h6", "Ra8+", "Kh7", "Ra7"}));
    EXPECT_EQ(numbered_line(fen, tables, moves), "17...h6 18.Ra8+ Kh7 19.Ra7");
    ChessPosition later = set_up(fen);
    later.make_move(moves.front());
    EXPECT_EQ(numbered_line(later, tables, std::span(moves).subspan(1)), "18.Ra8+ Kh7 19.Ra7");
    EXPECT_EQ(later.last_move(), moves.front());
    // What is not legal ends the line.
    EXPECT_EQ(numbered_line(later, tables, moves), "");
    EXPECT_EQ(numbered_line(fen, tables, {}), "17...");
}

/// Every legal move is read back from what is written of it, the short way and by all legal moves.
void expect_all_moves_back(std::string const& fen) {
    Tables& tables = shared_tables();
    ChessPosition position = set_up(fen);
    MoveFinder finder(tables);
    std::vector<Move> const legal = play::legal_moves(position, tables);
    for (Move const& move : legal) {
        std::string const text = san(position, tables, move);
        EXPECT_EQ(find_san(legal, text).move, move) << text << " in " << fen;
        for (std::string const& form : {text, move.algebraic(true)}) {
            EXPECT_EQ(finder.find(position, form).move, move) << form << " in " << fen;
        }
    }
    EXPECT_EQ(position.fen(), set_up(fen).fen());
}

TEST(SanTest, AllMovesAreReadBack) {
    for (char const* const fen :
         {positions::start, positions::kiwipete, positions::all_castlings, positions::rook_ending,
          positions::promotions, positions::promotion_by_capture, positions::quiet_middle_game,
          "4k3/8/8/8/8/8/8/QQQQK1NN w - - 0 1", "8/8/8/2k5/3Pp3/8/8/4K3 b - d3 0 1"}) {
        expect_all_moves_back(fen);
    }
    for (std::string const& fen : orvelin::test::random_chess960_fens(shared_tables(), 100)) {
        expect_all_moves_back(fen);
    }
}

// A text that means a move of every square and piece, legal or not.
TEST(MoveFinderTest, FindsWhatAllLegalMovesHave) {
    Tables& tables = shared_tables();
    MoveFinder finder(tables);
    for (char const* const fen :
         {positions::start, positions::kiwipete, positions::rook_ending, positions::promotions,
          "4k3/4r3/8/8/8/2N1N3/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/QQQQK1NN w - - 0 1",
          "8/8/8/2k5/3Pp3/8/8/4K3 b - d3 0 1"}) {
        ChessPosition const position = set_up(fen);
        std::vector<Move> const legal = play::legal_moves(position, tables);
        for (std::string const piece :
             {"", "N", "B", "R", "Q", "K", "a", "d", "e", "Nb", "Ra", "Q1"}) {
            for (int to = 0; to < 64; ++to) {
                for (std::string const end : {"", "=Q"}) {
                    std::string const text = piece + Square(to).name() + end;
                    FoundMove const expected = find_san(legal, text);
                    FoundMove const move = finder.find(position, text);
                    EXPECT_EQ(move.result, expected.result) << text << " in " << fen;
                    EXPECT_EQ(move.move, expected.move) << text << " in " << fen;
                }
            }
        }
    }
}

}  // namespace

}  // namespace orvelin::analyse::test
