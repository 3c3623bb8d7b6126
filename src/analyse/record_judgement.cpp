#include "analyse/record_judgement.h"

#include <cmath>

namespace orvelin::analyse {

std::optional<RecordJudgement> record_judgement(MoveInGame const& move, SentenceWriter& writer,
                                                Tables const& tables) {
    Judgement const judgement = judge(move, tables);
    if (!judgement.known) {
        return std::nullopt;
    }
    RecordJudgement record;
    record.mark = judgement.mark;
    // The chances are whole thousandths, and so half of them is the grain.
    record.lost = std::round(judgement.loss() * 2000) / 2;
    record.accuracy = move_accuracy(judgement);
    record.sentence = writer.write(move, judgement);
    return record;
}

}  // namespace orvelin::analyse
