#pragma once

#include "generation/attacks.h"
#include "generation/connections.h"
#include "position/hash_keys.h"
#include "search/lmr_table.h"
#include "search/transposition_table.h"

namespace orvelin {

/// Everything that is computed once at start, and the transposition table.
///
/// An engine owns one; its positions, generators, evaluation and search keep
/// references into it, so it is neither copied nor moved. All members but the transposition table
/// are read-only after construction and may be read from any thread.
struct Tables {
    Tables();
    Tables(Tables const&) = delete;
    Tables& operator=(Tables const&) = delete;

    TranspositionTable transposition_table;
    Attacks attacks;
    Connections connections;
    LmrTable lmr_table;
    HashKeys hash_keys;
    /// A second set of the same shape, which nothing reads (oddity 99).
    HashKeys hash_keys2;
};

}  // namespace orvelin
