#include "tables/ending.h"

#include <strings.h>

namespace orvelin::tools {

ending_t const* find_ending(std::string const& name) {
    for (ending_t const& ending : endings) {
        if (strcasecmp(name.c_str(), ending.name) == 0) {
            return &ending;
        }
    }
    return nullptr;
}

}  // namespace orvelin::tools
