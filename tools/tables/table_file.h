#pragma once

#include <string>

#include "tables/ending.h"

namespace orvelin {
class Egt4Pieces;
}  // namespace orvelin

namespace orvelin::tools {

/// The ending that the first word of a table file names. The rest of the file is not looked at.
/// @throws std::runtime_error when the file cannot be read or begins with no known ending.
ending_t const& ending_of_file(std::string const& path);

/// The ending of this name, in any case, else that of the table file of this path.
/// @throws std::runtime_error as ending_of_file().
ending_t const& ending_of_source(std::string const& source);

/// Reads a table file into the object, which gives nothing but values by key from then on:
/// `Egt4Pieces::load` may leave it with piece ids by which no position is legal.
///
/// Stricter than `Egt4Pieces::load`, which takes any number, cuts it to a byte and asks little of
/// the last word: the file must be whole, and each number one that a finished table can hold.
/// @throws std::runtime_error that names the first fault; the object is then as it was.
void load_table(std::string const& path, Egt4Pieces& values);

/// Writes the file anew, whole or not at all.
/// @throws std::runtime_error when it cannot; the file is then as it was.
void save_table(Egt4Pieces const& table, std::string const& path);

}  // namespace orvelin::tools
