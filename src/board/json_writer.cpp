#include "board/json_writer.h"

#include "analyse/record_json.h"

namespace orvelin::board {

void JsonWriter::separate() {
    if (comma_due_) {
        written_ += ',';
    }
    comma_due_ = true;
}

void JsonWriter::name(std::string_view name) {
    separate();
    written_ += '"';
    written_ += name;
    written_ += "\":";
}

void JsonWriter::open(char bracket) {
    separate();
    written_ += bracket;
    comma_due_ = false;
}

void JsonWriter::text(std::string_view value) {
    separate();
    analyse::append_json_text(written_, value);
}

void JsonWriter::open(std::string_view name, char bracket) {
    this->name(name);
    written_ += bracket;
    comma_due_ = false;
}

void JsonWriter::text(std::string_view name, std::string_view value) {
    this->name(name);
    analyse::append_json_text(written_, value);
}

void JsonWriter::flag(std::string_view name, bool value) {
    this->name(name);
    written_ += value ? "true" : "false";
}

void JsonWriter::number(std::string_view name, std::int64_t value) {
    this->name(name);
    analyse::append_number(written_, value);
}

void JsonWriter::number(std::string_view name, float value) {
    this->name(name);
    analyse::append_number(written_, value);
}

void JsonWriter::number(std::string_view name, double value) {
    this->name(name);
    analyse::append_number(written_, value);
}

void JsonWriter::null(std::string_view name) {
    this->name(name);
    written_ += "null";
}

void JsonWriter::members(std::string_view object) {
    separate();
    written_ += object.substr(1, object.size() - 2);
}

void JsonWriter::close(char bracket) {
    written_ += bracket;
    comma_due_ = true;
}

}  // namespace orvelin::board
