#pragma once

#include <optional>

#include "analyse/record.h"
#include "analyse/sqlite_database.h"

namespace orvelin::tools {

// Parts of a record as the next values of a statement.

void bind_nulls(Statement& statement, int count);
void bind_optional(Statement& statement, std::optional<int> value);
/// Six values: the score in all its units.
void bind_score(Statement& statement, analyse::Score const& score);
/// Seven values: the move that was played, and what is said of it.
void bind_played(Statement& statement, std::optional<analyse::PlayedMove> const& played);

}  // namespace orvelin::tools
