#include "play/options.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "play/hostile_lines.h"

namespace orvelin::play::test {

namespace {

/// All values side by side, to compare them.
auto values(Options const& options) {
    return std::tuple(options.hash, options.threads, options.ponder, options.multipv,
                      options.own_book, options.book_file, options.move_overhead, options.chess960,
                      options.limit_strength, options.elo, options.show_wdl, options.analyse_mode,
                      options.engine_units, options.log_file);
}

/// The options after one line that is taken.
Options after(std::string_view arguments, option_t changed = option_t::other,
              Options options = Options()) {
    OptionText const text = set_option(arguments, options);
    EXPECT_EQ(text.refusal, "") << arguments;
    EXPECT_EQ(text.changed, changed) << arguments;
    return options;
}

/// The line changes nothing, and this is said.
void expect_refused(std::string_view arguments, std::string const& refusal) {
    Options options;
    options.hash = 77;
    Options const before = options;
    OptionText const text = set_option(arguments, options);
    EXPECT_EQ(text.refusal, refusal);
    EXPECT_EQ(text.changed, option_t::none);
    EXPECT_EQ(values(options), values(before));
    expect_presentable(text.refusal);
}

TEST(PlayOptions, LinesOfTheHandshake) {
    EXPECT_EQ(option_lines(),
              (std::vector<std::string>{
                  "option name Hash type spin default 128 min 1 max 65536",
                  "option name Clear Hash type button",
                  "option name Threads type spin default 1 min 1 max 1",
                  "option name Ponder type check default false",
                  "option name MultiPV type spin default 1 min 1 max 256",
                  "option name OwnBook type check default false",
                  "option name Book File type string default <empty>",
                  "option name Move Overhead type spin default 30 min 0 max 5000",
                  "option name UCI_Chess960 type check default false",
                  "option name UCI_LimitStrength type check default false",
                  "option name UCI_Elo type spin default 2000 min 800 max 2400",
                  "option name UCI_ShowWDL type check default false",
                  "option name UCI_AnalyseMode type check default false",
                  "option name UCI_EngineAbout type string default Orvelin 0.40.1 by Kalvoorst",
                  "option name Log File type string default <empty>",
                  "option name Score Unit type combo default centipawn var centipawn var engine"}));
}

TEST(PlayOptions, SpinsAreSetWithinTheirRange) {
    EXPECT_EQ(after("name Hash value 1", option_t::hash).hash, 1);
    EXPECT_EQ(after("name Hash value 65536", option_t::hash).hash, 65536);
    EXPECT_EQ(after("name Threads value 1").threads, 1);
    EXPECT_EQ(after("name MultiPV value 256").multipv, 256);
    EXPECT_EQ(after("name Move Overhead value 0").move_overhead, 0);
    EXPECT_EQ(after("name Move Overhead value 5000").move_overhead, 5000);
    EXPECT_EQ(after("name UCI_Elo value 800").elo, 800);
    EXPECT_EQ(after("name UCI_Elo value 2400").elo, 2400);
}

TEST(PlayOptions, SpinsOutOfRangeAreRefusedWithTheRange) {
    expect_refused("name Hash value 0", "option Hash: the value \"0\", 1 to 65536 is expected");
    expect_refused("name Hash value 65537",
                   "option Hash: the value \"65537\", 1 to 65536 is expected");
    expect_refused("name Threads value 4", "option Threads: the value \"4\", 1 to 1 is expected");
    expect_refused("name MultiPV value 257",
                   "option MultiPV: the value \"257\", 1 to 256 is expected");
    expect_refused("name Move Overhead value -1",
                   "option Move Overhead: the value \"-1\", 0 to 5000 is expected");
    expect_refused("name UCI_Elo value 799",
                   "option UCI_Elo: the value \"799\", 800 to 2400 is expected");
    expect_refused("name UCI_Elo value 99999999999999999999",
                   "option UCI_Elo: the value \"99999999999999999999\", 800 to 2400 is expected");
}

TEST(PlayOptions, SpinsNeedAWholeNumber) {
    expect_refused("name Hash value big", "option Hash: the value \"big\", 1 to 65536 is expected");
    expect_refused("name Hash value 1.5", "option Hash: the value \"1.5\", 1 to 65536 is expected");
    expect_refused("name Hash value 16 32",
                   "option Hash: the value \"16 32\", 1 to 65536 is expected");
    expect_refused("name Hash value", "option Hash: no value, 1 to 65536 is expected");
    expect_refused("name Hash", "option Hash: no value, 1 to 65536 is expected");
}

TEST(PlayOptions, ChecksAreSet) {
    EXPECT_TRUE(after("name Ponder value true").ponder);
    EXPECT_TRUE(after("name OwnBook value true", option_t::book).own_book);
    EXPECT_TRUE(after("name UCI_Chess960 value true").chess960);
    EXPECT_TRUE(after("name UCI_LimitStrength value true").limit_strength);
    EXPECT_TRUE(after("name UCI_ShowWDL value true").show_wdl);
    EXPECT_TRUE(after("name UCI_AnalyseMode value true").analyse_mode);
    Options options;
    options.ponder = true;
    EXPECT_FALSE(after("name Ponder value false", option_t::other, options).ponder);
}

TEST(PlayOptions, ChecksTakeOtherWordsForTrueAndFalse) {
    Options on;
    on.ponder = true;
    for (std::string const word : {"TRUE", "True", "1", "on", "ON"}) {
        EXPECT_TRUE(after("name Ponder value " + word).ponder) << word;
    }
    for (std::string const word : {"FALSE", "False", "0", "off", "Off"}) {
        EXPECT_FALSE(after("name Ponder value " + word, option_t::other, on).ponder) << word;
    }
}

TEST(PlayOptions, ChecksRefuseOtherValues) {
    expect_refused("name Ponder value yes",
                   "option Ponder: the value \"yes\", true or false is expected");
    expect_refused("name Ponder", "option Ponder: no value, true or false is expected");
}

TEST(PlayOptions, StringsKeepTheirBlanks) {
    EXPECT_EQ(after("name Book File value /my  books/a b.bin ", option_t::book).book_file,
              "/my  books/a b.bin");
    EXPECT_EQ(after("name Log File value value name", option_t::log_file).log_file, "value name");
    EXPECT_EQ(after("name Log File value \xc3\xa9.log", option_t::log_file).log_file,
              "\xc3\xa9.log");
}

TEST(PlayOptions, StringsMayBeEmpty) {
    Options options;
    options.book_file = "x";
    options.log_file = "x";
    EXPECT_EQ(after("name Book File value <empty>", option_t::book, options).book_file, "");
    EXPECT_EQ(after("name Book File value", option_t::book, options).book_file, "");
    EXPECT_EQ(after("name Log File", option_t::log_file, options).log_file, "");
}

TEST(PlayOptions, StringsWithControlCharactersAreRefused) {
    expect_refused(std::string_view("name Log File value a\0b", 23),
                   "option Log File: the value \"a?b\", a text of at most 4096 bytes without "
                   "control characters is expected");
    expect_refused("name Book File value a\x7f",
                   "option Book File: the value \"a?\", a text of at most 4096 bytes without "
                   "control characters is expected");
}

TEST(PlayOptions, StringsHaveALongestLength) {
    std::string const line = "name Log File value ";
    EXPECT_EQ(after(line + std::string(4096, 'x'), option_t::log_file).log_file.size(), 4096U);
    expect_refused(line + std::string(4097, 'x'),
                   "option Log File: the value \"" + std::string(40, 'x') +
                       "...\", a text of at most 4096 bytes without control characters is "
                       "expected");
}

TEST(PlayOptions, ButtonsNeedNoValue) {
    Options const options = after("name Clear Hash", option_t::clear_hash);
    EXPECT_EQ(values(options), values(Options()));
    after("name Clear Hash value now", option_t::clear_hash);
}

TEST(PlayOptions, ScoreUnitIsOneOfTwo) {
    EXPECT_TRUE(after("name Score Unit value engine").engine_units);
    Options options;
    options.engine_units = true;
    EXPECT_FALSE(after("name Score Unit value Centipawn", option_t::other, options).engine_units);
    expect_refused("name Score Unit value pawn",
                   "option Score Unit: the value \"pawn\", centipawn or engine is expected");
    expect_refused("name Score Unit",
                   "option Score Unit: no value, centipawn or engine is expected");
}

TEST(PlayOptions, AboutIsNotSet) {
    expect_refused("name UCI_EngineAbout value someone else",
                   "option UCI_EngineAbout: tells who the engine is and cannot be set");
}

TEST(PlayOptions, NamesInAnyCaseAndWithAnyBlanks) {
    EXPECT_EQ(after("name hash value 5", option_t::hash).hash, 5);
    EXPECT_EQ(after("  NAME  MOVE   overhead \t VALUE  7  ").move_overhead, 7);
    after("name clear HASH", option_t::clear_hash);
}

TEST(PlayOptions, UnknownNamesAreRefused) {
    expect_refused("name Contempt value 5", "setoption: there is no option \"Contempt\"");
    expect_refused("name Hash Size value 5", "setoption: there is no option \"Hash Size\"");
    expect_refused("name Clear value 5", "setoption: there is no option \"Clear\"");
    expect_refused("name value 5", "setoption: there is no option \"\"");
}

TEST(PlayOptions, ALineWithoutANameIsRefused) {
    expect_refused("", "setoption: \"\", name and the name of an option are expected");
    expect_refused("name", "setoption: \"name\", name and the name of an option are expected");
    expect_refused("Hash value 5",
                   "setoption: \"Hash value 5\", name and the name of an option are expected");
}

TEST(PlayOptions, AMegabyteIsRefusedInALineThatIsShort) {
    std::string const million(1'000'000, 'x');
    std::string const cut = '"' + std::string(40, 'x') + "...\"";
    expect_refused("name " + million, "setoption: there is no option " + cut);
    expect_refused("name Hash value " + million,
                   "option Hash: the value " + cut + ", 1 to 65536 is expected");
    expect_refused("name Ponder value " + million,
                   "option Ponder: the value " + cut + ", true or false is expected");
    expect_refused(million, "setoption: " + cut + ", name and the name of an option are expected");
    Options options;
    EXPECT_NE(set_option(std::string(1'000'000, '\0'), options).refusal, "");
}

TEST(PlayOptions, RandomBytesAreTakenOrRefused) {
    HostileLines lines({"value", "value", "Hash", "Clear Hash", "Ponder", "MultiPV", "Log File",
                        "Book File", "Move Overhead", "UCI_Elo", "Score Unit", "engine", "true",
                        "5", "-5", "900", "99999999999", "<empty>"});
    int taken = 0;
    Options options;
    for (int i = 0; i < 20'000; ++i) {
        OptionText const text = set_option((i % 2 == 0 ? "name " : "") + lines.next(), options);
        EXPECT_EQ(text.refusal.empty(), text.changed != option_t::none);
        expect_presentable(text.refusal);
        taken += text.refusal.empty() ? 1 : 0;
        EXPECT_TRUE(options.hash >= 1 && options.hash <= 65536);
        EXPECT_TRUE(options.multipv >= 1 && options.multipv <= 256);
        EXPECT_TRUE(options.move_overhead >= 0 && options.move_overhead <= 5000);
        EXPECT_TRUE(options.elo >= 800 && options.elo <= 2400);
    }
    EXPECT_GT(taken, 20);
}

}  // namespace

}  // namespace orvelin::play::test
