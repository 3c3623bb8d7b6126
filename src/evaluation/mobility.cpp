#include "evaluation/mobility.h"

#include "generation/attacks.h"
#include "position/set_steps.h"

namespace orvelin {

namespace {

// Rows of the mobility table.
constexpr std::size_t knight_row = 0;
constexpr std::size_t bishop_row = knight_row + 9;
constexpr std::size_t rook_row = bishop_row + 14;
constexpr std::size_t queen_row = rook_row + 15;

static_assert(queen_row + 28 == Mobility::mobility_table.size());
static_assert(Mobility::mobility_table[knight_row] == -68);
static_assert(Mobility::mobility_table[bishop_row] == -64);
static_assert(Mobility::mobility_table[rook_row] == -40);
static_assert(Mobility::mobility_table[queen_row] == -22);
static_assert(Mobility::mobility_table[queen_row + 27] == 30);

/// Sums up the mobility of the pieces of one type; `attacks_from` gives the
/// attack set of a square. The sets come back by reference, which keeps them in
/// registers where a struct would not.
template <typename LookUp>
[[gnu::always_inline]] inline std::int32_t sum_over(BitBoard pieces, std::size_t row,
                                                    BitBoard allowed, BitBoard& attacks,
                                                    BitBoard& safe_squares, LookUp attacks_from) {
    std::int32_t mobility = 0;
    std::uint64_t attacked = 0;
    std::uint64_t all_safe = 0;
    while (pieces) {
        BitBoard const targets = attacks_from(pieces.get_reset_square().get_unique_square());
        BitBoard const safe = targets & allowed;
        attacked |= to_ull(targets);
        all_safe |= to_ull(safe);
        mobility += Mobility::mobility_table[row + static_cast<std::size_t>(count(safe))];
    }
    attacks = BitBoard(attacked);
    safe_squares = BitBoard(all_safe);
    return mobility;
}

}  // namespace

Mobility::Mobility(Attacks const& attacks) : attacks_(attacks) {}

// All steps are inlined here: what one step finds the next ones still have in
// registers. The maps of the king's own attacks stay empty, all others are
// overwritten.
void Mobility::compute(ChessPosition const& position) {
    mobility_t mobility;
    find_king_maps<white>(position);
    find_king_maps<black>(position);
    find_pawn_attacks<white>(position);
    find_pawn_attacks<black>(position);
    mobility.knight += find_knight_attacks<white>(position);
    mobility.knight -= find_knight_attacks<black>(position);
    mobility.bishop += find_bishop_attacks<white>(position);
    mobility.bishop -= find_bishop_attacks<black>(position);
    mobility.rook += find_rook_attacks<white>(position);
    mobility.rook -= find_rook_attacks<black>(position);
    mobility.queen += find_queen_attacks<white>(position);
    mobility.queen -= find_queen_attacks<black>(position);
    mobility.all = mobility.knight + mobility.bishop + mobility.rook + mobility.queen;
    mobility_ = mobility;
    find_safe_queen_checks<white>(position);
    find_safe_queen_checks<black>(position);
    add_king_attacks<white>(position);
    add_king_attacks<black>(position);
}

template <int Side>
[[gnu::always_inline]] inline void Mobility::find_king_maps(ChessPosition const& position) {
    BitBoard const block = king_block(SideMen<Side>::kings(position));
    maps_[Side].neighbourhood = block;
    maps_[Side].battlefield = block | ahead<Side>(block, 2) | ahead<Side>(block, 3);
}

template <int Side>
[[gnu::always_inline]] inline void Mobility::find_pawn_attacks(ChessPosition const& position) {
    BitBoard const attacks = pawn_attacks<Side>(SideMen<Side>::pawns(position));
    maps_[Side].pawn_attacks = attacks;
    maps_[Side].attacked = attacks;
}

template <int Side>
[[gnu::always_inline]] inline void Mobility::join(std::size_t type, BitBoard attacks) {
    maps_[Side].attacked |= attacks;
    maps_[Side].battlefield_attack[type] = attacks & maps_[SideMen<Side>::enemy].battlefield;
}

template <int Side>
[[gnu::always_inline]] inline std::int32_t Mobility::find_knight_attacks(
    ChessPosition const& position) {
    using men = SideMen<Side>;
    Attacks const& attacks = attacks_;
    BitBoard const unsafe = men::pawns(position) | maps_[men::enemy].pawn_attacks;
    BitBoard attacked;
    BitBoard safe;
    std::int32_t const mobility =
        sum_over(men::knights(position), knight_row, ~unsafe, attacked, safe,
                 [&](Square square) { return attacks.knight(square); });
    maps_[Side].knight_attacks = attacked;
    join<Side>(knight, attacked);
    return mobility;
}

template <int Side>
[[gnu::always_inline]] inline std::int32_t Mobility::find_bishop_attacks(
    ChessPosition const& position) {
    using men = SideMen<Side>;
    Attacks const& attacks = attacks_;
    BitBoard const occupied = position.pieces() & ~men::queens(position);
    BitBoard const unsafe = men::pawns(position) | maps_[men::enemy].pawn_attacks;
    BitBoard attacked;
    BitBoard safe;
    std::int32_t const mobility =
        sum_over(men::bishops(position), bishop_row, ~unsafe, attacked, safe,
                 [&](Square square) { return attacks.bishop(square, occupied); });
    maps_[Side].bishop_attacks = attacked;
    join<Side>(bishop, attacked);
    return mobility;
}

template <int Side>
[[gnu::always_inline]] inline std::int32_t Mobility::find_rook_attacks(
    ChessPosition const& position) {
    using men = SideMen<Side>;
    Attacks const& attacks = attacks_;
    BitBoard const occupied = position.pieces() & ~(men::rooks(position) | men::queens(position));
    side_maps_t const& other = maps_[men::enemy];
    BitBoard const unsafe =
        men::pawns(position) | other.pawn_attacks | other.knight_attacks | other.bishop_attacks;
    BitBoard attacked;
    BitBoard safe;
    std::int32_t const mobility =
        sum_over(men::rooks(position), rook_row, ~unsafe, attacked, safe,
                 [&](Square square) { return attacks.rook(square, occupied); });
    maps_[Side].rook_attacks = attacked;
    join<Side>(rook, attacked);
    return mobility;
}

template <int Side>
[[gnu::always_inline]] inline std::int32_t Mobility::find_queen_attacks(
    ChessPosition const& position) {
    using men = SideMen<Side>;
    Attacks const& attacks = attacks_;
    BitBoard const occupied = position.pieces();
    side_maps_t const& other = maps_[men::enemy];
    BitBoard const unsafe = men::pawns(position) | other.pawn_attacks | other.knight_attacks |
                            other.bishop_attacks | other.rook_attacks;
    BitBoard attacked;
    BitBoard safe;
    std::int32_t const mobility =
        sum_over(men::queens(position), queen_row, ~unsafe, attacked, safe,
                 [&](Square square) { return attacks.queen(square, occupied); });
    maps_[Side].queen_attacks = attacked;
    maps_[Side].queen_safe_squares = safe;
    join<Side>(queen, attacked);
    return mobility;
}

template <int Side>
[[gnu::always_inline]] inline void Mobility::find_safe_queen_checks(ChessPosition const& position) {
    using enemy = SideMen<1 - Side>;
    BitBoard const safe = maps_[Side].queen_safe_squares;
    BitBoard squares =
        Side == 1 ? position.white_queencheck_squares() : position.black_queencheck_squares();
    // The position knows them where each side has its one king.
    if (!single(position.white_king()) || !single(position.black_king()) ||
        position.board_is_inconsistent()) {
        squares = attacks_.queen(enemy::king(position), position.pieces());
    }
    maps_[Side].safe_queen_checks = safe & squares;
}

template <int Side>
[[gnu::always_inline]] inline void Mobility::add_king_attacks(ChessPosition const& position) {
    maps_[Side].attacked |= attacks_.king(SideMen<Side>::king(position));
}

template <int Side>
void Mobility::add_share(std::int32_t mobility, std::int32_t& share) {
    std::int32_t const signed_mobility = Side == 1 ? mobility : -mobility;
    share += signed_mobility;
    mobility_.all += signed_mobility;
}

void Mobility::compute_white_king_neighbourhood(ChessPosition const& position) {
    find_king_maps<white>(position);
}

void Mobility::compute_black_king_neighbourhood(ChessPosition const& position) {
    find_king_maps<black>(position);
}

void Mobility::compute_white_pawn_attacks(ChessPosition const& position) {
    find_pawn_attacks<white>(position);
}

void Mobility::compute_black_pawn_attacks(ChessPosition const& position) {
    find_pawn_attacks<black>(position);
}

void Mobility::compute_white_knight_attacks(ChessPosition const& position) {
    add_share<white>(find_knight_attacks<white>(position), mobility_.knight);
}

void Mobility::compute_black_knight_attacks(ChessPosition const& position) {
    add_share<black>(find_knight_attacks<black>(position), mobility_.knight);
}

void Mobility::compute_white_bishop_attacks(ChessPosition const& position) {
    add_share<white>(find_bishop_attacks<white>(position), mobility_.bishop);
}

void Mobility::compute_black_bishop_attacks(ChessPosition const& position) {
    add_share<black>(find_bishop_attacks<black>(position), mobility_.bishop);
}

void Mobility::compute_white_rook_attacks(ChessPosition const& position) {
    add_share<white>(find_rook_attacks<white>(position), mobility_.rook);
}

void Mobility::compute_black_rook_attacks(ChessPosition const& position) {
    add_share<black>(find_rook_attacks<black>(position), mobility_.rook);
}

void Mobility::compute_white_queen_attacks(ChessPosition const& position) {
    add_share<white>(find_queen_attacks<white>(position), mobility_.queen);
}

void Mobility::compute_black_queen_attacks(ChessPosition const& position) {
    add_share<black>(find_queen_attacks<black>(position), mobility_.queen);
}

void Mobility::compute_white_safe_queen_checks(ChessPosition const& position) {
    find_safe_queen_checks<white>(position);
}

void Mobility::compute_black_safe_queen_checks(ChessPosition const& position) {
    find_safe_queen_checks<black>(position);
}

void Mobility::compute_white_king_attacks(ChessPosition const& position) {
    add_king_attacks<white>(position);
}

void Mobility::compute_black_king_attacks(ChessPosition const& position) {
    add_king_attacks<black>(position);
}

}  // namespace orvelin
