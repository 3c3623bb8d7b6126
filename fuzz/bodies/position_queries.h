#pragma once

namespace orvelin {
class ChessPosition;
struct Tables;
}  // namespace orvelin

namespace orvelin::fuzz {

/// One set of tables for all inputs, with a small transposition table.
Tables& small_tables();

/// Asks everything that can be asked of a position without searching: texts, keys, attackers,
/// moves, each of them made and unmade, the evaluation. A sound position must come back from each
/// move as it was; one that is not sound may be another afterwards.
void query(ChessPosition& position);

/// Searches a few hundred nodes of the position and leaves it in peace.
/// @throws std::logic_error for pieces that are none, which only an illegal promotion can make.
void search_a_little(ChessPosition const& position);

}  // namespace orvelin::fuzz
