#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "position/move.h"
#include "position/move_list.h"

namespace orvelin {

/// The sort of a move list by the ordering class of its moves, one place after the other.
///
/// An exchange sort that is not stable. The order that it leaves within a class decides which
/// moves are reduced and pruned by index, so the procedure itself is part of the search. Most nodes
/// end after a few moves, so a place is filled when its move is wanted. Refers to the list, whose
/// other moves nobody may touch meanwhile; lives on the stack of a node.
class MoveSort {
 public:
    /// The classes of the moves are those of xmove_t.
    explicit MoveSort(MoveList& list);

    /// Fills the place with its move: compares it with all places behind it, and exchanges it with
    /// each that has a lower class. To be called for 0 to size() - 1, in this order.
    void fill(int place) {
        if (masked_) {
            fill_by_masks(place);
        } else {
            fill_by_exchanges(place);
        }
    }

    /// Sorts the whole list, lowest class first.
    static void sort_by_class(MoveList& list);

 private:
    static constexpr std::size_t classes = no_xmove_t + 1;

    void fill_by_exchanges(int place);
    void fill_by_masks(int place);

    MoveList& list_;
    bool masked_;
    /// For each class the places of the moves of lower class, among those that are not filled.
    std::array<std::uint64_t, classes + 1> lower_{};
};

}  // namespace orvelin
