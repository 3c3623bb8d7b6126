#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace orvelin::analyse {

/// How many pieces of each kind a side has more than the other one, or what has changed of that.
struct MaterialBalance {
    /// Pawns, knights, bishops, rooks, queens.
    std::array<int, 5> more{};

    /// In hundreds of a pawn by the common rule: 100, 300, 300, 500, 900.
    int value() const;
    MaterialBalance operator-(MaterialBalance const& other) const;
    MaterialBalance operator-() const { return MaterialBalance() - *this; }
    bool operator==(MaterialBalance const& other) const = default;
};

/// What White has more in a position; only the first field of the text is looked at.
MaterialBalance material_of(std::string_view fen);

/// Whether a side has bishops on squares of both colours; only the first field of the text is
/// looked at.
bool has_bishop_pair(std::string_view fen, bool white);

/// What has changed, as the object of "wins": "a bishop", "the exchange and a pawn", "the queen for
/// two rooks". A knight for a bishop is not told. Empty where nothing is won.
std::string won_text(MaterialBalance const& change);

}  // namespace orvelin::analyse
