#include "tables/commands.h"

#include <chrono>
#include <iostream>

#include "support/file_replacement.h"
#include "support/progress.h"
#include "support/tool_main.h"
#include "tables/ending_table.h"
#include "tables/fen_argument.h"
#include "tables/statistics.h"
#include "tables/table_checker.h"
#include "tables/table_file.h"
#include "tables/words.h"

namespace orvelin::tools {

namespace {

/// Loads or builds the table that the source stands for.
void fill(EndingTable& table, std::string const& source) {
    if (find_ending(source) == nullptr) {
        table.load(source);
    } else {
        Progress progress;
        table.build(progress);
    }
}

}  // namespace

int build_command(ending_t const& ending, std::string const& path) {
    // Rather found out before the build than after it.
    { FileReplacement const writable(path); }
    auto const start = std::chrono::steady_clock::now();
    EndingTable table(ending);
    {
        Progress progress;
        table.build(progress);
    }
    auto const built = std::chrono::steady_clock::now();
    table.save(path);
    std::cout << ending.name << ": built in " << seconds_text(built - start) << ", written to "
              << path << " in " << seconds_text(std::chrono::steady_clock::now() - built) << '\n';
    return exit_success;
}

int eval_command(std::string const& source, std::vector<std::string> const& fens) {
    ending_t const& ending = ending_of_source(source);
    std::vector<ending_position_t> positions;
    positions.reserve(fens.size());
    for (std::string const& fen : fens) {
        positions.push_back(read_ending_position(fen, ending));
    }
    EndingTable table(ending);
    fill(table, source);
    for (std::size_t i = 0; i < fens.size(); ++i) {
        int const value = table.eval(positions[i]);
        std::cout << fens[i] << ": " << value_text(value) << ", value " << value << '\n';
    }
    return exit_success;
}

int stats_command(std::string const& source, bool plot) {
    EndingTable table(ending_of_source(source));
    fill(table, source);
    Statistics const statistics(table);
    std::cout << table.ending().name << '\n';
    statistics.print_distances(std::cout);
    if (plot) {
        statistics.print_histogram(std::cout, terminal_width());
    }
    statistics.print_longest_wins(std::cout, table);
    return exit_success;
}

int check_command(std::vector<std::string> const& sources) {
    Progress progress;
    TableChecker checker(progress);
    int code = exit_success;
    for (std::string const& source : sources) {
        std::string const fault = checker.fault(source);
        if (fault.empty()) {
            std::cout << source << ": right" << std::endl;
        } else {
            std::cerr << fault << std::endl;
            code = exit_failure;
        }
    }
    return code;
}

}  // namespace orvelin::tools
