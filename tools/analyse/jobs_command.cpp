// The option that analyse and verify share.

#include <CLI/CLI.hpp>

#include "analyse/jobs_option.h"

namespace orvelin::tools {

void add_jobs_option(CLI::App& app, std::size_t& jobs) {
    constexpr std::size_t most = 1024;
    app.add_option("--jobs,-j", jobs, "So many threads, each with an engine of its own; 1")
        ->option_text("N")
        ->check(CLI::Range(std::size_t{1}, most));
}

}  // namespace orvelin::tools
