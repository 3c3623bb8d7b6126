#pragma once

#include <string>
#include <vector>

namespace orvelin {
struct Tables;
}

namespace orvelin::test {

/// FENs of positions a few random moves into games from random Chess960 arrays; always the
/// same ones.
std::vector<std::string> random_chess960_fens(Tables const& tables, int count);

}  // namespace orvelin::test
