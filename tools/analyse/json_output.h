#pragma once

#include "analyse/line_file.h"
#include "analyse/record_output.h"

namespace orvelin::tools {

/// How a file of lines of JSON begins.
inline constexpr std::string_view json_file_begin = "{\"schema\":";

/// Records as lines of JSON.
class JsonOutput : public RecordOutput {
 public:
    /// On resuming, a line that was not written to its end is cut away.
    /// @throws std::runtime_error when it cannot be opened so, or the last line is no record.
    JsonOutput(std::string const& name, open_mode mode);

    LastRecord const& last() const override { return last_; }
    void render(analyse::Record const& record, std::string& text) const override;
    void write(std::vector<Answered> const& answered, std::string const& text) override;

 private:
    void find_last();

    LineFile file_;
    LastRecord last_;
};

}  // namespace orvelin::tools
