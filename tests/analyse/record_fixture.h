#pragma once

#include "analyse/move_judgement.h"
#include "analyse/record.h"
#include "support/shared_tables.h"

namespace orvelin::analyse::test {

/// What a record says of a move and its lines.
inline Record record_of(MoveInGame const& move) {
    Record record;
    record.fen = move.fen;
    for (Line const& line : move.result->lines) {
        record.lines.push_back(record_line(line, true, false));
    }
    record.played.emplace();
    record.played->move = move.played.algebraic(false);
    if (move.line() != nullptr) {
        record.played->line = record_line(*move.line(), true, false);
    }
    SentenceWriter writer(orvelin::test::shared_tables());
    record.played->judgement = record_judgement(move, writer, orvelin::test::shared_tables());
    return record;
}

}  // namespace orvelin::analyse::test
