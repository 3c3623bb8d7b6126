// Requests of any bytes: each has an answer, and none changes the next one.

#include "board/board_core.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "board/board_fixture.h"
#include "support/positions.h"

namespace orvelin::board::test {
namespace {

std::string answer(std::string const& request) {
    return shared_core().answer(request);
}

std::vector<std::string> const& good_requests() {
    static std::vector<std::string> const requests{
        R"({"ask":"position","start":"startpos","chess960":false,"moves":["e2e4","e7e5"]})",
        R"({"ask":"line","moves":["e2e4"],"line":["e7e5","g1f3"]})",
        R"({"ask":"evaluation","start":"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1"})",
        R"({"ask":"leaf","line":["e2e4","e7e5"],"score":30})",
        R"({"ask":"leaf","line":["e2e4","e7e5"],"cp":-12})",
        R"({"ask":"pgn","text":"[White \"\u00fc\"]\n\n1. e4 {x} e5 (1... c5) 2. Nf3 $1 1-0"})",
        R"({"ask":"to-pgn","moves":["e2e4"],"tags":{"White":"A","Black":"B"},"result":"*"})",
        R"({"ask":"record","moves":["e2e4","e7e5"],"ply":1,"limit":{"nodes":9},"lines":2,)"
        R"("search":"best,played,rest","tags":{"White":"A"},"number":7})",
        R"({"ask":"book","moves":[]})",
    };
    return requests;
}

TEST(BoardCore, WhatIsNoRequestIsToldSo) {
    EXPECT_EQ(answer("[]"), R"({"error":"a request is an object"})");
    EXPECT_EQ(answer("{}"), R"({"error":"ask: a text is expected"})");
    EXPECT_EQ(answer(R"({"ask":7})"), R"({"error":"ask: a text is expected"})");
    EXPECT_EQ(answer(R"({"ask":"tea"})"), R"({"error":"nobody knows what to do for \"tea\""})");
    EXPECT_EQ(answer(""), R"({"error":"no JSON, at byte 0: The document is empty."})");
    EXPECT_NE(answer(R"({"ask":"position"} )" + std::string(1, '}')).find("no JSON"),
              std::string::npos);
    EXPECT_NE(answer("{\"ask\":\"\xFF\"}").find("no JSON"), std::string::npos);
    EXPECT_NE(answer("{\"ask\":\"\\ud800\"}").find("no JSON"), std::string::npos);
}

TEST(BoardCore, NoNestingIsTooDeep) {
    for (std::string const& opening : {std::string("["), std::string(R"({"a":)")}) {
        std::string deep;
        while (deep.size() < 3'000'000) {
            deep += opening;
        }
        EXPECT_NE(answer(deep).find("no JSON"), std::string::npos);
    }
    std::string const brackets(1'000'000, '[');
    std::string const closed(1'000'000, ']');
    EXPECT_NE(answer(R"({"ask":"position","moves":)" + brackets + closed + "}").find("array of"),
              std::string::npos);
    EXPECT_EQ(answer(R"({"ask":"position","else":)" + brackets + closed + "}").find("error"),
              std::string::npos);
}

TEST(BoardCore, ARequestThatIsCutAnywhereIsRefused) {
    for (std::string const& request : good_requests()) {
        for (std::size_t size = 0; size < request.size(); ++size) {
            EXPECT_NE(answer(request.substr(0, size)).find(R"({"error":"no JSON)"),
                      std::string::npos)
                << request.substr(0, size);
        }
    }
}

/// One member of each request at a time has a value of each kind.
TEST(BoardCore, ValuesOfEveryKindAreReadOrRefused) {
    std::vector<std::string> const values{"null",
                                          "true",
                                          "-1",
                                          "0.5",
                                          "1e99",
                                          "99999999999999999999",
                                          "\"\"",
                                          "\"x\"",
                                          "[]",
                                          "[1]",
                                          "[[]]",
                                          "{}",
                                          R"({"depth":0})",
                                          R"({"depth":1,"nodes":1})",
                                          R"({"nodes":-1})",
                                          R"(["e2e4","e2e4"])",
                                          "\"8/8/8/8/8/8/8/8 w - - 0 1\""};
    std::vector<std::string> const names{"ask",  "start",  "chess960", "moves",  "line",
                                         "text", "limit",  "score",    "cp",     "ply",
                                         "tags", "result", "lines",    "search", "number"};
    int refused = 0;
    for (std::string const& request : good_requests()) {
        for (std::string const& name : names) {
            for (std::string const& value : values) {
                // Of two members with one name the first counts.
                std::string const changed = "{\"" + name + "\":" + value + ',' + request.substr(1);
                refused += Answer(answer(changed)).error().empty() ? 0 : 1;
            }
        }
    }
    EXPECT_GT(refused, 100);
}

/// Bytes changed, taken out and put in, of requests that are good.
TEST(BoardCore, GarbledRequestsHaveAnAnswer) {
    std::mt19937 random(17);
    auto const below = [&random](std::size_t end) { return random() % end; };
    for (int i = 0; i < 3000; ++i) {
        std::string request = good_requests()[below(good_requests().size())];
        for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
            std::size_t const at = below(request.size());
            std::string const letters =
                "\"{}[],:\\0-9eE. \n\0\x80\xFF"
                "abcdefghKQRBN";
            char const letter = letters[below(letters.size())];
            switch (below(3)) {
                case 0:
                    request[at] = letter;
                    break;
                case 1:
                    request.insert(at, 1, letter);
                    break;
                default:
                    request.erase(at, 1);
            }
        }
        // It must be JSON; what it says is for the commands.
        std::string const text = answer(request);
        EXPECT_TRUE(text.starts_with('{') && text.ends_with('}')) << request;
        Answer const read(text);
    }
}

TEST(BoardCore, AnAnswerDependsOnItsRequestAlone) {
    std::vector<std::string> first;
    for (std::string const& request : good_requests()) {
        first.push_back(answer(request));
    }
    for (std::size_t i = good_requests().size(); i > 0; --i) {
        answer("{");
        EXPECT_EQ(answer(good_requests()[i - 1]), first[i - 1]);
    }
    EXPECT_EQ(BoardCore().answer(good_requests()[7]), first[7]);
}

}  // namespace
}  // namespace orvelin::board::test
