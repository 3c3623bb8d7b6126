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

}  // namespace orvelin::fuzz
