#include "analyse/input_files.h"

#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/file_descriptor.h"
#include "platform/process.h"

namespace orvelin::analyse {

namespace {

std::runtime_error cannot_read(std::string const& name, std::string const& why) {
    return std::runtime_error("cannot read " + name + ": " + why);
}

/// As fill_from(), with the name of the file in what is thrown.
InputText::fill_t named_fill(int descriptor, std::string const& name) {
    return [fill = fill_from(descriptor), name](char* to, std::size_t room) {
        try {
            return fill(to, room);
        } catch (std::runtime_error const& error) {
            throw cannot_read(name, error.what());
        }
    };
}

}  // namespace

InputFiles::InputFiles(std::vector<std::string> names) : names_(std::move(names)) {}

InputFiles::~InputFiles() {
    close();
}

void InputFiles::close() {
    text_.reset();
    kind_ = input_kind::empty;
    if (descriptor_ > standard_input) {
        close_descriptor(descriptor_);
    }
    descriptor_ = -1;
}

bool InputFiles::open_next() {
    close();
    if (next_ == names_.size()) {
        return false;
    }
    std::string const& file = names_[next_++];
    bool const standard = file == "-";
    name_ = standard ? "standard input" : file;
    try {
        descriptor_ = standard ? standard_input : open_to_read(file);
    } catch (std::system_error const& error) {
        throw cannot_read(name_, error.what());
    }
    text_ = std::make_unique<InputText>(named_fill(descriptor_, name_));
    kind_ = find_kind(*text_);
    return true;
}

}  // namespace orvelin::analyse
