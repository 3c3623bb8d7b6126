#include "evaluation/pawn_hash_table.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace orvelin {

PawnHashTable::PawnHashTable() : table_(std::make_unique<PHTrecord[]>(size_)) {}

void PawnHashTable::clear() {
    std::for_each_n(table_.get(), size_, [](PHTrecord& record) { record.clear(); });
}

bool PawnHashTable::read(std::uint64_t key) {
    PHTrecord const* const record = find(key);
    if (record == nullptr) {
        return false;
    }
    current_ = *record;
    return true;
}

void PawnHashTable::write() {
    slot(current_.key) = current_;
}

std::string PawnHashTable::stats() const {
    auto const used = std::count_if(table_.get(), table_.get() + size_,
                                    [](PHTrecord const& record) { return record.key != 0; });
    std::ostringstream text;
    text << "PawnHashTable::stats() usage: " << std::setw(3) << 100 * used / size_ << "%"
         << "  first pht reads: " << first_ << "  conflicting pht reads: " << conflicting_
         << "  total reads: " << total_ << "\n";
    return text.str();
}

}  // namespace orvelin
