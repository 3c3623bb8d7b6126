#include "support/file_replacement.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace orvelin::tools {

namespace {

[[noreturn]] void fail(std::filesystem::path const& file, std::string const& reason) {
    throw std::runtime_error("cannot write " + file.string() + ": " + reason);
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
        if (access(target_.c_str(), W_OK) != 0) {
            fail(target, std::strerror(errno));
        }
    }
    create();
}

FileReplacement::~FileReplacement() {
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
    }
}

void FileReplacement::create() {
    // A name of one's own: two processes may write the same target, and one process several files.
    constexpr int attempts = 100;
    int descriptor = -1;
    std::filesystem::path name;
    for (int i = 0; descriptor < 0 && i < attempts; ++i) {
        name = target_;
        name += ".tmp" + std::to_string(getpid()) + "-" + std::to_string(i);
        // Not a private file: the permissions are those of any new file of this user.
        descriptor = open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
        if (descriptor < 0 && errno != EEXIST) {
            break;
        }
    }
    if (descriptor < 0) {
        fail(target_, std::strerror(errno));
    }
    temporary_ = name;
    struct stat old {};
    if (stat(target_.c_str(), &old) == 0) {
        fchmod(descriptor, old.st_mode & 07777);
    }
    close(descriptor);
}

void FileReplacement::commit() {
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) {
        fail(target_, std::strerror(errno));
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
