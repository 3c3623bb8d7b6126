#pragma once

#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "book/bk_move.h"
#include "book/book_record.h"
#include "position/chess_position.h"
#include "position/square.h"
#include "support/book_file.h"
#include "support/shared_tables.h"

namespace orvelin::test {

/// The key under which a book holds the position.
inline std::uint64_t book_key(std::string const& fen) {
    ChessPosition position(shared_tables());
    position.fen(fen);
    return position.get_hash();
}

/// The word of a move given as "e2e4", or "a7a8q" for a promotion. Castling is the king taking his
/// own rook.
inline int book_word(std::string const& move) {
    BKmove word;
    word.set_from(Square(move.substr(0, 2)));
    word.set_to(Square(move.substr(2, 2)));
    if (move.size() > 4) {
        word.set_code(static_cast<char>(std::string(".nbrq").find(move[4])));
    }
    return word.dump();
}

/// An entry for a position and a move.
inline Book_record book_line(std::string const& fen, std::string const& move, int weight = 1) {
    return book_entry(book_key(fen), book_word(move), weight);
}

/// Puts a book where an engine that starts in the directory finds it.
inline void write_book(std::string const& name, std::string const& bytes) {
    std::ofstream file(name, std::ios::binary);
    file << bytes;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + name);
    }
}

}  // namespace orvelin::test
