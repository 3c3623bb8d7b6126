#include "book/book.h"

#include <stdexcept>
#include <utility>

#include "platform/path.h"

namespace orvelin {

namespace {

constexpr std::int64_t entry_size = Book_record::size;

/// The start of the entry in the middle between two offsets, which are 0 or more. Their sum may
/// not fit a signed word: of a folder opened as a file the system tells an enormous size.
std::int64_t middle(std::int64_t low, std::int64_t high) {
    std::uint64_t const sum = static_cast<std::uint64_t>(low) + static_cast<std::uint64_t>(high);
    return static_cast<std::int64_t>(sum / (2 * entry_size) * entry_size);
}

}  // namespace

Book::Book() {
    timer_.start();
}

Book::Book(std::string name) : name_(std::move(name)) {
    timer_.start();
    open_stream();
}

void Book::set_name(std::string name) {
    name_ = std::move(name);
}

void Book::open_stream() {
    file_.open(path_of(name_), std::ios::in | std::ios::binary);
    if (!file_) {
        throw std::logic_error("Book::open() open " + name_ + " failed (1)");
    }
}

void Book::open() {
    if (is_open()) {
        close();
    }
    open_stream();
    file_.seekg(0, std::ios::end);
    size_ = static_cast<std::int64_t>(file_.tellg()) / entry_size * entry_size;
}

std::uint16_t Book::get_move(std::uint64_t key) {
    return draw(collect(key, find_start(key))).dump();
}

/// Binary search for an offset at or before the first entry of the key. It stops at the first hit
/// with the lower bound as it is then, which may lie far before the key's entries (oddity 31).
std::int64_t Book::find_start(std::uint64_t key) {
    std::int64_t low = 0;
    std::int64_t high = size_;
    if (high <= 0 || middle(low, high) == 0) {
        return low;
    }
    Book_record probe;
    for (std::int64_t mid = middle(low, high);;) {
        file_.seekg(mid);
        // Not tested: after a failed read the old bytes are compared, and the failed stream ends
        // the scan that follows.
        file_.read(probe.bytes(), entry_size);
        if (key == probe.get_key()) {
            return low;
        }
        (key < probe.get_key() ? high : low) = mid;
        if (low >= high) {
            return low;
        }
        mid = middle(low, high);
        if (mid == low) {
            return low;
        }
    }
}

/// All entries of the key from an offset on, in the order of the file.
std::vector<Book_record> Book::collect(std::uint64_t key, std::int64_t start) {
    std::vector<Book_record> entries;
    Book_record entry;
    file_.seekg(start);
    for (std::int64_t offset = start; offset != size_; offset += entry_size) {
        file_.read(entry.bytes(), entry_size);
        if (file_.fail() || entry.get_key() > key) {
            break;
        }
        if (entry.get_key() == key) {
            entries.push_back(entry);
        }
    }
    return entries;
}

/// The clock is the only source of chance. The number drawn is negative about half of the time,
/// which always falls to the first entry (oddity 32).
BKmove Book::draw(std::vector<Book_record> const& entries) {
    std::uint32_t sum = 0;
    for (Book_record const& entry : entries) {
        sum += entry.get_weight();
    }
    auto const total = static_cast<std::int32_t>(sum);
    if (total == 0) {
        return BKmove();
    }
    auto const time = static_cast<std::int32_t>(timer_.total_time().nanoseconds());
    // Wider than the numbers, so that no remainder and no difference leaves its range.
    std::int64_t rest = std::int64_t{time} % total;
    for (Book_record const& entry : entries) {
        rest -= entry.get_weight();
        if (rest <= 0) {
            return entry.get_move();
        }
    }
    return BKmove();
}

}  // namespace orvelin
