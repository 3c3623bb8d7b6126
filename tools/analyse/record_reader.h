#pragma once

#include <stdexcept>
#include <string_view>

#include "analyse/record.h"

namespace orvelin::tools {

/// A line is no record, or not one that this program knows.
class RecordError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// The record that the line holds, bit for bit as it was written. Fields that are not known are
/// read past. Takes any bytes.
/// @throws RecordError with what is wrong, and at which field.
analyse::Record read_record(std::string_view line);

/// The number of the position alone, quickly, of a line that begins as this program writes it; 0
/// for any other.
std::uint64_t record_number(std::string_view line);

}  // namespace orvelin::tools
