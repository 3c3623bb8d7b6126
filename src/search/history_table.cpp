#include "search/history_table.h"

namespace orvelin {

void HistoryTable::clear() {
    values_.fill(0);
}

void HistoryTable::divide_by_8() {
    for (std::int64_t& value : values_) {
        value >>= 3;
    }
}

}  // namespace orvelin
