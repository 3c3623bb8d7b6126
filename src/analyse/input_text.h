#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace orvelin::analyse {

/// A text of any length that is read once, block by block, from wherever it comes. Any bytes may
/// stand in it.
class InputText {
 public:
    /// Puts the next bytes at a place with so much room and returns their number, 0 at the end.
    /// What it throws goes through.
    using fill_t = std::function<std::size_t(char*, std::size_t)>;

    /// The longest look ahead.
    static constexpr std::size_t most_ahead = 4096;

    explicit InputText(fill_t fill);
    InputText(InputText const&) = delete;
    InputText& operator=(InputText const&) = delete;

    /// Whether there is no next byte.
    bool at_end() { return begin_ == end_ && !refill(1); }
    /// The next byte: one that at_end() or a look ahead has told to be there.
    char next() const { return *begin_; }
    /// What comes next: so many bytes at least, at most most_ahead, or all that there are.
    std::string_view ahead(std::size_t wanted) {
        if (static_cast<std::size_t>(end_ - begin_) < wanted) {
            refill(wanted);
        }
        return {begin_, static_cast<std::size_t>(end_ - begin_)};
    }
    /// Goes over so many of the bytes that the last look ahead gave.
    void skip(std::size_t bytes);
    /// Goes over the next byte, which is no line feed.
    void skip_letter() {
        last_ = *begin_;
        ++begin_;
    }
    /// Goes over bytes of the last look ahead among which there is no line feed.
    void skip_letters(std::size_t bytes) {
        if (bytes > 0) {
            begin_ += bytes;
            last_ = begin_[-1];
        }
    }
    /// Goes over bytes that leave the begin of a line one.
    void skip_mark(std::size_t bytes) { begin_ += bytes; }
    /// Goes over what is ahead up to the first of this byte, or to the end. False at the end.
    bool skip_to(char letter);

    /// How many bytes were taken from where the text comes, and not gone over yet.
    std::size_t unread() const { return static_cast<std::size_t>(end_ - begin_); }
    /// The line of the next byte, from 1.
    std::uint64_t line() const { return line_; }
    /// Whether the next byte is the first of its line.
    bool at_line_start() const { return last_ == '\n'; }

 private:
    bool refill(std::size_t wanted);

    fill_t fill_;
    std::vector<char> block_;
    char const* begin_;
    char const* end_;
    bool ended_ = false;
    char last_ = '\n';
    std::uint64_t line_ = 1;
};

/// Reads a text in memory, which must live on; blocks of at most so many bytes.
InputText::fill_t fill_from(std::string_view text, std::size_t block = 65536);

/// Reads a file descriptor.
/// @throws std::system_error when it cannot be read.
InputText::fill_t fill_from(int descriptor);

}  // namespace orvelin::analyse
