#include "analyse/json_output.h"

#include <algorithm>

#include "analyse/record_json.h"
#include "analyse/record_reader.h"

namespace orvelin::tools {

namespace {

constexpr std::uint64_t tail_block = 1 << 16;

/// The place behind the last line end before `end`; 0 when there is none.
std::uint64_t line_begin(LineFile const& file, std::uint64_t end) {
    std::string text;
    while (end > 0) {
        std::uint64_t const begin = end > tail_block ? end - tail_block : 0;
        file.read(begin, static_cast<std::size_t>(end - begin), text);
        std::size_t const found = text.rfind('\n');
        if (found != std::string::npos) {
            return begin + found + 1;
        }
        end = begin;
    }
    return 0;
}

}  // namespace

JsonOutput::JsonOutput(std::string const& name, open_mode mode)
    : file_(name, mode, json_file_begin) {
    if (mode == open_mode::resume) {
        find_last();
    }
}

void JsonOutput::find_last() {
    std::uint64_t const end = line_begin(file_, file_.size());
    if (end > 0) {
        std::uint64_t const begin = line_begin(file_, end - 1);
        std::string line;
        file_.read(begin, static_cast<std::size_t>(end - begin - 1), line);
        try {
            analyse::Record const record = read_record(line);
            last_ = {record.number, record.fen, record.receipt};
        } catch (RecordError const& error) {
            throw std::runtime_error("cannot resume " + file_.name() +
                                     ": its last line is no record: " + error.what());
        }
    }
    if (end < file_.size()) {
        file_.cut(end);
    }
}

void JsonOutput::render(analyse::Record const& record, std::string& text) const {
    if (record.number > last_.number) {
        append_json(text, record);
    }
}

void JsonOutput::write(std::vector<Answered> const&, std::string const& text) {
    file_.add(text);
}

}  // namespace orvelin::tools
