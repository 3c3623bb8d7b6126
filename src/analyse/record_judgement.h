#pragma once

#include <optional>
#include <string>

#include "analyse/move_judgement.h"
#include "analyse/sentence.h"

namespace orvelin::analyse {

/// What a record says of the move that was played.
struct RecordJudgement {
    move_mark mark = move_mark::none;
    /// Of the points to be expected, a thousand for a win and half as many for a draw, those that
    /// the move gives away; a multiple of a half.
    double lost = 0;
    /// 0 to 100, as move_accuracy() has it; nothing when there was no other move.
    std::optional<double> accuracy;
    std::string sentence;

    bool operator==(RecordJudgement const& other) const = default;
};

/// Nothing when the move or the best one was not searched.
std::optional<RecordJudgement> record_judgement(MoveInGame const& move, SentenceWriter& writer,
                                                Tables const& tables);

}  // namespace orvelin::analyse
