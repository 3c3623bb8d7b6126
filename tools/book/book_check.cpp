#include "book/book_check.h"

#include "book/bk_move.h"
#include "book/entry_text.h"

namespace orvelin::tools {

void BookCheck::add(std::uint64_t number, Book_record const& entry) {
    if (positions_ == 0 || entry.get_key() != key_) {
        begin_key(number, entry);
    }
    key_has_weight_ = key_has_weight_ || entry.get_weight() > 0;
    BKmove const move = entry.get_move();
    if (!has_known_promotion(entry)) {
        fault(number, "unknown promotion in the move " + move_text(entry));
    } else if (move.nomove()) {
        fault(number, "no move");
    }
    auto const [place, is_new] = moves_.try_emplace(move.dump(), number);
    if (!is_new) {
        fault(number, "same move " + move_text(entry) + " of the same key as in entry " +
                          std::to_string(place->second));
    }
}

void BookCheck::finish() {
    end_key();
}

void BookCheck::begin_key(std::uint64_t number, Book_record const& entry) {
    end_key();
    if (positions_ > 0 && entry.get_key() < key_) {
        fault(number, "key " + key_text(entry.get_key()) + " behind the larger key " +
                          key_text(key_) + ", not sorted");
    }
    ++positions_;
    key_ = entry.get_key();
    first_of_key_ = number;
    key_has_weight_ = false;
    moves_.clear();
}

void BookCheck::end_key() {
    if (positions_ > 0 && !key_has_weight_) {
        fault(first_of_key_, "all weights of the key " + key_text(key_) + " are 0");
    }
}

void BookCheck::fault(std::uint64_t number, std::string const& text) {
    report_("entry " + std::to_string(number) + ": " + text);
}

}  // namespace orvelin::tools
