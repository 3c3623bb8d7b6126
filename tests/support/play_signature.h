#pragma once

#include "support/session_reader.h"

namespace orvelin::test {

// What the front of orvelin-play tells of searches, beside what is on record of them, so that both
// come down to the same signature as long as the search is the same.
//
// Of each search that has moves there is a line for each iteration that ended, with its depth,
// score, nodes and move, then one for each line of moves, and the best move with the nodes. What
// the front does not search as the engine does is left out, with what follows it in the session:
// a depth of 0.

/// The searches of a session, in this form, as they are on record.
session_t recorded_outcomes(session_t const& session);

/// The same searches, made by the searcher of orvelin-play.
session_t played_outcomes(session_t const& session);

}  // namespace orvelin::test
