#include "analyse/limit.h"

#include <gtest/gtest.h>
#include <string>

namespace orvelin::analyse::test {

namespace {

TEST(LimitTest, IsWrittenAsItIsRead) {
    for (std::string const text : {"static", "depth=1", "depth=100", "nodes=1", "nodes=50000"}) {
        auto const limit = parse_limit(text);
        ASSERT_TRUE(limit) << text;
        EXPECT_EQ(limit->text(), text);
    }
}

TEST(LimitTest, RefusesWhatIsNoLimit) {
    for (std::string const text :
         {"", "depth", "depth=", "depth=0", "depth=101", "depth=-1", "depth=1x", "nodes=0",
          "nodes=1e6", "nodes=99999999999999999999", "Static", "static=1", "time=5"}) {
        EXPECT_FALSE(parse_limit(text)) << text;
    }
}

}  // namespace

}  // namespace orvelin::analyse::test
