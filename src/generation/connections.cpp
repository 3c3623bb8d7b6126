#include "generation/connections.h"

namespace orvelin {

Connections::Connections() {
    fill_slider_attacks();
    fill_line_segments();
}

void Connections::fill_slider_attacks() {
    for (int s = 0; s < 64; ++s) {
        int const file = s & 7;
        for (int k = 0; k < 8; ++k) {
            rook_attacks_[s].set_square(Square((s & 56) + k));
            rook_attacks_[s].set_square(Square(8 * k + file));
        }
        rook_attacks_[s].reset_square(Square(s));
        for (int k = 1; k <= 7; ++k) {
            for (int const step : {9 * k, -9 * k, 7 * k, -7 * k}) {
                int const t = s + step;
                if (t < 0 || t > 63) {
                    continue;
                }
                // A ray that wrapped around the edge has come out on the wrong side.
                bool const to_the_right = step == 9 * k || step == -7 * k;
                bool const on_ray = to_the_right ? (t & 7) > file : (t & 7) < file;
                if (on_ray) {
                    bishop_attacks_[s].set_square(Square(t));
                }
            }
        }
        queen_attacks_[s] = rook_attacks_[s] | bishop_attacks_[s];
    }
}

namespace {

/// Distance of neighbours on the line through a < b; 0 when there is no such line.
int line_step(int a, int b) {
    int const files = (b & 7) - (a & 7);
    int const ranks = (b >> 3) - (a >> 3);
    if (ranks == 0) {
        return 1;
    }
    if (files == 0) {
        return 8;
    }
    if (files == ranks) {
        return 9;
    }
    if (files == -ranks) {
        return 7;
    }
    return 0;
}

}  // namespace

void Connections::fill_line_segments() {
    for (int a = 0; a < 64; ++a) {
        for (int b = a + 1; b < 64; ++b) {
            int const step = line_step(a, b);
            if (step == 0) {
                continue;
            }
            BitBoard between;
            for (int s = a + step; s < b; s += step) {
                between.set_square(Square(s));
            }
            line_segment_[a][b] = between;
            line_segment_[b][a] = between;
        }
    }
    for (int a = 0; a < 64; ++a) {
        for (int b = 0; b < 64; ++b) {
            closed_line_segment_[a][b] =
                line_segment_[a][b] | Square(a).bitboard() | Square(b).bitboard();
        }
    }
}

}  // namespace orvelin
