// The strict reader of FEN texts. What passes it the core reads in the same way.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "play/fen_board.h"
#include "play/position_reader.h"
#include "play/reader_text.h"

namespace orvelin::play {

namespace {

/// The range of both counters: beyond it no game goes on, and far below the 16 bits of the core.
constexpr std::int64_t max_counter = 20000;

std::string field_name(std::size_t index) {
    static constexpr char const* names[] = {"pieces",     "side to move",    "castling",
                                            "en passant", "half-move clock", "move number"};
    return "FEN field " + std::to_string(index + 1) + " (" + names[index] + "): ";
}

/// One reading of one text. Each step adds its field to the repaired text, or returns a reason.
class FenCheck {
 public:
    FenCheck(std::string_view fen, std::vector<std::string>& remarks)
        : fen_(fen), fields_(words_of(fen)), remarks_(remarks) {}

    std::string check(std::string& repaired);

 private:
    std::string check_number_of_fields();
    std::string check_side();
    std::string check_castling();
    std::string check_en_passant();
    std::string check_counter(std::size_t field, std::int64_t low);

    bool is_none(std::size_t field);
    bool given(std::size_t field) const { return field < fields_.size(); }
    void append(std::string_view field) { repaired_.append(" ").append(field); }
    void remark(std::size_t field, std::string const& what) {
        remarks_.push_back(field_name(field) + what);
    }
    void remark_blanks();
    std::string why_no_right(char letter, int rook) const;
    bool just_passed(int square) const;

    std::string_view fen_;
    std::vector<std::string_view> fields_;
    std::vector<std::string>& remarks_;
    std::string repaired_;
    FenBoard board_;
    bool white_to_move_ = true;
};

std::string FenCheck::check(std::string& repaired) {
    std::string reason = check_number_of_fields();
    if (!reason.empty()) {
        return reason;
    }
    reason = board_.read(fields_[0]);
    if (reason.empty()) {
        reason = board_.find_fault();
    }
    if (!reason.empty()) {
        return field_name(0) + reason;
    }
    repaired_ = fields_[0];
    for (auto const step :
         {&FenCheck::check_side, &FenCheck::check_castling, &FenCheck::check_en_passant}) {
        reason = (this->*step)();
        if (!reason.empty()) {
            return reason;
        }
    }
    reason = check_counter(4, 0);
    if (reason.empty()) {
        reason = check_counter(5, 1);
    }
    if (reason.empty()) {
        remark_blanks();
        repaired = repaired_;
    }
    return reason;
}

std::string FenCheck::check_number_of_fields() {
    if (fields_.empty()) {
        return "the FEN is empty";
    }
    if (fields_.size() > 6) {
        return "the FEN has " + std::to_string(fields_.size()) + " fields, the 7th is " +
               shown(fields_[6]) + ": 6 at most are expected";
    }
    return "";
}

std::string FenCheck::check_side() {
    if (!given(1)) {
        return field_name(1) + "is missing, w or b is expected";
    }
    std::string_view const side = fields_[1];
    if (side != "w" && side != "b") {
        return field_name(1) + shown(side) + " is neither w nor b";
    }
    white_to_move_ = side == "w";
    append(side);
    int const king = board_.king(!white_to_move_);
    if (board_.attacked(king, white_to_move_)) {
        return field_name(1) + (white_to_move_ ? "White" : "Black") +
               " is to move and could capture the king on " + square_name(king);
    }
    return "";
}

/// Whether the field holds no more than a dash, which is also taken for a missing one.
bool FenCheck::is_none(std::size_t field) {
    if (given(field) && fields_[field] != "-") {
        return false;
    }
    if (!given(field)) {
        remark(field, "is missing, - is taken");
    }
    append("-");
    return true;
}

std::string FenCheck::why_no_right(char letter, int rook) const {
    bool const white = letter < 'a';
    int const home = white ? 0 : 56;
    int const king = board_.king(white);
    // Castling has a rook on either side of the king to begin with, so it is never on an edge file.
    if (king <= home || king >= home + 7) {
        return "the king does not stand where it can castle";
    }
    return rook < 0 ? "no rook stands where it can castle" : "";
}

std::string FenCheck::check_castling() {
    if (is_none(2)) {
        return "";
    }
    std::string_view const letters = fields_[2];
    std::size_t const wrong = letters.find_first_not_of("KQkqABCDEFGHabcdefgh");
    if (wrong != std::string_view::npos) {
        return field_name(2) + shown(letters[wrong]) + " at its place " +
               std::to_string(wrong + 1) + " is no castling right";
    }
    std::string kept;
    std::string seen;
    bool wing_taken[4] = {};
    for (char const letter : letters) {
        if (seen.find(letter) != std::string::npos) {
            continue;
        }
        seen += letter;
        int const rook = board_.castling_rook(letter);
        std::string why = why_no_right(letter, rook);
        if (why.empty()) {
            bool const white = letter < 'a';
            bool& taken = wing_taken[(white ? 0 : 2) + (rook > board_.king(white) ? 1 : 0)];
            why = taken ? "there is a right on this side of the king already" : "";
            taken = true;
        }
        if (why.empty()) {
            kept += letter;
        } else {
            remark(2, shown(letter) + " is left out, " + why);
        }
    }
    append(kept.empty() ? "-" : kept);
    return "";
}

/// Whether a pawn of the side that is not to move can have passed the square with its last move.
bool FenCheck::just_passed(int square) const {
    int const ahead = white_to_move_ ? -8 : 8;
    return square / 8 == (white_to_move_ ? 5 : 2) && board_.at(square) == FenBoard::empty &&
           board_.at(square - ahead) == FenBoard::empty &&
           board_.at(square + ahead) == piece_letter('p', !white_to_move_);
}

std::string FenCheck::check_en_passant() {
    if (is_none(3)) {
        return "";
    }
    std::string_view const text = fields_[3];
    bool const square =
        text.size() == 2 && text[0] >= 'a' && text[0] <= 'h' && text[1] >= '1' && text[1] <= '8';
    if (!square) {
        return field_name(3) + shown(text) + " is neither a square nor -";
    }
    if (just_passed(text[0] - 'a' + 8 * (text[1] - '1'))) {
        append(text);
    } else {
        remark(3, shown(text) + " is left out, no pawn can have just passed it");
        append("-");
    }
    return "";
}

std::string FenCheck::check_counter(std::size_t field, std::int64_t low) {
    if (!given(field)) {
        remark(field, "is missing, " + std::to_string(low) + " is taken");
        append(std::to_string(low));
        return "";
    }
    auto const number = read_number(fields_[field]);
    if (!number || number->had_fraction) {
        return field_name(field) + shown(fields_[field]) + " is no whole number";
    }
    std::int64_t const value = std::clamp(number->value, low, max_counter);
    if (value != number->value) {
        remark(field,
               shown(fields_[field]) + " is out of range, " + std::to_string(value) + " is taken");
    }
    append(std::to_string(value));
    return "";
}

void FenCheck::remark_blanks() {
    std::size_t letters = fields_.size() - 1;
    for (std::string_view const field : fields_) {
        letters += field.size();
    }
    if (letters != fen_.size()) {
        remarks_.emplace_back("the FEN has more blanks than one between its fields");
    }
}

}  // namespace

Refusal check_fen(std::string_view fen, std::vector<std::string>& remarks, std::string& repaired) {
    return {FenCheck(fen, remarks).check(repaired)};
}

}  // namespace orvelin::play
