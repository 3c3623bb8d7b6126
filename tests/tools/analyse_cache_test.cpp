#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "analyse/answer_cache.h"
#include "analyse/duration_text.h"
#include "support/temporary_directory.h"
#include "tools/analyse_files.h"
#include "tools/analyse_records.h"

namespace orvelin::test::analysis {

TEST(AnalyseCache, GivesTheSameAnswerWithoutTheEngine) {
    TemporaryDirectory const directory;
    tools::AnswerCache cache(directory.file("cache"));
    tools::AnswerCache other_process(directory.file("cache"));
    std::atomic<int> answers = 0;
    auto const first =
        tools::make_cached_answerer(cache, std::make_unique<PlainAnswerer>(&answers));
    auto const second =
        tools::make_cached_answerer(other_process, std::make_unique<PlainAnswerer>(&answers));
    tools::Asked asked;
    asked.number = 3;
    asked.source.file = "one";
    asked.fen = CountingSource::fen(5);
    tools::Request request;
    analyse::Record const found = first->answer(asked, request);
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(first->answer(asked, request), found);
    EXPECT_EQ(second->answer(asked, request), found);
    EXPECT_EQ(answers, 1);

    // Another place in another file.
    tools::Asked elsewhere = asked;
    elsewhere.number = 99;
    elsewhere.source.file = "two";
    analyse::Record const there = second->answer(elsewhere, request);
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(there.number, 99U);
    EXPECT_EQ(there.source.file, "two");

    // Another question each.
    elsewhere.chess960 = true;
    second->answer(elsewhere, request);
    EXPECT_EQ(answers, 2);
    request.lines = 2;
    second->answer(asked, request);
    EXPECT_EQ(answers, 3);
    request.limit.value = 11;
    second->answer(asked, request);
    EXPECT_EQ(answers, 4);
    request.leaves = false;
    second->answer(asked, request);
    EXPECT_EQ(answers, 5);
    asked.played = Move(Square(0), Square(1), normal_move, Piece(), Piece());
    second->answer(asked, request);
    EXPECT_EQ(answers, 6);
    request.played = true;
    second->answer(asked, request);
    EXPECT_EQ(answers, 7);
    asked.taken = analyse::Taken{white_knight, Square(20)};
    second->answer(asked, request);
    EXPECT_EQ(answers, 8);
    asked.fen = CountingSource::fen(6);
    second->answer(asked, request);
    EXPECT_EQ(answers, 9);
    request.rest = true;
    second->answer(asked, request);
    EXPECT_EQ(answers, 10);
}

TEST(AnalyseCache, RefusesAFileThatIsNone) {
    TemporaryDirectory const directory;
    put_bytes(directory.file("text"), std::string(5000, 'x'));
    EXPECT_NE(reason_from([&] { tools::AnswerCache(directory.file("text")); }), "");
    EXPECT_EQ(bytes_of(directory.file("text")), std::string(5000, 'x'));
    EXPECT_NE(reason_from([&] { tools::AnswerCache(directory.file("no/such")); }), "");
}

// As the one that --sqlite has written.
TEST(AnalyseCache, RefusesADatabaseOfSomethingElse) {
    TemporaryDirectory const directory;
    tools::Database(directory.file("records"), 0).run("CREATE TABLE positions (number INTEGER)");
    std::string const before = bytes_of(directory.file("records"));
    EXPECT_NE(reason_from([&] { tools::AnswerCache(directory.file("records")); }).find("no cache"),
              std::string::npos);
    EXPECT_EQ(bytes_of(directory.file("records")), before);
}

TEST(AnalyseProgress, TellsTimesAndRates) {
    EXPECT_EQ(tools::duration_text(0.4), "0:00");
    EXPECT_EQ(tools::duration_text(67), "1:07");
    EXPECT_EQ(tools::duration_text(3599.6), "1:00:00");
    EXPECT_EQ(tools::duration_text(1e300), "876000:00:00");
    EXPECT_EQ(tools::duration_text(-5), "0:00");
    EXPECT_EQ(tools::rate_text(0.26), "0.3/s");
    EXPECT_EQ(tools::rate_text(9.99), "10.0/s");
    EXPECT_EQ(tools::rate_text(105000.4), "105000/s");
}

}  // namespace orvelin::test::analysis
