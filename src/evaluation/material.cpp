#include "evaluation/material.h"

#include <sstream>

#include "evaluation/material_warmup.h"

namespace orvelin {

Material::Material() {
    for (tp_row_t const& row : tp) {
        MaterialIndex material;
        material.set_index(row.key);
        table_[slot(row.key)] = {row.key, material.value()};
    }
}

std::string Material::dump() const {
    std::ostringstream text;
    for (slot_t const& entry : table_) {
        if (entry.key == 0) {
            continue;
        }
        MaterialIndex material;
        material.set_index(entry.key);
        text << "{" << entry.key << "," << entry.value << "},\t\t// " << material.str() << "\n";
    }
    return text.str();
}

}  // namespace orvelin
