#pragma once

#include <string>

#include "analyse/record.h"

namespace orvelin::analyse {

/// Adds a record as one line of JSON, with the line end, in the form of docs/analyse.md. Two
/// records that are equal give the same bytes, on every machine. Numbers are written with as few
/// digits as give them back bit for bit.
void append_json(std::string& out, Record const& record);

/// Adds a text in quotation marks, as JSON has it.
void append_json_text(std::string& out, std::string_view text);

/// Adds a number with as few digits as give it back bit for bit.
void append_number(std::string& out, float value);
void append_number(std::string& out, double value);
void append_number(std::string& out, std::int64_t value);

}  // namespace orvelin::analyse
