#include "support/position_record.h"

#include <cstddef>

#include "support/data_file.h"

namespace orvelin::test {

PositionRecord::PositionRecord(std::vector<std::string> const& lines) {
    for (std::string const& line : lines) {
        const std::size_t blank = line.find(' ');
        const std::string name = line.substr(0, blank);
        values_[name] = blank == std::string::npos ? "" : line.substr(blank + 1);
    }
}

std::vector<PositionRecord> read_position_records(std::string const& file_name) {
    std::vector<PositionRecord> records;
    for (data_block_t const& block : read_data_blocks(file_name)) {
        records.emplace_back(block);
    }
    return records;
}

}  // namespace orvelin::test
