#include "position/material_index.h"

namespace orvelin {

std::string MaterialIndex::str() const {
    std::string text;
    auto const add = [&text](int count, char letter) {
        text.append(static_cast<std::size_t>(count), letter);
    };
    add(1, 'K');
    add(get_whitequeen(), 'Q');
    add(get_whiterook(), 'R');
    add(get_whitebishop(), 'B');
    add(get_whiteknight(), 'N');
    add(get_whitepawn(), 'P');
    add(1, 'k');
    add(get_blackqueen(), 'q');
    add(get_blackrook(), 'r');
    add(get_blackbishop(), 'b');
    add(get_blackknight(), 'n');
    add(get_blackpawn(), 'p');
    return text;
}

}  // namespace orvelin
