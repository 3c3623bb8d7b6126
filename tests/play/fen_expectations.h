#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "play/hostile_lines.h"
#include "play/position_reader.h"

namespace orvelin::play::test {

/// What became of a FEN text.
struct checked_t {
    std::string reason;
    std::vector<std::string> remarks;
    std::string repaired;
};

/// Checks a FEN text; whatever is said about it is fit to be shown.
inline checked_t check(std::string_view fen) {
    checked_t checked;
    checked.reason = check_fen(fen, checked.remarks, checked.repaired).reason;
    expect_presentable(checked.reason);
    expect_presentable(checked.remarks);
    return checked;
}

/// The text is refused, and the reason holds these words.
inline void expect_refused(std::string_view fen, std::string const& words) {
    checked_t const checked = check(fen);
    EXPECT_NE(checked.reason.find(words), std::string::npos)
        << fen << " gives: " << checked.reason << "\n not: " << words;
    EXPECT_EQ(checked.repaired, "");
}

/// The text is read as another one, with one remark that holds these words.
inline void expect_repaired(std::string_view fen, std::string const& repaired,
                            std::string const& words) {
    checked_t const checked = check(fen);
    EXPECT_EQ(checked.reason, "") << fen;
    EXPECT_EQ(checked.repaired, repaired);
    ASSERT_EQ(checked.remarks.size(), 1U) << fen;
    EXPECT_NE(checked.remarks[0].find(words), std::string::npos)
        << fen << " gives: " << checked.remarks[0] << "\n not: " << words;
}

/// The text is read as it is, without a remark.
inline void expect_untouched(std::string const& fen) {
    checked_t const checked = check(fen);
    EXPECT_EQ(checked.reason, "") << fen;
    EXPECT_EQ(checked.repaired, fen);
    EXPECT_TRUE(checked.remarks.empty()) << fen << ": " << checked.remarks[0];
}

}  // namespace orvelin::play::test
