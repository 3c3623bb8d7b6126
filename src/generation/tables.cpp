#include "generation/tables.h"

namespace orvelin {

Tables::Tables() : hash_keys(make_polyglot_keys()), hash_keys2(make_random_keys()) {}

}  // namespace orvelin
