// Games as orvelin-analyse annotates them.

#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <string>

#include "analyse/pgn_output.h"
#include "analyse/pgn_reader_fixture.h"
#include "play/version.h"
#include "tools/analyse_records.h"
#include "tools/analyse_tool.h"

namespace orvelin::test::analysis {

namespace {

using analyse::test::read_games;

// With what games may have: comments, variations, tags in Latin-1, a start of their own, Chess960
// with castling, no moves, and moves of every kind.
constexpr char const* games =
    "[Event \"A\"]\n[White \"M\xFCller\"]\n[Black \"A \\\"B\\\" C\"]\n[Annotator \"nobody\"]\n"
    "[Result \"1-0\"]\n\n"
    "1. e4 {well} e5 (1... c5 2. Nf3) 2. Bc4 Nc6 3. Qh5 $1 Nf6?? {[%clk 0:01]} 4. Nf3 Nxh5 5. d4 "
    "exd4 6. c3 dxc3 7. Bxf7+ Kxf7 1-0\n\n"
    "[Event \"B\"]\n\n1. d4 d5 2. c4 *\n\n"
    "[Event \"C\"]\n[Variant \"Chess960\"]\n"
    "[FEN \"1r1k1r2/pppppppp/8/8/8/8/PPPPPPPP/1R1K1R2 w FBfb - 0 1\"]\n\n"
    "1. O-O O-O-O 2. e4 e5 *\n\n"
    "[Event \"D\"]\n\n*\n\n"
    "[Event \"E\"]\n[Result \"1/2-1/2\"]\n[FEN \"7k/P7/8/8/8/8/6Kp/8 b - - 0 40\"]\n\n"
    "40... h1=Q+ 41. Kxh1 Kg7 42. a8=N Kg6 1/2-1/2\n";

constexpr int half_moves = 14 + 3 + 4 + 5;

int count(std::string const& text, std::string const& pattern) {
    std::regex const wanted(pattern);
    return static_cast<int>(
        std::distance(std::sregex_iterator(text.begin(), text.end(), wanted), {}));
}

/// Words and blanks may stand in two lines.
std::string in_one_line(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

std::string games_in(std::string const& text) {
    std::string moves;
    for (auto const& game : read_games(text)) {
        EXPECT_EQ(game.reason, "");
        moves +=
            game.game.tag("Event") + game.game.start_fen + game.moves() + game.game.result + '\n';
    }
    return moves;
}

class AnalysePgn : public AnalyseProcess {
 protected:
    std::string pgn_ = directory_.file("out.pgn");
};

}  // namespace

TEST_F(AnalysePgn, TellsAllOfEveryMove) {
    std::string const text =
        in_one_line(output_of({"--limit", "depth=4", "--pgn", "-", "--quiet"}, games));
    EXPECT_EQ(count(text, "\\{\\[%eval [^ ]*\\] \\d+\\.[^{}]*\\.\\}"), half_moves) << text;
    EXPECT_NE(text.find("4. Nf3 $4 {[%eval -"), std::string::npos) << text;
    EXPECT_NE(text.find("4.Nf3 misses mate in 1: 4.Qxf7#.} (4. Qxf7#)"), std::string::npos) << text;
    EXPECT_EQ(count(text, "\\$[246] "), count(text, " \\([0-9]")) << text;
    EXPECT_NE(text.find("[Annotator \"Orvelin " + std::string(play::version) + ", depth=4\"]"),
              std::string::npos);
    EXPECT_EQ(text.find("nobody"), std::string::npos);
    EXPECT_EQ(count(text, "\\{White: accuracy \\d+ %, \\d \\?!, \\d \\?, \\d \\?\\?\\. Black: "),
              4);
}

TEST_F(AnalysePgn, BreaksNoCommandOverALineEnd) {
    std::string const text = output_of({"--limit", "depth=2", "--pgn", "-"}, games);
    EXPECT_EQ(text.find("[%eval\n"), std::string::npos) << text;
    EXPECT_NE(text.find("[%eval "), std::string::npos);
}

TEST_F(AnalysePgn, AsksForThePlayedMoveAndPraisesItByTheRest) {
    // The king wins the opposition, or only draws.
    std::string const game = "[FEN \"8/4k3/8/3K4/4P3/8/8/8 w - - 0 1\"]\n\n1. Ke5 *\n";
    texts_t const arguments = {"--limit", "depth=7", "--pgn", pgn_, "--jsonl", out_, "--overwrite"};
    EXPECT_EQ(output_of(arguments, game), "");
    EXPECT_NE(bytes_of(out_).find("\"lines\":1,\"leaves\":true,\"played\":true,\"rest\":true"),
              std::string::npos);
    EXPECT_NE(in_one_line(bytes_of(pgn_)).find("1. Ke5 $1 {[%eval "), std::string::npos);
    texts_t quick = arguments;
    quick.insert(quick.end(), {"--lines", "2", "--moves", "best,played"});
    EXPECT_EQ(output_of(quick, game), "");
    EXPECT_NE(in_one_line(bytes_of(pgn_)).find("1. Ke5 {[%eval "), std::string::npos);
}

TEST_F(AnalysePgn, SaysWhatTheRecordsSay) {
    output_of({"--limit", "depth=4", "--pgn", pgn_, "--jsonl", out_}, games);
    std::string const text = in_one_line(bytes_of(pgn_));
    std::string const records = bytes_of(out_);
    std::regex const sentence("\"sentence\":\"([^\"]*)\"");
    int found = 0;
    for (std::sregex_iterator at(records.begin(), records.end(), sentence), end; at != end; ++at) {
        EXPECT_NE(text.find((*at)[1].str() + '}'), std::string::npos) << (*at)[1].str();
        ++found;
    }
    EXPECT_EQ(found, half_moves);
    EXPECT_EQ(count(records, "\"mark\":\"\\?\\?\""), count(text, "\\$4 "));
    EXPECT_EQ(count(records, "\"mark\":\"\\?!\""), count(text, "\\$6 "));
}

TEST_F(AnalysePgn, IsReadBackByOurReaderAndByPgnExtract) {
    output_of({"--limit", "depth=4", "--pgn", pgn_}, games);
    std::string const text = bytes_of(pgn_);
    EXPECT_EQ(games_in(text), games_in(games));
    EXPECT_EQ(read_games(text).at(0).game.tag("White"), "M\xFCller");
    EXPECT_EQ(read_games(text).at(0).game.tag("Black"), "A \"B\" C");
    EXPECT_EQ(lines_in(output_of({pgn_, "--limit", "static"})),
              lines_in(output_of({"--limit", "static"}, games)));

    std::string const witness = "/usr/games/pgn-extract";
    ASSERT_TRUE(std::filesystem::exists(witness))
        << witness << " is missing: apt-get install pgn-extract";
    auto const result = run_program(witness, {"-s", "-Wuci", pgn_});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(read_games(result.output).size(), 5U) << result.output;
    EXPECT_EQ(read_games(result.output).at(0).moves(), read_games(games).at(0).moves());
}

TEST_F(AnalysePgn, IsTheSameWithJobsAndFromACache) {
    texts_t arguments = {"--limit", "depth=3", "--pgn", "-"};
    std::string const whole = output_of(arguments, games);
    arguments.insert(arguments.end(), {"--jobs", "2", "--cache", directory_.file("cache")});
    EXPECT_EQ(output_of(arguments, games), whole);
    EXPECT_EQ(output_of(arguments, games), whole);
}

TEST_F(AnalysePgn, WritesWholeGamesWhateverThePlies) {
    auto const with = [](std::string const& plies) {
        return output_of({"--limit", "depth=2", "--pgn", "-", "--plies", plies}, games);
    };
    EXPECT_EQ(games_in(with("0-2")), games_in(games));
    EXPECT_EQ(count(in_one_line(with("0-2")), "\\[%eval [^ ]*\\] \\d+\\."), 3 * 4);
    EXPECT_EQ(count(in_one_line(with("1")), "\\[%eval [^ ]*\\] \\d+\\."), 4);
    // A game that ends before them has no position to be looked at.
    EXPECT_EQ(read_games(with("5-")).size(), 2U);
}

TEST_F(AnalysePgn, RefusesWhatMakesNoSense) {
    texts_t const pgn = {"--pgn", pgn_};
    auto const refused = [&](texts_t arguments, std::string const& reason) {
        arguments.insert(arguments.end(), pgn.begin(), pgn.end());
        expect_error(arguments, 2, reason, games);
        EXPECT_FALSE(std::filesystem::exists(pgn_)) << reason;
    };
    refused({"--limit", "static"}, "--pgn needs a search");
    refused({"--shard", "1/2"}, "--pgn needs whole games");
    refused({"--resume"}, "--resume does not go with --pgn");
    refused({"--moves", "best"}, "--moves best,played");
    refused({"--moves", "best,rest"}, "--moves best,played");
    refused({"--moves", "best,rest,"}, "--moves is best, ");
    refused({"--moves", "best,best"}, "--moves is best, ");
    refused({"--moves", "played"}, "--moves is best, ");
    refused({"--jsonl", pgn_}, "cannot both go to");
    expect_error({"--limit", "depth=2", "--pgn", pgn_}, 1,
                 "--pgn is for games: line 1 of - is a position without one, for which there are "
                 "--jsonl",
                 positions(1));
    EXPECT_FALSE(std::filesystem::exists(pgn_));
    put_bytes(pgn_, games);
    for (char const* const option : {"--jsonl", "--csv", "--sqlite"}) {
        expect_error({"--limit", "depth=2", option, out_, "--pgn", pgn_}, 1, "is there already");
        EXPECT_FALSE(std::filesystem::exists(out_)) << option;
    }
    expect_error({"--limit", "depth=2", "--pgn", pgn_}, 1, "is there already", games);
    expect_error({pgn_, "--overwrite", "--pgn", pgn_}, 2, "is read, and cannot be written too");
    EXPECT_EQ(bytes_of(pgn_), games);
}

TEST_F(AnalysePgn, AFileInLatin1StaysOneWhileRecordsAreUtf8) {
    std::string const game = "[Event \"M\xFCnchen\"]\n\n1. e4 {sch\xF6n} *\n";
    texts_t const arguments = {"--limit", "depth=2", "--pgn", pgn_, "--jsonl", "-"};
    EXPECT_NE(output_of(arguments, game).find("\"event\":\"M\xC3\xBCnchen\""), std::string::npos);
    std::string const written = bytes_of(pgn_);
    EXPECT_NE(written.find("[Event \"M\xFCnchen\"]"), std::string::npos);
    EXPECT_EQ(std::count_if(written.begin(), written.end(),
                            [](char letter) { return static_cast<unsigned char>(letter) > 126; }),
              1);
}

// However it is ended.
TEST_F(AnalysePgn, HoldsWholeGamesAlone) {
    std::string const game = std::string(games).substr(0, std::string(games).find("[Event \"B\"]"));
    auto const read = read_games(game + game);
    auto const first = std::make_shared<analyse::Game const>(read.at(0).game);
    auto const second = std::make_shared<analyse::Game const>(read.at(1).game);
    auto const record = [](int ply) {
        analyse::Record made = full_record(1);
        made.source.ply = ply;
        return made;
    };
    {
        tools::PgnOutput output(pgn_, tools::open_mode::create, {0, 5});
        for (int ply = 0; ply < 5; ++ply) {
            output.write({{record(ply), first}}, "");
        }
        EXPECT_EQ(bytes_of(pgn_), "");
        output.write({{record(5), first}, {record(0), second}, {record(1), second}}, "");
        EXPECT_EQ(read_games(bytes_of(pgn_)).size(), 1U);
        output.finish();
    }
    EXPECT_EQ(read_games(bytes_of(pgn_)).size(), 1U);
}

}  // namespace orvelin::test::analysis
