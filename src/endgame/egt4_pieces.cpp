#include "endgame/egt4_pieces.h"

#include <stdexcept>

namespace orvelin {

namespace {

constexpr int mate_value = 30000;
/// The bytes from here up to `drawn` are wins of Black.
constexpr int black_wins = 128;

std::string name_of(piece_t piece1_id, piece_t piece2_id) {
    if (piece1_id == white_knight && piece2_id == white_bishop) {
        return "KBNK";
    }
    if (piece1_id == white_queen && piece2_id == black_rook) {
        return "KQKR";
    }
    if (piece1_id == white_rook && piece2_id == black_knight) {
        return "KRKN";
    }
    return "unknown";
}

}  // namespace

Egt4Pieces::Egt4Pieces(Attacks const& attacks, piece_t piece1_id, piece_t piece2_id)
    : attacks_(attacks),
      piece1_id_(piece1_id),
      piece2_id_(piece2_id),
      name_(name_of(piece1_id, piece2_id)) {}

Egt4Pieces::~Egt4Pieces() {
    release();
}

void Egt4Pieces::release() {
    if (!owns_memory_) {
        return;
    }
    delete[] table_;
    table_ = nullptr;
}

void Egt4Pieces::allocate() {
    if (table_ != nullptr) {
        return;
    }
    if (!owns_memory_) {
        throw std::logic_error("Egt4Pieces::allocate  no memory");
    }
    table_ = new unsigned char[size_];
}

void Egt4Pieces::clear() {
    progress_ = -1;
    release();
}

void Egt4Pieces::set_memory(unsigned char* memory) {
    progress_ = -1;
    release();
    table_ = memory;
    owns_memory_ = false;
}

int Egt4Pieces::eval() const {
    return eval(get_key());
}

int Egt4Pieces::eval(std::string const& text) {
    fen(text);
    return eval();
}

int Egt4Pieces::eval(unsigned int key) const {
    if (table_ == nullptr || progress_ < 0) {
        return unknown;
    }
    int const byte = (*this)[key];
    if (byte == unknown || byte == illegal) {
        return byte;
    }
    if (byte == drawn) {
        return 0;
    }
    return sign_ * (byte < black_wins ? mate_value - byte : byte - black_wins - mate_value);
}

bool Egt4Pieces::operator==(Egt4Pieces const& other) const {
    if (piece1_id_ != other.piece1_id_ || size_ != other.size_) {
        return false;
    }
    for (unsigned int key = 0; key < size_; ++key) {
        if ((*this)[key] != other[key]) {
            return false;
        }
    }
    return true;
}

unsigned int Egt4Pieces::diff(Egt4Pieces const& other) const {
    unsigned int lowest_key = 0;
    int lowest = unknown + 1;
    for (unsigned int key = 0; key < size_; ++key) {
        int const byte = (*this)[key];
        if (byte != other[key] && byte < lowest) {
            lowest = byte;
            lowest_key = key;
        }
    }
    return lowest_key;
}

}  // namespace orvelin
