#include "analyse/record.h"

#include <gtest/gtest.h>

#include "analyse/utf8.h"

namespace orvelin::test {

TEST(AnalyseRecord, ALineHasALeafOrTheReasonWhyNot) {
    analyse::Line line;
    line.depth = 3;
    line.score = 17;
    line.at_least = true;
    line.why_not = analyse::unexplained::none;
    line.leaf.fen = "there";
    line.leaf.score = 16;
    line.leaf.fading = 0.5F;
    analyse::RecordLine const found = analyse::record_line(line, true, false);
    ASSERT_TRUE(found.leaf);
    EXPECT_EQ(found.leaf->fen, "there");
    EXPECT_EQ(found.leaf->score, 16);
    EXPECT_EQ(found.leaf->fading, 0.5F);
    EXPECT_EQ(found.unexplained, "");
    EXPECT_TRUE(found.at_least);
    EXPECT_EQ(found.score.units, 17);
    EXPECT_EQ(found.depth, 3);
    EXPECT_EQ(analyse::record_line(line, false, false).unexplained, "not asked");
    EXPECT_FALSE(analyse::record_line(line, false, false).leaf);
    line.why_not = analyse::unexplained::endgame;
    EXPECT_EQ(analyse::record_line(line, true, false).unexplained, "endgame");
    line.why_not = analyse::unexplained::mate_or_draw;
    EXPECT_EQ(analyse::record_line(line, true, false).unexplained, "mate or draw");
    line.why_not = analyse::unexplained::not_found;
    EXPECT_EQ(analyse::record_line(line, true, false).unexplained, "not found");
    EXPECT_FALSE(analyse::record_line(line, true, false).leaf);
}

TEST(AnalyseUtf8, LeavesWholeLettersAndTakesOtherBytesForLatin) {
    std::string const letters = "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80z";
    EXPECT_EQ(analyse::valid_utf8(letters), letters);
    EXPECT_EQ(analyse::valid_utf8("M\xFCller"), "M\xC3\xBCller");
    EXPECT_EQ(analyse::valid_utf8("\xE9"), "\xC3\xA9");
    // An overlong form, a surrogate, beyond Unicode, a lone second byte and a letter cut short.
    EXPECT_EQ(analyse::valid_utf8("\xC0\xAF"), "\xC3\x80\xC2\xAF");
    EXPECT_EQ(analyse::valid_utf8("\xE0\x80\x80"), "\xC3\xA0\xC2\x80\xC2\x80");
    EXPECT_EQ(analyse::valid_utf8("\xED\xA0\x80"), "\xC3\xAD\xC2\xA0\xC2\x80");
    EXPECT_EQ(analyse::valid_utf8("\xF4\x90\x80\x80"), "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80");
    EXPECT_EQ(analyse::valid_utf8("\x80"), "\xC2\x80");
    EXPECT_EQ(analyse::valid_utf8("\xE2\x82"), "\xC3\xA2\xC2\x82");
    EXPECT_EQ(analyse::valid_utf8(std::string("a\0b", 3)), std::string("a\0b", 3));
}

}  // namespace orvelin::test
