// Nothing of one question is left for the next.

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "analyse/position_search.h"
#include "analyse/result_text.h"
#include "evaluation/pawn_hash_table.h"
#include "play/position_reader.h"
#include "support/data_file.h"
#include "support/shared_tables.h"
#include "support/test_config.h"

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
    static constexpr char const* limits[] = {orvelin::test::short_tests ? "depth=3" : "depth=5",
                                             "static", "nodes=3000", "depth=4", "nodes=20"};
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

// The first moves of the root are extended by the passed pawns of the last evaluation.
TEST(PositionSearchStateTest, PassedPawnsOfTheLastEvaluationAreForgotten) {
    std::string const pawns = "8/7p/8/8/8/k7/4PP2/K7 w - - 0 1";
    PositionSearch search;
    for (std::string const limit : {"depth=1", "depth=2", "depth=3"}) {
        std::string const expected = text_of(PositionSearch().answer(question(pawns, limit)));
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(text_of(search.answer(question(pawns, limit))), expected) << limit;
        }
    }
}

/// A position whose pawns take the place of a board without pawns in the pawn table.
std::string position_in_slot_of_no_pawns() {
    ChessPosition position(orvelin::test::shared_tables());
    for (int first = 8; first < 56; ++first) {
        for (int second = first + 1; second < 56; ++second) {
            for (int third = 8; third < 56; ++third) {
                if (third == first || third == second) {
                    continue;
                }
                std::string board =
                    "k......./......../......../......../......../......../......../.......K";
                for (int const square : {first, second, third}) {
                    board[static_cast<std::size_t>(square / 8 * 9 + square % 8)] =
                        square == third ? 'p' : 'P';
                }
                std::replace(board.begin(), board.end(), '.', '1');
                std::string const fen = board + " w - - 0 1";
                position.fen(fen);
                if (position.get_pawnhash() % PawnHashTable::slots == 0) {
                    return fen;
                }
            }
        }
    }
    return "";
}

// It finds the empty slot as its own until another structure has taken that, and is evaluated in
// another way from then on.
TEST(PositionSearchStateTest, ABoardWithoutPawnsIsEvaluatedAsByANewEngine) {
    std::string const pawnless = "3r1rk1/8/8/2q5/8/4R3/8/Q3R1K1 w - - 0 1";
    std::string const taking = position_in_slot_of_no_pawns();
    ASSERT_FALSE(taking.empty());
    for (std::string const limit : {"static", "depth=4"}) {
        PositionSearch search;
        std::string const expected = text_of(search.answer(question(pawnless, limit)));
        search.answer(question(taking, limit));
        EXPECT_EQ(text_of(search.answer(question(pawnless, limit))), expected) << limit;
    }
}

}  // namespace

}  // namespace orvelin::analyse::test
