#include "search/bucket.h"

#include <sstream>

namespace orvelin {

std::string Bucket::dump() const {
    std::ostringstream text;
    for (TTrecord const& record : records_) {
        text << "  score=" << record.get_score(0)
             << "  draft=" << static_cast<int>(record.get_draft()) << '\n';
    }
    return text.str();
}

}  // namespace orvelin
