#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "endgame/egt4_pieces.h"
#include "generation/attacks.h"

namespace orvelin::test {

inline Attacks const& shared_attacks() {
    static Attacks const attacks;
    return attacks;
}

/// Key of the position that the text describes to this table.
inline unsigned int key_of(Egt4Pieces& table, std::string const& fen) {
    table.fen(fen);
    return table.get_key();
}

/// A table on memory that the test owns, with guard bytes on both sides of it.
class LentTable {
 public:
    LentTable(piece_t piece1_id, piece_t piece2_id, unsigned char fill = Egt4Pieces::drawn)
        : table_(shared_attacks(), piece1_id, piece2_id), memory_(table_.size() + 2 * guard, mark) {
        std::fill(memory_.begin() + guard, memory_.end() - guard, fill);
        table_.set_memory(bytes());
    }

    Egt4Pieces& table() { return table_; }
    unsigned char* bytes() { return memory_.data() + guard; }
    unsigned char& byte(unsigned int key) { return bytes()[key]; }
    unsigned char& byte(std::string const& fen) { return byte(key_of(table_, fen)); }
    /// Lets the bytes be read as values: no byte has the distance of the pass before the first,
    /// so it changes none of them.
    void open() { table_.create_next(); }
    /// Nothing was written before or behind the table.
    bool guards_whole() const {
        auto const is_mark = [](unsigned char byte) { return byte == mark; };
        return std::all_of(memory_.begin(), memory_.begin() + guard, is_mark) &&
               std::all_of(memory_.end() - guard, memory_.end(), is_mark);
    }

 private:
    static constexpr std::ptrdiff_t guard = 4096;
    static constexpr unsigned char mark = 0x5A;

    Egt4Pieces table_;
    std::vector<unsigned char> memory_;
};

}  // namespace orvelin::test
