// The endgame tables of the root search: which material has one, and what time it is given.

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "search/endgame_tables_fixture.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

/// The tables that get the memory at the root of such a position.
std::string lent_to(std::string const& material) {
    ChessPosition position(search_tables());
    position.fen(fen_of(material));
    Analysis analysis(position, search_tables());
    MoveList unread;
    analysis.root_search(unread, 1, -infinite_score, infinite_score);
    std::string names;
    for (Egt4Pieces const* const table : {&analysis.kbnk_table(), &analysis.kqkr_table()}) {
        // The memory is all zero, and without any the answer is another.
        if ((*table)[0] == 0) {
            names += table->name();
        }
    }
    return names;
}

}  // namespace

TEST_F(EndgameTables, EightMaterialsHaveATable) {
    struct {
        std::string material;
        std::string table;
    } const cases[] = {
        {"KBNk", "KBNK"}, {"Kkbn", "KBNK"}, {"KQkr", "KQKR"}, {"KRkq", "KQKR"},
        {"KQk", "KQKR"},  {"Kkq", "KQKR"},  {"KRk", "KQKR"},  {"Kkr", "KQKR"},
    };
    for (auto const& item : cases) {
        threshold(0);
        EXPECT_EQ(lent_to(item.material), item.table) << item.material;
        EXPECT_EQ(threshold(), last_lent) << item.material;
    }
}

TEST_F(EndgameTables, OtherMaterialHasNone) {
    for (std::string const material :
         {"Kk",     "KBk",   "KNk",   "KPk",   "Kkb",   "Kkn",   "Kkp",   "KBBk",   "KNNk",
          "KRRk",   "KQQk",  "KQRk",  "KRBk",  "KBkn",  "KNkb",  "KBkb",  "KNkn",   "KRkr",
          "KQkq",   "KQkb",  "KQkn",  "KRkb",  "KRkn",  "KBkr",  "KNkr",  "Kkqr",   "Kkrr",
          "Kkbb",   "Kknn",  "KBNkn", "KBNkr", "KBNNk", "KQRkr", "KQkrr", "KQkbn",  "KRkqr",
          "KQRBNk", "KBNkp", "KBNPk", "KPkbn", "Kkbnp", "KQkrp", "KQPkr", "KQPk",   "KQkp",
          "KRPk",   "KRkp",  "KRPkq", "KRkqp", "KPkq",  "Kkqp",  "Kkrp",  "KBNkbn", "KRPkrp"}) {
        threshold(last_lent);
        EXPECT_EQ(lent_to(material), "") << material;
        EXPECT_EQ(threshold(), 0U) << material;
    }
}

TEST_F(EndgameTables, WithoutAClockTheMemoryIsLentAndNothingBuilt) {
    std::function<void()> const limits[] = {
        [&] { analysis_.set_depth(3); },
        [&] { analysis_.set_nodes(2000); },
        [&] {
            analysis_.set_infinite(true);
            analysis_.set_nodes(2000);
        },
    };
    for (std::string const material : {"KBNk", "KQkr"}) {
        for (auto const& limit : limits) {
            set_material(material);
            threshold(0);
            limit();
            analysis_.iterative_search();
            EXPECT_EQ(threshold(), last_lent);
            EXPECT_EQ(kbnk().progress(), -1);
            EXPECT_EQ(kqkr().progress(), -1);
            EXPECT_GT(analysis_.pv().size(), 0);
        }
    }
}

TEST_F(EndgameTables, NothingIsBuiltAtTheTimeFloor) {
    struct {
        std::string material;
        std::string side;
        std::function<void(TimeManager&)> limits;
    } const cases[] = {
        {"KBNk", "w", [](auto& time) { time.set_movetime(kbnk_floor); }},
        {"KBNk", "w", [](auto& time) { time.set_movetime(1); }},
        {"KBNk", "w", [](auto& time) { time.set_wtime(kbnk_floor), time.set_btime(600000); }},
        {"KBNk", "w", [](auto& time) { time.set_wtime(kbnk_floor), time.set_winc(600000); }},
        {"Kkbn", "b", [](auto& time) { time.set_btime(kbnk_floor), time.set_wtime(600000); }},
        {"KBNk", "w", [](auto& time) { time.set_movetime(kbnk_floor), time.set_wtime(600000); }},
        {"KQkr", "w", [](auto& time) { time.set_movetime(kqkr_floor); }},
        {"KQkr", "w", [](auto& time) { time.set_movetime(kbnk_floor + 1); }},
        {"KRk", "w", [](auto& time) { time.set_wtime(kqkr_floor), time.set_btime(600000); }},
        {"KRk", "b", [](auto& time) { time.set_btime(kqkr_floor), time.set_wtime(600000); }},
        {"Kkq", "w", [](auto& time) { time.set_movetime(kqkr_floor), time.set_wtime(600000); }},
    };
    for (auto const& item : cases) {
        set_material(item.material, item.side);
        item.limits(time());
        threshold(0);
        root();
        EXPECT_EQ(threshold(), last_lent) << item.material;
        EXPECT_EQ(kbnk().progress(), -1) << item.material;
        EXPECT_EQ(kqkr().progress(), -1) << item.material;
    }
}

TEST_F(EndgameTables, AboveTheFloorTheClockOfTheSideToMoveLetsItBuild) {
    set_material("Kkbn", "b");
    time().set_wtime(1);
    time().set_btime(kbnk_floor + spare);
    probe_.start_clock();
    root();
    EXPECT_GE(kbnk().progress(), 0);
    EXPECT_LT(time().remaining_time(), kbnk_floor + spare);
    EXPECT_EQ(kqkr().progress(), -1);
}

TEST_F(EndgameTables, ATimePerMoveGoesBeforeTheClock) {
    set_material("KQkr");
    time().set_wtime(1);
    time().set_movetime(kqkr_floor + spare);
    probe_.start_clock();
    root();
    EXPECT_GE(kqkr().progress(), 0);
    EXPECT_EQ(kbnk().progress(), -1);
}

TEST_F(EndgameTables, AStopAndTheFlagsThatHoldTheClockDoNotKeepItFromBuilding) {
    set_material("KBNk");
    time().set_wtime(kbnk_floor + spare);
    analysis_.set_infinite(true);
    analysis_.set_pondering(true);
    analysis_.set_action(stop_action);
    probe_.start_clock();
    root();
    EXPECT_GE(kbnk().progress(), 0);
}

TEST_F(EndgameTables, ProgressIsKeptBetweenRoots) {
    root_with("KBNk", kbnk_floor + spare);
    int const progress = kbnk().progress();
    ASSERT_GE(progress, 0);
    bytes_t const bytes = bytes_of(kbnk());
    // No time: the table waits, and clearing the hash for the new game leaves it alone.
    root_with("KBNk", kbnk_floor);
    EXPECT_EQ(kbnk().progress(), progress);
    EXPECT_EQ(bytes_of(kbnk()), bytes);
    EXPECT_EQ(threshold(), last_lent);
    root_with("Kkbn", kbnk_floor + spare);
    EXPECT_TRUE(kbnk().progress() > progress || kbnk().ready());
}

TEST_F(EndgameTables, EveryIterationBuildsOn) {
    set_material("KBNk");
    time().set_movetime(kbnk_floor + spare);
    analysis_.set_pondering(true);
    analysis_.set_depth(3);
    std::vector<int> progress;
    analysis_.iterative_search(
        [&](int, int, int) { progress.push_back(analysis_.kbnk_table().progress()); });
    ASSERT_GE(progress.size(), 3U);
    // The first root uses the time up; the later ones find it gone.
    EXPECT_GE(progress.front(), 0);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
}

// Whole tables take too long for the sanitizer builds.
#if !ORVELIN_SHORT_TESTS
TEST_F(EndgameTables, AMillisecondAboveTheFloorIsEnough) {
    // The clock stands still, so that the time for the move is never used up.
    set_material("KBNk");
    time().set_movetime(kbnk_floor + 1);
    root();
    EXPECT_TRUE(kbnk().ready());
    EXPECT_EQ(kbnk().progress(), 101);
    bytes_t const bytes = bytes_of(kbnk());
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), Egt4Pieces::unknown), 0);
    // The longest win takes 33 moves, and one ply more with Black to move.
    EXPECT_GT(std::count(bytes.begin(), bytes.end(), 65), 0);
    EXPECT_GT(std::count(bytes.begin(), bytes.end(), 66), 0);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), 67), 0);

    // A finished table is left alone, and so is the threshold.
    threshold(last_lent + 1000);
    root();
    EXPECT_EQ(kbnk().progress(), 101);
    EXPECT_EQ(threshold(), last_lent + 1000);
    EXPECT_EQ(bytes_of(kbnk()), bytes);

    // Kept: another table overwrites it, and it counts as finished all the same.
    root_with("KQkr", kqkr_floor + spare);
    EXPECT_GE(kqkr().progress(), 0);
    EXPECT_EQ(kbnk().progress(), 101);
    EXPECT_NE(bytes_of(kbnk()), bytes);

    root_with("KBNkp", 1);
    EXPECT_EQ(kbnk().progress(), -1);
}

TEST_F(EndgameTables, TheQueenAgainstRookTableIsFinishedInBudget) {
    set_material("KQkr");
    time().set_wtime(kqkr_floor + 1);
    root();
    EXPECT_EQ(kqkr().progress(), 101);
    bytes_t const bytes = bytes_of(kqkr());
    // The longest win takes 35 moves.
    EXPECT_GT(std::count(bytes.begin(), bytes.end(), 69), 0);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), 71), 0);
}
#endif

}  // namespace orvelin::test
