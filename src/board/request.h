#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvelin::board {

/// Why there is no answer, in one sentence for the page.
class RequestError : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// What a page asks: an object of JSON. It may hold any bytes; whatever is not what a command
/// needs is refused where it is looked at. Fields that nobody looks at are read past.
class Request {
 public:
    /// The longest text of a request.
    static constexpr std::size_t most_bytes = std::size_t{48} << 20;

    /// @throws RequestError when the text is no object of JSON in UTF-8, or is too long.
    explicit Request(std::string_view json);
    ~Request();
    Request(Request&&) noexcept;
    Request& operator=(Request&&) noexcept;

    // All throw RequestError for a value of another kind. A value of null counts as missing.

    /// @throws RequestError when it is missing, too.
    std::string_view text(char const* name) const;
    std::string_view text(char const* name, std::string_view otherwise) const;
    /// False when it is missing.
    bool flag(char const* name) const;
    /// A whole number.
    std::optional<std::int64_t> number(char const* name) const;
    /// @throws RequestError when it is not within the limits, too.
    std::int64_t number(char const* name, std::int64_t otherwise, std::int64_t least,
                        std::int64_t most) const;
    /// Empty when it is missing.
    /// @throws RequestError when there are more, too.
    std::vector<std::string_view> texts(char const* name, std::size_t most) const;
    /// An object within this one. It must not outlive this one.
    std::optional<Request> part(char const* name) const;
    /// The members of an object within this one, all texts, in their order; empty when it is
    /// missing.
    std::vector<std::pair<std::string_view, std::string_view>> pairs(char const* name) const;

 private:
    struct State;
    explicit Request(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

}  // namespace orvelin::board
