#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "position/chess_position.h"
#include "support/analysis_probe.h"
#include "support/engine_fixture.h"

namespace orvelin::test {

/// Sets options of an engine in this process and looks at what they changed.
class EngineOptionsFixture : public EngineFixture {
 protected:
    void set(std::string const& name, std::string const& value) {
        command("setoption name " + name + " value " + value);
    }

    std::uint64_t buckets() { return probe.table().buckets(); }

    /// Whether the table remembers something of the start position.
    bool remembers_start() {
        return probe.table().find(ChessPosition(engine->position()).get_hash()) != nullptr;
    }

    void fill_table() {
        command("position startpos");
        best_move_of("go depth 4");
        command("position startpos");
        ASSERT_TRUE(remembers_start());
    }

    /// Fails when anything is not as it was at the start, or a line was answered.
    void expect_start_values(std::string const& after) {
        EXPECT_EQ(buckets(), std::uint64_t{2097152}) << after;
        EXPECT_EQ(probe.max_threads(), 1U) << after;
        EXPECT_FALSE(probe.limit_strength()) << after;
        EXPECT_EQ(engine->analysis().elo(), 2000) << after;
        EXPECT_EQ(engine->analysis().strength_depth(), 102) << after;
        EXPECT_EQ(engine->analysis().strength_margin(), 0) << after;
        EXPECT_EQ(probe.number_of_lines(), 1) << after;
        EXPECT_FALSE(probe.log_on()) << after;
        EXPECT_EQ(replies(), std::vector<std::string>{}) << after;
    }

    AnalysisProbe probe{engine->analysis()};
};

}  // namespace orvelin::test
