#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

namespace orvelin::tools {

/// How a file to be written is opened.
enum class open_mode : std::uint8_t {
    /// A file with something in it is refused.
    create,
    /// What is in it goes.
    replace,
    /// What is in it stays.
    resume,
};

/// A file, pipe or terminal that whole pieces of text are added to.
///
/// Each piece is there when add() returns. Where one fails in a file, what was written of it is cut
/// away. Nobody else who asks so can write a file at the same time.
class LineFile {
 public:
    /// "-" is standard output. A file that is replaced or gone on with must begin in this way: what
    /// is of another kind has been named by mistake.
    /// @throws std::runtime_error with the reason when the file cannot be opened so.
    LineFile(std::string const& name, open_mode mode, std::string_view begin = "");
    ~LineFile();
    LineFile(LineFile const&) = delete;
    LineFile& operator=(LineFile const&) = delete;

    void add(std::string_view text);

    /// Whether it begins with this text, or with as much of it as there is.
    bool begins_with(std::string_view text) const;
    /// Whether it can be read and cut.
    bool is_file() const { return is_file_; }
    std::uint64_t size() const { return size_; }
    /// Puts up to so many bytes from there on into the text; fewer at the end.
    void read(std::uint64_t from, std::size_t bytes, std::string& text) const;
    void cut(std::uint64_t size);
    std::string const& name() const { return shown_name_; }

 private:
    void open(open_mode mode, std::string_view begin);
    void close();
    /// Takes the file for this process, waiting so long for another one to end.
    void lock(std::chrono::milliseconds patience) const;
    void take_back(std::size_t written) const;
    [[noreturn]] void fail(std::string const& what, std::system_error const& error) const;

    std::string shown_name_;
    int descriptor_ = -1;
    /// It was not there before.
    bool is_new_ = false;
    bool is_file_ = false;
    std::uint64_t size_ = 0;
};

}  // namespace orvelin::tools
