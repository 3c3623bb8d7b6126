#include "analyse/input_text.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/file_descriptor.h"

namespace orvelin::analyse {

namespace {

constexpr std::size_t block_size = 256 * 1024;

}  // namespace

InputText::InputText(fill_t fill)
    : fill_(std::move(fill)), block_(block_size), begin_(block_.data()), end_(begin_) {}

bool InputText::refill(std::size_t wanted) {
    std::size_t size = static_cast<std::size_t>(end_ - begin_);
    if (!ended_) {
        std::memmove(block_.data(), begin_, size);
        begin_ = block_.data();
        while (size < wanted && !ended_) {
            std::size_t const read = fill_(block_.data() + size, block_.size() - size);
            ended_ = read == 0;
            size += read;
        }
        end_ = begin_ + size;
    }
    return size >= wanted;
}

void InputText::skip(std::size_t bytes) {
    if (bytes == 0) {
        return;
    }
    line_ += static_cast<std::uint64_t>(std::count(begin_, begin_ + bytes, '\n'));
    begin_ += bytes;
    last_ = begin_[-1];
}

bool InputText::skip_to(char letter) {
    while (!at_end()) {
        std::size_t const size = static_cast<std::size_t>(end_ - begin_);
        void const* const found = std::memchr(begin_, letter, size);
        if (found != nullptr) {
            skip(static_cast<std::size_t>(static_cast<char const*>(found) - begin_));
            return true;
        }
        skip(size);
    }
    return false;
}

InputText::fill_t fill_from(std::string_view text, std::size_t block) {
    return [text, block](char* to, std::size_t room) mutable {
        std::size_t const size = std::min({text.size(), block, room});
        std::copy_n(text.begin(), size, to);
        text.remove_prefix(size);
        return size;
    };
}

InputText::fill_t fill_from(int descriptor) {
    return [descriptor](char* to, std::size_t room) { return read_some(descriptor, to, room); };
}

}  // namespace orvelin::analyse
