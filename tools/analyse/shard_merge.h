#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "analyse/line_input.h"
#include "analyse/record.h"

namespace orvelin::tools {

/// Puts the records of several files back in the order of the input.
class ShardMerge {
 public:
    /// @throws std::runtime_error when a file cannot be read, or what stands in it is no record or
    /// of another run than the others.
    ShardMerge(std::vector<std::string> const& names, WakeUp const* stop);

    /// Calls for each line, with its line end, in order. What is missing or there twice is told, a
    /// line each; a line that is there twice is given once.
    void run(std::function<void(std::string_view line)> const& line,
             std::function<void(std::string const& fault)> const& fault);
    /// The number of the last position.
    std::uint64_t last() const { return last_; }

 private:
    struct File {
        File(std::string const& name, WakeUp const* stop) : input(name, stop) {}
        LineInput input;
        std::string line;
        /// Of the line; 0 at the end.
        std::uint64_t number = 0;
        /// Of the first line.
        std::uint64_t first = 0;
    };

    static void advance(File& file);
    static std::uint64_t step_of(std::string const& name, WakeUp const* stop);
    void tell_missing(std::uint64_t first, std::uint64_t last,
                      std::function<void(std::string const& fault)> const& fault);
    void compare_receipts(File const& file);

    std::vector<std::unique_ptr<File>> files_;
    std::uint64_t last_ = 0;
    /// As far as the files show it; 0 when they do not.
    std::uint64_t shards_ = 0;
    std::set<std::uint64_t> missing_shards_;
    analyse::Receipt receipt_;
    std::string receipt_file_;
};

}  // namespace orvelin::tools
