#pragma once

#include "position/move_list.h"

namespace orvelin {

/// The sort of a move list by the ordering class of its moves.
///
/// An exchange sort that is not stable. The order that it leaves within a class decides which
/// moves are reduced and pruned by index, so the procedure itself is part of the search.
class MoveSort {
 public:
    /// Sorts by class, lowest first, into the order in which exchange_sort() leaves the list. The
    /// classes are those of xmove_t.
    static void sort_by_class(MoveList& list);
    /// The procedure as it is meant, in quadratic time: each place is compared with all places
    /// behind it, and exchanged with each that has a lower class.
    static void exchange_sort(MoveList& list);

 private:
    static void sort_by_masks(MoveList& list);
};

}  // namespace orvelin
