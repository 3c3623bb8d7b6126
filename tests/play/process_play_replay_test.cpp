// The recorded searches of the exact engine, played through the process: the search is the same.

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "play/dead_draw.h"
#include "play/play_process.h"
#include "play/position_reader.h"
#include "support/session_reader.h"
#include "support/shared_tables.h"

namespace orvelin::play::test {

namespace {

using orvelin::test::session_command_t;
using orvelin::test::session_t;
using orvelin::test::short_tests;
using orvelin::test::split_words;

/// What a recorded search ended with.
struct outcome_t {
    /// Score and moves of each line, by rank.
    std::vector<std::string> lines;
    std::string best;
    std::uint64_t nodes = 0;
    int depth = 0;
};

constexpr int infinite = 32000;

/// A line of a report and one of a record in one form: a mate is told in moves.
std::string text_of(std::optional<int> mate, int score, std::string const& first_move) {
    return (mate ? "mate " + std::to_string(*mate) : std::to_string(score)) + ' ' + first_move;
}

std::optional<int> mate_of(int score) {
    if (score > 29897) {
        return (30000 - score + 1) / 2;
    }
    if (score < -29897) {
        return -(30000 + score) / 2;
    }
    return std::nullopt;
}

/// The part of the line that is told: a record may go on behind the end of the game.
bool begins_with(std::string const& recorded, std::string const& told) {
    return recorded == told || recorded.starts_with(told + ' ');
}

outcome_t recorded_outcome(session_command_t const& command) {
    outcome_t outcome;
    for (std::string const& line : command.answer) {
        std::vector<std::string> const words = split_words(line);
        if (words[0] == "line") {
            outcome.depth = std::stoi(words[2]);
            std::string moves;
            for (std::size_t i = 5; i < words.size(); ++i) {
                moves += (i > 5 ? " " : "") + words[i];
            }
            int const score = std::stoi(words[4]);
            outcome.lines.push_back(text_of(mate_of(score), score, moves));
        } else if (words[0] == "best") {
            outcome.best = words[1];
            outcome.nodes = std::stoull(words.back());
        }
    }
    return outcome;
}

outcome_t told_outcome(std::vector<std::string> const& answer) {
    outcome_t outcome;
    outcome.best = best_move(answer);
    for (info_t const& info : read_infos(answer)) {
        if (info.nodes > 0) {
            outcome.nodes = info.nodes;
        }
        if (info.moves.empty() || !info.has_score()) {
            continue;
        }
        if (info.rank == 1) {
            outcome.lines.clear();
        }
        std::string moves;
        for (std::string const& move : info.moves) {
            moves += (moves.empty() ? "" : " ") + move;
        }
        outcome.depth = info.depth;
        outcome.lines.push_back(text_of(info.mate, info.cp.value_or(infinite), moves));
    }
    return outcome;
}

/// The program has no search without an iteration, and takes a depth of 0 for 1. What would follow
/// in the session is left out too.
bool ends_session(std::string const& command) {
    return command == "go depth 0";
}

/// A search that a limit of nodes ends reports its lines otherwise, see docs/play.md.
bool ends_within_iteration(std::string const& command) {
    return command.starts_with("go nodes");
}

/// A dead draw is told as one, whatever score the record has.
bool is_told_as_draw(std::string const& position) {
    if (position.empty()) {
        return false;
    }
    static ChessPosition board(orvelin::test::shared_tables());
    read_position("fen" + position.substr(3), orvelin::test::shared_tables(), board);
    return is_dead_draw(board);
}

std::string uci_command(std::string const& command) {
    std::vector<std::string> const words = split_words(command);
    if (words[0] == "hash") {
        return "setoption name Hash value " + words[1];
    }
    if (words[0] == "option") {
        return "setoption name " + words[1] + " value " + words[2];
    }
    if (words[0] == "pos") {
        return "position fen" + command.substr(3);
    }
    return command;
}

void expect_same(outcome_t const& recorded, outcome_t const& told, bool whole) {
    EXPECT_EQ(told.best, recorded.best);
    if (recorded.best == "0000") {
        // Without a legal move nothing is searched.
        return;
    }
    EXPECT_EQ(told.nodes, recorded.nodes);
    if (!whole) {
        return;
    }
    EXPECT_EQ(told.depth, recorded.depth);
    ASSERT_EQ(told.lines.size(), recorded.lines.size());
    for (std::size_t i = 0; i < told.lines.size(); ++i) {
        EXPECT_PRED2(begins_with, recorded.lines[i], told.lines[i]);
    }
}

void replay(session_t const& session) {
    std::optional<PlayProcess> process;
    std::string position;
    for (session_command_t const& command : session.commands) {
        if (command.text == "new") {
            process.emplace();
            process->set_option("Score Unit", "engine");
            continue;
        }
        if (command.text.starts_with("pos ")) {
            position = command.text;
        }
        if (ends_session(command.text)) {
            return;
        }
        SCOPED_TRACE(position + ", " + command.text);
        if (!command.text.starts_with("go ")) {
            process->send(uci_command(command.text));
            continue;
        }
        std::vector<std::string> const answer = process->ask(command.text);
        ASSERT_FALSE(best_move(answer).empty());
        expect_same(recorded_outcome(command), told_outcome(answer),
                    !ends_within_iteration(command.text) && !is_told_as_draw(position));
        if (testing::Test::HasFailure()) {
            return;
        }
    }
}

/// Sessions of one file that make up one test.
struct chunk_t {
    std::string name;
    std::vector<session_t> sessions;

    friend void PrintTo(chunk_t const& chunk, std::ostream* stream) { *stream << chunk.name; }
};

constexpr std::uint64_t chunk_nodes = short_tests ? 400'000 : 5'000'000;
constexpr std::size_t short_step = 6;
constexpr std::uint64_t short_nodes = 100'000;
/// The deepest searches take as long as all others together; some of them are enough.
constexpr std::size_t deep_step = 5;

std::vector<session_t> chosen_sessions(std::string const& stem) {
    std::vector<session_t> const sessions = orvelin::test::read_sessions("search_" + stem + ".txt");
    if (short_tests) {
        return orvelin::test::shorten(sessions, short_step, short_nodes);
    }
    return stem == "depth12" ? orvelin::test::shorten(sessions, deep_step, UINT64_MAX) : sessions;
}

std::vector<chunk_t> all_chunks() {
    std::vector<chunk_t> chunks;
    for (std::string const stem :
         {"chess960", "depth8", "depth12", "endings", "games", "limits", "table_endings"}) {
        std::uint64_t nodes = chunk_nodes;
        int number = 0;
        for (session_t const& session : chosen_sessions(stem)) {
            if (nodes >= chunk_nodes) {
                chunks.push_back({stem + "_" + std::to_string(++number), {}});
                nodes = 0;
            }
            chunks.back().sessions.push_back(session);
            nodes += session.nodes();
        }
    }
    return chunks;
}

class ProcessPlayReplay : public testing::TestWithParam<chunk_t> {};

TEST_P(ProcessPlayReplay, GivesTheRecordedSearches) {
    ASSERT_FALSE(GetParam().sessions.empty());
    for (session_t const& session : GetParam().sessions) {
        replay(session);
        if (HasFailure()) {
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(play, ProcessPlayReplay, testing::ValuesIn(all_chunks()),
                         [](testing::TestParamInfo<chunk_t> const& chunk) {
                             return chunk.param.name;
                         });

}  // namespace

}  // namespace orvelin::play::test
