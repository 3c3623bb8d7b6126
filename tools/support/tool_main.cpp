#include "support/tool_main.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

namespace orvelin::tools {

namespace {

int fail(CLI::App const& app, std::string const& message, int code) {
    std::cout.flush();
    std::cerr << app.get_name() << ": " << message << std::endl;
    return code;
}

}  // namespace

int run_tool(CLI::App& app, int argc, char const* const* argv, std::function<int()> const& body) {
    try {
        app.parse(argc, argv);
    } catch (CLI::Success const& request) {
        return app.exit(request);
    } catch (CLI::ParseError const& error) {
        return fail(app, std::string(error.what()) + "\nRun with --help for more information.",
                    exit_usage);
    }
    try {
        int const code = body();
        if (!std::cout.flush()) {
            return fail(app, "cannot write to standard output", exit_failure);
        }
        return code;
    } catch (UsageError const& error) {
        return fail(app, error.what(), exit_usage);
    } catch (std::exception const& error) {
        return fail(app, error.what(), exit_failure);
    }
}

}  // namespace orvelin::tools
