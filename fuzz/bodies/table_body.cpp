#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bodies/fuzz_bodies.h"
#include "bodies/memory_file.h"
#include "bodies/position_queries.h"
#include "bodies/require.h"
#include "bodies/swallowed_output.h"
#include "endgame/egt4_pieces.h"
#include "generation/tables.h"
#include "position/piece.h"

namespace orvelin::fuzz {

namespace {

/// Numbers at the end of the good table that the input stands for.
constexpr std::size_t open_numbers = 16;

/// A table file of draws without its last numbers and its end.
std::string const& good_head() {
    static std::string const head = [] {
        Egt4Pieces const table(small_tables().attacks, white_queen, black_rook);
        std::string text = "begin{KQKR}";
        for (std::size_t key = 0; key + open_numbers < table.size(); ++key) {
            text += " 9";
        }
        return text;
    }();
    return head;
}

/// A table of positions that are known, for questions only.
Egt4Pieces& good_table() {
    static Egt4Pieces table(small_tables().attacks, white_queen, black_rook);
    if (!table.ready()) {
        std::string end;
        for (std::size_t i = 0; i < open_numbers; ++i) {
            end += " 253";
        }
        table.load(MemoryFile(good_head(), end + " end").name());
    }
    return table;
}

/// Asks everything that can be asked of a position of a table.
void query(Egt4Pieces& table, std::string const& position) {
    try {
        table.eval(position);
    } catch (std::logic_error const&) {
        // By design: a letter that is no piece of a table.
    }
    unsigned int const key = table.get_key();
    require(key <= table.size(), "a key lies in the table or just behind it");
    table.fen();
    table.get_key_str();
    table[key];
    table.eval(key);
    Egt4Pieces::is_legal_key(key);
    table.set_key(key);
    require(key == table.size() || table.get_key() == key ||
                table.get_key() == Egt4Pieces::get_mirror_key(key),
            "a position comes back from its key");
}

void load(std::string_view head, std::string_view tail) {
    Egt4Pieces table(small_tables().attacks, white_knight, white_bishop);
    try {
        MemoryFile const file(head, tail);
        table.load(file.name());
        require(table.ready(), "what was loaded is ready");
        table.stats();
    } catch (std::runtime_error const&) {
        require(!table.ready(), "what could not be loaded is not ready");
    }
    query(table, "8/8/8/4k3/8/8/8/2B1K1N1 w - - 0 1");
    query(table, "8/8/8/4k3/8/8/8/Q3K2r b - - 0 1");
}

}  // namespace

void fuzz_table(std::string_view input) {
    if (input.empty()) {
        return;
    }
    SwallowedOutput const silence;
    std::string_view const text = input.substr(1);
    if (input.front() == 'h') {
        load(text, {});
    }
    if (input.front() == 't') {
        load(good_head(), text);
    }
    if (input.front() == 'p') {
        query(good_table(), std::string(text));
    }
}

}  // namespace orvelin::fuzz
