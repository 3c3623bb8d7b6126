#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "analyse/game.h"
#include "analyse/record.h"

namespace orvelin::tools {

/// The last position that an output holds from an earlier run.
struct LastRecord {
    /// 0 when there is none.
    std::uint64_t number = 0;
    std::string fen;
    analyse::Receipt receipt;
};

/// A record, and the game that its position is of.
struct Answered {
    analyse::Record record;
    /// Null for a position without a game.
    std::shared_ptr<analyse::Game const> game;
};

/// Where records go, in order.
class RecordOutput {
 public:
    virtual ~RecordOutput() = default;
    RecordOutput() = default;
    RecordOutput(RecordOutput const&) = delete;
    RecordOutput& operator=(RecordOutput const&) = delete;

    /// What was there at the start.
    virtual LastRecord const& last() const = 0;
    /// Adds what is to be written of the record. Any thread, many at a time.
    virtual void render(analyse::Record const& record, std::string& text) const = 0;
    /// Writes what was rendered of these records. When it returns, all of it is written.
    /// @throws std::runtime_error when that fails; nothing is then left half written, as far as the
    /// output can take anything back.
    virtual void write(std::vector<Answered> const& answered, std::string const& text) = 0;
    /// Writes what was held back. Called once, when no record follows.
    virtual void finish() {}
};

}  // namespace orvelin::tools
