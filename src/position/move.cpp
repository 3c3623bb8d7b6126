#include "position/move.h"

#include <array>

namespace orvelin {

namespace {

constexpr std::array<char const*, 8> code_texts{"nullmove  ",   "normal_move  ",  "promo_queen  ",
                                                "promo_rook  ", "promo_bishop  ", "promo_knight  ",
                                                "castling  ",   "en_passant  "};

constexpr std::array<char const*, 13> xcode_texts{
    "hashtable_move", "mate_attack",      "promotion",        "good_capture",     "killer",
    "counter_move",   "historical_move1", "historical_move2", "historical_move3", "xnormal_move",
    "bad move",       "losing_capture",   "no_xmove_t"};

constexpr std::array<char, 8> promotion_letters{0, 0, 'q', 'r', 'b', 'n', 0, 0};

std::string standard_castling(std::string const& text) {
    if (text == "e1h1") {
        return "e1g1";
    }
    if (text == "e1a1") {
        return "e1c1";
    }
    if (text == "e8h8") {
        return "e8g8";
    }
    if (text == "e8a8") {
        return "e8c8";
    }
    return text;
}

}  // namespace

std::string Move::algebraic(bool chess960) const {
    if (word_ == 0) {
        return "0000";
    }
    std::string text = from().name() + to().name();
    char const letter = promotion_letters[code()];
    if (letter != 0) {
        text += letter;
    }
    return code() == castling && !chess960 ? standard_castling(text) : text;
}

std::string Move::dump() const {
    std::string text = "from:" + from().name() + "  to:" + to().name() +
                       "  code:" + code_texts[code()] + "piece:" + piece().name() +
                       "  capture:" + capture().name() + "  check:" + (check() ? "true" : "false") +
                       "   xcode:";
    if (xcode() < xcode_texts.size()) {
        text += xcode_texts[xcode()];
    }
    return text;
}

}  // namespace orvelin
