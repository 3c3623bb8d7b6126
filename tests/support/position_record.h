#pragma once

#include <map>
#include <string>
#include <vector>

namespace orvelin::test {

/// The reference values of one position.
class PositionRecord {
 public:
    /// Takes the lines of a block, the first of which names the position.
    explicit PositionRecord(std::vector<std::string> const& lines);

    /// The FEN to be read.
    std::string const& fen() const { return value("position"); }
    /// The text behind the word that begins a line; throws std::out_of_range if there is none.
    std::string const& value(std::string const& name) const { return values_.at(name); }

 private:
    std::map<std::string, std::string> values_;
};

/// All records of a data file.
std::vector<PositionRecord> read_position_records(std::string const& file_name);

}  // namespace orvelin::test
