// What records say of the moves that were played.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analyse/answerer.h"
#include "analyse/position_files.h"
#include "analyse/sentence_check.h"
#include "analyse/verification.h"
#include "support/positions.h"
#include "support/shared_tables.h"
#include "support/temporary_directory.h"
#include "tools/analyse_files.h"
#include "tools/analyse_records.h"
#include "tools/analyse_tool.h"

namespace orvelin::test::analysis {

namespace {

// Bishops and pawns are taken back; a queen is given away, and a mate is missed.
constexpr char const* games =
    "[White \"X\"]\n[Result \"1-0\"]\n\n"
    "1. e4 d5 2. exd5 Qxd5 3. Nc3 Nf6 4. Nxd5 Nxd5 5. Bb5+ c6 6. Bxc6+ bxc6 *\n\n"
    "[White \"Y\"]\n\n1. e4 e5 2. Bc4 Nc6 3. Qh5 Nf6 4. Nf3 Nxh5 *\n";

std::vector<tools::Asked> positions_of(std::string const& text, tools::Plies plies = {}) {
    TemporaryDirectory const directory;
    put_bytes(directory.file("in.pgn"), text);
    tools::PositionFiles files({{directory.file("in.pgn")}, plies, false}, nullptr,
                               [](std::string const& remark) { ADD_FAILURE() << remark; });
    std::vector<tools::Asked> found;
    for (tools::Asked asked; files.next(asked);) {
        asked.number = found.size() + 1;
        found.push_back(asked);
    }
    return found;
}

tools::Request const request{{analyse::Limit::kind::depth, 4}, 2, true, true, true};

class AnalyseJudgement : public AnalyseProcess {};

}  // namespace

TEST_F(AnalyseJudgement, KnowsWhatTheMoveBeforeTook) {
    auto const taken_in = [](std::vector<tools::Asked> const& positions) {
        std::string text;
        for (tools::Asked const& asked : positions) {
            text += (asked.taken ? analyse::taken_text(*asked.taken) : "-") + ' ';
        }
        return text;
    };
    std::vector<tools::Asked> const all = positions_of(games);
    EXPECT_EQ(taken_in(all), "- - - pd5 pd5 - - qd5 nd5 - - pc6 bc6 - - - - - - - - qh5 ");
    EXPECT_EQ(taken_in(positions_of(games, {4, 5})), "pd5 - - - ");
}

TEST_F(AnalyseJudgement, IsThatOfTheSearchOfThePosition) {
    auto const answerer = tools::make_engine_answerer();
    analyse::PositionSearch search;
    int judged = 0;
    for (tools::Asked const& asked : positions_of(games)) {
        analyse::Record const record = answerer->answer(asked, request);
        if (!record.played) {
            continue;
        }
        analyse::Result const result = search.answer({.fen = asked.fen,
                                                      .limit = request.limit,
                                                      .lines = request.lines,
                                                      .played = asked.played,
                                                      .rest = true});
        analyse::MoveInGame const move{asked.fen, asked.played, asked.taken, &result};
        analyse::Judgement const judgement = analyse::judge(move, shared_tables());
        ASSERT_TRUE(record.played->judgement) << asked.fen;
        analyse::RecordJudgement const& there = *record.played->judgement;
        EXPECT_EQ(there.mark, judgement.mark);
        EXPECT_NEAR(there.lost, 1000 * judgement.loss(), 1e-6);
        EXPECT_EQ(there.accuracy, analyse::move_accuracy(judgement));
        for (std::string const& fault :
             analyse::faults_of_sentence(there.sentence, move, shared_tables())) {
            ADD_FAILURE() << asked.fen << '\n' << there.sentence << '\n' << fault;
        }
        ++judged;
    }
    EXPECT_EQ(judged, 20);
}

TEST_F(AnalyseJudgement, DependsOnWhatTheRecordSaysAlone) {
    auto const answerer = tools::make_engine_answerer();
    tools::Verification verification(tools::make_engine_answerer());
    bool recaptures = false;
    for (tools::Asked const& asked : positions_of(games, {3, 4})) {
        std::string line = json_of(answerer->answer(asked, request));
        line.pop_back();
        EXPECT_EQ(verification.difference(line), std::nullopt);
        recaptures |= line.find("2...Qxd5 recaptures") != std::string::npos;
    }
    EXPECT_TRUE(recaptures);
    tools::Asked asked = positions_of(games, {3, 3}).at(0);
    asked.taken.reset();
    EXPECT_EQ(json_of(answerer->answer(asked, request)).find("recaptures"), std::string::npos);
    tools::Asked const last = positions_of(games).at(12);
    EXPECT_FALSE(answerer->answer(last, request).played);
}

TEST_F(AnalyseJudgement, IsNotGivenWithoutASearchOfTheMove) {
    auto const answerer = tools::make_engine_answerer();
    tools::Request plain = request;
    plain.played = false;
    tools::Asked const asked = positions_of(games).at(3);
    EXPECT_FALSE(answerer->answer(asked, plain).played.value().judgement);
    EXPECT_EQ(answerer->answer(asked, plain).played.value().taken, "pd5");
}

TEST_F(AnalyseJudgement, IsTheSameHoweverTheRunIsCut) {
    texts_t const question = {"--limit", "depth=3", "--lines", "2", "--moves", "best,played,rest"};
    auto const with = [&question](texts_t more) {
        more.insert(more.begin(), question.begin(), question.end());
        return output_of(more, games);
    };
    std::string const whole = with({});
    EXPECT_NE(whole.find("\"taken\":\"nd5\""), std::string::npos);
    EXPECT_NE(whole.find("\"mark\":\"??\",\"lost\":"), std::string::npos);
    EXPECT_EQ(with({"--jobs", "2"}), whole);
    texts_t merged = {"merge"};
    for (std::string const shard : {"1/2", "2/2"}) {
        merged.push_back(directory_.file("part" + shard.substr(0, 1)));
        with({"--shard", shard, "--jsonl", merged.back()});
    }
    EXPECT_EQ(output_of(merged), whole);
    put_bytes(out_, whole.substr(0, whole.size() / 3));
    with({"--resume", "--jsonl", out_});
    EXPECT_EQ(bytes_of(out_), whole);
    std::string const cache = directory_.file("cache");
    EXPECT_EQ(with({"--cache", cache}), whole);
    EXPECT_EQ(with({"--cache", cache}), whole);
    EXPECT_EQ(output_of({"verify", out_}), "22 records of 22 computed again, no difference\n");
}

}  // namespace orvelin::test::analysis
