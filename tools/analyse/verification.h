#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "analyse/answerer.h"
#include "analyse/line_text.h"
#include "analyse/shared_tables.h"

namespace orvelin::tools {

/// Answers for recorded positions again and compares. One for each thread.
class Verification {
 public:
    explicit Verification(std::unique_ptr<Answerer> answerer) : answerer_(std::move(answerer)) {}

    /// Nothing when the line, without its line end, is to the last bit what comes out again; else
    /// what is first seen to be different. After interrupt() it is worth nothing.
    /// @throws RecordError when the line is no record, or one that another program wrote.
    std::optional<std::string> difference(std::string_view line);
    void interrupt() { answerer_->interrupt(); }

 private:
    std::unique_ptr<Answerer> answerer_;
    analyse::LineText text_{shared_tables()};
};

/// The first field in which two lines of JSON differ, with what stands in both: "lines[0].score is
/// 35, computed again it is 36". Empty when they differ in nothing.
std::string first_difference(std::string_view there, std::string_view again);

/// Whether a record is in a sample of this share, from 0 to 1; the same ones each time.
bool in_sample(std::uint64_t number, double share);

}  // namespace orvelin::tools
