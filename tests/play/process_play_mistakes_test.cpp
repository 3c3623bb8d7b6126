// Slips of people at the keyboard: each is told in one line, and nothing runs by mistake.

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "play/play_process.h"
#include "support/positions.h"

namespace orvelin::play::test {

namespace {

using texts_t = std::vector<std::string>;

bool contains(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

TEST(ProcessPlayMistakes, ASearchThatWasMeantToEndIsNotEndless) {
    PlayProcess process;
    for (std::string const command : {"go depth", "go depth abc", "go 5", "go movetime"}) {
        texts_t const texts = process.told({command});
        ASSERT_EQ(texts.size(), 2U) << command;
        EXPECT_TRUE(texts[0].starts_with("info string go")) << texts[0];
        EXPECT_EQ(texts[1], "bestmove 0000") << command;
    }
    for (std::string const command : {"go perft", "go perft x"}) {
        texts_t const texts = process.told({command});
        ASSERT_EQ(texts.size(), 1U) << command;
        EXPECT_TRUE(texts[0].starts_with("info string go perft: ")) << texts[0];
    }
    for (std::string const command : {"go", "go infinite"}) {
        process.send(command);
        EXPECT_FALSE(process.find("info depth 2 ").empty()) << command;
        EXPECT_NE(best_move(process.ask("stop")), "0000") << command;
    }
}

TEST(ProcessPlayMistakes, CountAndBenchDoNotRunWithAWrongNumber) {
    PlayProcess process;
    for (auto const& [command, remark] : std::vector<std::pair<std::string, std::string>>{
             {"bench x", "bench: \"x\", a depth of 1 to 100 is expected"},
             {"bench 0", "bench: \"0\", a depth of 1 to 100 is expected"},
             {"bench 101", "bench: \"101\", a depth of 1 to 100 is expected"},
             {"bench 3 4", "bench: \"3 4\", a depth of 1 to 100 is expected"},
             {"perft", "perft: no number, a depth of 1 to 20 is expected"},
             {"perft x", "perft: \"x\", a depth of 1 to 20 is expected"},
             {"perft -3", "perft: \"-3\", a depth of 1 to 20 is expected"},
             {"perft 21", "perft: \"21\", a depth of 1 to 20 is expected"},
             {"perft 2 3", "perft: \"2 3\", a depth of 1 to 20 is expected"}}) {
        EXPECT_EQ(process.told({command}), texts_t{"info string " + remark}) << command;
    }
    texts_t const count = process.told({"perft 2"});
    EXPECT_EQ(std::count(count.begin(), count.end(), "Nodes searched: 400"), 1);
}

TEST(ProcessPlayMistakes, WordsBehindACommandThatTakesNoneAreTold) {
    PlayProcess process;
    for (std::string const command : {"d", "stop", "ucinewgame", "flip"}) {
        texts_t const texts = process.told({command + " now please"});
        ASSERT_FALSE(texts.empty()) << command;
        EXPECT_EQ(texts[0],
                  "info string " + command + ": takes no words, \"now please\" is left out");
    }
    EXPECT_TRUE(process.told({"debug on"}).empty());
}

TEST(ProcessPlayMistakes, ARefusedPositionIsToldWithOnePrefix) {
    PlayProcess process;
    EXPECT_EQ(process.told({"position x"}),
              texts_t{"info string position: \"x\", startpos or fen is expected"});
    EXPECT_EQ(process.told({"go depth 1"}),
              (texts_t{"info string no position to search: \"x\", startpos or fen is expected",
                       "bestmove 0000"}));
    EXPECT_EQ(process.told({"d"}),
              texts_t{"info string no position: \"x\", startpos or fen is expected"});
}

TEST(ProcessPlayMistakes, TheOptionThatHasToWaitIsNamed) {
    PlayProcess process;
    process.send_all({"go infinite", "setoption name hash value 16"});
    EXPECT_EQ(process.find("info string "),
              "info string option Hash is ignored while a search runs, stop it first");
    process.send("setoption name Clear Hash");
    EXPECT_EQ(process.find("info string "),
              "info string option Clear Hash is ignored while a search runs, stop it first");
}

TEST(ProcessPlayMistakes, AHashThatIsRoundedIsTold) {
    PlayProcess process;
    EXPECT_EQ(
        process.told({"setoption name Hash value 100"}),
        texts_t{"info string option Hash: 64 MiB are taken for 100, a power of two from 4 on"});
    EXPECT_EQ(process.told({"setoption name Hash value 1"}),
              texts_t{"info string option Hash: 4 MiB are taken for 1, a power of two from 4 on"});
    EXPECT_TRUE(process.told({"setoption name Hash value 64"}).empty());
}

TEST(ProcessPlayMistakes, HelpNamesEveryCommand) {
    PlayProcess process;
    std::string help;
    for (std::string const& line : process.told({"help"})) {
        help += ' ' + line + '\n';
    }
    for (std::string const word :
         {"uci",       "isready",  "ucinewgame", "setoption", "position", "go",          "stop",
          "ponderhit", "debug",    "register",   "d",         "eval",     "flip",        "bench",
          "perft",     "go perft", "help",       "?",         "quit",     "docs/play.md"}) {
        EXPECT_TRUE(contains(help, ' ' + word)) << word;
    }
}

TEST(ProcessPlayMistakes, TheEvaluationHasHeadingsAndAUnit) {
    PlayProcess process;
    process.send("position fen " + std::string(positions::kiwipete));
    texts_t const texts = process.told({"eval"});
    ASSERT_GT(texts.size(), 40U);
    EXPECT_TRUE(texts[0].starts_with("Term ") && contains(texts[0], "Middle game")) << texts[0];
    EXPECT_TRUE(std::none_of(texts.begin(), texts.end(),
                             [](std::string const& line) { return contains(line, "e-"); }));
    EXPECT_TRUE(std::any_of(texts.begin(), texts.end(),
                            [](std::string const& line) { return contains(line, "unit"); }));
}

TEST(ProcessPlayMistakes, ADeadDrawIsToldAsOne) {
    PlayProcess process;
    process.set_option("UCI_ShowWDL", "true");
    for (std::string const fen :
         {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", "4k3/8/8/8/8/8/8/4K3 w - - 0 1",
          "4k3/8/8/8/8/8/8/4KN2 w - - 0 1", "4k3/8/8/8/8/8/3Q4/4K3 w - - 100 90"}) {
        process.send("position fen " + fen);
        texts_t const answer = process.ask("go depth 4");
        for (std::string const& line : answer) {
            EXPECT_TRUE(!contains(line, " score ") || contains(line, " score cp 0 wdl 0 1000 0"))
                << fen << ": " << line;
        }
        EXPECT_EQ(best_move(answer) == "0000", fen.starts_with("7k"));
    }
    process.send("position fen 4k3/8/8/8/8/8/3Q4/4K3 w - - 98 90");
    EXPECT_FALSE(contains(process.ask("go depth 3").at(0), " score cp 0 "));
}

}  // namespace

}  // namespace orvelin::play::test
