#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvelin::board {

/// Writes a JSON text from its begin to its end; commas are set where they belong. Names must need
/// no escape.
class JsonWriter {
 public:
    // The elements of an array, and the whole.

    void open(char bracket);
    void text(std::string_view value);

    // The members of an object.

    void open(std::string_view name, char bracket);
    void text(std::string_view name, std::string_view value);
    void flag(std::string_view name, bool value);
    void number(std::string_view name, std::int64_t value);
    /// With as few digits as give it back bit for bit.
    void number(std::string_view name, float value);
    void number(std::string_view name, double value);
    void null(std::string_view name);

    /// The members of an object that is JSON already.
    void members(std::string_view object);

    void close(char bracket);

    std::string const& written() const { return written_; }

 private:
    void separate();
    void name(std::string_view name);

    std::string written_;
    bool comma_due_ = false;
};

}  // namespace orvelin::board
