// Answers against recorded searches of a newly started engine.

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "analyse/position_search.h"
#include "analyse/result_text.h"
#include "support/data_file.h"
#include "support/positions.h"
#include "support/session_player.h"
#include "support/test_config.h"

namespace orvelin::analyse::test {

namespace {

using orvelin::test::data_block_t;
using orvelin::test::join_words;
using orvelin::test::short_tests;
using orvelin::test::split_words;

/// A recording of one search of a new engine.
struct Recording {
    Question asked;
    std::string nodes;
    /// As recorded: depth, score and moves.
    std::vector<std::string> lines;
};

bool read_option(std::vector<std::string> const& words, Recording& recording) {
    if (words[2] == "MultiPV") {
        recording.asked.lines = std::stoi(words[3]);
        return true;
    }
    recording.asked.chess960 = words[3] == "true";
    return words[2] == "UCI_Chess960";
}

bool read_go(std::vector<std::string> const& words, Recording& recording) {
    auto const limit =
        words.size() == 4 ? parse_limit(words[2] + '=' + words[3]) : std::optional<Limit>();
    if (limit) {
        recording.asked.limit = *limit;
    }
    return limit.has_value();
}

/// The search of a block that begins with a new engine and asks it but once, by depth or nodes.
std::optional<Recording> read(data_block_t const& block) {
    Recording recording;
    if (block[0] != "> new") {
        return std::nullopt;
    }
    int searches = 0;
    for (std::string const& line : block) {
        auto const words = split_words(line);
        bool known = true;
        if (words[0] == "line") {
            recording.lines.push_back(line);
        } else if (words[0] == "best") {
            recording.nodes = words.back();
        } else if (words[0] == ">" && words[1] == "option") {
            known = read_option(words, recording);
        } else if (words[0] == ">" && words[1] == "pos") {
            recording.asked.fen = join_words(words, 2);
            known = words.size() == 8;
        } else if (words[0] == ">" && words[1] == "go") {
            ++searches;
            known = read_go(words, recording);
        } else if (words[0] == ">") {
            known = words[1] == "new";
        }
        if (!known) {
            return std::nullopt;
        }
    }
    return searches == 1 ? std::optional(recording) : std::nullopt;
}

std::string line_text(Line const& line, bool chess960) {
    std::string text =
        "line depth " + std::to_string(line.depth) + " score " + std::to_string(line.score);
    for (Move const& move : line.moves) {
        text += ' ' + move.algebraic(chess960);
    }
    return text;
}

/// Whether the recorded line is the text, or goes on with moves that are not true of it.
bool begins_with(std::string const& recorded, std::string const& text) {
    return recorded == text || recorded.starts_with(text + ' ');
}

/// Every so many of the recorded searches are compared.
constexpr int step = short_tests ? 4 : 1;

/// The number of searches compared.
int compare(std::string const& file) {
    // One object for all, in which nothing of a search may be left for the next.
    static PositionSearch search;
    int compared = 0;
    int read_so_far = 0;
    for (data_block_t const& block : orvelin::test::read_data_blocks(file)) {
        auto const recording = read(block);
        if (!recording || read_so_far++ % step != 0) {
            continue;
        }
        SCOPED_TRACE(recording->asked.fen + ' ' + recording->asked.limit.text());
        Result const result = search.answer(recording->asked);
        if (result.lines.empty()) {
            continue;
        }
        ++compared;
        EXPECT_EQ(std::to_string(result.nodes), recording->nodes);
        bool const by_depth = recording->asked.limit.what == Limit::kind::depth;
        EXPECT_TRUE(!by_depth || result.lines.size() == recording->lines.size());
        for (std::size_t i = 0; i < result.lines.size() && i < recording->lines.size(); ++i) {
            std::string const text = line_text(result.lines[i], recording->asked.chess960);
            // Of a dead draw the engine has its own opinion.
            EXPECT_TRUE(!by_depth || result.lines[i].drawn ||
                        begins_with(recording->lines[i], text))
                << text << "\ninstead of\n"
                << recording->lines[i];
        }
    }
    return compared;
}

TEST(PositionSearchSessionsTest, MiddleGamesAreSearchedAsByANewEngine) {
    EXPECT_GE(compare("search_depth8.txt"), 60 / step);
}

TEST(PositionSearchSessionsTest, SeveralLinesAreThoseOfANewEngine) {
    EXPECT_GE(compare("search_limits.txt"), 12 / step);
}

TEST(PositionSearchSessionsTest, AtALimitOfNodesTheLastWholeIterationIsThatOfANewEngine) {
    PositionSearch search;
    int compared = 0;
    for (std::string const fen :
         {positions::start, positions::quiet_middle_game, positions::rook_ending}) {
        for (std::string const nodes : {"2000", "7000", "25000"}) {
            Result const result = search.answer(question(fen, "nodes=" + nodes));
            Line const& line = result.lines.at(0);
            if (line.depth != result.depth) {
                continue;
            }
            ++compared;
            orvelin::test::SessionPlayer player;
            player.play("pos " + fen);
            auto const recorded = player.play("go depth " + std::to_string(line.depth));
            EXPECT_NE(std::find_if(recorded.begin(), recorded.end(),
                                   [&](std::string const& text) {
                                       return begins_with(text, line_text(line, false));
                                   }),
                      recorded.end())
                << line_text(line, false);
        }
    }
    EXPECT_GE(compared, 4);
}

TEST(PositionSearchSessionsTest, Chess960IsSearchedAsByANewEngine) {
    EXPECT_GE(compare("search_chess960.txt"), 20 / step);
}

TEST(PositionSearchSessionsTest, EndingsAreSearchedAsByANewEngine) {
    EXPECT_GE(compare("search_endings.txt"), 30 / step);
}

TEST(PositionSearchSessionsTest, EndingsWithATableAreSearchedAsByANewEngine) {
    EXPECT_GE(compare("search_table_endings.txt"), 5 / step);
}

}  // namespace

}  // namespace orvelin::analyse::test
