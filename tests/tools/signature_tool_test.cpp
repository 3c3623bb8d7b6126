#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "support/play_signature.h"
#include "support/program.h"
#include "support/session_reader.h"
#include "support/signature.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"

namespace orvelin::test {

TEST(SignatureTool, PrintsTheSignatureOfTheRecordAsOneLine) {
    const program_result_t result = run_program(signature_binary, {});
    EXPECT_EQ(result.signal, 0);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    std::ostringstream line;
    line << signature_of(read_sessions(signature_file)) << '\n';
    EXPECT_EQ(result.output, line.str());
}

TEST(SignatureTool, PrintsTheSessionsAsTheyAreOnRecord) {
    const program_result_t result = run_program(signature_binary, {"--print"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, session_text(read_sessions(signature_file)));
}

TEST(SignatureTool, PrintsTheSignatureThroughTheFrontForPlayers) {
    const program_result_t result = run_program(signature_binary, {"--play"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    std::vector<session_t> recorded;
    for (session_t const& session : read_sessions(signature_file)) {
        recorded.push_back(recorded_outcomes(session));
    }
    std::ostringstream line;
    line << signature_of(recorded) << '\n';
    EXPECT_EQ(result.output, line.str());
}

TEST(SignatureTool, FailsWhenTheFrontForPlayersSearchesOtherwise) {
    const TemporaryDirectory directory;
    const std::filesystem::path record = directory.path() / "record.txt";
    std::ofstream(record) << "> new\n> go depth 1\n"
                             "it 1 alpha -32000 beta 32000 score 144 nodes 27 pv e2e4\n"
                             "lines 1\nline depth 1 score 144 e2e4\n"
                             "best e2e4 ponder 0000 nodes 27\n";
    const program_result_t result = run_program(signature_binary, {"--play", record.string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "orvelin-signature: other lines for: go depth 1\n");
    EXPECT_TRUE(result.output.starts_with("26 ")) << result.output;
}

TEST(SignatureTool, FailsAndNamesTheCommandWhenALineIsAnother) {
    const TemporaryDirectory directory;
    const std::filesystem::path record = directory.path() / "record.txt";
    std::ofstream(record) << "> new\n> perft 1\nperft 1 20\n> perft 2\nperft 2 401\n";
    const program_result_t result = run_program(signature_binary, {record.string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "orvelin-signature: other lines for: perft 2\n");
    EXPECT_FALSE(result.output.empty());
    const program_result_t printed = run_program(signature_binary, {"--print", record.string()});
    EXPECT_EQ(printed.status, 0) << printed.errors;
    EXPECT_EQ(printed.output, "> new\n> perft 1\nperft 1 20\n> perft 2\nperft 2 400\n\n");
}

TEST(SignatureTool, FailsWithoutItsRecord) {
    const TemporaryDirectory directory;
    const std::string record = (directory.path() / "absent.txt").string();
    const program_result_t result = run_program(signature_binary, {record});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "orvelin-signature: cannot read test data " + record + "\n");
}

TEST(SignatureTool, TellsItsUsage) {
    const program_result_t result = run_program(signature_binary, {"--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.output.starts_with("Usage: orvelin-signature [--print | --play] [FILE]\n"))
        << result.output;
}

TEST(SignatureTool, RefusesOtherArguments) {
    const program_result_t unknown = run_program(signature_binary, {"--nonsense"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.output, "");
    EXPECT_TRUE(unknown.errors.starts_with("Usage: orvelin-signature")) << unknown.errors;
    EXPECT_EQ(run_program(signature_binary, {"/one", "/two"}).status, 2);
    EXPECT_EQ(run_program(signature_binary, {"--print", "--play"}).status, 2);
}

}  // namespace orvelin::test
