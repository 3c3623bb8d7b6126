#include "search/analysis.h"

#include <stdexcept>

#include "position/chess_position.h"

namespace orvelin {

Analysis::Analysis(ChessPosition& position, Tables& tables) : AnalysisState(position, tables) {
    init(position);
    clear_hash();
}

void Analysis::init(ChessPosition const& position) {
    if (get_status() == searching_status) {
        throw std::logic_error("Analysis::init  init() call while thinking not allowed");
    }
    if (&position != &position_) {
        position_ = position;
    }
    control_.reset();
    evaluation_.init();
    time_manager_.reset();
}

void Analysis::reset() {
    limits_.reset();
    time_manager_.reset();
}

}  // namespace orvelin
