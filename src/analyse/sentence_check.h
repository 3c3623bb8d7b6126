#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analyse/move_judgement.h"

namespace orvelin {
struct Tables;
}

namespace orvelin::analyse {

/// Reads a sentence of SentenceWriter as a reader would, and holds all that it names against the
/// data: each number (changes of terms and groups, scores, mates), each move, which must be legal
/// at its place and be one of the lines, and the pieces that are won or lost, counted on the boards
/// of the leaves. Gives what is wrong, a line each; nothing may be left over that is not
/// understood.
std::vector<std::string> faults_of_sentence(std::string_view sentence, MoveInGame const& move,
                                            Tables const& tables);

}  // namespace orvelin::analyse
