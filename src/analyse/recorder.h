#pragma once

#include "analyse/asked.h"
#include "analyse/line_text.h"
#include "analyse/position_search.h"
#include "analyse/record.h"
#include "analyse/sentence.h"

namespace orvelin::analyse {

/// An engine that answers, and its answer as a record. For one thread.
class Recorder {
 public:
    /// What it gives depends on its arguments alone. After interrupt() it is worth nothing.
    Record record(Asked const& asked, Request const& request);
    /// From another thread: ends the search that runs, if one does.
    void interrupt() { search_.interrupt(); }

    PositionSearch& search() { return search_; }

 private:
    RecordLine line_of(Asked const& asked, Request const& request, Line const& line);
    PlayedMove played_move(Asked const& asked, Request const& request, Result const& result);

    PositionSearch search_;
    LineText text_{search_.tables()};
    SentenceWriter writer_{search_.tables()};
};

}  // namespace orvelin::analyse
