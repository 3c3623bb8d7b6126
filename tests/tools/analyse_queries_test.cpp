// The queries of docs/analyse.md, on the tables of a real run.

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "analyse/sqlite_database.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"
#include "tools/analyse_files.h"

namespace orvelin::test::analysis {

namespace {

/// The code blocks of the document that are SQL.
std::vector<std::string> queries() {
    std::istringstream document(bytes_of(std::string(data_folder) + "/../../docs/analyse.md"));
    std::vector<std::string> found;
    bool inside = false;
    for (std::string line; std::getline(document, line);) {
        if (line == "```sql") {
            inside = true;
            found.emplace_back();
        } else if (line == "```") {
            inside = false;
        } else if (inside) {
            found.back() += line + '\n';
        }
    }
    return found;
}

// Nxf7 instead of mate in one, and a queen that is given away.
constexpr char const* games =
    "[White \"X\"]\n[Black \"Y\"]\n[Result \"1-0\"]\n\n"
    "1. e4 e5 2. Bc4 Nc6 3. Qh5 Nf6 4. Nf3 Nxh5 5. d3 1-0\n\n"
    "[White \"Y\"]\n[Black \"X\"]\n[Result \"0-1\"]\n\n1. f3 e5 2. g4 Qh4# 0-1\n";

}  // namespace

TEST(AnalyseQueries, OfTheDocumentGiveRows) {
    TemporaryDirectory const directory;
    std::string const name = directory.file("out.sqlite");
    program_result_t const run = run_program(
        analyse_binary, {"--limit", "depth=3", "--moves", "best,played,rest", "--sqlite", name},
        {.input = games});
    ASSERT_EQ(run.status, 0) << run.errors;
    tools::Database database(name, 0);
    std::vector<std::string> const all = queries();
    EXPECT_EQ(all.size(), 10U);
    for (std::string const& query : all) {
        tools::Statement statement(database, query);
        EXPECT_TRUE(statement.step()) << query;
    }
}

TEST(AnalyseQueries, FindTheMissedMateAndTheWorstMove) {
    TemporaryDirectory const directory;
    std::string const name = directory.file("out.sqlite");
    program_result_t const run = run_program(
        analyse_binary, {"--limit", "depth=3", "--moves", "best,played", "--sqlite", name},
        {.input = games});
    ASSERT_EQ(run.status, 0) << run.errors;
    tools::Database database(name, 0);
    std::vector<std::string> const all = queries();
    ASSERT_EQ(all.size(), 10U);
    tools::Statement missed(database, all[4]);
    ASSERT_TRUE(missed.step());
    EXPECT_EQ(missed.text(0), "X");
    EXPECT_EQ(missed.number(2), 6);
    EXPECT_EQ(missed.number(3), 1);
    EXPECT_EQ(missed.text(4), "Nf3");
    tools::Statement worst(database, all[1]);
    ASSERT_TRUE(worst.step());
    EXPECT_EQ(worst.text(3), "Nf3");
    EXPECT_EQ(worst.text(4), "??");
    EXPECT_GT(worst.number(5), 300);
    EXPECT_NE(worst.text(6).find("4.Nf3 misses mate in 1"), std::string::npos) << worst.text(6);
    tools::Statement players(database, all[2]);
    ASSERT_TRUE(players.step());
    EXPECT_GT(players.real(2), 0);
    EXPECT_LT(players.real(2), 100);
}

}  // namespace orvelin::test::analysis
