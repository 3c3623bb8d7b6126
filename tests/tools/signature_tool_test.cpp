#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

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
    EXPECT_TRUE(result.output.starts_with("Usage: orvelin-signature [--print] [FILE]\n"))
        << result.output;
}

TEST(SignatureTool, RefusesOtherArguments) {
    const program_result_t unknown = run_program(signature_binary, {"--nonsense"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.output, "");
    EXPECT_TRUE(unknown.errors.starts_with("Usage: orvelin-signature")) << unknown.errors;
    EXPECT_EQ(run_program(signature_binary, {"/one", "/two"}).status, 2);
}

}  // namespace orvelin::test
