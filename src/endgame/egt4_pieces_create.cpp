#include <algorithm>

#include "endgame/egt4_pieces.h"
#include "position/masks.h"

namespace orvelin {

namespace {

constexpr unsigned char white_is_mated = 128;
constexpr unsigned char black_is_mated = 0;
constexpr int distance_mask = 127;

bool white_wins(unsigned char byte) {
    return byte < white_is_mated;
}

}  // namespace

bool Egt4Pieces::create() {
    create_timer_.start();
    bool const complete = create_slice();
    create_timer_.stop();
    return complete;
}

bool Egt4Pieces::create_slice() {
    if (progress_ < 0) {
        allocate();
        progress_ = 0;
        set_initial_eval();
        return false;
    }
    if (ready()) {
        return true;
    }
    create_next();
    if (progress_ <= last_distance - 1) {
        return false;
    }
    std::replace(table_, table_ + size_, unknown, drawn);
    return true;
}

void Egt4Pieces::set_initial_eval() {
    if (table_ == nullptr) {
        return;
    }
    for (unsigned int key = 0; key < size_; ++key) {
        table_[key] = unknown;
        set_initial_eval(key);
    }
}

void Egt4Pieces::set_initial_eval(unsigned int key) {
    if (table_ == nullptr || key >= size_) {
        return;
    }
    if (!is_legal_key(key)) {
        table_[key] = illegal;
        return;
    }
    set_key(key);
    if (!is_legal()) {
        table_[key] = illegal;
        return;
    }
    if (has_legal_move()) {
        return;
    }
    require_pieces("Egt4Pieces::set_initial_eval(unsigned key)  unknown piece1",
                   "Egt4Pieces::set_initial_eval(unsigned key)  unknown piece2");
    if (!king_attacked(stm_ == white ? white : black)) {
        table_[key] = drawn;
    } else {
        table_[key] = stm_ == white ? white_is_mated : black_is_mated;
    }
}

bool Egt4Pieces::has_legal_move() {
    generate_moves(moves_);
    return std::any_of(moves_.begin(), moves_.end(), [this](Move const& move) {
        make_move(move);
        bool const legal = is_legal();
        unmake_move(move);
        return legal;
    });
}

// Each write is one more than the distance of its pass, and the passes rise: what is written is
// the winner's shortest way against the loser's longest resistance.
void Egt4Pieces::create_next() {
    if (table_ == nullptr) {
        return;
    }
    for (unsigned int key = 0; key < size_; ++key) {
        unsigned char const byte = table_[key];
        // The bytes that are no distance have one above 100 in their low bits.
        if ((byte & distance_mask) != progress_) {
            continue;
        }
        set_key(key);
        generate_previous_moves(previous_moves_);
        auto const value = static_cast<unsigned char>(byte + 1);
        bool const winner_to_move = white_wins(byte) == (stm_ == white);
        if (winner_to_move) {
            settle_losses(value);
        } else {
            settle_wins(value);
        }
    }
    ++progress_;
}

/// The side that moved here wins: each unknown position before is won for it.
void Egt4Pieces::settle_wins(unsigned char value) {
    for (Move const& move : previous_moves_) {
        unmake_move(move);
        unsigned int const key = get_key();
        if (table_[key] == unknown) {
            settle(key, value);
        }
        make_move(move);
    }
}

/// The side that moved here loses: a position before is lost for it if all its moves lose.
void Egt4Pieces::settle_losses(unsigned char value) {
    for (Move const& move : previous_moves_) {
        unmake_move(move);
        unsigned int const key = get_key();
        if (table_[key] == unknown && all_moves_lose()) {
            settle(key, value);
        }
        make_move(move);
    }
}

bool Egt4Pieces::all_moves_lose() {
    generate_moves(moves_);
    bool const white_moves = stm_ == white;
    return std::all_of(moves_.begin(), moves_.end(), [&](Move const& move) {
        make_move(move);
        unsigned char const byte = table_[get_key()];
        unmake_move(move);
        if (byte == unknown || byte == drawn) {
            return false;
        }
        return byte == illegal || white_wins(byte) != white_moves;
    });
}

// With the white king on a long diagonal the reflected position has a key of its own.
void Egt4Pieces::settle(unsigned int key, unsigned char value) {
    table_[key] = value;
    if (white_king_ & diagonals) {
        table_[get_mirror_key(key)] = value;
    }
}

}  // namespace orvelin
