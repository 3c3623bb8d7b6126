#include "analyse/analyse_run.h"

#include <csignal>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "analyse/json_output.h"
#include "support/temporary_directory.h"
#include "tools/analyse_files.h"
#include "tools/analyse_records.h"

namespace orvelin::test::analysis {

namespace {

using tools::open_mode;

struct settings_t {
    open_mode mode = open_mode::replace;
    std::string shard = "1/1";
    std::size_t jobs = 1;
    analyse::Limit limit{analyse::Limit::kind::depth, 3};
    int lines = 1;
    std::uint64_t positions = 200;
    std::atomic<int>* answers = nullptr;
};

tools::RunSettings run_settings(settings_t const& settings) {
    tools::RunSettings run;
    run.request.limit = settings.limit;
    run.request.lines = settings.lines;
    run.shard = tools::parse_shard(settings.shard).value();
    run.jobs = settings.jobs;
    run.progress = false;
    return run;
}

class AnalyseRun : public testing::Test {
 protected:
    int run(settings_t const& settings) {
        CountingSource source(settings.positions);
        StopSignals const signals;
        tools::outputs_t outputs;
        outputs.push_back(std::make_unique<tools::JsonOutput>(name_, settings.mode));
        return tools::AnalyseRun(run_settings(settings), source, plain_answerers(settings.answers),
                                 outputs, signals)
            .run();
    }
    std::string result_of(settings_t const& settings) {
        EXPECT_EQ(run(settings), 0);
        return bytes_of(name_);
    }

    TemporaryDirectory directory_;
    std::string name_ = directory_.file("out.jsonl");
};

std::size_t lines_in(std::string const& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

TEST_F(AnalyseRun, WritesTheSameWhateverTheJobs) {
    std::string const one = result_of({});
    EXPECT_EQ(lines_in(one), 200U);
    EXPECT_EQ(result_of({.jobs = 2}), one);
    EXPECT_EQ(result_of({.jobs = 9}), one);
    settings_t const bundled{.limit = {analyse::Limit::kind::static_eval, 0}};
    std::string const bundles = result_of(bundled);
    EXPECT_EQ(lines_in(bundles), 200U);
    EXPECT_EQ(result_of({.jobs = 3, .limit = bundled.limit}), bundles);
}

TEST_F(AnalyseRun, AShardIsEachNthPosition) {
    std::string const all = result_of({});
    std::size_t lines = 0;
    for (std::string const shard : {"1/3", "2/3", "3/3"}) {
        std::string const part = result_of({.shard = shard, .jobs = 2});
        lines += lines_in(part);
        EXPECT_NE(all.find(part.substr(0, part.find('\n') + 1)), std::string::npos);
    }
    EXPECT_EQ(lines, 200U);
    EXPECT_TRUE(tools::parse_shard("2/3")->takes(2));
    EXPECT_TRUE(tools::parse_shard("2/3")->takes(5));
    EXPECT_FALSE(tools::parse_shard("2/3")->takes(3));
    for (char const* const text : {"", "1", "0/3", "4/3", "1/", "/3", "1/3x", "-1/3", "1/0"}) {
        EXPECT_FALSE(tools::parse_shard(text)) << text;
    }
}

TEST_F(AnalyseRun, GoesOnWhereItWasAndAnswersNothingTwice) {
    for (std::string const shard : {"1/1", "2/3"}) {
        std::string const whole = result_of({.shard = shard});
        for (std::size_t size = 0; size < whole.size(); size += whole.size() / 7) {
            put_bytes(name_, whole.substr(0, size));
            std::atomic<int> answers = 0;
            EXPECT_EQ(
                result_of(
                    {.mode = open_mode::resume, .shard = shard, .jobs = 2, .answers = &answers}),
                whole);
            EXPECT_EQ(static_cast<std::size_t>(answers),
                      lines_in(whole) - lines_in(whole.substr(0, size)));
        }
    }
}

TEST_F(AnalyseRun, RefusesToResumeAnotherRun) {
    std::string const whole = result_of({.positions = 10});
    auto const reason = [&](settings_t settings) {
        settings.mode = open_mode::resume;
        std::string const text = reason_from([&] { run(settings); });
        EXPECT_EQ(bytes_of(name_), whole);
        return text;
    };
    EXPECT_NE(reason({.limit = {analyse::Limit::kind::depth, 4}}).find("--limit depth=3"),
              std::string::npos);
    EXPECT_NE(reason({.lines = 2}).find("--lines 1"), std::string::npos);
    EXPECT_NE(reason({.shard = "1/4"}).find("not of this shard"), std::string::npos);
    EXPECT_NE(reason({.positions = 9}).find("ends with position 9"), std::string::npos);
    std::string const number = "\"fen\":\"8/8/8/8/8/8/8/K1k5 w - - 0 10\"";
    std::string other = whole;
    other.replace(other.find(number), number.size(), "\"fen\":\"8/8/8/8/8/8/8/K2k4 w - - 0 9\"");
    put_bytes(name_, other);
    EXPECT_NE(
        reason_from([&] { run({.mode = open_mode::resume}); }).find("position 10 of the input"),
        std::string::npos);
}

TEST_F(AnalyseRun, AFaultOfTheInputLeavesWhatWasBefore) {
    struct Faulty : CountingSource {
        Faulty() : CountingSource(100) {}
        bool next(tools::Asked& asked) override {
            if (given() == 50) {
                throw std::runtime_error("cannot read");
            }
            return CountingSource::next(asked);
        }
    };
    // One by one, and by the bundle.
    for (auto const kind : {analyse::Limit::kind::depth, analyse::Limit::kind::static_eval}) {
        Faulty source;
        StopSignals const signals;
        tools::outputs_t outputs;
        outputs.push_back(std::make_unique<tools::JsonOutput>(name_, open_mode::replace));
        tools::AnalyseRun run(run_settings({.jobs = 3, .limit = {kind, 1}}), source,
                              plain_answerers(), outputs, signals);
        EXPECT_EQ(reason_from([&] { run.run(); }), "cannot read");
        EXPECT_EQ(lines_in(bytes_of(name_)), 50U);
    }
}

TEST_F(AnalyseRun, ASignalEndsItWithWholeLinesInOrder) {
    // Far more than are read.
    CountingSource source(1000000000);
    StopSignals const signals;
    tools::outputs_t outputs;
    outputs.push_back(std::make_unique<tools::JsonOutput>(name_, open_mode::create));
    std::atomic<int> answers = 0;
    tools::AnalyseRun run(run_settings({.jobs = 2}), source, plain_answerers(&answers), outputs,
                          signals);
    std::thread sender([&] {
        while (answers < 20) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        std::raise(SIGINT);
    });
    EXPECT_EQ(run.run(), 130);
    sender.join();
    outputs.clear();
    std::string const text = bytes_of(name_);
    EXPECT_GE(lines_in(text), 1U);
    EXPECT_TRUE(text.ends_with('\n'));
    EXPECT_EQ(text, result_of({.positions = lines_in(text)}));
}

}  // namespace orvelin::test::analysis
