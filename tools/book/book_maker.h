#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "book/bk_move.h"
#include "book/book_contents.h"
#include "book/book_line.h"
#include "generation/move_generator.h"
#include "position/chess_position.h"

namespace orvelin {
struct Tables;
}  // namespace orvelin

namespace orvelin::tools {

/// Plays lines of moves and collects the entries of a book from them.
class BookMaker {
 public:
    /// All lines begin in the position of the FEN; of each line the first `max_ply` moves count.
    /// @throws UsageError when the FEN is bad.
    BookMaker(Tables const& tables, std::string const& fen, std::uint64_t max_ply);

    /// Adds a line. A move that occurs in the same position several times counts once.
    /// @throws std::runtime_error when a move is illegal or has another weight than elsewhere.
    void add(book_line_t const& line);

    BookContents& contents() { return contents_; }

 private:
    struct played_move_t {
        std::uint64_t key;
        BKmove move;
    };

    void play(written_move_t const& written);
    void count_moves(std::uint64_t games);

    MoveGenerator generator_;
    ChessPosition position_;
    std::uint64_t max_ply_;
    /// The moves of the line so far that count.
    std::vector<played_move_t> played_;
    BookContents contents_;
};

}  // namespace orvelin::tools
