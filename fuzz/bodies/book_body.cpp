#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "bodies/fuzz_bodies.h"
#include "bodies/memory_file.h"
#include "bodies/position_queries.h"
#include "book/bk_move.h"
#include "book/book.h"
#include "book/book_record.h"
#include "position/chess_position.h"
#include "position/move.h"

namespace orvelin::fuzz {

namespace {

constexpr std::size_t bytes_of_key = 8;

/// The entry that stands in the book at this place, the places counted round and round.
Book_record entry_at(std::string_view book, std::uint64_t place) {
    std::uint64_t const entries = book.size() / Book_record::size;
    return Book_record(book.data() + place % entries * Book_record::size);
}

/// Looks the key up and makes the move that comes of it, legal or not.
void look_up(Book& book, std::uint64_t key, ChessPosition& position) {
    BKmove const found(book.get_move(key));
    Move const move = found(position);
    move.algebraic(false);
    position.make_move(move);
    position.fen();
    position.unmake_move();
}

}  // namespace

void fuzz_book(std::string_view input) {
    if (input.size() < bytes_of_key) {
        return;
    }
    Book_record wanted;
    std::copy_n(input.data(), bytes_of_key, wanted.bytes());
    std::string_view const bytes = input.substr(bytes_of_key);
    MemoryFile const file(bytes);
    Book book;
    book.set_name(file.name());
    book.open();

    ChessPosition position(small_tables());
    position.newgame();
    look_up(book, wanted.get_key(), position);
    look_up(book, 0, position);
    look_up(book, std::numeric_limits<std::uint64_t>::max(), position);
    if (bytes.size() < Book_record::size) {
        return;
    }
    look_up(book, entry_at(bytes, wanted.get_key()).get_key(), position);
}

}  // namespace orvelin::fuzz
