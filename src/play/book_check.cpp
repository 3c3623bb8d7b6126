#include "play/book_check.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "book/book_record.h"
#include "platform/path.h"

namespace orvelin::play {

namespace {

constexpr std::size_t looked_at = 256;
constexpr int last_promotion = 4;

}  // namespace

BookFaults check_book(std::string const& name) {
    std::error_code error;
    std::uintmax_t const size = std::filesystem::file_size(path_of(name), error);
    std::ifstream file(path_of(name), std::ios::binary);
    if (error || !file) {
        return {"it cannot be read", ""};
    }
    if (size < Book_record::size) {
        return {"it has no entry", ""};
    }
    std::uint64_t last_key = 0;
    std::array<char, Book_record::size> bytes{};
    for (std::size_t i = 0; i < looked_at && file.read(bytes.data(), bytes.size()); ++i) {
        Book_record const entry(bytes.data());
        // The word as it is in the file: an entry does not tell a promotion that there is none of.
        int const promotion = (static_cast<unsigned char>(bytes[8]) >> 4) & 7;
        if (entry.get_key() < last_key || promotion > last_promotion) {
            return {"it is no book in the Polyglot format", ""};
        }
        last_key = entry.get_key();
    }
    std::uintmax_t const behind = size % Book_record::size;
    if (behind != 0) {
        return {"", "has " + std::to_string(behind) + " bytes behind its last entry"};
    }
    return {};
}

}  // namespace orvelin::play
