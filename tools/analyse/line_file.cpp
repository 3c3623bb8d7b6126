#include "analyse/line_file.h"

#include <cerrno>
#include <chrono>
#include <exception>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "platform/changeable_file.h"
#include "platform/file_descriptor.h"
#include "platform/process.h"
#include "platform/sleep.h"

namespace orvelin::tools {

namespace {

/// A run that was interrupted, on another machine perhaps, may need a moment to its end when the
/// next one takes it up.
constexpr std::chrono::milliseconds last_run_patience{2000};

}  // namespace

LineFile::LineFile(std::string const& name, open_mode mode, std::string_view begin)
    : shown_name_(name == "-" ? "standard output" : name) {
    if (name == "-") {
        descriptor_ = standard_output;
        carry_bytes(descriptor_);
        return;
    }
    try {
        changeable_file_t const file = open_to_change(name);
        descriptor_ = file.descriptor;
        is_new_ = file.is_new;
        is_file_ = is_regular_file(descriptor_);
        open(mode, begin);
    } catch (std::system_error const& error) {
        close();
        fail("cannot write", error);
    } catch (...) {
        close();
        throw;
    }
}

LineFile::~LineFile() {
    // A run that is refused leaves no file behind that would be in the way of the next.
    if (is_new_ && size_ == 0 && std::uncaught_exceptions() > 0) {
        remove_and_close(descriptor_, shown_name_);
    } else if (descriptor_ != standard_output) {
        close();
    }
}

void LineFile::close() {
    if (descriptor_ >= 0) {
        close_descriptor(descriptor_);
    }
}

void LineFile::open(open_mode mode, std::string_view begin) {
    if (!is_file_) {
        if (mode == open_mode::resume) {
            throw std::runtime_error("cannot resume " + shown_name_ + ": it is not a file");
        }
        return;
    }
    lock(mode == open_mode::resume ? last_run_patience : std::chrono::milliseconds(0));
    // Only now nobody else changes it any more.
    size_ = size_of(descriptor_);
    if (mode != open_mode::create && !begins_with(begin)) {
        throw std::runtime_error(
            (mode == open_mode::resume ? "cannot resume " : "cannot overwrite ") + shown_name_ +
            ": what it holds is not of this kind of output");
    }
    if (mode == open_mode::replace) {
        cut(0);
    } else if (mode == open_mode::create && size_ > 0) {
        throw std::runtime_error(shown_name_ +
                                 " is there already; --resume goes on with it, --overwrite begins "
                                 "it anew");
    }
}

void LineFile::lock(std::chrono::milliseconds patience) const {
    auto const end = std::chrono::steady_clock::now() + patience;
    while (!take_alone(descriptor_)) {
        if (std::chrono::steady_clock::now() >= end) {
            throw std::runtime_error("cannot write " + shown_name_ +
                                     ": another process is writing it");
        }
        sleep_milliseconds(20);
    }
}

void LineFile::fail(std::string const& what, std::system_error const& error) const {
    throw std::runtime_error(what + ' ' + shown_name_ + ": " + error.code().message());
}

void LineFile::add(std::string_view text) {
    std::size_t written = 0;
    try {
        while (written < text.size()) {
            std::optional<std::uint64_t> const place =
                is_file_ ? std::optional(size_ + written) : std::nullopt;
            written += write_at(descriptor_, place, text.substr(written));
        }
    } catch (std::system_error const& error) {
        take_back(written);
        fail("cannot write", error);
    }
    size_ += text.size();
}

// Standard output may be a file that others wrote to before. To a pipe this does nothing.
void LineFile::take_back(std::size_t written) const {
    if (is_file_) {
        cut_to(descriptor_, size_);
    } else if (std::optional<std::uint64_t> const place = place_in(descriptor_)) {
        cut_to(descriptor_, *place - written);
    }
}

bool LineFile::begins_with(std::string_view text) const {
    std::string there;
    read(0, text.size(), there);
    return text.starts_with(there);
}

void LineFile::read(std::uint64_t from, std::size_t bytes, std::string& text) const {
    text.resize(bytes);
    std::size_t have = 0;
    try {
        while (have < bytes) {
            std::size_t const count =
                read_at(descriptor_, from + have, text.data() + have, bytes - have);
            if (count == 0) {
                break;
            }
            have += count;
        }
    } catch (std::system_error const& error) {
        fail("cannot read", error);
    }
    text.resize(have);
}

void LineFile::cut(std::uint64_t size) {
    if (!cut_to(descriptor_, size)) {
        fail("cannot write", std::system_error(errno, std::generic_category()));
    }
    size_ = size;
}

}  // namespace orvelin::tools
