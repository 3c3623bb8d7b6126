#include "analyse/csv_rows.h"

namespace orvelin::tools {

void CsvRows::add(std::string_view block,
                  std::function<void(std::uint64_t begin, std::uint64_t end)> const& row) {
    for (char const letter : block) {
        ++at_;
        // A doubled mark within a field ends and begins it again.
        if (letter == '"') {
            quoted_ = !quoted_;
        } else if (letter == '\n' && !quoted_) {
            row(row_begin_, at_);
            row_begin_ = at_;
        }
    }
}

std::vector<std::string> fields_of_row(std::string_view row) {
    if (row.ends_with("\r\n")) {
        row.remove_suffix(2);
    }
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (row[i] == '"') {
            if (!quoted && i > 0 && row[i - 1] == '"') {
                fields.back() += '"';
            }
            quoted = !quoted;
        } else if (row[i] == ',' && !quoted) {
            fields.emplace_back();
        } else {
            fields.back() += row[i];
        }
    }
    return fields;
}

}  // namespace orvelin::tools
