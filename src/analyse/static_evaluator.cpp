#include "analyse/static_evaluator.h"

#include "analyse/term_scores.h"

namespace orvelin::analyse {

void StaticEvaluator::evaluate(std::string const& fen) {
    position_.fen(fen);
    evaluation_.forget();
    evaluation_.init();
    score_ = evaluation_.static_eval();
    terms_ = term_scores(evaluation_);
}

bool StaticEvaluator::is_sum() const {
    return is_sum_of_terms(evaluation_, terms_);
}

}  // namespace orvelin::analyse
