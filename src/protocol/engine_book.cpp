#include <array>
#include <stdexcept>

#include "protocol/engine.h"

namespace orvelin {

// A missing book is no fault: nothing is said, and the option OwnBook stays off.
void Engine::open_book() {
    static constexpr std::array<char const*, 3> places{
        "/usr/local/games/orvelin.files/Orvelin.bin",
        "/usr/games/orvelin.files/Orvelin.bin",
        "Orvelin.bin",
    };
    book_available_ = false;
    for (char const* const place : places) {
        book_.set_name(place);
        try {
            book_.open();
            book_available_ = true;
            return;
        } catch (std::logic_error const&) {
            continue;
        }
    }
}

bool Engine::answer_from_book() {
    if (!ownbook_) {
        return false;
    }
    if (!gate_.search_runs_or_waits()) {
        return answer_from_book(position_, position_.history().size());
    }
    return answer_from_book(gate_.searched_position(), gate_.searched_records());
}

// The book's move leaves no other trace: no log line, no change of any state (oddity 33).
bool Engine::answer_from_book(ChessPosition const& position, std::size_t records) {
    constexpr std::size_t first_record_without_book = 25;
    if (records >= first_record_without_book) {
        return false;
    }
    hasher_.init(&position);
    BKmove const move(book_.get_move(hasher_.hash()));
    if (move.nomove()) {
        return false;
    }
    communicator_.to_interface("bestmove " + move(position).algebraic(chess960_));
    return true;
}

}  // namespace orvelin
