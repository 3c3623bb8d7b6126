#pragma once

#include "analyse/position_search.h"

namespace orvelin::board {

/// What commands share and keep from one request to the next. No answer depends on what was
/// searched before.
struct CoreState {
    analyse::PositionSearch search;

    Tables const& tables() const { return search.tables(); }
};

}  // namespace orvelin::board
