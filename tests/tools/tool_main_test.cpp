#include "support/tool_main.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvelin::test {

namespace {

/// Collects what is written to a stream while the object lives.
class CapturedStream {
 public:
    explicit CapturedStream(std::ostream& stream) : stream_(stream), old_(stream.rdbuf(&text_)) {}
    ~CapturedStream() { stream_.rdbuf(old_); }
    CapturedStream(CapturedStream const&) = delete;
    CapturedStream& operator=(CapturedStream const&) = delete;

    std::string text() const { return text_.str(); }

 private:
    std::stringbuf text_;
    std::ostream& stream_;
    std::streambuf* old_;
};

/// A stream that takes nothing.
class FullDisk : public std::streambuf {
    int sync() override { return -1; }
};

struct outcome_t {
    int code;
    std::string output;
    std::string errors;
};

/// Runs a tool with one option `--number` and a subcommand `sub`.
outcome_t run(std::vector<char const*> arguments, std::function<int()> const& body) {
    CLI::App app("Does this and that.", "orvelin-x");
    int number = 0;
    app.add_option("--number", number, "A number");
    app.add_subcommand("sub", "Does only that.");
    arguments.insert(arguments.begin(), "/some/where/else");
    CapturedStream const output(std::cout);
    CapturedStream const errors(std::cerr);
    int const code =
        tools::run_tool(app, static_cast<int>(arguments.size()), arguments.data(), body);
    return {code, output.text(), errors.text()};
}

}  // namespace

TEST(ToolMain, HandsOnTheCodeOfTheBody) {
    EXPECT_EQ(run({}, [] { return tools::exit_success; }).code, 0);
    EXPECT_EQ(run({}, [] { return tools::exit_failure; }).code, 1);
    EXPECT_EQ(run({"--number", "5"}, [] { return 7; }).code, 7);
}

TEST(ToolMain, TheBodyKeepsWhatTheSetUpMade) {
    char const* const arguments[] = {"x", "--number", "5"};
    auto const set_up = [](CLI::App& app) -> std::function<int()> {
        auto const number = std::make_shared<int>(0);
        app.add_option("--number", *number, "A number");
        return [number] { return *number; };
    };
    EXPECT_EQ(tools::tool_main("orvelin-x", "Does this.", set_up, 3, arguments), 5);
}

TEST(ToolMain, AFaultOfTheSetUpIsToldAsAnyOther) {
    char const* const arguments[] = {"x"};
    auto const set_up = [](CLI::App& app) -> std::function<int()> {
        app.add_flag("--twice");
        app.add_flag("--twice");
        return [] { return tools::exit_success; };
    };
    CapturedStream const errors(std::cerr);
    EXPECT_EQ(tools::tool_main("orvelin-x", "Does this.", set_up, 1, arguments),
              tools::exit_failure);
    EXPECT_EQ(errors.text().find("orvelin-x: "), 0U);
    EXPECT_NE(errors.text().find("twice"), std::string::npos);
}

TEST(ToolMain, HelpIsPrintedAndTheBodyNotRun) {
    bool ran = false;
    outcome_t const outcome = run({"--help"}, [&] {
        ran = true;
        return 0;
    });
    EXPECT_EQ(outcome.code, 0);
    EXPECT_FALSE(ran);
    EXPECT_NE(outcome.output.find("Does this and that."), std::string::npos);
    EXPECT_NE(outcome.output.find("orvelin-x"), std::string::npos);
    EXPECT_EQ(outcome.output.find("/some/where"), std::string::npos);
    EXPECT_EQ(outcome.errors, "");
}

TEST(ToolMain, HelpOfASubcommandIsItsOwn) {
    outcome_t const outcome = run({"sub", "--help"}, [] { return 0; });
    EXPECT_EQ(outcome.code, 0);
    EXPECT_NE(outcome.output.find("Does only that."), std::string::npos);
    EXPECT_EQ(outcome.output.find("Does this and that."), std::string::npos);
}

TEST(ToolMain, BadArgumentsAreToldAndTheBodyNotRun) {
    for (std::vector<char const*> const& arguments :
         {std::vector<char const*>{"--none"}, {"--number"}, {"--number", "x"}, {"word"}}) {
        bool ran = false;
        outcome_t const outcome = run(arguments, [&] {
            ran = true;
            return 0;
        });
        EXPECT_EQ(outcome.code, 2);
        EXPECT_FALSE(ran);
        EXPECT_EQ(outcome.output, "");
        EXPECT_TRUE(outcome.errors.starts_with("orvelin-x: ")) << outcome.errors;
        EXPECT_TRUE(outcome.errors.ends_with("\nRun with --help for more information.\n"))
            << outcome.errors;
    }
}

TEST(ToolMain, AnArgumentThatTheBodyRefusesIsBadUsage) {
    outcome_t const outcome = run({}, []() -> int { throw tools::UsageError("no such square"); });
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.errors, "orvelin-x: no such square\n");
}

TEST(ToolMain, AnyOtherExceptionIsAFailure) {
    outcome_t const outcome = run({}, []() -> int {
        std::cout << "begun";
        throw std::logic_error("it broke");
    });
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.output, "begun");
    EXPECT_EQ(outcome.errors, "orvelin-x: it broke\n");
}

TEST(ToolMain, OutputThatCannotBeWrittenIsAFailure) {
    FullDisk disk;
    outcome_t const outcome = run({}, [&] {
        std::cout.rdbuf(&disk);
        std::cout << "text";
        return 0;
    });
    std::cout.clear();
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.errors, "orvelin-x: cannot write to standard output\n");
}

}  // namespace orvelin::test
