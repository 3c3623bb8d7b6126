#pragma once

#include <string>

namespace orvelin::tools {

/// The statements that make the tables of docs/analyse.md where there are none.
std::string sqlite_schema();

/// A statement that adds a row of so many values to a table.
std::string insert_statement(std::string const& table, int values);

/// The numbers that the tables give to lines beside 1, 2, 3 for the lines of a position.
inline constexpr int played_line = -1;
/// The best line of all moves but the best one.
inline constexpr int rest_line = -2;
/// In the table of the terms: those of the position itself.
inline constexpr int root_terms = 0;

}  // namespace orvelin::tools
