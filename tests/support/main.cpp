// The start of the tests. Where an opening book is installed they start again, in a view of the
// file system without it: all engines of the tests, in this process or another, look for one there.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "support/installed_book.h"
#include "support/test_config.h"

int main(int argc, char** argv) {
    if (orvelin::test::installed_book_in_sight() &&
        std::getenv("WITHOUT_INSTALLED_BOOK") == nullptr) {
        std::string const self = std::filesystem::read_symlink("/proc/self/exe");
        std::vector<char const*> command{orvelin::test::without_installed_book, self.c_str()};
        command.insert(command.end(), argv + 1, argv + argc + 1);
        execv(command[0], const_cast<char* const*>(command.data()));
        std::perror(command[0]);
        return 1;
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
