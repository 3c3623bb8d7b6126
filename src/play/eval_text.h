#pragma once

#include <string>

namespace orvelin::play {

/// The report of the evaluation as a table with headings: a line for each term with both its parts
/// rounded to a tenth, and the total below. Lines of another form are left as they are.
std::string eval_text(std::string const& report);

}  // namespace orvelin::play
