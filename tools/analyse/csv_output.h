#pragma once

#include "analyse/line_file.h"
#include "analyse/record_output.h"

namespace orvelin::tools {

/// Records as rows of CSV under a line of names.
class CsvOutput : public RecordOutput {
 public:
    /// On resuming, a row that was not written to its end is cut away.
    /// @throws std::runtime_error when it cannot be opened so, or it is not what this writes.
    CsvOutput(std::string const& name, open_mode mode);

    LastRecord const& last() const override { return last_; }
    void render(analyse::Record const& record, std::string& text) const override;
    void write(std::vector<Answered> const& answered, std::string const& text) override;

    /// Writes the first line where it is not there yet.
    void finish() override;

 private:
    void find_last(std::string const& header);
    void take_last(std::string const& row, std::string const& header);

    LineFile file_;
    LastRecord last_;
};

}  // namespace orvelin::tools
