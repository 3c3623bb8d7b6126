#include "book/book_record.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "book/bk_move.h"
#include "support/book_file.h"

namespace orvelin {
namespace {

using test::book_entry;

std::string bytes_of(Book_record const& entry) {
    return std::string(entry.bytes(), Book_record::size);
}

/// Sixteen bytes, all different, with the top bit set in some of each field.
const std::string sample("\x81\x02\xA3\x04\xC5\x06\xE7\xF8\x0A\x8B\xFE\xDC\x90\x12\xB4\x56", 16);

TEST(BookRecordTest, StartsAsZeros) {
    const Book_record entry;
    EXPECT_EQ(bytes_of(entry), std::string(16, '\0'));
    EXPECT_EQ(entry.get_key(), 0U);
    EXPECT_TRUE(entry.get_move().nomove());
    EXPECT_EQ(entry.get_weight(), 0U);
    EXPECT_EQ(entry.get_learn(), 0U);
}

TEST(BookRecordTest, ReadsBigEndianNumbers) {
    const Book_record entry(sample.data());
    EXPECT_EQ(entry.get_key(), 0x8102A304C506E7F8U);
    EXPECT_EQ(entry.get_move().dump(), 0x0A8B);
    EXPECT_EQ(entry.get_weight(), 0xFEDC);
    EXPECT_EQ(entry.get_learn(), 0x9012B456U);
}

TEST(BookRecordTest, WritesBigEndianNumbers) {
    Book_record entry;
    entry.set_key(0x8102A304C506E7F8U);
    entry.set_move(BKmove(0x0A8B));
    entry.set_weight(0xFEDC);
    entry.set_learn(0x9012B456U);
    EXPECT_EQ(bytes_of(entry), sample);
}

TEST(BookRecordTest, CopiesSixteenBytesAndNoMore) {
    std::string bytes = sample;
    const Book_record entry(bytes.data());
    bytes.assign(16, '\0');
    EXPECT_EQ(bytes_of(entry), sample);
}

TEST(BookRecordTest, EachFieldIsSetAlone) {
    const std::string ones(16, '\xFF');
    Book_record entry(ones.data());
    entry.set_key(0);
    EXPECT_EQ(bytes_of(entry), std::string(8, '\0') + std::string(8, '\xFF'));
    entry = Book_record(ones.data());
    entry.set_move(BKmove());
    EXPECT_EQ(bytes_of(entry),
              std::string(8, '\xFF') + std::string(2, '\0') + std::string(6, '\xFF'));
    entry = Book_record(ones.data());
    entry.set_weight(0);
    EXPECT_EQ(bytes_of(entry),
              std::string(10, '\xFF') + std::string(2, '\0') + std::string(4, '\xFF'));
    entry = Book_record(ones.data());
    entry.set_learn(0);
    EXPECT_EQ(bytes_of(entry), std::string(12, '\xFF') + std::string(4, '\0'));
}

TEST(BookRecordTest, MoveKeepsThePromotionsOneToFourOnly) {
    int const squares = 0x0FFF;
    for (int field = 0; field <= 7; ++field) {
        for (int const top : {0, 0x8000}) {
            const Book_record entry = book_entry(1, top | field << 12 | squares, 1);
            int const kept = field >= 1 && field <= 4 ? field : 0;
            EXPECT_EQ(entry.get_move().dump(), kept << 12 | squares) << field << " " << top;
        }
    }
}

TEST(BookRecordTest, MoveIsStoredWholeAndFilteredOnTheWayOut) {
    const Book_record entry = book_entry(0, 0xF321, 0);
    EXPECT_EQ(bytes_of(entry).substr(8, 2), "\xF3\x21");
    EXPECT_EQ(entry.get_move().dump(), 0x0321);
}

TEST(BookRecordTest, OrderIsThatOfTheUnsignedKeys) {
    const std::uint64_t keys[] = {0,
                                  1,
                                  0xFF,
                                  0x100,
                                  0x7FFFFFFFFFFFFFFFU,
                                  0x8000000000000000U,
                                  0x80000000000000FFU,
                                  0xFFFFFFFFFFFFFFFFU};
    for (const std::uint64_t left : keys) {
        for (const std::uint64_t right : keys) {
            const Book_record a = book_entry(left, 0, 0);
            const Book_record b = book_entry(right, 0, 0);
            EXPECT_EQ(a < b, left < right) << left << " " << right;
            EXPECT_EQ(a <= b, left <= right) << left << " " << right;
            EXPECT_EQ(a == b, left == right) << left << " " << right;
            EXPECT_EQ(a >= b, left >= right) << left << " " << right;
            EXPECT_EQ(a > b, left > right) << left << " " << right;
        }
    }
}

TEST(BookRecordTest, OrderSeesNothingBehindTheKey) {
    Book_record a = book_entry(7, 0x0FFF, 0xFFFF);
    a.set_learn(0xFFFFFFFFU);
    const Book_record b = book_entry(7, 0, 0);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a <= b);
    EXPECT_TRUE(a >= b);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(a > b);
    EXPECT_TRUE(a < book_entry(8, 0, 0));
}

}  // namespace
}  // namespace orvelin
