#include "support/file_replacement.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "support/file_size_limit.h"
#include "support/temporary_directory.h"

namespace orvelin::test {

namespace {

namespace fs = std::filesystem;

class FileReplacementTest : public testing::Test {
 protected:
    std::string path(std::string const& name) const { return directory_.file(name); }

    void create(std::string const& name, std::string const& content) const {
        std::ofstream(path(name)) << content;
    }
    std::string content(std::string const& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::ptrdiff_t files() const {
        return std::distance(fs::directory_iterator(directory_.path()), {});
    }
    mode_t mode(std::string const& name) const {
        struct stat status {};
        EXPECT_EQ(stat(path(name).c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    /// The message of a write; empty when it succeeds.
    static std::string write_fault(std::string const& target, std::string const& text) {
        try {
            tools::write_file(target, text);
        } catch (std::runtime_error const& error) {
            return error.what();
        }
        return "";
    }

    TemporaryDirectory directory_;
};

}  // namespace

TEST_F(FileReplacementTest, writes_a_new_file) {
    std::string const text("one\0two\n", 8);
    tools::write_file(path("new"), text);
    EXPECT_EQ(content("new"), text);
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, a_new_file_has_the_permissions_of_any_new_file) {
    create("other", "");
    tools::write_file(path("new"), "");
    EXPECT_EQ(mode("new"), mode("other"));
}

TEST_F(FileReplacementTest, a_relative_name_is_one_in_the_working_directory) {
    fs::path const old = fs::current_path();
    fs::current_path(directory_.path());
    tools::write_file("new", "text");
    fs::current_path(old);
    EXPECT_EQ(content("new"), "text");
}

TEST_F(FileReplacementTest, replaces_a_file_and_keeps_its_permissions) {
    create("file", "a longer old text");
    fs::permissions(path("file"), fs::perms(0751));
    tools::write_file(path("file"), "new");
    EXPECT_EQ(content("file"), "new");
    EXPECT_EQ(mode("file"), mode_t{0751});
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, the_target_is_untouched_before_commit) {
    create("file", "old");
    tools::FileReplacement replacement(path("file"));
    std::ofstream(replacement.path()) << "new";
    EXPECT_EQ(fs::path(replacement.path()).parent_path(), directory_.path());
    EXPECT_EQ(content("file"), "old");
    replacement.commit();
    EXPECT_EQ(content("file"), "new");
}

TEST_F(FileReplacementTest, without_commit_the_temporary_file_goes_and_the_target_stays) {
    create("file", "old");
    {
        tools::FileReplacement const replacement(path("file"));
        EXPECT_EQ(files(), 2);
    }
    EXPECT_EQ(content("file"), "old");
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, two_replacements_of_one_file_do_not_meet) {
    tools::FileReplacement first(path("file"));
    tools::FileReplacement second(path("file"));
    std::ofstream(first.path()) << "first";
    std::ofstream(second.path()) << "second";
    second.commit();
    first.commit();
    EXPECT_EQ(content("file"), "first");
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, a_symbolic_link_stays_and_its_file_is_replaced) {
    fs::create_directory(path("folder"));
    create("folder/file", "old");
    fs::create_symlink("folder/file", path("link"));
    tools::write_file(path("link"), "new");
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_EQ(content("folder/file"), "new");
}

TEST_F(FileReplacementTest, refuses_what_is_no_file) {
    fs::create_directory(path("folder"));
    EXPECT_EQ(write_fault(path("folder"), "text"),
              "cannot write " + path("folder") + ": not a regular file");
    EXPECT_EQ(write_fault("/dev/null", "text"), "cannot write /dev/null: not a regular file");
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, refuses_a_folder_that_is_not_there) {
    EXPECT_EQ(write_fault(path("none/file"), "text"),
              "cannot write " + path("none/file") + ": No such file or directory");
}

TEST_F(FileReplacementTest, respects_write_protection) {
    create("file", "old");
    fs::permissions(path("file"), fs::perms(0444));
    std::string const fault = write_fault(path("file"), "new");
    // Nothing is write-protected from root.
    bool const root = getuid() == 0;
    EXPECT_EQ(fault, root ? "" : "cannot write " + path("file") + ": Permission denied");
    EXPECT_EQ(content("file"), root ? "new" : "old");
}

TEST_F(FileReplacementTest, a_full_disk_leaves_the_old_file) {
    create("file", "old");
    std::string fault;
    {
        FileSizeLimit const limit(1000);
        fault = write_fault(path("file"), std::string(100'000, 'x'));
    }
    EXPECT_EQ(fault, "cannot write " + path("file") + ": the write failed");
    EXPECT_EQ(content("file"), "old");
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, a_commit_that_fails_leaves_no_temporary_file) {
    {
        tools::FileReplacement replacement(path("file"));
        fs::create_directory(path("file"));
        EXPECT_THROW(replacement.commit(), std::runtime_error);
    }
    EXPECT_TRUE(fs::is_directory(path("file")));
    EXPECT_EQ(files(), 1);
}

}  // namespace orvelin::test
