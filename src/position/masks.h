#pragma once

#include "position/bit_board.h"

/// Named sets of squares, fixed at compile time.
namespace orvelin {

constexpr BitBoard a_file(0x0101010101010101);
constexpr BitBoard b_file = a_file << 1;
constexpr BitBoard c_file = a_file << 2;
constexpr BitBoard d_file = a_file << 3;
constexpr BitBoard e_file = a_file << 4;
constexpr BitBoard f_file = a_file << 5;
constexpr BitBoard g_file = a_file << 6;
constexpr BitBoard h_file = a_file << 7;

constexpr BitBoard rank1(0xFF);
constexpr BitBoard rank2 = rank1 << 8;
constexpr BitBoard rank3 = rank1 << 16;
constexpr BitBoard rank4 = rank1 << 24;
constexpr BitBoard rank5 = rank1 << 32;
constexpr BitBoard rank6 = rank1 << 40;
constexpr BitBoard rank7 = rank1 << 48;
constexpr BitBoard rank8 = rank1 << 56;

constexpr BitBoard not_a_file(0xFEFEFEFEFEFEFEFE);
constexpr BitBoard not_h_file(0x7F7F7F7F7F7F7F7F);
constexpr BitBoard ab_file(0x0303030303030303);
constexpr BitBoard gh_file(0xC0C0C0C0C0C0C0C0);
constexpr BitBoard not_ab_file(0xFCFCFCFCFCFCFCFC);
constexpr BitBoard not_gh_file(0x3F3F3F3F3F3F3F3F);

/// d4 e4 d5 e5
constexpr BitBoard centre(0x0000001818000000);
/// The block c3 to f6.
constexpr BitBoard bigcentre(0x00003C3C3C3C0000);
/// Files e to h.
constexpr BitBoard kings_half(0xF0F0F0F0F0F0F0F0);
/// a1 to h8
constexpr BitBoard diagonal(0x8040201008040201);
/// h1 to a8
constexpr BitBoard antidiagonal(0x0102040810204080);
/// Both long diagonals.
constexpr BitBoard diagonals(0x8142241818244281);
/// Ranks 1 and 8.
constexpr BitBoard hborder(0xFF000000000000FF);
/// Files a and h.
constexpr BitBoard vborder(0x8181818181818181);
/// The outer ring of 28 squares.
constexpr BitBoard border(0xFF818181818181FF);
/// The second ring of 20 squares.
constexpr BitBoard border_minus1(0x007E424242427E00);
/// The third ring of 12 squares.
constexpr BitBoard border_minus2(0x00003C24243C0000);
/// The light corners a8 and h1.
constexpr BitBoard white_corner(0x0100000000000080);
/// The dark corners a1 and h8.
constexpr BitBoard black_corner(0x8000000000000001);
constexpr BitBoard corner(0x8100000000000081);
/// a1 b1 c1 g1 h1 a2 b2 g2 h2 and their mirror squares on ranks 7 and 8.
constexpr BitBoard castlesquares(0xC7C300000000C3C7);
/// The light squares.
constexpr BitBoard white_squares(0x55AA55AA55AA55AA);
/// The dark squares.
constexpr BitBoard black_squares(0xAA55AA55AA55AA55);

constexpr BitBoard f1g1(0x60);
constexpr BitBoard f8g8(0x6000000000000000);
constexpr BitBoard b1c1d1(0x0E);
constexpr BitBoard b8c8d8(0x0E00000000000000);
constexpr BitBoard g1h1h2(0x80C0);
constexpr BitBoard g8h8h7(0xC080000000000000);
constexpr BitBoard a1b1c1a2(0x0107);
constexpr BitBoard a8b8c8a7(0x0701000000000000);
constexpr BitBoard a1b1c1(0x07);
constexpr BitBoard a8b8c8(0x0700000000000000);
constexpr BitBoard g1h1(0xC0);
constexpr BitBoard g8h8(0xC000000000000000);
constexpr BitBoard d3e3(0x180000);
constexpr BitBoard d6e6(0x180000000000);
constexpr BitBoard a1b2c3d4(0x08040201);
constexpr BitBoard c2f2b3g3b6g6c7f7(0x0024420000422400);
/// A first or last rank without its h square.
constexpr BitBoard a1_g1(0x7F);
constexpr BitBoard a8_g8(0x7F00000000000000);
/// A first or last rank without its a square.
constexpr BitBoard b1_h1(0xFE);
constexpr BitBoard b8_h8(0xFE00000000000000);
/// a2 a3 b3 a4 b4 c4
constexpr BitBoard a2_a4_c4(0x07030100);

/// Files c to f on the own four ranks.
constexpr BitBoard white_space(0x000000003C3C3C3C);
constexpr BitBoard black_space(0x3C3C3C3C00000000);

/// White's half with rank 5, Black's half with rank 4, by files e to h, a to d and c to f.
constexpr BitBoard white_kingside_battlefield =
    (e_file | f_file | g_file | h_file) & (rank1 | rank2 | rank3 | rank4 | rank5);
constexpr BitBoard black_kingside_battlefield =
    (e_file | f_file | g_file | h_file) & (rank4 | rank5 | rank6 | rank7 | rank8);
constexpr BitBoard white_queenside_battlefield =
    (a_file | b_file | c_file | d_file) & (rank1 | rank2 | rank3 | rank4 | rank5);
constexpr BitBoard black_queenside_battlefield =
    (a_file | b_file | c_file | d_file) & (rank4 | rank5 | rank6 | rank7 | rank8);
constexpr BitBoard white_centre_battlefield =
    (c_file | d_file | e_file | f_file) & (rank1 | rank2 | rank3 | rank4 | rank5);
constexpr BitBoard black_centre_battlefield =
    (c_file | d_file | e_file | f_file) & (rank4 | rank5 | rank6 | rank7 | rank8);

}  // namespace orvelin
