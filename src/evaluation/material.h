#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "position/material_index.h"

namespace orvelin {

/// Cache of the material values.
///
/// A table of 8192 slots with one probe and no chaining, held by value; a miss overwrites what
/// stood in the slot. A value depends on nothing but its key, so entries stay valid for ever. An
/// empty slot has the key 0 and the value 0, which is also what bare kings are worth. Used by one
/// thread at a time.
class Material {
 public:
    /// Number of slots.
    static constexpr std::size_t size = 8192;

    /// Fills the table with the warm-up configurations.
    Material();

    /// Value of a configuration from White's point of view, a pawn at 100; stored on a miss.
    int get_eval(MaterialIndex const& material) {
        slot_t& entry = table_[slot(material.index())];
        if (entry.key != material.index()) {
            entry = {material.index(), material.value()};
        }
        return entry.value;
    }

    /// One line for each slot in use, in slot order, as initialiser text.
    std::string dump() const;

    /// Slot of a key: the top 13 bits of its product with a fixed multiplier.
    static constexpr std::size_t slot(std::uint64_t key) {
        return static_cast<std::size_t>((key * 0x188465003482008ULL) >> 51);
    }

 private:
    struct slot_t {
        std::uint64_t key = 0;
        int value = 0;
    };

    std::array<slot_t, size> table_{};
};

}  // namespace orvelin
