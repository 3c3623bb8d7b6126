#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

#include "support/session_player.h"
#include "support/session_reader.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

/// Sessions of one file that make up one test.
struct chunk_t {
    std::string name;
    std::string file_name;
    std::vector<session_t> sessions;

    friend void PrintTo(chunk_t const& chunk, std::ostream* stream) { *stream << chunk.name; }
};

/// Nodes from which on a test takes no further session, so that each ends in a short time.
constexpr std::uint64_t chunk_nodes = short_tests ? 400'000 : 5'000'000;
/// Shortened builds play every third session, as far as this many nodes go.
constexpr std::size_t short_step = 3;
constexpr std::uint64_t short_nodes = 150'000;

std::vector<session_t> chosen_sessions(std::string const& file_name) {
    const std::vector<session_t> sessions = read_sessions(file_name);
    return short_tests ? shorten(sessions, short_step, short_nodes) : sessions;
}

void append_chunks(std::string const& stem, std::vector<chunk_t>& chunks) {
    const std::string file_name = "search_" + stem + ".txt";
    std::uint64_t nodes = chunk_nodes;
    int number = 0;
    for (session_t const& session : chosen_sessions(file_name)) {
        if (nodes >= chunk_nodes) {
            chunks.push_back({stem + "_" + std::to_string(++number), file_name, {}});
            nodes = 0;
        }
        chunks.back().sessions.push_back(session);
        nodes += session.nodes();
    }
}

std::vector<chunk_t> all_chunks() {
    std::vector<chunk_t> chunks;
    for (char const* stem :
         {"chess960", "depth8", "depth12", "endings", "games", "limits", "table_endings"}) {
        append_chunks(stem, chunks);
    }
    return chunks;
}

/// Plays a session up to the first command that gives other lines than it must.
void replay(session_t const& session, std::string const& file_name) {
    SessionPlayer player;
    std::string position;
    for (session_command_t const& command : session.commands) {
        if (command.text.starts_with("pos ")) {
            position = command.text;
        }
        const std::vector<std::string> answer = player.play(command.text);
        SCOPED_TRACE(file_name + ", " + position + ", command " + command.text);
        for (std::size_t i = 0; i < std::min(answer.size(), command.answer.size()); ++i) {
            ASSERT_EQ(answer[i], command.answer[i]);
        }
        ASSERT_EQ(answer.size(), command.answer.size());
    }
}

class SearchSession : public testing::TestWithParam<chunk_t> {};

TEST_P(SearchSession, GivesEveryFigureLineByLine) {
    ASSERT_FALSE(GetParam().sessions.empty());
    for (session_t const& session : GetParam().sessions) {
        replay(session, GetParam().file_name);
    }
}

INSTANTIATE_TEST_SUITE_P(replay, SearchSession, testing::ValuesIn(all_chunks()),
                         [](testing::TestParamInfo<chunk_t> const& chunk) {
                             return chunk.param.name;
                         });

}  // namespace

}  // namespace orvelin::test
