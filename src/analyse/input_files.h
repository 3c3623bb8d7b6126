#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "analyse/input_kind.h"
#include "analyse/input_text.h"

namespace orvelin::analyse {

/// The files of a command line one after another, of which "-" is standard input. One is open at a
/// time.
class InputFiles {
 public:
    explicit InputFiles(std::vector<std::string> names);
    ~InputFiles();
    InputFiles(InputFiles const&) = delete;
    InputFiles& operator=(InputFiles const&) = delete;

    /// Opens the next file and looks at what it holds; false behind the last.
    /// @throws std::runtime_error with the file's name when it cannot be opened or read. The next
    /// call goes on with the next file.
    bool open_next();

    /// Of the file that is open. It lives until the next call of open_next().
    InputText& text() { return *text_; }
    input_kind kind() const { return kind_; }
    /// As on the command line, "standard input" for "-".
    std::string const& name() const { return name_; }

 private:
    void close();

    std::vector<std::string> names_;
    std::size_t next_ = 0;
    int descriptor_ = -1;
    std::string name_;
    std::unique_ptr<InputText> text_;
    input_kind kind_ = input_kind::empty;
};

}  // namespace orvelin::analyse
