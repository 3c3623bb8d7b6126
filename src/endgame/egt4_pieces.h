#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "position/bit_board.h"
#include "position/move.h"
#include "position/piece.h"
#include "position/square.h"
#include "time/timer.h"

namespace orvelin {

class Attacks;

/// Distance-to-mate table of one ending of two kings and two pieces, with all the endings that
/// arise from it by capture, and the retrograde analysis that fills it.
///
/// Keeps a small position of its own, made of four sets, on which it makes and unmakes moves; the
/// pieces of that position, the side to move and the sign are what the text tools read and set. The
/// table is one byte for each key, from White's point of view: 0 Black is mated, 1 to 100 White
/// mates in so many plies, 128 White is mated, 129 to 228 Black mates in (byte - 128) plies, 253
/// draw, 254 illegal, 255 not known. Its memory is either this object's own or borrowed, and then
/// must stay valid as long as the table is used. One thread at a time may use an object.
///
/// A key holds the side to move (bit 0, 1 is White), the squares of piece 1 (bits 1-6), piece 2
/// (7-12) and the black king (13-18), and from bit 19 the white king's square as an index into the
/// triangle a1-d1-d4. A captured piece is written with the square of the black king.
class Egt4Pieces {
 public:
    // The values of a table byte that are no distance.

    static constexpr unsigned char drawn = 253;
    static constexpr unsigned char illegal = 254;
    static constexpr unsigned char unknown = 255;

    /// The ending of the kings with these two pieces, of different ids, neither pawns nor kings.
    /// Nothing is built or allocated yet. The attack tables must outlive the object.
    Egt4Pieces(Attacks const& attacks, piece_t piece1_id, piece_t piece2_id);
    Egt4Pieces(Egt4Pieces const&) = delete;
    Egt4Pieces& operator=(Egt4Pieces const&) = delete;
    ~Egt4Pieces();

    // Memory and state.

    /// Forgets the progress and releases the table if it is this object's own.
    void clear();
    /// Forgets the progress and takes `memory` of size() bytes as the table, without owning it.
    void set_memory(unsigned char* memory);
    /// Generation has begun and is not finished.
    bool busy() const {
        return static_cast<unsigned int>(progress_) < static_cast<unsigned int>(finished);
    }
    /// Generation is finished, or a table was loaded.
    bool ready() const { return progress_ >= finished; }
    /// -1 before generation, then the number of passes done up to 100, 101 when finished.
    int progress() const { return progress_; }
    std::string const& name() const { return name_; }
    /// Number of keys.
    std::uint32_t size() const { return size_; }
    /// Number of calls of make_move().
    std::uint64_t moves_made() const { return moves_made_; }

    // Generation.

    /// Does one slice of the generation; true when the table is complete. The first slice finds the
    /// mates, each further one those positions that are one ply farther away.
    /// @throws std::logic_error for pieces that no table can have, or without any memory.
    bool create();
    /// One pass over the whole table, for the distance that progress() names.
    void create_next();
    /// First classification of one key, whose byte is 255 before: 0 or 128 mate, 253 stalemate, 254
    /// illegal, else 255. Leaves the object's position at the key.
    void set_initial_eval(unsigned int key);
    /// The same for all keys.
    void set_initial_eval();
    /// Tests each value against those of the successors. The first fault is told on standard error.
    bool is_consistent();

    // The position.

    /// Sets the position of a key, and the sign to 1. A key beyond the table has no white king.
    void set_key(unsigned int key);
    /// Key of the position. Without two single kings there is none, and the answer is size().
    unsigned int get_key() const;
    /// The key with the squares of bits 1 to 18 reflected in the diagonal a1-h8. Equal in value
    /// when the white king stands on that diagonal.
    static unsigned int get_mirror_key(unsigned int key);
    /// No two pieces of the key share a square, but for captured pieces.
    static bool is_legal_key(unsigned int key);
    /// One king each, not adjacent, and the side not to move is not in check.
    /// @throws std::logic_error for piece ids that a table cannot have.
    bool is_legal() const;
    /// The moves of the side to move, also those that leave its king in check.
    /// @throws std::logic_error for pieces that a table cannot have.
    void generate_moves(std::vector<Move>& moves) const;
    /// The moves by which the other side can have come here: made last, not yet unmade.
    /// @throws std::logic_error for pieces that a table cannot have.
    void generate_previous_moves(std::vector<Move>& moves) const;
    void make_move(Move const& move);
    void unmake_move(Move const& move);
    /// 1 White, 0 Black.
    std::int32_t stm() const { return stm_; }
    /// -1 when the position was read with the colours exchanged, else 1.
    std::int32_t sign() const { return sign_; }
    BitBoard const& white_king() const { return white_king_; }
    BitBoard const& black_king() const { return black_king_; }
    /// The square of the piece, empty when it is captured.
    BitBoard const& piece1() const { return piece1_; }
    BitBoard const& piece2() const { return piece2_; }
    piece_t piece1_id() const { return piece1_id_; }
    piece_t piece2_id() const { return piece2_id_; }

    // Values.

    /// Value of the position, from White's point of view: 30000 less the plies to mate, its
    /// negative, or 0 for a draw; 254 illegal, 255 not known or no table.
    int eval() const;
    /// The same for a key.
    int eval(unsigned int key) const;
    /// Reads the position, then as eval().
    int eval(std::string const& text);
    /// The byte of a key: 254 for a key beyond the table, 255 without a table.
    unsigned char operator[](unsigned int key) const {
        if (key >= size_) {
            return illegal;
        }
        return table_ == nullptr ? unknown : table_[key];
    }
    /// Same first piece, size and bytes; the second piece is not compared (oddity 122).
    bool operator==(Egt4Pieces const& other) const;
    /// Of the keys at which the tables differ the first with the lowest byte here; 0 for none.
    unsigned int diff(Egt4Pieces const& other) const;

    // Files.

    /// Writes the table as text.
    /// @throws std::runtime_error when the file cannot be written.
    void save(std::string const& path) const;
    /// Reads a table that save() wrote; the object is ready then. After a failure it has no values.
    /// @throws std::runtime_error when the file is no such table.
    void load(std::string const& path);

    // Texts.

    /// Sets the position from the placement and side fields of a FEN text. A first piece of Black's
    /// is read with the colours exchanged. Pieces off the board are left out.
    /// @throws std::logic_error on a letter that is no piece of a table.
    void fen(std::string const& text);
    /// The FEN text of the position.
    std::string fen() const;
    /// The fields of a key as text, and of the position's key.
    std::string get_key_str(unsigned int key) const;
    std::string get_key_str() const { return get_key_str(get_key()); }
    /// Prints one line for each key that has the byte `m`. Each line shows the present position,
    /// so that only the number of lines tells something (oddity 123).
    void mate_in(int m) const;
    /// Prints how often each byte value occurs.
    void stats() const;

 private:
    enum side_t : std::int32_t { black = 0, white = 1 };

    static constexpr int last_distance = 100;
    static constexpr int finished = last_distance + 1;

    /// Takes memory of its own when there is none.
    void allocate();
    /// Gives memory of its own back.
    void release();

    BitBoard occupied() const { return white_king_ | black_king_ | piece1_ | piece2_; }
    BitBoard own_pieces() const;
    BitBoard& pieces_of(int id);
    /// Squares that a piece attacks from the square; none from no square, or for no piece.
    BitBoard attacks_of(piece_t id, BitBoard const& square) const;
    /// Throws std::logic_error with one of the texts if the ids are none that a table can have.
    void require_pieces(char const* piece1_error, char const* piece2_error) const;
    bool king_attacked(side_t side) const;
    void add_moves(std::vector<Move>& moves, piece_t id, BitBoard const& from) const;
    /// `lost` names the pieces that may have been captured; no_piece stands for none.
    void add_previous_moves(std::vector<Move>& moves, piece_t id, BitBoard const& to,
                            std::array<piece_t, 2> const& lost) const;

    bool create_slice();
    bool has_legal_move();
    void settle_wins(unsigned char value);
    void settle_losses(unsigned char value);
    bool all_moves_lose();
    void settle(unsigned int key, unsigned char value);
    bool successors_agree(unsigned int key);
    bool report_fault(std::string const& test, std::string const& fault, Move const& move);

    /// Puts a piece of the FEN letter on the square; false when the letter is none of a table's.
    bool put_piece(char letter, BitBoard const& square);
    static char letter_of(piece_t id);
    char letter_on(BitBoard const& square) const;

    unsigned char* table_ = nullptr;
    Attacks const& attacks_;
    bool owns_memory_ = true;
    std::uint32_t size_ = 0x500000;
    std::int32_t stm_ = white;
    BitBoard white_king_;
    BitBoard black_king_;
    BitBoard piece1_;
    BitBoard piece2_;
    piece_t piece1_id_;
    piece_t piece2_id_;
    std::int32_t sign_ = 1;
    std::int32_t progress_ = -1;
    std::string name_;
    std::uint64_t moves_made_ = 0;
    /// Time spent in create(), for measurements under a debugger.
    Timer create_timer_;
    /// Lists of the generation, kept from key to key so that they are allocated once.
    std::vector<Move> moves_;
    std::vector<Move> previous_moves_;
};

}  // namespace orvelin
