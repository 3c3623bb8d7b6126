#pragma once

#include <functional>
#include <memory>

#include "analyse/position_source.h"
#include "analyse/record.h"

namespace orvelin::tools {

/// Finds out what a record says of a position. Each belongs to one thread.
class Answerer {
 public:
    virtual ~Answerer() = default;
    /// What it gives depends on its arguments alone. After interrupt() it is worth nothing.
    virtual analyse::Record answer(Asked const& asked, Request const& request) = 0;
    /// From another thread: ends the search that runs, if one does.
    virtual void interrupt() {}
};

/// Makes one for each thread, in that thread or another.
using answerer_maker_t = std::function<std::unique_ptr<Answerer>()>;

/// One with an engine of its own.
std::unique_ptr<Answerer> make_engine_answerer();

}  // namespace orvelin::tools
