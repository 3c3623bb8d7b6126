// How a line that sets an option is read.

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "protocol/engine_options_fixture.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;

class EngineOptionLinesTest : public EngineOptionsFixture {};

TEST_F(EngineOptionLinesTest, NameMatchesInAnyCase) {
    std::uint64_t expected = 131072;
    int megabytes = 8;
    for (char const* const name : {"Hash", "hash", "HASH", "hAsH"}) {
        set(name, std::to_string(megabytes));
        EXPECT_EQ(buckets(), expected) << name;
        megabytes *= 2;
        expected *= 2;
    }
    set("multipv", "4");
    EXPECT_EQ(probe.number_of_lines(), 4);
    set("uci_limitSTRENGTH", "true");
    EXPECT_TRUE(probe.limit_strength());
    set("UCI_ELO", "1700");
    EXPECT_EQ(engine->analysis().elo(), 1700);
    set("tHREADS", "2");
    EXPECT_EQ(probe.max_threads(), 2U);
}

TEST_F(EngineOptionLinesTest, WordsAroundTheNameCountInLowerCaseOnly) {
    for (char const* const line :
         {"SETOPTION name Hash value 16", "Setoption name Hash value 16",
          "setoption NAME Hash value 16", "setoption Name Hash value 16",
          "setoption name Hash VALUE 16", "setoption name Hash Value 16",
          "setoption NAME MultiPV VALUE 3", "setoption name MultiPV VALUE 3"}) {
        command(line);
        expect_start_values(line);
    }
}

TEST_F(EngineOptionLinesTest, OnlyTheLowerCaseWordMeansTrue) {
    for (char const* const word :
         {"false", "True", "TRUE", "1", "on", "yes", "truer", "tru", "\"true\"", "true,", ""}) {
        set("UCI_LimitStrength", "true");
        ASSERT_TRUE(probe.limit_strength());
        set("UCI_LimitStrength", word);
        EXPECT_FALSE(probe.limit_strength()) << word;
    }
    set("UCI_LimitStrength", "true false");
    EXPECT_TRUE(probe.limit_strength());
}

TEST_F(EngineOptionLinesTest, AnyBlanksSeparateTheWordsAndTheRestIsIgnored) {
    command("  setoption \t name   MultiPV\tvalue   3  of them  ");
    EXPECT_EQ(probe.number_of_lines(), 3);
    set("MultiPV", "7lines");
    EXPECT_EQ(probe.number_of_lines(), 7);
}

TEST_F(EngineOptionLinesTest, NameOfTwoWordsCannotBeSet) {
    for (char const* const line :
         {"setoption name Hash Size value 16", "setoption name Clear Hash value 16",
          "setoption name UCI Elo value 1500", "setoption name Multi PV value 3",
          "setoption name MultiPV lines value 3", "setoption name UCI_LimitStrength now value true",
          "setoption name Threads Threads value 2"}) {
        command(line);
        expect_start_values(line);
    }
}

TEST_F(EngineOptionLinesTest, LineWithoutValueLeavesTheOption) {
    for (std::string const name : {"Hash", "Threads", "Ponder", "OwnBook", "UCI_LimitStrength",
                                   "UCI_Elo", "UCI_Chess960", "MultiPV", "Debug"}) {
        for (char const* const rest : {"", " ", " 2", " true", " = 2", " 2 value 2", " val 2"}) {
            std::string const line = "setoption name " + name + rest;
            command(line);
            expect_start_values(line);
        }
    }
    set("MultiPV", "5");
    set("UCI_Elo", "1650");
    command("setoption name MultiPV");
    command("setoption name UCI_Elo 1500");
    EXPECT_EQ(probe.number_of_lines(), 5);
    EXPECT_EQ(engine->analysis().elo(), 1650);
}

TEST_F(EngineOptionLinesTest, MissingOrUnreadableNumberCountsAsZero) {
    for (char const* const value : {"", "   ", "many", "true", ".5", "-", "x12"}) {
        set("MultiPV", "9");
        set("Threads", "2");
        set("UCI_Elo", "1900");
        set("Hash", value);
        set("MultiPV", value);
        set("Threads", value);
        set("UCI_Elo", value);
        EXPECT_EQ(buckets(), 2097152U) << value;
        EXPECT_EQ(probe.number_of_lines(), 1) << value;
        EXPECT_EQ(probe.max_threads(), 1U) << value;
        EXPECT_EQ(engine->analysis().elo(), 1500) << value;
    }
}

TEST_F(EngineOptionLinesTest, ALineCarriesOneOption) {
    command("setoption name MultiPV value 2 name Threads value 2");
    command("setoption name MultiPV value 2 setoption name UCI_Elo value 1500");
    command("setoption name Ponder value false name UCI_LimitStrength value true");
    EXPECT_EQ(probe.number_of_lines(), 2);
    EXPECT_EQ(probe.max_threads(), 1U);
    EXPECT_EQ(engine->analysis().elo(), 2000);
    EXPECT_FALSE(probe.limit_strength());
}

TEST_F(EngineOptionLinesTest, JunkIsDroppedWithoutAWord) {
    std::string const long_word(100000, 'x');
    lines_t const lines{
        "setoption",
        "setoption name",
        "setoption value 3 name MultiPV",
        "setoption MultiPV value 3",
        "setoption name name MultiPV value 3",
        "setoption name value 3",
        "setoption name Has value 16",
        "setoption name Hash2 value 16",
        "setoption name MultiPV; value 3",
        "setoption name Nonsense value 3",
        "setoption name M\xfcltiPV value 3",
        std::string("setoption name Multi\0PV value 3", 32),
        std::string("setoption name MultiPV\0 value 3", 32),
        "setoption name " + long_word + " value 3",
        "setoption name Hash " + long_word + " 16",
        "setoption name Hash value " + long_word,
        "setoption name UCI_LimitStrength value " + long_word,
    };
    for (std::string const& line : lines) {
        command(line);
        expect_start_values(line.substr(0, 60));
    }
}

}  // namespace
}  // namespace orvelin::test
