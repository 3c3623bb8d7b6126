#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "book/book_record.h"

namespace orvelin::tools {

/// Holds the entries of a book, one after the other, against what the format asks for.
class BookCheck {
 public:
    /// Is called with a text for each fault.
    using report_t = std::function<void(std::string const&)>;

    explicit BookCheck(report_t report) : report_(std::move(report)) {}

    /// Takes the next entry; numbers begin at 1.
    void add(std::uint64_t number, Book_record const& entry);
    /// To be called behind the last entry.
    void finish();

    /// Runs of one key so far: the positions of a book that is sorted.
    std::uint64_t positions() const { return positions_; }

 private:
    void begin_key(std::uint64_t number, Book_record const& entry);
    void end_key();
    void fault(std::uint64_t number, std::string const& text);

    report_t report_;
    std::uint64_t positions_ = 0;
    std::uint64_t key_ = 0;
    std::uint64_t first_of_key_ = 0;
    bool key_has_weight_ = false;
    /// The moves of the key by word, with the number of the entry.
    std::map<std::uint16_t, std::uint64_t> moves_;
};

}  // namespace orvelin::tools
