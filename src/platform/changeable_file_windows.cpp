#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <io.h>
#include <sys/stat.h>
#include <system_error>
#include <windows.h>

#include "platform/byte_output.h"
#include "platform/changeable_file.h"
#include "platform/file_descriptor.h"
#include "platform/path.h"

namespace orvelin {

namespace {

[[noreturn]] void fail() {
    throw std::system_error(errno, std::generic_category());
}

HANDLE handle_of(int descriptor) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
}

void go_to(int descriptor, std::uint64_t place) {
    if (_lseeki64(descriptor, static_cast<__int64>(place), SEEK_SET) < 0) {
        fail();
    }
}

}  // namespace

changeable_file_t open_to_change(std::string const& name) {
    std::wstring const path = path_of(name).wstring();
    constexpr int kind = _O_CREAT | _O_RDWR | _O_BINARY | _O_NOINHERIT;
    int descriptor = _wopen(path.c_str(), kind | _O_EXCL, _S_IREAD | _S_IWRITE);
    bool const is_new = descriptor >= 0;
    if (descriptor < 0 && errno == EEXIST) {
        descriptor = _wopen(path.c_str(), kind, _S_IREAD | _S_IWRITE);
    }
    if (descriptor < 0) {
        fail();
    }
    return {descriptor, is_new};
}

void carry_bytes(int descriptor) {
    _setmode(descriptor, _O_BINARY);
}

// What is open cannot be removed here.
void remove_and_close(int descriptor, std::string const& name) {
    close_descriptor(descriptor);
    std::error_code ignored;
    std::filesystem::remove(path_of(name), ignored);
}

bool is_regular_file(int descriptor) {
    return GetFileType(handle_of(descriptor)) == FILE_TYPE_DISK;
}

std::uint64_t size_of(int descriptor) {
    __int64 const size = _filelengthi64(descriptor);
    if (size < 0) {
        fail();
    }
    return static_cast<std::uint64_t>(size);
}

// A byte far behind every end: what is locked nobody else could even read.
bool take_alone(int descriptor) {
    OVERLAPPED place{};
    place.OffsetHigh = 0x40000000;
    return LockFileEx(handle_of(descriptor), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0,
                      1, 0, &place) != 0 ||
           GetLastError() != ERROR_LOCK_VIOLATION;
}

std::size_t read_at(int descriptor, std::uint64_t from, char* to, std::size_t room) {
    go_to(descriptor, from);
    return read_some(descriptor, to, room);
}

std::size_t write_at(int descriptor, std::optional<std::uint64_t> place, std::string_view bytes) {
    if (place) {
        go_to(descriptor, *place);
    }
    std::optional<std::size_t> const count = ByteOutput(descriptor).write_some(bytes);
    if (!count) {
        fail();
    }
    return *count;
}

std::optional<std::uint64_t> place_in(int descriptor) {
    __int64 const place = is_regular_file(descriptor) ? _lseeki64(descriptor, 0, SEEK_CUR) : -1;
    return place < 0 ? std::nullopt : std::optional(static_cast<std::uint64_t>(place));
}

bool cut_to(int descriptor, std::uint64_t size) {
    if (!is_regular_file(descriptor) || _chsize_s(descriptor, static_cast<__int64>(size)) != 0) {
        return false;
    }
    go_to(descriptor, size);
    return true;
}

}  // namespace orvelin
