#pragma once

#include <cstdint>
#include <string>

#include "platform/descriptor_input.h"

namespace orvelin::tools {

/// The lines of a file of records, of any length up to a bound.
class LineInput {
 public:
    /// No record is nearly as long.
    static constexpr std::size_t longest = std::size_t{1} << 26;

    LineInput(std::string const& name, WakeUp const* stop) : name_(name), input_(name, stop) {}

    /// The next line without its line end; false at the end.
    /// @throws std::runtime_error when it cannot be read, a line is too long, or the last one has
    /// no line end.
    bool next(std::string& line);
    /// Of the last line, from 1.
    std::uint64_t number() const { return number_; }
    std::string const& name() const { return name_; }
    std::uint64_t bytes_read() const { return input_.bytes_read(); }

 private:
    std::string name_;
    DescriptorInput input_;
    std::string block_;
    std::size_t at_ = 0;
    std::uint64_t number_ = 0;
};

}  // namespace orvelin::tools
