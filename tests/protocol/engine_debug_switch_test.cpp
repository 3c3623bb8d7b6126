// The switches of the logs, in an engine in this process.

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "search/analysis.h"
#include "support/analysis_probe.h"
#include "support/engine_fixture.h"
#include "support/temporary_directory.h"
#include "support/working_directory.h"

namespace orvelin::test {
namespace {

using lines_t = std::vector<std::string>;
namespace fs = std::filesystem;

/// An engine in this process, in an empty working directory.
class EngineDebugTest : protected WorkingDirectory, public EngineFixture {
 protected:
    std::string analysis_log() const {
        return file("analysis_" + std::to_string(engine->position().id()) + ".log");
    }

    AnalysisProbe probe{engine->analysis()};
};

TEST_F(EngineDebugTest, TheStreamIsOpenAndHealthyWhileDebugIsOn) {
    EXPECT_FALSE(log.is_open());
    command(debug_on);
    EXPECT_TRUE(log.is_open());
    EXPECT_TRUE(log.good());
    EXPECT_TRUE(probe.log_on());
    command(debug_on);
    EXPECT_TRUE(log.good());
    command(debug_off);
    EXPECT_FALSE(log.is_open());
    EXPECT_FALSE(probe.log_on());
    command("isready");
    EXPECT_TRUE(log.fail());
}

TEST_F(EngineDebugTest, AFailedOpenLeavesTheStreamFailedAndDebugOn) {
    fs::remove(fs::current_path());
    command(debug_on);
    EXPECT_FALSE(log.is_open());
    EXPECT_TRUE(log.fail());
    EXPECT_TRUE(probe.log_on());
    EXPECT_EQ(replies(), lines_t{});
    command(debug_off);
    EXPECT_TRUE(log.fail());
    EXPECT_FALSE(probe.log_on());
}

TEST_F(EngineDebugTest, ALogThatCouldNotBeOpenedIsTriedAgain) {
    fs::remove(fs::current_path());
    command(debug_on);
    ASSERT_FALSE(log.is_open());
    TemporaryDirectory const elsewhere;
    fs::current_path(elsewhere.path());
    command(debug_on);
    EXPECT_TRUE(log.is_open());
    EXPECT_TRUE(log.good());
}

TEST_F(EngineDebugTest, AnalysisAndEvaluationCarryTheFlag) {
    Analysis& analysis = engine->analysis();
    std::ofstream(analysis_log()) << "old text";
    analysis.set_log(true);
    EXPECT_TRUE(probe.log_on());
    EXPECT_TRUE(analysis.evaluation().log());
    EXPECT_TRUE(fs::exists(file("eval_log.log")));
    EXPECT_EQ(fs::file_size(analysis_log()), 0U);
    analysis.set_log(false);
    EXPECT_FALSE(probe.log_on());
    EXPECT_FALSE(analysis.evaluation().log());
}

TEST_F(EngineDebugTest, LogsOfTheSearchThatCannotBeOpenedAreNotReported) {
    fs::create_directory(analysis_log());
    fs::create_directory(file("eval_log.log"));
    command(debug_on);
    EXPECT_TRUE(probe.log_on());
    EXPECT_TRUE(log.good());
    EXPECT_EQ(replies(), lines_t{});
    command(debug_off);
    EXPECT_FALSE(probe.log_on());
    EXPECT_TRUE(fs::is_directory(analysis_log()));
}

TEST_F(EngineDebugTest, ReportsPastTheQueueAreNotLogged) {
    open_log();
    std::ostringstream output;
    std::streambuf* const old_buffer = std::cout.rdbuf(output.rdbuf());
    command("eval");
    engine->analysis().set_nodes(500);
    command("bench");
    std::cout.rdbuf(old_buffer);
    EXPECT_NE(output.str().find("nodes: "), std::string::npos);
    EXPECT_EQ(log_text(), "engine <- eval\nengine <- bench\n");
}

}  // namespace
}  // namespace orvelin::test
