#pragma once

#include <string>
#include <string_view>

#include "analyse/record.h"

namespace orvelin::analyse {

/// The names of the columns as one line of CSV, with its line end.
void append_csv_header(std::string& out);

/// A record as one row: the position, its best line and the move that was played, and the terms at
/// the root. Rows end with CR and LF, and fields are in quotation marks where they must be, as
/// RFC 4180 says.
void append_csv(std::string& out, Record const& record);

}  // namespace orvelin::analyse
