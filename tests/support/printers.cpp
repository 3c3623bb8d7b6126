#include "support/printers.h"

#include <cstddef>
#include <ostream>
#include <stdexcept>

#include "position/bit_board.h"
#include "position/move.h"
#include "position/move_list.h"
#include "position/piece.h"
#include "position/square.h"

namespace orvelin {

namespace {

/// The name of a square or a piece; its id where it has none.
template <typename Named>
void print_name(Named const& named, std::ostream* out) {
    try {
        *out << named.name();
    } catch (std::logic_error const&) {
        *out << "id " << named.id();
    }
}

}  // namespace

void PrintTo(Square const& square, std::ostream* out) {
    print_name(square, out);
}

void PrintTo(Piece const& piece, std::ostream* out) {
    print_name(piece, out);
}

void PrintTo(BitBoard const& set, std::ostream* out) {
    char const* separator = "";
    *out << '{';
    for (int id = 0; id < 64; ++id) {
        if (set & Square::bb[static_cast<std::size_t>(id)]) {
            *out << separator << Square(id).name();
            separator = " ";
        }
    }
    *out << '}';
}

void PrintTo(Move const& move, std::ostream* out) {
    *out << move.algebraic(true) << " [piece " << move.piece_id() << ", capture "
         << move.capture_id() << ", code " << int{move.code()} << ", class " << int{move.xcode()}
         << (move.check() ? ", check" : "") << "]";
}

void PrintTo(MoveList const& list, std::ostream* out) {
    *out << list.size() << " moves";
    for (Move const& move : list) {
        *out << "\n  ";
        PrintTo(move, out);
    }
}

}  // namespace orvelin
