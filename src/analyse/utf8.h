#pragma once

#include <string>
#include <string_view>

namespace orvelin::analyse {

/// The text as UTF-8: unchanged when it is that already, else each byte that belongs to no whole
/// letter is taken for one of ISO 8859-1, in which games are written by older programs.
std::string valid_utf8(std::string_view text);

}  // namespace orvelin::analyse
