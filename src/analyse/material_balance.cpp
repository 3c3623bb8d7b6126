#include "analyse/material_balance.h"

#include <algorithm>

namespace orvelin::analyse {

namespace {

constexpr std::array<int, 5> values{100, 300, 300, 500, 900};
constexpr std::array<char const*, 5> names{"pawn", "knight", "bishop", "rook", "queen"};
constexpr std::size_t knight = 1;
constexpr std::size_t bishop = 2;
constexpr std::size_t rook = 3;
constexpr std::size_t queen = 4;

/// A knight won and a bishop lost are no change.
void cancel_minor_pieces(std::array<int, 5>& more) {
    int const knights = more[knight];
    int const bishops = more[bishop];
    if ((knights > 0) != (bishops > 0)) {
        int const both = std::min(std::abs(knights), std::abs(bishops));
        more[knight] -= knights > 0 ? both : -both;
        more[bishop] -= bishops > 0 ? both : -both;
    }
}

/// Takes a rook for a minor piece out of what is won, when that is there.
bool take_exchange(std::array<int, 5>& more) {
    std::size_t const minor = more[knight] == -1 ? knight : bishop;
    if (more[rook] != 1 || more[queen] != 0 || more[minor] != -1 ||
        more[minor == knight ? bishop : knight] != 0) {
        return false;
    }
    more[rook] = 0;
    more[minor] = 0;
    return true;
}

std::string counted(int count, std::size_t kind) {
    constexpr std::array<char const*, 9> words{"",     "",    "two",   "three", "four",
                                               "five", "six", "seven", "eight"};
    if (count == 1) {
        return (kind == queen ? "the " : "a ") + std::string(names[kind]);
    }
    auto const at = static_cast<std::size_t>(count);
    return (at < words.size() ? words[at] : std::to_string(count)) + " " + names[kind] + "s";
}

/// The kinds of which there are more, by this sign, the most valuable first.
std::string list(std::array<int, 5> const& more, int sign, std::string text) {
    std::array<std::size_t, 5> const order{queen, rook, bishop, knight, 0};
    std::size_t left = static_cast<std::size_t>(
        std::count_if(more.begin(), more.end(), [sign](int count) { return count * sign > 0; }));
    for (std::size_t const kind : order) {
        if (more[kind] * sign > 0) {
            --left;
            text += text.empty() ? "" : (left == 0 ? " and " : ", ");
            text += counted(more[kind] * sign, kind);
        }
    }
    return text;
}

}  // namespace

int MaterialBalance::value() const {
    int sum = 0;
    for (std::size_t kind = 0; kind < more.size(); ++kind) {
        sum += more[kind] * values[kind];
    }
    return sum;
}

MaterialBalance MaterialBalance::operator-(MaterialBalance const& other) const {
    MaterialBalance difference;
    for (std::size_t kind = 0; kind < more.size(); ++kind) {
        difference.more[kind] = more[kind] - other.more[kind];
    }
    return difference;
}

MaterialBalance material_of(std::string_view fen) {
    constexpr std::string_view white = "PNBRQ";
    constexpr std::string_view black = "pnbrq";
    MaterialBalance balance;
    for (char const letter : fen.substr(0, fen.find(' '))) {
        if (std::size_t const kind = white.find(letter); kind != std::string_view::npos) {
            ++balance.more[kind];
        } else if (std::size_t const other = black.find(letter); other != std::string_view::npos) {
            --balance.more[other];
        }
    }
    return balance;
}

bool has_bishop_pair(std::string_view fen, bool white) {
    std::array<bool, 2> there{};
    std::size_t place = 0;
    // A line that ends changes the colour, as does each of the eight squares before it.
    for (char const letter : fen.substr(0, fen.find(' '))) {
        if (letter == (white ? 'B' : 'b')) {
            there[place % 2] = true;
        }
        bool const is_count = letter >= '1' && letter <= '8';
        place += is_count ? static_cast<std::size_t>(letter - '0') : 1;
    }
    return there[0] && there[1];
}

std::string won_text(MaterialBalance const& change) {
    std::array<int, 5> more = change.more;
    cancel_minor_pieces(more);
    std::string const won = list(more, 1, take_exchange(more) ? "the exchange" : "");
    std::string const given = list(more, -1, "");
    return won.empty() || given.empty() ? won : won + " for " + given;
}

}  // namespace orvelin::analyse
