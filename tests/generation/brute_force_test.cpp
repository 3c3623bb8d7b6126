#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "generation/move_generator.h"
#include "position/chess_position.h"
#include "support/plain_board.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

constexpr int games_per_start = short_tests ? 1 : 5;
constexpr int plies_per_game = short_tests ? 30 : 80;

/// Rich in castling, en passant, promotions, pins and checks; the last ones are Chess960.
const std::string start_fens[] = {
    positions::start,
    positions::kiwipete,
    positions::rook_ending,
    positions::promotions,
    positions::promotion_by_capture,
    "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1",
    "4k3/pppppppp/8/8/8/8/PPPPPPPP/4K3 w - - 0 1",
    "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1",
    "4k3/8/8/2KPpP1r/8/8/8/B3R3 w - e6 0 1",
    "rknbqrb1/pp2p1pp/3p1pn1/2p5/4P3/6P1/PPPP1PBP/RKN1QRBN w FAfa - 0 5",
    "bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR w HFhf - 2 9",
    "1rk2r2/8/8/8/8/8/8/1RK2R2 w BFbf - 0 1",
    "rk5r/pppppppp/8/8/8/8/PPPPPPPP/RK5R b AHah - 0 1",
    "5krr/8/8/8/8/8/8/rRK1R3 w BE - 0 1",
};

class BruteForce : public testing::TestWithParam<std::string> {
 protected:
    void expect_agreement() {
        std::vector<plain_move_t> expected = PlainBoard(position_).legal_moves();
        generator_.generate_moves(position_, list_);
        std::vector<plain_move_t> found;
        for (Move const& move : list_) {
            found.push_back(plain(move));
        }
        std::sort(found.begin(), found.end());
        ASSERT_EQ(texts(found), texts(expected)) << position_.fen();
    }

    /// The captures list is what the full list holds of captures and promotions, in its order.
    void expect_captures_to_be_the_filtered_list() {
        movetable_t table;
        MoveList captures;
        generator_.create_movetable(position_, table);
        generator_.serialize_captures(position_, table, captures);
        std::vector<plain_move_t> filtered;
        for (Move const& move : list_) {
            bool const promotion = move.code() >= promo_queen && move.code() <= promo_knight;
            if (promotion || move.capture()) {
                filtered.push_back(plain(move));
            }
        }
        std::vector<plain_move_t> found;
        for (Move const& move : captures) {
            found.push_back(plain(move));
        }
        ASSERT_EQ(texts(found), texts(filtered)) << position_.fen();
    }

    static std::vector<std::string> texts(std::vector<plain_move_t> const& moves) {
        std::vector<std::string> result;
        for (plain_move_t const& move : moves) {
            result.push_back(text_of(move));
        }
        return result;
    }

    ChessPosition position_{shared_tables()};
    MoveGenerator generator_{shared_tables()};
    MoveList list_;
};

}  // namespace

TEST_P(BruteForce, GeneratorFindsTheSameMovesAndChecks) {
    std::mt19937 random(20240);
    for (int game = 0; game < games_per_start; ++game) {
        position_.fen(GetParam());
        for (int ply = 0; ply < plies_per_game; ++ply) {
            expect_agreement();
            expect_captures_to_be_the_filtered_list();
            if (HasFatalFailure()) {
                return;
            }
            if (list_.size() == 0) {
                break;
            }
            auto const chosen = static_cast<int>(random() % list_.size());
            position_.make_move(list_[chosen]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Starts, BruteForce, testing::ValuesIn(start_fens));

}  // namespace orvelin::test
