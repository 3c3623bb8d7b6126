#include "support/tool_main.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "platform/process.h"

namespace orvelin::tools {

namespace {

int fail(std::string const& name, std::string const& message, int code) {
    std::cout.flush();
    std::cerr << name << ": " << message << std::endl;
    return code;
}

}  // namespace

int run_tool(CLI::App& app, int argc, char const* const* argv, std::function<int()> const& body) {
    try {
        app.parse(argc, argv);
    } catch (CLI::Success const& request) {
        return app.exit(request);
    } catch (CLI::ParseError const& error) {
        return fail(app.get_name(),
                    std::string(error.what()) + "\nRun with --help for more information.",
                    exit_usage);
    }
    try {
        int const code = body();
        if (!std::cout.flush()) {
            return fail(app.get_name(), "cannot write to standard output", exit_failure);
        }
        return code;
    } catch (UsageError const& error) {
        return fail(app.get_name(), error.what(), exit_usage);
    } catch (std::exception const& error) {
        return fail(app.get_name(), error.what(), exit_failure);
    }
}

int tool_main(char const* name, char const* description, set_up_t set_up, int argc,
              char const* const* argv) {
    try {
        prepare_process();
        std::vector<std::string> const line = command_line(argc, argv);
        std::vector<char const*> words;
        for (std::string const& word : line) {
            words.push_back(word.c_str());
        }
        CLI::App app(description, name);
        // As with all systems, a word that begins with a slash is a file.
        app.allow_windows_style_options(false);
        return run_tool(app, static_cast<int>(words.size()), words.data(), set_up(app));
    } catch (std::exception const& error) {
        return fail(name, error.what(), exit_failure);
    }
}

}  // namespace orvelin::tools
