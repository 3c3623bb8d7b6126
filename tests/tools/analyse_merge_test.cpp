#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analyse/shard_merge.h"
#include "support/temporary_directory.h"
#include "tools/analyse_files.h"
#include "tools/analyse_records.h"

namespace orvelin::test::analysis {

namespace {

std::string lines_of(std::vector<std::uint64_t> const& numbers) {
    std::string text;
    for (std::uint64_t const number : numbers) {
        text += json_of(full_record(number));
    }
    return text;
}

class AnalyseMerge : public testing::Test {
 protected:
    std::string file(std::string const& text) {
        names_.push_back(directory_.file(std::to_string(names_.size())));
        put_bytes(names_.back(), text);
        return names_.back();
    }
    std::string merged() {
        std::string text;
        faults_.clear();
        tools::ShardMerge merge(names_, nullptr);
        merge.run([&text](std::string_view line) { text += line; },
                  [this](std::string const& fault) { faults_.push_back(fault); });
        last_ = merge.last();
        return text;
    }

    TemporaryDirectory directory_;
    std::vector<std::string> names_;
    std::vector<std::string> faults_;
    std::uint64_t last_ = 0;
};

}  // namespace

TEST_F(AnalyseMerge, PutsTheLinesBackInOrder) {
    file(lines_of({2, 5, 8}));
    file(lines_of({1, 4, 7}));
    file("");
    file(lines_of({3, 6}));
    EXPECT_EQ(merged(), lines_of({1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_TRUE(faults_.empty());
    EXPECT_EQ(last_, 8U);
}

TEST_F(AnalyseMerge, TellsGapsAndDoubles) {
    std::string const first = file(lines_of({2, 4, 9}));
    std::string const second = file(lines_of({4, 5, 5}));
    EXPECT_EQ(merged(), lines_of({2, 4, 5, 9}));
    EXPECT_EQ(faults_,
              (std::vector<std::string>{"position 1 is missing", "position 3 is missing",
                                        "position 4 is in " + first + " and again in " + second,
                                        "position 5 is in " + second + " and again in " + second,
                                        "positions 6 to 8 are missing"}));
}

TEST_F(AnalyseMerge, TellsAShardThatIsMissing) {
    file(lines_of({1, 4, 7, 10}));
    file(lines_of({3, 6, 9}));
    merged();
    EXPECT_EQ(faults_,
              (std::vector<std::string>{"shard 2/3 is missing: no file has its positions, of which "
                                        "2 is the first"}));
    names_.clear();
    file(lines_of({1, 4, 7}));
    file(lines_of({2, 8}));
    file(lines_of({3, 6, 9}));
    merged();
    EXPECT_EQ(faults_, std::vector<std::string>{"position 5 is missing"});
}

TEST_F(AnalyseMerge, RefusesWhatIsNoRecordOrOutOfOrder) {
    std::string const good = lines_of({1, 2});
    auto const reason_with = [&](std::string const& text) {
        names_.clear();
        file(good);
        file(text);
        return reason_from([&] { merged(); });
    };
    EXPECT_NE(reason_with(lines_of({4, 3})).find("line 2: position 3 behind position 4"),
              std::string::npos);
    EXPECT_NE(reason_with("{}\n").find("line 1: no record"), std::string::npos);
    EXPECT_NE(reason_with(lines_of({3}) + "\n").find("line 2: no record"), std::string::npos);
    EXPECT_NE(reason_with(lines_of({3}).substr(0, 500)).find("has no end"), std::string::npos);
    analyse::Record other = full_record(3);
    other.receipt.limit = "depth=8";
    EXPECT_NE(reason_with(json_of(other)).find("other limit"), std::string::npos);
}

TEST_F(AnalyseMerge, TakesLinesOfAnyLength) {
    analyse::Record record = full_record(1);
    record.lines[0].moves = std::string(300000, 'x');
    file(json_of(record));
    EXPECT_EQ(merged(), json_of(record));
}

}  // namespace orvelin::test::analysis
