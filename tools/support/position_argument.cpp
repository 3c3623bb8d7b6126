#include "support/position_argument.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "position/bit_board.h"
#include "position/chess_position.h"
#include "position/masks.h"
#include "position/square.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

void require(bool condition, std::string const& fault) {
    if (!condition) {
        throw UsageError("bad FEN: " + fault);
    }
}

std::vector<std::string> split_fields(std::string const& fen) {
    std::istringstream in(fen);
    std::vector<std::string> fields;
    for (std::string field; in >> field;) {
        fields.push_back(field);
    }
    require(fields.size() >= 2, "the placement and the side to move are needed");
    require(fields.size() <= 6, "something stands behind the move number: " + fields.back());
    constexpr std::array<char const*, 4> otherwise{"-", "-", "0", "1"};
    while (fields.size() < 6) {
        fields.emplace_back(otherwise[fields.size() - 2]);
    }
    return fields;
}

void check_rank(std::string const& rank) {
    int files = 0;
    for (char const letter : rank) {
        if (letter >= '1' && letter <= '8') {
            files += letter - '0';
        } else {
            require(std::string_view("PNBRQKpnbrqk").find(letter) != std::string_view::npos,
                    std::string("'") + letter + "' is no man");
            ++files;
        }
    }
    require(files == 8, "the rank \"" + rank + "\" is not 8 squares long");
}

void check_placement(std::string const& placement) {
    int ranks = 0;
    std::istringstream in(placement + "/");
    for (std::string rank; std::getline(in, rank, '/'); ++ranks) {
        check_rank(rank);
    }
    require(ranks == 8, "the placement has " + std::to_string(ranks) + " ranks, not 8");
}

void check_number(std::string const& text, char const* what) {
    bool const digits = std::all_of(text.begin(), text.end(), [](char letter) {
        return std::isdigit(static_cast<unsigned char>(letter)) != 0;
    });
    require(digits && text.size() <= 4,
            "the " + std::string(what) + " is not a number up to 9999: " + text);
}

void check_fields(std::vector<std::string> const& fields) {
    check_placement(fields[0]);
    require(fields[1] == "w" || fields[1] == "b", "the side to move is not w or b: " + fields[1]);
    require(fields[2] == "-" ||
                fields[2].find_first_not_of("KQkqABCDEFGHabcdefgh") == std::string::npos,
            "these are no castling rights: " + fields[2]);
    std::string const& target = fields[3];
    require(target == "-" || (target.size() == 2 && target[0] >= 'a' && target[0] <= 'h' &&
                              target[1] == (fields[1] == "w" ? '6' : '3')),
            "this is no en passant square for the side to move: " + target);
    check_number(fields[4], "half-move clock");
    check_number(fields[5], "move number");
}

/// Men beyond the first set of their kind were pawns once.
bool promotions_explain(int pawns, int knights, int bishops, int rooks, int queens) {
    return pawns + std::max(knights - 2, 0) + std::max(bishops - 2, 0) + std::max(rooks - 2, 0) +
               std::max(queens - 1, 0) <=
           8;
}

void check_men(ChessPosition const& position) {
    require(position.white_king().popcount() == 1, "White has not exactly one king");
    require(position.black_king().popcount() == 1, "Black has not exactly one king");
    require(!((position.white_pawn() | position.black_pawn()) & (rank1 | rank8)),
            "a pawn stands on the first or the last rank");
    require(promotions_explain(position.white_pawn().popcount(), position.white_knight().popcount(),
                               position.white_bishop().popcount(), position.white_rook().popcount(),
                               position.white_queen().popcount()),
            "White has more men than promotions can give");
    require(promotions_explain(position.black_pawn().popcount(), position.black_knight().popcount(),
                               position.black_bishop().popcount(), position.black_rook().popcount(),
                               position.black_queen().popcount()),
            "Black has more men than promotions can give");
}

void check_castling(ChessPosition const& position) {
    for (int bit = 0; bit < 16; ++bit) {
        if ((position.castlingrights() >> bit & 1) == 0) {
            continue;
        }
        bool const white = bit < 8;
        Square const rook(white ? bit : bit - 8 + 56);
        BitBoard const rooks = white ? position.white_rook() : position.black_rook();
        BitBoard const king = white ? position.white_king() & rank1 : position.black_king() & rank8;
        require(king && (rooks & rook.bitboard()),
                "there is no king or no rook to castle with at " + rook.name());
    }
}

void check_en_passant(ChessPosition const& position) {
    Square const target = position.ep();
    if (target.id() > 63) {
        return;
    }
    bool const white = position.white_to_move();
    int const forward = white ? 8 : -8;
    BitBoard const pawns = white ? position.black_pawn() : position.white_pawn();
    BitBoard const passed = target.bitboard() | Square(target.id() + forward).bitboard();
    require((pawns & Square(target.id() - forward).bitboard()) && !(position.pieces() & passed),
            "no pawn has just passed " + target.name());
}

}  // namespace

void set_position(ChessPosition& position, std::string const& fen) {
    std::vector<std::string> const fields = split_fields(fen);
    check_fields(fields);
    std::string text = fields[0];
    for (std::size_t i = 1; i < fields.size(); ++i) {
        text += ' ' + fields[i];
    }
    position.fen(text);
    check_men(position);
    check_castling(position);
    check_en_passant(position);
    bool const mover_in_check = position.white_to_move()
                                    ? position.white_attacks(position.black_king())
                                    : position.black_attacks(position.white_king());
    require(!mover_in_check, "the side that is not to move is in check");
}

}  // namespace orvelin::tools
