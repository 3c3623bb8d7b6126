#include "play/output.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/path.h"

namespace orvelin::play {

namespace {

std::int64_t now() {
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

}  // namespace

bool Output::stuck_for(std::chrono::milliseconds time) const {
    std::int64_t const since = waiting_since_.load();
    return since != 0 && std::chrono::steady_clock::duration(now() - since) >= time;
}

void Output::line(std::string_view text) {
    std::string bytes(text);
    bytes += '\n';
    std::lock_guard const lock(mutex_);
    write(bytes);
    if (log_.is_open()) {
        log_ << "< " << bytes << std::flush;
    }
}

void Output::remark(std::string_view text) {
    std::string clean = "info string ";
    std::transform(text.begin(), text.end(), std::back_inserter(clean), [](char letter) {
        return static_cast<unsigned char>(letter) < ' ' || letter == '\x7f' ? ' ' : letter;
    });
    line(clean);
}

void Output::text(std::string_view lines) {
    std::lock_guard const lock(mutex_);
    write(lines);
    if (log_.is_open()) {
        for (std::size_t begin = 0; begin < lines.size();) {
            std::size_t const end = std::min(lines.find('\n', begin), lines.size() - 1) + 1;
            log_ << "< " << lines.substr(begin, end - begin);
            begin = end;
        }
        log_ << std::flush;
    }
}

bool Output::set_log(std::string const& name) {
    std::lock_guard const lock(mutex_);
    log_.close();
    log_.clear();
    if (name.empty()) {
        return true;
    }
    std::error_code error;
    if (std::filesystem::is_fifo(path_of(name), error)) {
        return false;
    }
    log_.open(path_of(name), std::ios::app | std::ios::binary);
    return log_.is_open();
}

void Output::log_input(std::string_view text) {
    std::lock_guard const lock(mutex_);
    if (log_.is_open()) {
        log_ << "> " << text << std::endl;
    }
}

void Output::write(std::string_view bytes) {
    while (!bytes.empty()) {
        waiting_since_.store(now());
        std::optional<std::size_t> const written = output_.write_some(bytes);
        if (!written) {
            lost_ = true;
            break;
        }
        bytes.remove_prefix(*written);
    }
    waiting_since_.store(0);
}

}  // namespace orvelin::play
