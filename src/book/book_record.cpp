#include "book/book_record.h"

#include <algorithm>

namespace orvelin {

Book_record::Book_record(char const* bytes) {
    std::copy_n(bytes, size, bytes_.begin());
}

BKmove Book_record::get_move() const {
    constexpr int square_bits = 0x0FFF;
    BKmove const stored(get<std::uint16_t>(move_offset));
    BKmove move(static_cast<std::uint16_t>(stored.dump() & square_bits));
    if (stored.code() >= 1 && stored.code() <= 4) {
        move.set_code(static_cast<char>(stored.code()));
    }
    return move;
}

}  // namespace orvelin
