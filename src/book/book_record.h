#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>

#include "book/bk_move.h"

namespace orvelin {

/// One entry of an opening book: its 16 bytes as they lie in the file, after the published Polyglot
/// book format. All numbers there are big-endian; the accessors convert on the way through.
///
/// A plain value. The order is that of the keys alone, which is the order of a book file.
class Book_record {
 public:
    /// Bytes of an entry.
    static constexpr std::size_t size = 16;

    /// All zeros.
    Book_record() = default;
    /// Copies `size` bytes.
    explicit Book_record(char const* bytes);

    /// The `size` bytes for the file.
    char const* bytes() const { return bytes_.data(); }
    /// The bytes as the place that an entry is read into.
    char* bytes() { return bytes_.data(); }

    bool operator==(Book_record const& other) const { return get_key() == other.get_key(); }
    std::weak_ordering operator<=>(Book_record const& other) const {
        return get_key() <=> other.get_key();
    }

    /// The position key that the entry belongs to.
    std::uint64_t get_key() const { return get<std::uint64_t>(key_offset); }
    /// The move: both squares, and the promotion when it is one that the format knows.
    BKmove get_move() const;
    /// Chance of the move relative to the others of the key.
    std::uint16_t get_weight() const { return get<std::uint16_t>(weight_offset); }
    /// Not used by the engine.
    std::uint32_t get_learn() const { return get<std::uint32_t>(learn_offset); }

    void set_key(std::uint64_t key) { set(key_offset, key); }
    void set_move(BKmove const& move) { set(move_offset, move.dump()); }
    void set_weight(std::uint16_t weight) { set(weight_offset, weight); }
    void set_learn(std::uint32_t learn) { set(learn_offset, learn); }

 private:
    static constexpr std::size_t key_offset = 0;
    static constexpr std::size_t move_offset = 8;
    static constexpr std::size_t weight_offset = 10;
    static constexpr std::size_t learn_offset = 12;

    template <typename Word>
    Word get(std::size_t offset) const {
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < sizeof(Word); ++i) {
            word = word << 8 | static_cast<unsigned char>(bytes_[offset + i]);
        }
        return static_cast<Word>(word);
    }

    template <typename Word>
    void set(std::size_t offset, Word word) {
        for (std::size_t i = 0; i < sizeof(Word); ++i) {
            bytes_[offset + i] = static_cast<char>(word >> 8 * (sizeof(Word) - 1 - i));
        }
    }

    std::array<char, size> bytes_{};
};

static_assert(sizeof(Book_record) == Book_record::size);

}  // namespace orvelin
