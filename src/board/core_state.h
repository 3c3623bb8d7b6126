#pragma once

#include "analyse/recorder.h"
#include "board/ending_tables.h"
#include "board/page_book.h"
#include "generation/tables.h"

namespace orvelin::board {

/// What commands share and keep from one request to the next. No answer depends on what was
/// searched before.
struct CoreState {
    analyse::Recorder recorder;
    PageBook book;
    EndingTables endings{tables().attacks};

    analyse::PositionSearch& search() { return recorder.search(); }
    Tables const& tables() { return search().tables(); }
};

}  // namespace orvelin::board
