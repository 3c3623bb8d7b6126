#pragma once

#include <atomic>
#include <cstdint>

#include "platform/language.h"
#include "search/score.h"
#include "search/tt_move.h"

namespace orvelin {

/// What a stored score says about the true one.
enum bound_t : std::uint8_t {
    upper_bound = 0,  ///< the true score is at most this
    lower_bound = 1,  ///< the true score is at least this
    exact_value = 2   ///< this is the score
};

/// One entry of the transposition table: the position key and a packed value, 16 bytes.
///
/// Value word, from the low end: 8 bits always 0, 8 bits date, 8 bits draft, 8 bits bound,
/// 16 bits signed score, 16 bits TTmove. Mate scores are held relative to the node. The
/// analysis thread alone stores records in the table; the main thread may sample their dates
/// and clear them meanwhile, so both words are read and, inside the table, written as atomics,
/// the key last. The setters are plain: they build records that no other thread sees.
class TTrecord {
 public:
    TTrecord() = default;
    TTrecord(TTrecord const&) = default;
    ~TTrecord() = default;
    /// Takes both words, but from a source of the same key without a move all but the move.
    /// The key is written last.
    TTrecord& operator=(TTrecord const& other);

    void clear();

    std::uint64_t get_key() const { return load(key_); }
    void set_key(std::uint64_t const& key) { key_ = key; }

    /// The whole packed value.
    std::uint64_t get_value() const { return load(value_); }
    void set_value(std::uint64_t const& value) { value_ = value; }

    TTmove get_move() const {
        return TTmove(static_cast<std::uint16_t>(get_value() >> move_shift));
    }
    /// Needs a zero move field.
    void set_move(TTmove const& move) { value_ |= std::uint64_t{move.id()} << move_shift; }

    /// The score as seen from a node at `ply`: a mate score gets the distance from the root.
    int get_score(int const& ply) const;
    /// Stores the score found at a node at `ply`; a mate score keeps the distance from there.
    void set_score(int const& score, int const& ply);

    bool is_exact_value() const { return bound() == exact_value; }
    bool is_upperbound() const { return bound() == upper_bound; }
    bool is_lowerbound() const { return bound() == lower_bound; }
    /// Needs a zero bound field.
    void set_bound(bound_t bound) { value_ |= std::uint64_t{bound} << bound_shift; }

    /// Depth in plies that the score was searched to.
    unsigned char get_draft() const { return field(draft_shift); }
    /// Needs a zero draft field.
    void set_draft(unsigned char const& draft) { value_ |= std::uint64_t{draft} << draft_shift; }

    /// Stamp of the search that wrote the record.
    unsigned char get_date() const { return field(date_shift); }
    /// Needs a zero date field.
    void set_date(unsigned char const& date) { value_ |= std::uint64_t{date} << date_shift; }

    /// Compares both words.
    bool operator==(TTrecord const& other) const {
        return get_key() == other.get_key() && get_value() == other.get_value();
    }
    bool operator!=(TTrecord const& other) const { return !(*this == other); }

 private:
    static constexpr int date_shift = 8;
    static constexpr int draft_shift = 16;
    static constexpr int bound_shift = 24;
    static constexpr int score_shift = 32;
    static constexpr int move_shift = 48;
    static constexpr std::uint64_t score_mask = std::uint64_t{0xffff} << score_shift;
    static constexpr std::uint64_t move_mask = std::uint64_t{0xffff} << move_shift;

    static std::uint64_t load(std::uint64_t const& word) {
        // atomic_ref of this language version takes no const object; a load changes nothing.
        return atomic_ref<std::uint64_t>(const_cast<std::uint64_t&>(word))
            .load(std::memory_order_relaxed);
    }

    unsigned char field(int shift) const {
        return static_cast<unsigned char>(get_value() >> shift);
    }
    unsigned char bound() const { return field(bound_shift); }

    std::uint64_t key_ = 0;
    std::uint64_t value_ = 0;
};

static_assert(sizeof(TTrecord) == 16);

inline TTrecord& TTrecord::operator=(TTrecord const& other) {
    std::uint64_t const key = other.get_key();
    std::uint64_t value = other.get_value();
    if ((value & move_mask) == 0 && key == get_key()) {
        value |= get_value() & move_mask;
    }
    atomic_ref<std::uint64_t>(value_).store(value, std::memory_order_relaxed);
    atomic_ref<std::uint64_t>(key_).store(key, std::memory_order_release);
    return *this;
}

inline void TTrecord::clear() {
    atomic_ref<std::uint64_t>(value_).store(0, std::memory_order_relaxed);
    atomic_ref<std::uint64_t>(key_).store(0, std::memory_order_relaxed);
}

inline int TTrecord::get_score(int const& ply) const {
    int const stored = static_cast<std::int16_t>(get_value() >> score_shift);
    if (stored > max_ordinary_score) {
        return static_cast<std::int16_t>(stored - ply);
    }
    if (stored < -max_ordinary_score) {
        return static_cast<std::int16_t>(stored + ply);
    }
    return stored;
}

inline void TTrecord::set_score(int const& score, int const& ply) {
    int stored = score;
    if (score >= min_mate_score) {
        stored += ply;
    } else if (score < -max_ordinary_score) {
        stored -= ply;
    }
    value_ =
        (value_ & ~score_mask) | (std::uint64_t{static_cast<std::uint16_t>(stored)} << score_shift);
}

}  // namespace orvelin
