#include <cstddef>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include "endgame/egt4_pieces.h"
#include "support/lent_table.h"
#include "support/logic_error_text.h"
#include "support/temporary_directory.h"
#include "support/test_config.h"

namespace orvelin::test {

namespace {

/// Text of the std::runtime_error that the action throws, "no exception" when it throws none.
template <typename Action>
std::string runtime_error_text(Action action) {
    try {
        action();
    } catch (std::runtime_error const& error) {
        if (typeid(error) != typeid(std::runtime_error)) {
            return std::string("derived: ") + error.what();
        }
        return error.what();
    }
    return "no exception";
}

/// A byte that differs from its neighbours, of every value.
unsigned char pattern(unsigned int key) {
    return static_cast<unsigned char>(key * 7 + key / 256);
}

/// All the numbers of a table, the same one each time.
std::string numbers(std::size_t count, std::string const& number) {
    std::string text;
    text.reserve(count * (number.size() + 1));
    for (std::size_t i = 0; i < count; ++i) {
        text += number + ' ';
    }
    return text;
}

}  // namespace

class Egt4PiecesFile : public testing::Test {
 protected:
    std::string path(std::string const& name = "table.txt") const { return directory_.file(name); }

    void write(std::string const& text) const {
        std::ofstream file(path(), std::ios::binary);
        ASSERT_TRUE(file << text << std::flush);
    }

    std::string read() const {
        std::ifstream file(path(), std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    std::string save_error(std::string const& name) const {
        return runtime_error_text([&] { krkn_.save(name); });
    }
    std::string load_error() { return load_error(path()); }
    std::string load_error(std::string const& name) {
        return runtime_error_text([&] { krkn_.load(name); });
    }
    /// What loading tells when it fails at the number of the key.
    std::string failed_at(unsigned int key) const {
        return "Egt4Pieces::load(" + path() + ") failed    i=" + std::to_string(key) + "\n";
    }

    TemporaryDirectory directory_;
    Egt4Pieces krkn_{shared_attacks(), white_rook, black_knight};
};

TEST_F(Egt4PiecesFile, LoadsWhatItSavedInTheExactForm) {
    LentTable lent(white_queen, black_rook);
    std::string expected = "begin{KQKR}";
    for (unsigned int key = 0; key < lent.table().size(); ++key) {
        lent.byte(key) = pattern(key);
        if (key % 16 == 0) {
            expected += '\n';
        }
        expected += std::to_string(pattern(key)) + ' ';
    }
    expected += "\nend{KQKR}";
    lent.table().save(path());
    EXPECT_TRUE(read() == expected);

    Egt4Pieces loaded(shared_attacks(), white_queen, black_rook);
    EXPECT_FALSE(loaded == lent.table());
    loaded.load(path());
    EXPECT_TRUE(loaded == lent.table());
    EXPECT_TRUE(loaded.ready());
    EXPECT_EQ(loaded.progress(), 101);
    EXPECT_EQ(loaded.name(), "KQKR");
    EXPECT_EQ(loaded.eval(3U), 30000 - pattern(3));
    loaded.clear();
    EXPECT_EQ(loaded[1], Egt4Pieces::unknown);
}

TEST_F(Egt4PiecesFile, SavingRefusesAPathThatCannotBeWritten) {
    EXPECT_EQ(save_error(path("missing/table.txt")), "Egt4Pieces::save  error");
    EXPECT_EQ(save_error(directory_.path().string()), "Egt4Pieces::save  error");
    EXPECT_EQ(save_error(""), "Egt4Pieces::save  error");
}

TEST_F(Egt4PiecesFile, SavingTellsOfAFullDevice) {
    EXPECT_EQ(save_error("/dev/full"), "Egt4Pieces::save  error");
}

TEST_F(Egt4PiecesFile, LoadingRefusesWhatDoesNotBegin) {
    for (std::string const text :
         {"", " \n\t ", "table 1 2 3", "BEGIN{KRKN}\n1 2 3", "begi n{KRKN}", "1 begin{KRKN}"}) {
        write(text);
        EXPECT_EQ(load_error(), "Error: EGT not recognized") << text;
    }
    EXPECT_EQ(load_error(path("missing.txt")), "Error: EGT not recognized");
    EXPECT_EQ(load_error(directory_.path().string()), "Error: EGT not recognized");
    EXPECT_EQ(krkn_[0], Egt4Pieces::unknown);
}

TEST_F(Egt4PiecesFile, TruncatedFileNamesTheFailingKey) {
    write("begin{KRKN}");
    EXPECT_EQ(load_error(), failed_at(0));
    write("begin{KRKN}\n1 2 3 ");
    EXPECT_EQ(load_error(), failed_at(3));
    write("begin{KRKN}\n" + numbers(1000, "17"));
    EXPECT_EQ(load_error(), failed_at(1000));
    EXPECT_EQ(krkn_[999], 17);
}

TEST_F(Egt4PiecesFile, LoadingRefusesWhatIsNoNumber) {
    for (std::string const text : {"1 2 x 4", "1 2 99999999999999999999 4", "1 2 -2147483649 4",
                                   "1 2 , 4", "1 2x 4", "1 2 0x10"}) {
        write("begin{KRKN}\n" + text);
        unsigned int const key = text == "1 2 0x10" ? 3 : 2;
        EXPECT_EQ(load_error(), failed_at(key)) << text;
    }
}

TEST_F(Egt4PiecesFile, LoadingStoresTheLowByteOfANumber) {
    write("begin{KRKN} 256 -1 300 +7 2147483647 -2147483648 0128");
    EXPECT_EQ(load_error(), failed_at(7));
    std::vector<int> stored;
    for (unsigned int key = 0; key < 7; ++key) {
        stored.push_back(krkn_[key]);
    }
    EXPECT_EQ(stored, (std::vector<int>{0, 255, 44, 7, 255, 0, 128}));
}

TEST_F(Egt4PiecesFile, HalfReadTableHasNoValues) {
    LentTable lent(white_rook, black_knight, 5);
    lent.open();
    ASSERT_EQ(lent.table().eval(2U), 29995);
    write("begin{KRKN}\n7 7 7");
    EXPECT_EQ(runtime_error_text([&] { lent.table().load(path()); }), failed_at(3));
    EXPECT_EQ(lent.table().progress(), -1);
    EXPECT_EQ(lent.table().eval(2U), 255);
    EXPECT_EQ(lent.byte(2U), 7);
    EXPECT_EQ(lent.byte(3U), 5);
}

TEST_F(Egt4PiecesFile, MemoryOfItsOwnIsGivenBack) {
    write("begin{KRKN}\n7 7 7");
    EXPECT_EQ(load_error(), failed_at(3));
    EXPECT_EQ(krkn_[2], 7);
    krkn_.clear();
    EXPECT_EQ(krkn_[2], Egt4Pieces::unknown);
    EXPECT_EQ(load_error(), failed_at(3));
    EXPECT_EQ(krkn_[2], 7);
    std::vector<unsigned char> memory(krkn_.size(), 9);
    krkn_.set_memory(memory.data());
    EXPECT_EQ(krkn_[2], 9);
}

TEST_F(Egt4PiecesFile, LoadingIntoNoBorrowedMemoryFails) {
    write("begin{KRKN}\n7 7 7");
    krkn_.set_memory(nullptr);
    EXPECT_EQ(logic_error_text([&] { krkn_.load(path()); }), "Egt4Pieces::allocate  no memory");
}

TEST_F(Egt4PiecesFile, FirstWordKqkrSetsQueenAndRook) {
    for (std::string const word : {"begin{KQKR}", "xKQKRbeginx", "begin{KBNK}{KQKR}"}) {
        Egt4Pieces table(shared_attacks(), white_rook, black_knight);
        write(word + " 1");
        EXPECT_EQ(runtime_error_text([&] { table.load(path()); }), failed_at(1));
        EXPECT_EQ(table.piece1_id(), white_queen);
        EXPECT_EQ(table.piece2_id(), black_rook);
        EXPECT_EQ(table.name(), "KQKR");
    }
}

TEST_F(Egt4PiecesFile, FirstWordKbnkSetsABlackKnightAndAWhiteBishop) {
    Egt4Pieces table(shared_attacks(), white_knight, white_bishop);
    write("begin{KBNK} 1");
    EXPECT_EQ(runtime_error_text([&] { table.load(path()); }), failed_at(1));
    EXPECT_EQ(table.piece1_id(), 10);
    EXPECT_EQ(table.piece2_id(), 3);
    EXPECT_EQ(table.name(), "KBNK");
    table.set_key(63U << 13 | 40U << 7 | 38U << 1);
    EXPECT_EQ(logic_error_text([&] { table.is_legal(); }), "Egt4Pieces::is_legal() unkown piece 1");
}

TEST_F(Egt4PiecesFile, AnyOtherFirstWordLeavesThePieces) {
    for (std::string const word : {"begin{KRKN}", "begin", "begin{kbnk}", "begin{"}) {
        Egt4Pieces table(shared_attacks(), white_queen, black_knight);
        write(word + " 1");
        EXPECT_EQ(runtime_error_text([&] { table.load(path()); }), failed_at(1));
        EXPECT_EQ(table.piece1_id(), white_queen);
        EXPECT_EQ(table.piece2_id(), black_knight);
        EXPECT_EQ(table.name(), "unknown");
    }
}

TEST_F(Egt4PiecesFile, EachOfThreeLettersEndsTheTable) {
    LentTable lent(white_rook, black_knight, 3);
    Egt4Pieces& table = lent.table();
    std::string const all = "begin{KRKN}\n" + numbers(table.size(), "1");
    std::vector<std::string> words = {"e", "xn", "xxd", "x", "dne"};
    if (!short_tests) {
        words.insert(words.end(), {"end{KRKN}", "xxnd", "", "x e", "7"});
    }
    for (std::string const& word : words) {
        bool const ends =
            word == "e" || word == "xn" || word == "xxd" || word == "end{KRKN}" || word == "dne";
        write(all + "\n" + word);
        EXPECT_EQ(runtime_error_text([&] { table.load(path()); }),
                  ends ? "no exception" : "Error while reading EGT")
            << word;
        EXPECT_EQ(table.progress(), ends ? 101 : -1) << word;
        EXPECT_EQ(table[table.size() - 1], 1);
        table.clear();
    }
    EXPECT_TRUE(lent.guards_whole());
}

TEST_F(Egt4PiecesFile, BorrowedMemoryIsWrittenByLoading) {
    LentTable lent(white_rook, black_knight, 3);
    write("begin{KRKN}\n" + numbers(lent.table().size(), "6") + "end{KRKN} and more");
    lent.table().load(path());
    EXPECT_EQ(lent.byte(0U), 6);
    EXPECT_EQ(lent.byte(lent.table().size() - 1), 6);
    EXPECT_TRUE(lent.guards_whole());
    EXPECT_TRUE(lent.table().ready());
    lent.table().clear();
    EXPECT_EQ(lent.table()[0], 6);
}

}  // namespace orvelin::test
