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

TEST_F(FileReplacementTest, WritesANewFile) {
    std::string const text("one\0two\n", 8);
    tools::write_file(path("new"), text);
    EXPECT_EQ(content("new"), text);
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, ANewFileHasThePermissionsOfAnyNewFile) {
    create("other", "");
    tools::write_file(path("new"), "");
    EXPECT_EQ(mode("new"), mode("other"));
}

TEST_F(FileReplacementTest, ARelativeNameIsOneInTheWorkingDirectory) {
    fs::path const old = fs::current_path();
    fs::current_path(directory_.path());
    tools::write_file("new", "text");
    fs::current_path(old);
    EXPECT_EQ(content("new"), "text");
}

TEST_F(FileReplacementTest, ReplacesAFileAndKeepsItsPermissions) {
    create("file", "a longer old text");
    fs::permissions(path("file"), fs::perms(0751));
    tools::write_file(path("file"), "new");
    EXPECT_EQ(content("file"), "new");
    EXPECT_EQ(mode("file"), mode_t{0751});
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, TheTargetIsUntouchedBeforeCommit) {
    create("file", "old");
    tools::FileReplacement replacement(path("file"));
    std::ofstream(replacement.path()) << "new";
    EXPECT_EQ(fs::path(replacement.path()).parent_path(), directory_.path());
    EXPECT_EQ(content("file"), "old");
    replacement.commit();
    EXPECT_EQ(content("file"), "new");
}

TEST_F(FileReplacementTest, WithoutCommitTheTemporaryFileGoesAndTheTargetStays) {
    create("file", "old");
    {
        tools::FileReplacement const replacement(path("file"));
        EXPECT_EQ(files(), 2);
    }
    EXPECT_EQ(content("file"), "old");
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, TwoReplacementsOfOneFileDoNotMeet) {
    tools::FileReplacement first(path("file"));
    tools::FileReplacement second(path("file"));
    std::ofstream(first.path()) << "first";
    std::ofstream(second.path()) << "second";
    second.commit();
    first.commit();
    EXPECT_EQ(content("file"), "first");
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, ASymbolicLinkStaysAndItsFileIsReplaced) {
    fs::create_directory(path("folder"));
    create("folder/file", "old");
    fs::create_symlink("folder/file", path("link"));
    tools::write_file(path("link"), "new");
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_EQ(content("folder/file"), "new");
}

TEST_F(FileReplacementTest, RefusesWhatIsNoFile) {
    fs::create_directory(path("folder"));
    EXPECT_EQ(write_fault(path("folder"), "text"),
              "cannot write " + path("folder") + ": not a regular file");
    EXPECT_EQ(write_fault("/dev/null", "text"), "cannot write /dev/null: not a regular file");
    EXPECT_EQ(files(), 1);
}

TEST_F(FileReplacementTest, RefusesAFolderThatIsNotThere) {
    EXPECT_EQ(write_fault(path("none/file"), "text"),
              "cannot write " + path("none/file") + ": No such file or directory");
}

TEST_F(FileReplacementTest, RespectsWriteProtection) {
    create("file", "old");
    fs::permissions(path("file"), fs::perms(0444));
    std::string const fault = write_fault(path("file"), "new");
    // Nothing is write-protected from root.
    bool const root = getuid() == 0;
    EXPECT_EQ(fault, root ? "" : "cannot write " + path("file") + ": Permission denied");
    EXPECT_EQ(content("file"), root ? "new" : "old");
}

TEST_F(FileReplacementTest, AFullDiskLeavesTheOldFile) {
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

TEST_F(FileReplacementTest, ACommitThatFailsLeavesNoTemporaryFile) {
    {
        tools::FileReplacement replacement(path("file"));
        fs::create_directory(path("file"));
        EXPECT_THROW(replacement.commit(), std::runtime_error);
    }
    EXPECT_TRUE(fs::is_directory(path("file")));
    EXPECT_EQ(files(), 1);
}

}  // namespace orvelin::test
