#pragma once

#include "board/json_writer.h"
#include "board/request.h"

/// What a page can ask for: each command writes the members of its answer.
/// @throws RequestError when there is none.
namespace orvelin::board {

struct CoreState;

using command_t = void (*)(Request const& request, CoreState& core, JsonWriter& answer);

/// The position behind the moves of a game: its legal moves, and whether the game is over.
void answer_position(Request const& request, CoreState& core, JsonWriter& answer);
/// The moves of a line from there on, as players write them, and the positions behind them.
void answer_line(Request const& request, CoreState& core, JsonWriter& answer);
/// The static evaluation of the position, by groups of terms.
void answer_evaluation(Request const& request, CoreState& core, JsonWriter& answer);
/// The games of a PGN text.
void answer_pgn(Request const& request, CoreState& core, JsonWriter& answer);
/// A game as a PGN text.
void answer_to_pgn(Request const& request, CoreState& core, JsonWriter& answer);
/// The record of an analysis of one position of a game, as orvelin-analyse writes it. Takes as long
/// as the search.
void answer_record(Request const& request, CoreState& core, JsonWriter& answer);
/// The position behind a line whose evaluation is the score of the line.
void answer_leaf(Request const& request, CoreState& core, JsonWriter& answer);
/// What the table of an ending knows of the position and its moves. Where the table is not whole
/// yet it is built on for a step, and the answer tells how far that is.
void answer_ending(Request const& request, CoreState& core, JsonWriter& answer);
/// The moves of the opening book.
void answer_book(Request const& request, CoreState& core, JsonWriter& answer);

}  // namespace orvelin::board
