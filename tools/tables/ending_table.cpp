#include "tables/ending_table.h"

#include <chrono>

#include "support/progress.h"
#include "tables/fen_argument.h"
#include "tables/table_file.h"
#include "tables/words.h"

namespace orvelin::tools {

namespace {

/// The passes behind the first look at all positions, which finds the mates.
constexpr int passes = 101;

}  // namespace

EndingTable::EndingTable(ending_t const& ending)
    : ending_(ending),
      values_(attacks_, ending.piece1, ending.piece2),
      pieces_(attacks_, ending.piece1, ending.piece2) {}

void EndingTable::build(Progress& progress) {
    auto const start = std::chrono::steady_clock::now();
    values_.clear();
    while (!values_.ready()) {
        std::string const step = values_.progress() < 0
                                     ? "finding the mates"
                                     : "pass " + std::to_string(values_.progress() + 1) + " of " +
                                           std::to_string(passes);
        progress.show(std::string(ending_.name) + ": " + step + ", " +
                      seconds_text(std::chrono::steady_clock::now() - start));
        values_.create();
    }
    progress.clear();
}

void EndingTable::load(std::string const& path) {
    load_table(path, values_);
}

void EndingTable::save(std::string const& path) const {
    save_table(values_, path);
}

int EndingTable::eval(ending_position_t const& position) {
    pieces_.fen(position.fen);
    int const value = values_.eval(pieces_.get_key());
    // That a position is illegal has no sign.
    bool const negated = position.exchanged && value != Egt4Pieces::illegal;
    return negated ? -value : value;
}

std::string EndingTable::fen(unsigned int key) {
    pieces_.set_key(key);
    return pieces_.fen();
}

}  // namespace orvelin::tools
