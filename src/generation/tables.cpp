#include "generation/tables.h"

#include "position/board_tables.h"

namespace orvelin {

Tables::Tables() : hash_keys(make_polyglot_keys()), hash_keys2(make_random_keys()) {}

BoardTables::BoardTables(Tables const& tables)
    : attacks(tables.attacks), connections(tables.connections), hash_keys(tables.hash_keys) {}

}  // namespace orvelin
