#include <algorithm>
#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "evaluation/piece_square_tables.h"
#include "generation/move_generator.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "position/move_list.h"
#include "support/chess960_positions.h"
#include "support/perft.h"
#include "support/position_record.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

constexpr int main_depth = short_tests ? 2 : 3;

/// Everything of a position that making and taking back a move must leave as it was.
class Snapshot {
 public:
    explicit Snapshot(ChessPosition const& position)
        : copy_(position),
          hash_(position.get_hash()),
          pawn_hash_(position.get_pawnhash()),
          material_(position.materialindex()),
          fen_(position.fen()),
          records_(position.history().size()) {}

    void expect_same(ChessPosition const& position) const {
        EXPECT_TRUE(position == copy_);
        EXPECT_TRUE(position.board() == copy_.board());
        EXPECT_EQ(position.get_hash(), hash_);
        EXPECT_EQ(position.get_pawnhash(), pawn_hash_);
        EXPECT_TRUE(position.materialindex() == material_);
        EXPECT_TRUE(position.repetition_filter() == copy_.repetition_filter());
        EXPECT_EQ(position.check(), copy_.check());
        EXPECT_EQ(position.fen(), fen_);
        EXPECT_EQ(position.history().size(), records_);
    }

 private:
    ChessPosition copy_;
    std::uint64_t hash_;
    std::uint64_t pawn_hash_;
    MaterialIndex material_;
    std::string fen_;
    std::size_t records_;
};

/// Walks the legal tree of a position and holds every node against its invariants.
class TreeWalk {
 public:
    explicit TreeWalk(Tables const& tables)
        : generator_(tables), position_(tables), recomputed_(tables) {}

    void run(std::string const& fen, int depth) {
        position_.fen(fen);
        sums_.init(position_);
        SCOPED_TRACE(fen);
        walk(depth);
    }

    std::uint64_t nodes() const { return nodes_; }

 private:
    void walk(int depth) {
        std::array<Move, max_moves> storage;
        MoveList list(storage.data());
        movetable_t table;
        generator_.create_movetable(position_, table);
        generator_.serialize_moves(position_, table, list);
        expect_captures_are_filtered(table, list);
        if (depth == 0) {
            return;
        }
        const Snapshot snapshot(position_);
        for (Move const& move : list) {
            position_.make_move(move);
            sums_.make_move(move);
            expect_consistent_node(move);
            walk(depth - 1);
            position_.unmake_move();
            sums_.unmake_move(move);
            snapshot.expect_same(position_);
            EXPECT_TRUE(sums_.verify_score());
            // The first broken node tells enough; its path is in the last moves.
            ASSERT_FALSE(testing::Test::HasFailure()) << move.dump() << position_.fen();
        }
    }

    void expect_captures_are_filtered(movetable_t& table, MoveList const& list) {
        std::array<Move, max_moves> storage;
        MoveList captures(storage.data());
        generator_.serialize_captures(position_, table, captures);
        std::vector<std::string> filtered;
        for (Move const& move : list) {
            bool const promotes = move.code() >= promo_queen && move.code() <= promo_knight;
            if (move.capture_id() != 0 || promotes) {
                filtered.push_back(move.dump());
            }
        }
        std::vector<std::string> generated;
        for (Move const& move : captures) {
            generated.push_back(move.dump());
        }
        EXPECT_EQ(generated, filtered);

        std::array<Move, max_moves> direct_storage;
        MoveList direct(direct_storage.data());
        generator_.generate_captures_directly(position_, direct);
        EXPECT_TRUE(std::equal(direct.begin(), direct.end(), captures.begin(), captures.end(),
                               [](Move const& a, Move const& b) { return a.word() == b.word(); }));
    }

    void expect_consistent_node(Move const& move) {
        ++nodes_;
        bool const white = position_.white_to_move();
        bool const in_check = white ? position_.black_attacks(position_.white_king())
                                    : position_.white_attacks(position_.black_king());
        bool const mover_in_check = white ? position_.white_attacks(position_.black_king())
                                          : position_.black_attacks(position_.white_king());
        EXPECT_EQ(move.check(), in_check);
        EXPECT_EQ(position_.check(), in_check);
        EXPECT_FALSE(mover_in_check);
        EXPECT_TRUE(position_.board().consistent());
        EXPECT_TRUE(sums_.verify_score());

        recomputed_.fen(position_.fen());
        EXPECT_TRUE(position_ == recomputed_);
        EXPECT_EQ(position_.get_hash(), recomputed_.get_hash());
        EXPECT_EQ(position_.get_pawnhash(), recomputed_.get_pawnhash());
        EXPECT_TRUE(position_.materialindex() == recomputed_.materialindex());
        EXPECT_EQ(recomputed_.check(), in_check);
    }

    MoveGenerator generator_;
    ChessPosition position_;
    ChessPosition recomputed_;
    PieceSquareTables sums_;
    std::uint64_t nodes_ = 0;
};

class TreeInvariants : public testing::TestWithParam<char const*> {};

TEST_P(TreeInvariants, HoldAtEveryNode) {
    Tables const& tables = shared_tables();
    TreeWalk tree(tables);
    tree.run(GetParam(), main_depth);
    EXPECT_GT(tree.nodes(), 100U);
}

INSTANTIATE_TEST_SUITE_P(perft, TreeInvariants,
                         testing::Values(positions::start, positions::kiwipete,
                                         positions::rook_ending, positions::promotions,
                                         positions::promotion_by_capture,
                                         positions::quiet_middle_game));

}  // namespace

TEST(TreeInvariantsOfManyPositions, HoldInGamesAndEndings) {
    constexpr int depth = short_tests ? 1 : 2;
    Tables const& tables = shared_tables();
    TreeWalk tree(tables);
    for (char const* file_name : {"positions.txt", "endings.txt"}) {
        for (PositionRecord const& record : read_position_records(file_name)) {
            tree.run(record.fen(), depth);
        }
    }
    EXPECT_GT(tree.nodes(), 1000U);
}

TEST(TreeInvariantsOfManyPositions, HoldInChess960) {
    constexpr int positions = short_tests ? 10 : 100;
    Tables const& tables = shared_tables();
    TreeWalk tree(tables);
    for (std::string const& fen : random_chess960_fens(tables, positions)) {
        tree.run(fen, 2);
    }
    EXPECT_GT(tree.nodes(), 1000U);
}

}  // namespace orvelin::test
