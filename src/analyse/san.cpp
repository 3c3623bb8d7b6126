#include "analyse/san.h"

#include <algorithm>
#include <cstddef>

#include "analyse/san_text.h"
#include "generation/move_generator.h"
#include "generation/tables.h"
#include "play/position_reader.h"
#include "position/castling_targets.h"

namespace orvelin::analyse {

namespace {

/// The castling that the text writes as a step of the king to its square, or onto its own rook.
Move find_castling(std::span<Move const> legal, SanText const& text) {
    if (text.piece != no_piece && text.piece != white_king) {
        return Move();
    }
    for (Move const& move : legal) {
        bool const from = (text.from_file < 0 || move.from().file_number() == text.from_file) &&
                          (text.from_rank < 0 || move.from().rank_number() == text.from_rank);
        if (move.code() == castling && from && text.promotion == normal_move &&
            castling_targets(move).king.id() == text.to && text.to != move.from().id()) {
            return move;
        }
    }
    return Move();
}

/// The generator's own form of a move, whose check bit is true; the empty move when there is none.
Move legal_form_among(std::span<Move const> legal, Move const& move) {
    auto const found = std::find_if(legal.begin(), legal.end(), [&](Move const& other) {
        return move.from() == other.from() && move.to() == other.to() &&
               move.code() == other.code();
    });
    return found == legal.end() ? Move() : *found;
}

/// The letters that tell the move from those of other pieces of its kind.
std::string origin(std::span<Move const> legal, Move const& move) {
    std::string const square = move.from().name();
    bool others = false;
    bool same_file = false;
    bool same_rank = false;
    for (Move const& other : legal) {
        if (other.piece_id() != move.piece_id() || other.to() != move.to() ||
            other.from() == move.from() || other.code() == castling) {
            continue;
        }
        others = true;
        same_file |= other.from().file_number() == move.from().file_number();
        same_rank |= other.from().rank_number() == move.from().rank_number();
    }
    if (!others) {
        return "";
    }
    if (!same_file) {
        return square.substr(0, 1);
    }
    return same_rank ? square : square.substr(1);
}

std::string without_check(std::span<Move const> legal, Move const& move) {
    if (move.code() == castling) {
        return move.to() > move.from() ? "O-O" : "O-O-O";
    }
    bool const captures = move.capture_id() != no_piece || move.code() == en_passant;
    std::string text;
    if (move.piece().pawn()) {
        text = captures ? std::string(1, move.from().file()) : "";
    } else {
        text = std::string(1, " PNBRQK"[move.piece_id() & 7]) + origin(legal, move);
    }
    text += (captures ? "x" : "") + move.to().name();
    if (move.code() >= promo_queen && move.code() <= promo_knight) {
        text += {'=', "QRBN"[move.code() - promo_queen]};
    }
    return text;
}

std::string san_of(ChessPosition& position, Tables const& tables, std::span<Move const> legal,
                   Move const& move) {
    std::string text = without_check(legal, move);
    if (move.check()) {
        position.make_move(move);
        text += play::legal_moves(position, tables).empty() ? '#' : '+';
        position.unmake_move();
    }
    return text;
}

ChessPosition position_of(std::string const& fen, Tables const& tables) {
    ChessPosition position(tables);
    position.fen(fen);
    return position;
}

}  // namespace

FoundMove find_san(std::span<Move const> legal, std::string_view text) {
    SanText const wanted = parse_san(text);
    if (wanted.what == SanText::form::none) {
        return {};
    }
    if (wanted.what == SanText::form::null_move) {
        return {Move(), san_result::null_move};
    }
    Move found;
    for (Move const& move : legal) {
        if (is_meant(wanted, move)) {
            if (found.word() != 0) {
                return {Move(), san_result::ambiguous};
            }
            found = move;
        }
    }
    if (found.word() == 0 && wanted.what == SanText::form::step) {
        found = find_castling(legal, wanted);
    }
    return {found, found.word() == 0 ? san_result::illegal : san_result::found};
}

std::string why_not_found(san_result result, std::string const& fen) {
    switch (result) {
        case san_result::no_move:
            return "is no move, in " + fen;
        case san_result::null_move:
            return "is a null move, in " + fen;
        case san_result::illegal:
            return "is not legal in " + fen;
        case san_result::ambiguous:
            return "may mean several moves in " + fen;
        case san_result::found:
            break;
    }
    return "";
}

std::string letters_hint(san_result result, std::string_view text) {
    constexpr std::string_view foreign = "SLTDPFCV";
    bool const may_be = result == san_result::no_move && text.size() > 2 &&
                        foreign.find(text.front()) != std::string_view::npos;
    return may_be ? "; pieces are written with the English letters K, Q, R, B, N" : "";
}

Move legal_form(ChessPosition const& position, Tables const& tables, Move const& move) {
    return legal_form_among(play::legal_moves(position, tables), move);
}

std::string san(ChessPosition& position, Tables const& tables, Move const& move) {
    std::vector<Move> const legal = play::legal_moves(position, tables);
    Move const found = legal_form_among(legal, move);
    return found.word() == 0 ? "" : san_of(position, tables, legal, found);
}

std::vector<std::string> san_line(ChessPosition& position, Tables const& tables,
                                  std::span<Move const> moves) {
    std::vector<std::string> words;
    for (Move const& move : moves) {
        std::vector<Move> const legal = play::legal_moves(position, tables);
        Move const found = legal_form_among(legal, move);
        if (found.word() == 0) {
            break;
        }
        words.push_back(san_of(position, tables, legal, found));
        position.make_move(found);
    }
    for (std::size_t i = 0; i < words.size(); ++i) {
        position.unmake_move();
    }
    return words;
}

std::vector<std::string> san_line(std::string const& fen, Tables const& tables,
                                  std::span<Move const> moves) {
    ChessPosition position = position_of(fen, tables);
    return san_line(position, tables, moves);
}

std::string move_number_text(ChessPosition const& position) {
    return std::to_string(position.move_number()) + (position.white_to_move() ? "." : "...");
}

std::string numbered_line(ChessPosition& position, Tables const& tables,
                          std::span<Move const> moves) {
    int number = position.move_number();
    bool white = position.white_to_move();
    std::string line = white ? "" : move_number_text(position);
    for (std::string const& word : san_line(position, tables, moves)) {
        if (white) {
            line += (line.empty() ? "" : " ") + std::to_string(number) + '.';
        } else if (line.back() != '.') {
            line += ' ';
        }
        line += word;
        number += white ? 0 : 1;
        white = !white;
    }
    return line;
}

std::string numbered_line(std::string const& fen, Tables const& tables,
                          std::span<Move const> moves) {
    ChessPosition position = position_of(fen, tables);
    return numbered_line(position, tables, moves);
}

}  // namespace orvelin::analyse
