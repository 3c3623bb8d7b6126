#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace orvelin {

/// Piece ids: type in the low three bits, colour in bit 3. Ids 7 and 8 are not pieces. A promotion
/// adds 4 (queen), 3 (rook), 2 (bishop) or 1 (knight) to the id of the pawn.
enum piece_t : int {
    no_piece = 0,
    white_pawn = 1,
    white_knight = 2,
    white_bishop = 3,
    white_rook = 4,
    white_queen = 5,
    white_king = 6,
    black_pawn = 9,
    black_knight = 10,
    black_bishop = 11,
    black_rook = 12,
    black_queen = 13,
    black_king = 14
};

/// A piece on the board, or none, as one piece_t id.
///
/// A plain word, copied freely and used by every thread. The stored id is not tested; only the
/// table look-ups value(), abs_value() and name() refuse ids that are no piece.
class Piece {
 public:
    /// No piece.
    constexpr Piece() = default;
    /// Any id, stored as it is.
    constexpr explicit Piece(int id) : id_(id) {}

    /// False for no piece only.
    constexpr explicit operator bool() const { return id_ != 0; }
    constexpr bool operator==(Piece const& other) const = default;

    constexpr int id() const { return id_; }
    constexpr void set_id(int id) { id_ = id; }

    constexpr bool no_piece() const { return id_ == 0; }
    /// Bit 3 is clear, so no piece counts as white (oddity 82).
    constexpr bool white_piece() const { return (id_ & 8) == 0; }
    /// Bit 3 is set.
    constexpr bool black_piece() const { return (id_ & 8) != 0; }

    /// Type tests for either colour.
    constexpr bool pawn() const { return (id_ & 7) == 1; }
    constexpr bool knight() const { return (id_ & 7) == 2; }
    constexpr bool bishop() const { return (id_ & 7) == 3; }
    constexpr bool rook() const { return (id_ & 7) == 4; }
    constexpr bool queen() const { return (id_ & 7) == 5; }
    constexpr bool king() const { return (id_ & 7) == 6; }

    /// Type and colour tests.
    constexpr bool white_pawn() const { return id_ == orvelin::white_pawn; }
    constexpr bool white_knight() const { return id_ == orvelin::white_knight; }
    constexpr bool white_bishop() const { return id_ == orvelin::white_bishop; }
    constexpr bool white_rook() const { return id_ == orvelin::white_rook; }
    constexpr bool white_queen() const { return id_ == orvelin::white_queen; }
    constexpr bool white_king() const { return id_ == orvelin::white_king; }
    constexpr bool black_pawn() const { return id_ == orvelin::black_pawn; }
    constexpr bool black_knight() const { return id_ == orvelin::black_knight; }
    constexpr bool black_bishop() const { return id_ == orvelin::black_bishop; }
    constexpr bool black_rook() const { return id_ == orvelin::black_rook; }
    constexpr bool black_queen() const { return id_ == orvelin::black_queen; }
    constexpr bool black_king() const { return id_ == orvelin::black_king; }

    constexpr void set_no_piece() { id_ = orvelin::no_piece; }
    constexpr void set_white_pawn() { id_ = orvelin::white_pawn; }
    constexpr void set_white_knight() { id_ = orvelin::white_knight; }
    constexpr void set_white_bishop() { id_ = orvelin::white_bishop; }
    constexpr void set_white_rook() { id_ = orvelin::white_rook; }
    constexpr void set_white_queen() { id_ = orvelin::white_queen; }
    constexpr void set_white_king() { id_ = orvelin::white_king; }
    constexpr void set_black_pawn() { id_ = orvelin::black_pawn; }
    constexpr void set_black_knight() { id_ = orvelin::black_knight; }
    constexpr void set_black_bishop() { id_ = orvelin::black_bishop; }
    constexpr void set_black_rook() { id_ = orvelin::black_rook; }
    constexpr void set_black_queen() { id_ = orvelin::black_queen; }
    constexpr void set_black_king() { id_ = orvelin::black_king; }

    /// Rough worth for ordering and sums, pawn 100, black pieces negative. Not the evaluation's.
    /// @throws std::logic_error, behind a line on standard output, for an id that is no piece.
    int value() const;
    /// Rough worth without sign, by the low three bits.
    /// @throws std::logic_error when they are 7.
    int abs_value() const {
        constexpr std::array<int, 8> values{0, 100, 300, 300, 500, 900, 4000, 0};
        std::size_t const type = static_cast<std::size_t>(id_ & 7);
        if (type == 7) {
            throw_no_value();
        }
        return values[type];
    }
    /// "white pawn" ... "black king", "no piece".
    /// @throws std::logic_error for an id that is no piece.
    std::string name() const;

 private:
    [[noreturn]] static void throw_no_value();

    int id_ = 0;
};

}  // namespace orvelin
