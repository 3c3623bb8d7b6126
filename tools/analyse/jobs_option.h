#pragma once

#include <cstddef>

namespace CLI {
class App;
}  // namespace CLI

namespace orvelin::tools {

/// Adds --jobs.
void add_jobs_option(CLI::App& app, std::size_t& jobs);

}  // namespace orvelin::tools
