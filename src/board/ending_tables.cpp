#include "board/ending_tables.h"

#include <cstdlib>
#include <sstream>

namespace orvelin::board {

namespace {

/// What `Egt4Pieces::eval` gives for a mate on the board.
constexpr int mated = 30000;
/// Positions that are none, and such as no table knows, have values between this and a draw.
constexpr int least_value = 29000;

std::optional<analyse::EndingPosition> read(analyse::Ending const& ending, std::string const& fen) {
    std::istringstream fields(fen);
    std::string placement;
    std::string side;
    std::string rights;
    fields >> placement >> side >> rights;
    // A table knows no castling.
    return rights == "-" ? analyse::in_colours_of(ending, placement, side == "w") : std::nullopt;
}

}  // namespace

std::optional<std::size_t> EndingTables::find(std::string const& fen) {
    for (std::size_t i = 0; i < analyse::endings.size(); ++i) {
        if (read(analyse::endings[i], fen)) {
            return i;
        }
    }
    return std::nullopt;
}

double EndingTables::progress(std::size_t ending) const {
    // One step for the mates, and one for each distance up to the last.
    constexpr double steps = 102;
    auto const& table = tables_[ending];
    return table == nullptr ? 0 : (table->progress() + 1) / steps;
}

void EndingTables::build(std::size_t ending) {
    auto& table = tables_[ending];
    if (table == nullptr) {
        analyse::Ending const& kind = analyse::endings[ending];
        table = std::make_unique<Egt4Pieces>(attacks_, kind.piece1, kind.piece2);
    }
    table->create();
}

EndingValue EndingTables::value(std::size_t ending, std::string const& fen) {
    auto const position = read(analyse::endings[ending], fen);
    if (!position) {
        return {};
    }
    int const value = tables_[ending]->eval(position->fen);
    if (std::abs(value) < least_value) {
        return {};
    }
    bool const white = (value > 0) != position->exchanged;
    return {white ? 1 : -1, mated - std::abs(value)};
}

}  // namespace orvelin::board
