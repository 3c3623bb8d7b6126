#include "support/file_replacement.h"

#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "platform/new_file.h"
#include "platform/path.h"
#include "platform/process.h"

namespace orvelin::tools {

namespace {

[[noreturn]] void fail(std::filesystem::path const& file, std::string const& reason) {
    throw std::runtime_error("cannot write " + name_of(file) + ": " + reason);
}

}  // namespace

FileReplacement::FileReplacement(std::filesystem::path const& target) : target_(target) {
    std::error_code error;
    if (std::filesystem::exists(target_, error)) {
        // Behind a symbolic link it is the file that is meant, not the link.
        target_ = std::filesystem::canonical(target_);
        if (!std::filesystem::is_regular_file(target_)) {
            fail(target, "not a regular file");
        }
        // The rename would not ask.
        try {
            check_writable(target_);
        } catch (std::system_error const& refusal) {
            fail(target, refusal.what());
        }
    }
    create();
}

FileReplacement::~FileReplacement() {
    if (!temporary_.empty()) {
        std::error_code error;
        std::filesystem::remove(temporary_, error);
    }
}

void FileReplacement::create() {
    // A name of one's own: two processes may write the same target, and one process several files.
    constexpr int attempts = 100;
    for (int i = 0; i < attempts; ++i) {
        std::filesystem::path name = target_;
        name += ".tmp" + std::to_string(process_id()) + "-" + std::to_string(i);
        try {
            if (create_new_file(name, target_)) {
                temporary_ = name;
                return;
            }
        } catch (std::system_error const& refusal) {
            fail(target_, refusal.what());
        }
    }
    fail(target_, std::make_error_code(std::errc::file_exists).message());
}

void FileReplacement::commit() {
    std::error_code error;
    std::filesystem::rename(temporary_, target_, error);
    if (error) {
        fail(target_, error.message());
    }
    temporary_.clear();
}

void write_file(std::filesystem::path const& target, std::string_view content) {
    FileReplacement replacement(target);
    std::ofstream file(replacement.path(), std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file) {
        fail(target, "the write failed");
    }
    replacement.commit();
}

}  // namespace orvelin::tools
