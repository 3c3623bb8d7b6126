#pragma once

#include <csignal>
#include <sys/resource.h>

namespace orvelin::test {

/// No file of this process can grow beyond this size while the object lives: a write past it fails.
class FileSizeLimit {
 public:
    explicit FileSizeLimit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &old_);
        rlimit const limit{size, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(FileSizeLimit const&) = delete;
    FileSizeLimit& operator=(FileSizeLimit const&) = delete;

 private:
    void (*handler_)(int);
    rlimit old_{};
};

}  // namespace orvelin::test
