#include "position/chess_position.h"

#include <cstddef>
#include <iostream>
#include <sstream>

namespace orvelin {

namespace {

/// Room for a long game and the deepest line of the search.
constexpr std::size_t start_capacity = 1024;

}  // namespace

std::atomic<int> ChessPosition::cp_id{0};

ChessPosition::ChessPosition(Tables const& tables)
    : id_(++cp_id), tables_(tables), board_tables_(tables), hasher_(tables) {
    history_.reserve(start_capacity);
    clear();
}

ChessPosition::ChessPosition(ChessPosition const& other) : ChessPosition(other.tables_) {
    copy_from(other);
}

ChessPosition& ChessPosition::operator=(ChessPosition const& other) {
    if (this != &other) {
        copy_from(other);
    }
    return *this;
}

ChessPosition::~ChessPosition() {
    if (logging_) {
        log_.close();
    }
}

void ChessPosition::copy_from(ChessPosition const& other) {
    fen(other.fen());
    // The text tells the squares only, but the history is that of the other's sets.
    if (other.board_is_inconsistent()) {
        board_.set_board_inconsistent();
    }
    history_ = other.history_;
    initial_position_ = other.initial_position_;
    repetition_filter_ = other.repetition_filter_;
    logging_ = other.logging_;
}

void ChessPosition::clear() {
    ++set_ups_;
    board_.clear();
    initial_position_ = "8/8/8/8/8/8/8/8 w - - 0 1";
    history_.assign(1, history_t{});
    move_number_ = 1;
    hasher_.init(this);
    repetition_filter_.init(get_hash());
    make_move_counter_ = 0;
    compute_materialindex();
}

void ChessPosition::set_piece_on(Square const& square, Piece piece) {
    ++set_ups_;
    board_.set_piece_on(square, piece.id());
    board_.compute_pieces();
}

void ChessPosition::remove_piece_from(Square const& square, Piece piece) {
    ++set_ups_;
    board_.remove_piece_from(square, piece.id());
    board_.compute_pieces();
}

void ChessPosition::set_castlingrights(short rights) {
    ++set_ups_;
    record().castlingrights = static_cast<std::uint16_t>(rights);
}

void ChessPosition::compute_materialindex() {
    MaterialIndex index;
    index.set_whitequeen(white_queen().popcount());
    index.set_whiterook(white_rook().popcount());
    index.set_whitebishop(white_bishop().popcount());
    index.set_whiteknight(white_knight().popcount());
    index.set_whitepawn(white_pawn().popcount());
    index.set_blackqueen(black_queen().popcount());
    index.set_blackrook(black_rook().popcount());
    index.set_blackbishop(black_bishop().popcount());
    index.set_blackknight(black_knight().popcount());
    index.set_blackpawn(black_pawn().popcount());
    material_index_ = index;
}

void ChessPosition::set_logging(bool on) {
    if (on && !logging_) {
        log_.open("cposition_" + std::to_string(id_) + ".log");
        if (log_.fail()) {
            std::cerr << "ChessPosition open file error" << std::endl;
        }
    } else if (!on && logging_) {
        log_.close();
    }
    logging_ = on;
}

int ChessPosition::nobelmen() const {
    return 900 * (white_queen() | black_queen()).popcount() +
           500 * (white_rook() | black_rook()).popcount() +
           300 * (white_bishop() | black_bishop()).popcount() +
           300 * (white_knight() | black_knight()).popcount();
}

bool ChessPosition::operator==(ChessPosition const& other) const {
    history_t const& mine = record();
    history_t const& theirs = other.record();
    return board_ == other.board_ && move_number_ == other.move_number_ && mine.dfz == theirs.dfz &&
           mine.castlingrights == theirs.castlingrights && mine.ep == theirs.ep &&
           mine.pinned_pieces == theirs.pinned_pieces &&
           mine.discovering_pieces == theirs.discovering_pieces;
}

std::string ChessPosition::dump() const {
    std::ostringstream text;
    text << board_.dump() << '\n';
    text << "total moves: " << move_number_ << '\n';
    text << "hash: " << std::hex << get_hash() << '\n';
    text << "check: " << std::boolalpha << check() << '\n';
    text << "pinned pieces: " << pinned_pieces().dump();
    text << "discovering pieces: " << discovering_pieces().dump();
    return text.str();
}

}  // namespace orvelin
