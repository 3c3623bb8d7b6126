#include "position/material_index.h"

namespace orvelin {

std::string MaterialIndex::str() const {
    auto const men = [](int count, char letter) {
        return std::string(static_cast<std::size_t>(count), letter);
    };
    return "K" + men(get_whitequeen(), 'Q') + men(get_whiterook(), 'R') +
           men(get_whitebishop(), 'B') + men(get_whiteknight(), 'N') + men(get_whitepawn(), 'P') +
           "k" + men(get_blackqueen(), 'q') + men(get_blackrook(), 'r') +
           men(get_blackbishop(), 'b') + men(get_blackknight(), 'n') + men(get_blackpawn(), 'p');
}

}  // namespace orvelin
