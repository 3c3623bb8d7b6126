#include "analyse/csv_output.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "analyse/csv_rows.h"
#include "analyse/record_csv.h"

namespace orvelin::tools {

namespace {

constexpr std::size_t read_block = 1 << 16;

template <typename Number>
Number number_in(std::string const& text) {
    Number number{};
    auto const read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size()) {
        throw std::runtime_error("its last row has a number that is none");
    }
    return number;
}

}  // namespace

CsvOutput::CsvOutput(std::string const& name, open_mode mode) : file_(name, mode, "number,") {
    std::string header;
    analyse::append_csv_header(header);
    if (mode == open_mode::resume) {
        try {
            find_last(header);
        } catch (std::runtime_error const& error) {
            throw std::runtime_error("cannot resume " + file_.name() + ": " + error.what());
        }
    }
}

void CsvOutput::finish() {
    if (file_.size() == 0) {
        std::string header;
        analyse::append_csv_header(header);
        file_.add(header);
    }
}

void CsvOutput::find_last(std::string const& header) {
    std::string text;
    file_.read(0, header.size(), text);
    if (!header.starts_with(text)) {
        throw std::runtime_error("its first line is not the one of this program");
    }
    if (text.size() < header.size()) {
        file_.cut(0);
        return;
    }
    // A field in quotation marks may hold line ends, so that rows are found from the start only.
    CsvRows rows;
    std::uint64_t last_begin = 0;
    std::uint64_t last_end = 0;
    for (std::uint64_t at = 0; at < file_.size(); at += text.size()) {
        file_.read(at, read_block, text);
        if (text.empty()) {
            break;
        }
        rows.add(text, [&](std::uint64_t begin, std::uint64_t end) {
            last_begin = begin;
            last_end = end;
        });
    }
    file_.read(last_begin, static_cast<std::size_t>(last_end - last_begin), text);
    if (last_begin > 0) {
        take_last(text, header);
    }
    if (last_end < file_.size()) {
        file_.cut(last_end);
    }
}

void CsvOutput::take_last(std::string const& row, std::string const& header) {
    std::vector<std::string> const names = fields_of_row(header);
    std::vector<std::string> const fields = fields_of_row(row);
    if (fields.size() != names.size()) {
        throw std::runtime_error("its last row has not as many fields as there are columns");
    }
    auto const field = [&](char const* name) -> std::string const& {
        auto const found = std::find(names.begin(), names.end(), name);
        return fields.at(static_cast<std::size_t>(found - names.begin()));
    };
    last_.number = number_in<std::uint64_t>(field("number"));
    last_.fen = field("fen");
    last_.receipt = {field("limit"),
                     number_in<int>(field("lines")),
                     field("leaves") == "1",
                     field("played_asked") == "1",
                     field("rest_asked") == "1",
                     field("version"),
                     field("signature")};
}

void CsvOutput::render(analyse::Record const& record, std::string& text) const {
    if (record.number > last_.number) {
        append_csv(text, record);
    }
}

void CsvOutput::write(std::vector<Answered> const&, std::string const& text) {
    finish();
    file_.add(text);
}

}  // namespace orvelin::tools
