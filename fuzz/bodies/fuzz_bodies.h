#pragma once

#include <string_view>

namespace orvelin::fuzz {

// What one run of each fuzz target does with its input. An input that ends the engine by design
// ends the function early; a fault ends the process.

/// A FEN text: reads it, writes it back, asks everything that can be asked of the position, and
/// searches a few hundred nodes.
void fuzz_fen(std::string_view input);

/// A letter that chooses one of a few positions, then move texts between blanks: converts and
/// makes them, legal or not, and asks and searches as fuzz_fen().
void fuzz_move_text(std::string_view input);

/// Lines of what follows `setoption` in a session, then one search with these options.
void fuzz_setoption(std::string_view input);

/// Eight bytes of a key, then the bytes of an opening book.
void fuzz_book(std::string_view input);

/// A letter and a text. `h`: the text is a table file from its begin on. `t`: the text stands in
/// place of the last numbers and the end of a good table file. `p`: the text is a position for a
/// good table.
void fuzz_table(std::string_view input);

/// The lines of a whole session with an engine, the handshake and the process left out. An empty
/// line waits for the end of the search.
void fuzz_session(std::string_view input);

// What orvelin-play reads. Nothing ends early there: no input is one that it may not survive.

/// What follows the word `position`, and once more as a FEN alone. From what is accepted a game can
/// be played on: moves, evaluation, a short search; and what was put right is accepted as it is.
void fuzz_play_position(std::string_view input);

/// Two letters that choose a position, the move overhead and the ply, then what follows `go`. The
/// limits are in range, and no plan of time is negative or above the clock.
void fuzz_play_go(std::string_view input);

/// Lines of what follows `setoption`: each leaves all options in range, and a refused one as they
/// were.
void fuzz_play_options(std::string_view input);

/// A letter that gives the size of the pieces in which the bytes behind it come in, another for the
/// longest line: the lines are the same whatever the pieces, and fit for the front.
void fuzz_play_lines(std::string_view input);

/// A PGN text: reads it twice in blocks of different sizes, and writes each good game and reads it
/// back.
void fuzz_pgn(std::string_view input);

/// A letter that chooses one of a few positions, then move texts between blanks: finds them in two
/// ways, and writes and makes those that are found.
void fuzz_san(std::string_view input);

/// Lines, each a request to the core of the board, or behind a `b` an opening book: each is
/// answered by an object, twice by the same one; what an answer tells is understood when it is
/// asked about.
void fuzz_board(std::string_view input);

}  // namespace orvelin::fuzz
