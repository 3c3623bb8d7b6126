#include "support/plain_evaluation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "position/chess_position.h"
#include "position/material_index.h"
#include "position/move.h"

namespace orvelin::test {

namespace {

using set_t = PlainEvaluation::set_t;

enum type_t { none, pawn, knight, bishop, rook, queen, king_type };

std::size_t index(int number) {
    return static_cast<std::size_t>(number);
}

int file_of(int square) {
    return square % 8;
}

int rank_of(int square) {
    return square / 8;
}

/// Ranks gone from the first rank of the side, 0 to 7.
int advance(int colour, int square) {
    return colour == 1 ? rank_of(square) : 7 - rank_of(square);
}

/// The square of a side's first rank and so on.
int seen_from(int colour, int square) {
    return colour == 1 ? square : 8 * (7 - rank_of(square)) + file_of(square);
}

/// The square some files and ranks away, -1 off the board.
int step(int square, int files, int ranks) {
    int const file = file_of(square) + files;
    int const rank = rank_of(square) + ranks;
    return file < 0 || file > 7 || rank < 0 || rank > 7 ? -1 : 8 * rank + file;
}

int steps_between(int a, int b) {
    return std::max(std::abs(file_of(a) - file_of(b)), std::abs(rank_of(a) - rank_of(b)));
}

int steps_to(int square, set_t const& set) {
    int least = 8;
    for (int s = 0; s < 64; ++s) {
        if (set[index(s)]) {
            least = std::min(least, steps_between(square, s));
        }
    }
    return least;
}

int count(set_t const& set) {
    return static_cast<int>(set.count());
}

/// The members moved by files and ranks, those that leave the board dropped.
set_t moved(set_t const& set, int files, int ranks) {
    set_t result;
    for (int s = 0; s < 64; ++s) {
        int const to = step(s, files, ranks);
        if (set[index(s)] && to >= 0) {
            result.set(index(to));
        }
    }
    return result;
}

set_t light_squares() {
    set_t set;
    for (int s = 0; s < 64; ++s) {
        set[index(s)] = (file_of(s) + rank_of(s)) % 2 == 1;
    }
    return set;
}

/// Squares of the side, given as White's.
set_t own_squares(int colour, std::vector<int> const& list) {
    set_t set;
    for (int const square : list) {
        set.set(index(seen_from(colour, square)));
    }
    return set;
}

/// Points by safe squares.
int points(int type, int safe) {
    static std::vector<int> const knights{-68, -28, -12, 0, 12, 20, 28, 36, 44};
    static std::vector<int> const bishops{-64, -48, -36, -24, -16, -8, -4,
                                          0,   8,   16,  24,  32,  36, 40};
    static std::vector<int> const rooks{-40, -20, -12, -6, 0, 4, 8, 12, 16, 20, 24, 26, 30, 32, 34};
    static std::vector<int> const queens{-22, -12, -8, -5, -2, 0,  4,  6,  8,  10, 11, 13, 14, 15,
                                         15,  17,  18, 19, 20, 22, 23, 24, 25, 26, 27, 28, 29, 30};
    std::vector<int> const* const rows[] = {&knights, &bishops, &rooks, &queens};
    return rows[type - knight]->at(index(safe));
}

}  // namespace

PlainEvaluation::PlainEvaluation(ChessPosition const& position) : position_(position) {
    read_board();
    for (int s = 0; s < 64; ++s) {
        change(board_[index(s)], s, 1.0F);
    }
}

void PlainEvaluation::change(int piece, int square, float sign) {
    PieceSquareTables::pair_t& sum = sums_[index(piece)];
    sum.first += sign * values_.middle_game(piece, square);
    sum.second += sign * values_.end_game(piece, square);
}

void PlainEvaluation::follow(Move const& move, float sign) {
    int const from = move.from().id();
    int const to = move.to().id();
    switch (move.code()) {
        case nullmove:
            return;
        case normal_move:
        case en_passant: {
            int const victim = move.code() == en_passant ? step(to, 0, to > from ? -1 : 1) : to;
            change(move.piece_id(), to, sign);
            change(move.piece_id(), from, -sign);
            change(move.capture_id(), victim, -sign);
            return;
        }
        case castling: {
            int const black = rank_of(from) == 0 ? 0 : 8;
            int const rank = rank_of(from) == 0 ? 0 : 56;
            change(king_type + black, from, -sign);
            change(rook + black, to, -sign);
            change(king_type + black, rank + (to <= from ? 2 : 6), sign);
            change(rook + black, rank + (to <= from ? 3 : 5), sign);
            return;
        }
        default: {
            int const types[] = {queen, rook, bishop, knight};
            change(move.capture_id(), to, -sign);
            change(move.piece_id(), from, -sign);
            change(types[move.code() - promo_queen] + (to <= from ? 8 : 0), to, sign);
        }
    }
}

void PlainEvaluation::read_board() {
    for (int s = 0; s < 64; ++s) {
        board_[index(s)] = position_.get_piece_id_from(Square(s));
    }
}

set_t PlainEvaluation::pieces(int colour, int type) const {
    set_t set;
    for (int s = 0; s < 64; ++s) {
        set[index(s)] = board_[index(s)] == (colour == 1 ? type : type + 8);
    }
    return set;
}

set_t PlainEvaluation::all(int colour) const {
    set_t set;
    for (int type = pawn; type <= king_type; ++type) {
        set |= pieces(colour, type);
    }
    return set;
}

int PlainEvaluation::king(int colour) const {
    set_t const kings = pieces(colour, king_type);
    int square = 0;
    while (!kings[index(square)]) {
        ++square;
    }
    return square;
}

set_t PlainEvaluation::reached(int type, int square, set_t const& occupied) const {
    set_t result;
    for (int files = -2; files <= 2; ++files) {
        for (int ranks = -2; ranks <= 2; ++ranks) {
            bool const jump = std::abs(files * ranks) == 2;
            bool const diagonal = std::abs(files * ranks) == 1;
            bool const straight = std::abs(files) + std::abs(ranks) == 1;
            bool const takes = type == knight   ? jump
                               : type == bishop ? diagonal
                               : type == rook   ? straight
                                                : diagonal || straight;
            int at = takes ? step(square, files, ranks) : -1;
            while (at >= 0) {
                result.set(index(at));
                bool const slides = type == bishop || type == rook || type == queen;
                at = slides && !occupied[index(at)] ? step(at, files, ranks) : -1;
            }
        }
    }
    return result;
}

/// Every square of the files that hold an own pawn; of all files on a board without pawns.
set_t PlainEvaluation::closed_files(int colour) const {
    set_t set;
    for (int s = 0; s < 64; ++s) {
        for (int rank = 0; rank < 8; ++rank) {
            if (sides_[index(colour)].pawns[index(8 * rank + file_of(s))]) {
                set.set(index(s));
            }
        }
    }
    return sides_[0].pawns.none() && sides_[1].pawns.none() ? ~set_t() : set;
}

void PlainEvaluation::find_phase() {
    int nobelmen = 0;
    MaterialIndex material;
    std::uint64_t word = 0;
    for (int const piece : board_) {
        int const value[] = {0, 0, 300, 300, 500, 900, 0, 0};
        nobelmen += value[piece % 8];
        if (piece % 8 >= pawn && piece % 8 <= queen) {
            word += 1ULL << (4 * (piece % 8 - 1) + (piece < 8 ? 32 : 0));
        }
    }
    material.set_index(word);
    terms_[term::material] = static_cast<float>(material.value());
    mg_phase_ = static_cast<float>(nobelmen) / 6200.0F;
    eg_phase_ = 1.0F - mg_phase_;
}

void PlainEvaluation::find_maps(int colour) {
    side_t& side = sides_[index(colour)];
    int const forward = colour == 1 ? 1 : -1;
    side.pawns = pieces(colour, pawn);
    side.near = reached(king_type, king(colour), set_t());
    side.attacked = side.near;
    side.near.set(index(king(colour)));
    side.field = side.near | moved(side.near, 0, 2 * forward) | moved(side.near, 0, 3 * forward);
    side.attacks[pawn] = moved(side.pawns, -1, forward) | moved(side.pawns, 1, forward);
    side.attacked |= side.attacks[pawn];
}

void PlainEvaluation::find_mobility(int colour, int type) {
    side_t& side = sides_[index(colour)];
    side_t const& other = sides_[index(1 - colour)];
    set_t seen = occupied();
    set_t unsafe = side.pawns | other.attacks[pawn];
    if (type == bishop) {
        seen &= ~pieces(colour, queen);
    }
    if (type == rook) {
        seen &= ~(pieces(colour, rook) | pieces(colour, queen));
    }
    if (type == rook || type == queen) {
        unsafe |= other.attacks[knight] | other.attacks[bishop];
    }
    if (type == queen) {
        unsafe |= other.attacks[rook];
    }
    side.attacks[index(type)].reset();
    side.mobility[index(type)] = 0;
    side.queen_safe.reset();
    for (int s = 0; s < 64; ++s) {
        if (pieces(colour, type)[index(s)]) {
            set_t const attacks = reached(type, s, seen);
            side.attacks[index(type)] |= attacks;
            side.mobility[index(type)] += points(type, count(attacks & ~unsafe));
            side.queen_safe |= attacks & ~unsafe;
        }
    }
    side.attacked |= side.attacks[index(type)];
}

int PlainEvaluation::development(int colour) const {
    int value = 0;
    int const forward = colour == 1 ? 1 : -1;
    for (int s = 0; s < 64; ++s) {
        if ((pieces(colour, knight) | pieces(colour, bishop))[index(s)] &&
            advance(colour, s) == 0) {
            value -= 20;
        }
        bool own_pawn_on_file = false;
        for (int rank = 0; rank < 8; ++rank) {
            own_pawn_on_file |= sides_[index(colour)].pawns[index(8 * rank + file_of(s))];
        }
        if (pieces(colour, rook)[index(s)] && !own_pawn_on_file) {
            value += 20;
        }
        if (sides_[index(colour)].pawns[index(s)] && advance(colour, s) == 1 &&
            board_[index(step(s, 0, forward))] != 0) {
            int const penalty[] = {0, 0, 10, 20, 20, 0, 0, 0};
            value -= penalty[file_of(s)];
        }
    }
    return value;
}

int PlainEvaluation::locked_up_rooks(int colour) const {
    set_t const kings = pieces(colour, king_type);
    set_t const rooks = pieces(colour, rook);
    bool const right = (kings & own_squares(colour, {5, 6})).any() &&
                       (rooks & own_squares(colour, {6, 7, 15})).any();
    bool const left = (kings & own_squares(colour, {1, 2, 3})).any() &&
                      (rooks & own_squares(colour, {0, 1, 2, 8})).any();
    return (right ? 1 : 0) + (left ? 1 : 0);
}

int PlainEvaluation::hanging(int colour) const {
    side_t const& own = sides_[index(colour)];
    side_t const& other = sides_[index(1 - colour)];
    set_t const minors = pieces(colour, knight) | pieces(colour, bishop);
    set_t lesser = other.attacks[pawn];
    set_t result = (all(colour) & other.attacked & ~own.attacked) | (minors & lesser);
    lesser |= other.attacks[knight] | other.attacks[bishop];
    result |= pieces(colour, rook) & lesser;
    lesser |= other.attacks[rook];
    return count(result | (pieces(colour, queen) & lesser));
}

int PlainEvaluation::pinned(int colour) const {
    int pins = 0;
    for (int direction = 0; direction < 9; ++direction) {
        int const files = direction % 3 - 1;
        int const ranks = direction / 3 - 1;
        bool const diagonal = files != 0 && ranks != 0;
        std::vector<int> met;
        for (int s = step(king(colour), files, ranks); s >= 0 && direction != 4;
             s = step(s, files, ranks)) {
            if (board_[index(s)] != 0) {
                met.push_back(board_[index(s)]);
            }
        }
        if (met.size() < 2) {
            continue;
        }
        int const slider = colour == 1 ? met[1] - 8 : met[1];
        if ((met[0] < 8) == (colour == 1) &&
            (slider == queen || slider == (diagonal ? bishop : rook))) {
            ++pins;
        }
    }
    return pins;
}

void PlainEvaluation::find_piece_terms() {
    float total = 0.0F;
    std::array<set_t, 2> checks;
    for (int type = knight; type <= queen; ++type) {
        auto const difference =
            static_cast<float>(sides_[1].mobility[index(type)] - sides_[0].mobility[index(type)]);
        terms_[term::knight_mobility + index(type - knight)] = difference;
        total += difference;
    }
    terms_[term::mobility] = total;
    for (int colour = 0; colour < 2; ++colour) {
        checks[index(colour)] =
            sides_[index(colour)].queen_safe & reached(queen, king(1 - colour), occupied());
    }
    terms_[term::safe_queencheck] = static_cast<float>(count(checks[1]) - count(checks[0]));
    terms_[term::development] = static_cast<float>(development(1) - development(0));
    terms_[term::space] = 0.0F;
    terms_[term::locked_up_rook] = static_cast<float>(locked_up_rooks(0) - locked_up_rooks(1));
    terms_[term::undefended_pieces] = static_cast<float>(count(all(0) & ~sides_[0].attacked) -
                                                         count(all(1) & ~sides_[1].attacked));
    terms_[term::own_hanging_material] = static_cast<float>(hanging(0) - hanging(1));
    terms_[term::pinned_pieces] = static_cast<float>(pinned(0) - pinned(1));
    set_t const white = pieces(1, bishop);
    set_t const black = pieces(0, bishop);
    bool const opposite =
        count(white) == 1 && count(black) == 1 && count((white | black) & light_squares()) == 1;
    terms_[term::opposite_colored_bishops] = opposite ? 1.0F : 0.0F;
    for (int type = pawn; type <= king_type; ++type) {
        PieceSquareTables::pair_t const& w = sums_[index(type)];
        PieceSquareTables::pair_t const& b = sums_[index(type + 8)];
        terms_[term::pst_pawn + index(type - pawn)] =
            (w.first + b.first) * mg_phase_ + (w.second + b.second) * eg_phase_;
    }
    terms_[term::stm] = position_.white_to_move() ? 1.0F : -1.0F;
}

int PlainEvaluation::shield(int colour) const {
    side_t const& side = sides_[index(colour)];
    set_t const zone = side.near | moved(side.near, 0, colour == 1 ? 1 : -1);
    return closed_files(colour)[index(king(colour))] ? count(side.pawns & zone) : 0;
}

int PlainEvaluation::attack_on_king(int colour) const {
    int const value[] = {0, 10, 20, 20, 40, 80};
    int const weight[] = {0, 0, 128, 192, 225, 241};
    int types = 0;
    int sum = 0;
    for (int type = pawn; type <= queen; ++type) {
        int const squares =
            count(sides_[index(colour)].near & sides_[index(1 - colour)].attacks[index(type)]);
        types += squares != 0 ? 1 : 0;
        sum += value[type] * squares;
    }
    return weight[types] * sum;
}

void PlainEvaluation::find_king_terms() {
    side_t const& white = sides_[1];
    side_t const& black = sides_[0];
    auto const rights = static_cast<unsigned>(position_.castlingrights());
    int const kept = ((rights & 0xFFU) != 0 ? 1 : 0) - ((rights & 0xFF00U) != 0 ? 1 : 0);
    terms_[term::castling_rights] = static_cast<float>(20 * kept);
    terms_[term::pawn_shield] = static_cast<float>(10 * (shield(1) - shield(0)));
    terms_[term::king_attack] =
        static_cast<float>((attack_on_king(0) - attack_on_king(1)) * 0.00390625);
    terms_[term::pawn_storm] = static_cast<float>(
        5 * (count(white.pawns & black.field) - count(black.pawns & white.field)));
    terms_[term::open_files_on_king] = static_cast<float>(
        15 * (count(black.near & ~closed_files(1)) - count(white.near & ~closed_files(0))));
    for (int type = knight; type <= queen; ++type) {
        std::size_t const offset = index(type - knight);
        set_t const own = pieces(1, type);
        set_t const other = pieces(0, type);
        terms_[term::knight_king_contact + offset] = static_cast<float>((own & black.near).any()) -
                                                     static_cast<float>((other & white.near).any());
        terms_[term::knight_battlefield_contact + offset] =
            static_cast<float>((own & black.field).any()) -
            static_cast<float>((other & white.field).any());
        terms_[term::knight_battlefield_attack + offset] =
            static_cast<float>(count(white.attacks[index(type)] & black.field) -
                               count(black.attacks[index(type)] & white.field));
    }
    terms_[term::king_activity] = static_cast<float>(activity(1) - activity(0)) * eg_phase_;
}

/// Pawns without a friend on an adjacent file, level with them or behind.
set_t PlainEvaluation::weak(int colour) const {
    set_t result;
    set_t const& pawns = sides_[index(colour)].pawns;
    for (int s = 0; s < 64; ++s) {
        bool friends = false;
        for (int other = 0; other < 64; ++other) {
            friends |= pawns[index(other)] && std::abs(file_of(other) - file_of(s)) == 1 &&
                       advance(colour, other) <= advance(colour, s);
        }
        result[index(s)] = pawns[index(s)] && !friends;
    }
    return result;
}

set_t PlainEvaluation::passed(int colour) const {
    set_t result;
    for (int s = 0; s < 64; ++s) {
        bool held = false;
        for (int other = 0; other < 64; ++other) {
            held |= sides_[index(1 - colour)].pawns[index(other)] &&
                    std::abs(file_of(other) - file_of(s)) <= 1 &&
                    advance(colour, other) > advance(colour, s);
        }
        result[index(s)] = sides_[index(colour)].pawns[index(s)] && !held;
    }
    return result;
}

int PlainEvaluation::passers(int colour) const {
    int const forward = colour == 1 ? 1 : -1;
    int const enemy = 1 - colour;
    int const enemy_king = king(enemy);
    set_t const pawns = passed(colour);
    set_t const stop = moved(pawns, 0, forward);
    set_t ahead;
    set_t files;
    int score = 0;
    for (int ranks = 1; ranks < 8; ++ranks) {
        ahead |= moved(pawns, 0, ranks * forward);
    }
    for (int s = 0; s < 64; ++s) {
        bool connected = false;
        for (int other = 0; other < 64; ++other) {
            files[index(s)] =
                files[index(s)] || (pawns[index(other)] && file_of(other) == file_of(s));
            connected |= pawns[index(other)] && std::abs(file_of(other) - file_of(s)) == 1;
        }
        int const value[] = {0, 0, 0, 25, 50, 100, 200, 0};
        score += pawns[index(s)] ? value[advance(colour, s)] * (connected ? 2 : 1) : 0;
    }
    if (score == 0) {
        return 0;
    }
    int const near[] = {150, 150, 75, 35, 15, 0, 0, 0, 0};
    score -= near[steps_to(enemy_king, pawns)];
    score -= 50 * count(stop & all(enemy) & ~pieces(enemy, rook));
    score -= 50 * count(stop & sides_[index(enemy)].attacked & ~sides_[index(colour)].attacked);
    if (all(enemy) == (pieces(enemy, king_type) | pieces(enemy, pawn))) {
        for (int s = 0; s < 64; ++s) {
            int const bonus[] = {0, 0, 50, 100, 200, 300, 400, 0};
            int const promotion = seen_from(colour, 56 + file_of(s));
            int const gone = advance(colour, s);
            if (pawns[index(s)] && steps_between(enemy_king, promotion) > 7 - gone) {
                score += bonus[gone];
            }
        }
    }
    set_t const behind = files & ~(ahead | pawns);
    score += (pieces(colour, rook) & behind).any() ? 50 : 0;
    score -= (pieces(enemy, rook) & behind).any() ? 50 : 0;
    return std::max(score, 0);
}

int PlainEvaluation::activity(int colour) const {
    int const own_king = king(colour);
    if (sides_[0].pawns.none() && sides_[1].pawns.none()) {
        int const from_edge = std::min(
            {file_of(own_king), 7 - file_of(own_king), rank_of(own_king), 7 - rank_of(own_king)});
        int const value[] = {-1, 0, 1, 2};
        return value[from_edge];
    }
    set_t ahead;
    for (int ranks = 2; ranks < 8; ++ranks) {
        ahead |= moved(passed(colour), 0, colour == 1 ? ranks : -ranks);
    }
    return -2 * steps_to(own_king, weak(1 - colour)) - 3 * steps_to(own_king, ahead);
}

void PlainEvaluation::find_pawn_terms() {
    // Black minus White.
    std::array<int, 7> sums{};
    for (int colour = 0; colour < 2; ++colour) {
        int const sign = colour == 1 ? -1 : 1;
        int const forward = colour == 1 ? 1 : -1;
        set_t const& pawns = sides_[index(colour)].pawns;
        set_t doubled;
        for (int ranks = 1; ranks <= 4; ++ranks) {
            doubled |= pawns & moved(pawns, 0, -ranks * forward);
        }
        int files_with_pawns[10] = {};
        for (int s = 0; s < 64; ++s) {
            files_with_pawns[file_of(s) + 1] += pawns[index(s)] ? 1 : 0;
        }
        for (int file = 1; file < 9; ++file) {
            int const here = files_with_pawns[file];
            if (files_with_pawns[file - 1] == 0 && files_with_pawns[file + 1] == 0) {
                sums[1] += sign * here;
            }
            sums[2] += here != 0 && files_with_pawns[file - 1] == 0 ? sign : 0;
        }
        sums[0] += sign * count(doubled);
        sums[3] += sign * (files_with_pawns[1] + files_with_pawns[8]);
        sums[4] += sign * count(weak(colour));
        sums[5] += sign * count(moved(pawns, 0, forward) & occupied());
        set_t const bishops = pieces(colour, bishop);
        if (count(bishops) == 1) {
            bool const light = (bishops & light_squares()).any();
            sums[6] += sign * count(pawns & (light ? light_squares() : ~light_squares()));
        }
    }
    terms_[term::doubled_pawns] = static_cast<float>(sums[0]);
    terms_[term::isolated_pawns] = static_cast<float>(sums[1]);
    terms_[term::pawn_islands] = static_cast<float>(sums[2]);
    terms_[term::rookpawn] = static_cast<float>(sums[3]);
    terms_[term::weak_pawns] = static_cast<float>(sums[4]);
    terms_[term::blocked_pawns] = static_cast<float>(sums[5]);
    terms_[term::bad_bishop] = static_cast<float>(sums[6]);
    terms_[term::passed_pawns] = static_cast<float>(passers(1) - passers(0));
}

int PlainEvaluation::score() {
    read_board();
    find_phase();
    find_maps(1);
    find_maps(0);
    for (int type = knight; type <= queen; ++type) {
        find_mobility(1, type);
        find_mobility(0, type);
    }
    find_piece_terms();
    find_pawn_terms();
    find_king_terms();
    float sum = 0.0F;
    for (std::size_t i = 0; i < term::count; ++i) {
        float const end_game = terms_[i] * weights_.eg[i] * eg_phase_;
        float const middle_game = terms_[i] * weights_.mg[i] * mg_phase_;
        sum += end_game + middle_game;
    }
    double const divisor = static_cast<double>(terms_[term::opposite_colored_bishops]) + 1.0;
    auto const quotient = static_cast<float>(static_cast<double>(sum) / divisor);
    return static_cast<int>(std::round(quotient) * terms_[term::stm]);
}

}  // namespace orvelin::test
