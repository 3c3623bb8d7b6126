// Nothing of one question is left for the next.

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "analyse/position_search.h"
#include "analyse/result_text.h"
#include "play/position_reader.h"
#include "support/data_file.h"
#include "support/positions.h"
#include "support/shared_tables.h"

namespace orvelin::analyse::test {

namespace {

std::vector<std::string> positions_of(std::string const& file, std::size_t count) {
    std::vector<std::string> fens;
    for (auto const& block : orvelin::test::read_data_blocks(file)) {
        for (std::string const& line : block) {
            auto const words = orvelin::test::split_words(line);
            if (words.size() == 8 && words[1] == "pos" && fens.size() < count) {
                fens.push_back(orvelin::test::join_words(words, 2));
            }
        }
    }
    return fens;
}

/// Questions of all kinds: middle games, endings without pawns and with a table, several lines,
/// limits of both sorts, a move that was played.
std::vector<Question> questions() {
    static constexpr char const* limits[] = {"depth=5", "static", "nodes=3000", "depth=4",
                                             "nodes=20"};
    std::vector<Question> questions;
    for (auto const& [file, count] : {std::pair("search_depth8.txt", 40),
                                      {"search_endings.txt", 40},
                                      {"search_table_endings.txt", 7},
                                      {"search_chess960.txt", 13}}) {
        for (std::string const& fen : positions_of(file, static_cast<std::size_t>(count))) {
            std::size_t const n = questions.size();
            Question asked = question(fen, limits[n % 5], n % 3 == 0 ? 3 : 1);
            asked.chess960 = std::string(file) == "search_chess960.txt";
            ChessPosition position(orvelin::test::shared_tables());
            position.fen(fen);
            auto const legal = play::legal_moves(position, orvelin::test::shared_tables());
            if (n % 2 == 0 && !legal.empty()) {
                asked.played = legal[n % legal.size()];
            }
            questions.push_back(asked);
        }
    }
    return questions;
}

TEST(PositionSearchStateTest, AHundredAnswersAreTheSameInAnyOrder) {
    std::vector<Question> const asked = questions();
    ASSERT_EQ(asked.size(), 100U);
    std::vector<std::string> forwards;
    PositionSearch first;
    for (Question const& one : asked) {
        forwards.push_back(text_of(first.answer(one)));
    }
    PositionSearch second;
    for (std::size_t i = asked.size(); i-- > 0;) {
        EXPECT_EQ(text_of(second.answer(asked[i])), forwards[i]) << asked[i].fen;
    }
}

// The stamp of a search in the hash table comes back to that of empty entries then.
TEST(PositionSearchStateTest, TheTwoHundredAndFiftySixthSearchIsLikeTheFirst) {
    Question const asked = question(positions::kiwipete, "depth=7");
    PositionSearch search;
    std::string const expected = text_of(search.answer(asked));
    for (int i = 0; i < 254; ++i) {
        search.answer(question(positions::bare_kings, "depth=1"));
    }
    EXPECT_EQ(text_of(search.answer(asked)), expected);
}

// A search that begins in check extends by passed pawns before it has evaluated anything.
TEST(PositionSearchStateTest, NothingOfTheLastEvaluationIsLeft) {
    std::string const check = "8/4P1k1/8/8/1b6/3p4/8/4K3 w - - 0 1";
    std::string const other = "8/3PP1k1/8/8/8/3p4/2p5/K7 w - - 0 1";
    PositionSearch search;
    std::map<std::string, std::string> expected;
    for (std::string const limit : {"depth=1", "depth=2", "depth=3"}) {
        expected[limit] = text_of(PositionSearch().answer(question(check, limit)));
    }
    for (auto const& [limit, text] : expected) {
        search.answer(question(other, "depth=2"));
        EXPECT_EQ(text_of(search.answer(question(check, limit))), text) << limit;
    }
}

// Such a board finds the place of its key in the pawn table taken once another structure was there.
TEST(PositionSearchStateTest, ABoardWithoutPawnsIsEvaluatedAsByANewEngine) {
    std::string const pawnless = "3r1rk1/8/8/2q5/8/4R3/8/Q3R1K1 w - - 0 1";
    int const expected = PositionSearch().answer(question(pawnless, "static")).static_score;
    PositionSearch search;
    search.answer(question("4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1", "nodes=400000"));
    EXPECT_EQ(search.answer(question(pawnless, "static")).static_score, expected);
    Question const asked = question(pawnless, "depth=5");
    EXPECT_EQ(text_of(search.answer(asked)), text_of(PositionSearch().answer(asked)));
}

}  // namespace

}  // namespace orvelin::analyse::test
