#pragma once

#include <atomic>
#include <bit>
#include <version>

namespace orvelin {

// What some libraries lack of this version of the language.

#ifdef __cpp_lib_bit_cast

using std::bit_cast;

#else

/// The object with the same bits.
template <typename To, typename From>
constexpr To bit_cast(From const& from) noexcept {
    static_assert(sizeof(To) == sizeof(From));
    return __builtin_bit_cast(To, from);
}

#endif

#ifdef __cpp_lib_atomic_ref

using std::atomic_ref;

#else

/// Atomic access to a plain word.
template <typename Word>
class atomic_ref {
 public:
    explicit atomic_ref(Word& word) : word_(&word) {}

    Word load(std::memory_order order) const {
        return __atomic_load_n(word_, static_cast<int>(order));
    }
    void store(Word value, std::memory_order order) const {
        __atomic_store_n(word_, value, static_cast<int>(order));
    }

 private:
    Word* word_;
};

#endif

}  // namespace orvelin
