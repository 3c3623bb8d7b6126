#include "support/signature.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "support/session_reader.h"

namespace orvelin::test {

namespace {

/// One session of the signature. It is played in full in every build: the sanitizer builds are
/// builds whose search must be the same too.
struct case_t {
    std::string name;
    session_t session;

    friend void PrintTo(case_t const& signature_case, std::ostream* stream) {
        *stream << signature_case.name;
    }
};

std::vector<case_t> all_cases() {
    std::vector<case_t> cases;
    for (session_t const& session : read_sessions(signature_file)) {
        cases.push_back({"session_" + std::to_string(cases.size() + 1), session});
    }
    return cases;
}

class SearchSignature : public testing::TestWithParam<case_t> {};

TEST_P(SearchSignature, GivesEveryLineOnRecord) {
    session_t const& expected = GetParam().session;
    ASSERT_GT(expected.nodes(), 0U);
    const session_t played = play_again(expected);
    for (std::size_t i = 0; i < expected.commands.size(); ++i) {
        EXPECT_EQ(played.commands[i].answer, expected.commands[i].answer)
            << expected.commands[i].text;
    }
}

INSTANTIATE_TEST_SUITE_P(replay, SearchSignature, testing::ValuesIn(all_cases()),
                         [](testing::TestParamInfo<case_t> const& tested) {
                             return tested.param.name;
                         });

}  // namespace

/// A change of the record is a change of the engine: it has to be made here too.
TEST(Signature, OfTheRecordIsOneFixedNumber) {
    const std::vector<session_t> record = read_sessions(signature_file);
    EXPECT_EQ(signature_of(record), (signature_t{765566, 0xe424c16217d2885d}));
}

TEST(Signature, ChangesWithAnyLetterOfAnyLine) {
    const std::vector<session_t> sessions = {{{{"pos x", {}}, {"go depth 1", {"best a nodes 7"}}}}};
    std::vector<session_t> other = sessions;
    other[0].commands[1].answer[0] = "best b nodes 7";
    EXPECT_EQ(signature_of(sessions).nodes, 7U);
    EXPECT_EQ(signature_of(other).nodes, 7U);
    EXPECT_NE(signature_of(sessions), signature_of(other));
}

TEST(Signature, HashIsThePublishedFnv1a) {
    EXPECT_EQ(signature_of({}).hash, 0xcbf29ce484222325U);
    // The letter "\n" alone: the text of one session without commands.
    EXPECT_EQ(signature_of({session_t{}}).hash, (0xcbf29ce484222325U ^ 0x0aU) * 0x100000001b3U);
}

TEST(Signature, IsWrittenAsNodesAndSixteenDigits) {
    std::ostringstream text;
    text << signature_t{26, 0xab} << ' ' << 10;
    EXPECT_EQ(text.str(), "26 00000000000000ab 10");
}

TEST(Signature, SessionsAreWrittenAsTheyAreRead) {
    const std::vector<session_t> sessions = {{{{"new", {}}, {"go depth 1", {"one", "two"}}}},
                                             {{{"new", {}}}}};
    EXPECT_EQ(session_text(sessions), "> new\n> go depth 1\none\ntwo\n\n> new\n\n");
}

}  // namespace orvelin::test
