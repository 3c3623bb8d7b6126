#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orvelin::tools {

/// Finds the rows of a CSV text that comes block by block.
class CsvRows {
 public:
    /// Tells each row that ends within the block, by its begin and its end in the whole text; its
    /// line end is part of it.
    void add(std::string_view block,
             std::function<void(std::uint64_t begin, std::uint64_t end)> const& row);

 private:
    std::uint64_t at_ = 0;
    std::uint64_t row_begin_ = 0;
    bool quoted_ = false;
};

/// The fields of one row, with or without its line end.
std::vector<std::string> fields_of_row(std::string_view row);

}  // namespace orvelin::tools
