#include "protocol/communicator.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <thread>

namespace orvelin {
namespace {

using namespace std::chrono_literals;

/// A folder of its own as working directory, for the time of a test.
class CommunicatorLogTest : public ::testing::Test {
 protected:
    CommunicatorLogTest() : old_folder(std::filesystem::current_path()) {
        std::string name = ::testing::TempDir() + "orvelin_comm_XXXXXX";
        folder = mkdtemp(name.data());
        std::filesystem::current_path(folder);
    }
    ~CommunicatorLogTest() override {
        std::filesystem::current_path(old_folder);
        std::filesystem::remove_all(folder);
    }

    static std::string text_of(std::string const& name) {
        std::ifstream file(name);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    std::filesystem::path old_folder;
    std::filesystem::path folder;
};

TEST(CommunicatorTest, LinesForTheEngineComeOutFirstInFirstOut) {
    Communicator communicator;
    communicator.to_engine("one");
    communicator.to_engine("two");
    EXPECT_EQ(communicator.from_interface(), "one");
    communicator.to_engine("three");
    EXPECT_EQ(communicator.from_interface(), "two");
    EXPECT_EQ(communicator.from_interface(), "three");
    EXPECT_EQ(communicator.from_interface(), "");
}

TEST(CommunicatorTest, LinesForTheInterfaceComeOutFirstInFirstOut) {
    Communicator communicator;
    communicator.to_interface("one");
    communicator.to_interface("two");
    EXPECT_EQ(communicator.from_engine(), "one");
    EXPECT_EQ(communicator.from_engine(), "two");
    EXPECT_EQ(communicator.from_engine(), "");
}

TEST(CommunicatorTest, TheTwoQueuesAreApart) {
    Communicator communicator;
    communicator.to_engine("in");
    EXPECT_EQ(communicator.from_engine(), "");
    communicator.to_interface("out");
    EXPECT_EQ(communicator.from_interface(), "in");
    EXPECT_EQ(communicator.from_interface(), "");
    EXPECT_EQ(communicator.from_engine(), "out");
}

TEST(CommunicatorTest, ClearEmptiesBothQueues) {
    Communicator communicator;
    communicator.to_engine("in");
    communicator.to_interface("out");
    communicator.clear();
    EXPECT_EQ(communicator.from_interface(), "");
    EXPECT_EQ(communicator.from_engine(), "");
}

TEST(CommunicatorTest, TheIdIsNineBitsOfTheClockAndCanBeSet) {
    Communicator communicator;
    EXPECT_GE(communicator.id(), 0);
    EXPECT_LE(communicator.id(), 511);
    communicator.set_id(12345);
    EXPECT_EQ(communicator.id(), 12345);
}

/// No thread may hold both locks, a test's included.
template <typename Action>
std::string in_another_thread(Action action) {
    return std::async(std::launch::async, action).get();
}

TEST(CommunicatorTest, HoldingTheInterfaceToEngineLockBlocksOnlyThatQueue) {
    Communicator communicator;
    communicator.lock_interface_to_engine();
    EXPECT_EQ(in_another_thread([&] {
                  communicator.to_interface("free");
                  return communicator.from_engine();
              }),
              "free");
    std::future<void> push =
        std::async(std::launch::async, [&] { communicator.to_engine("blocked"); });
    EXPECT_EQ(push.wait_for(50ms), std::future_status::timeout);
    communicator.unlock_interface_to_engine();
    push.get();
    EXPECT_EQ(communicator.from_interface(), "blocked");
}

TEST(CommunicatorTest, HoldingTheEngineToInterfaceLockBlocksOnlyThatQueue) {
    Communicator communicator;
    communicator.lock_engine_to_interface();
    EXPECT_EQ(in_another_thread([&] {
                  communicator.to_engine("free");
                  return communicator.from_interface();
              }),
              "free");
    std::future<void> push =
        std::async(std::launch::async, [&] { communicator.to_interface("blocked"); });
    EXPECT_EQ(push.wait_for(50ms), std::future_status::timeout);
    communicator.unlock_engine_to_interface();
    push.get();
    EXPECT_EQ(communicator.from_engine(), "blocked");
}

TEST(CommunicatorTest, LinesOfAnotherThreadArriveWholeAndInOrder) {
    constexpr int count = 20000;
    Communicator communicator;
    std::thread writer([&] {
        for (int i = 0; i < count; ++i) {
            communicator.to_engine("line " + std::to_string(i));
        }
    });
    int next = 0;
    while (next < count) {
        std::string const line = communicator.from_interface();
        if (line.empty()) {
            continue;
        }
        ASSERT_EQ(line, "line " + std::to_string(next));
        ++next;
    }
    writer.join();
    EXPECT_EQ(communicator.from_interface(), "");
}

TEST_F(CommunicatorLogTest, EachOperationTracesBehindAPrefixOfThirtyCharacters) {
    Communicator communicator;
    communicator.set_id(77);
    communicator.set_log(true);
    communicator.to_engine("a");
    communicator.from_interface();
    communicator.to_interface("b");
    communicator.from_engine();
    EXPECT_EQ(text_of("comm_77.log"),
              "Communicator::to_engine       a\n"
              "Communicator::from_interface  a\n"
              "Communicator::to_interface    b\n"
              "Communicator::from_engine     b\n");
}

TEST_F(CommunicatorLogTest, EmptyLinesAreQueuedButNotTraced) {
    Communicator communicator;
    communicator.set_id(1);
    communicator.set_log(true);
    communicator.to_engine("");
    communicator.to_engine("x");
    EXPECT_EQ(communicator.from_interface(), "");
    EXPECT_EQ(communicator.from_interface(), "x");
    EXPECT_EQ(communicator.from_engine(), "");
    EXPECT_EQ(text_of("comm_1.log"),
              "Communicator::to_engine       x\n"
              "Communicator::from_interface  x\n");
}

TEST_F(CommunicatorLogTest, NothingIsTracedWhileTheLogIsOff) {
    Communicator communicator;
    communicator.set_id(2);
    communicator.to_engine("x");
    communicator.set_log(false);
    EXPECT_FALSE(std::filesystem::exists("comm_2.log"));
    communicator.set_log(true);
    communicator.set_log(false);
    communicator.to_engine("y");
    EXPECT_TRUE(std::filesystem::exists("comm_2.log"));
    EXPECT_EQ(text_of("comm_2.log"), "");
}

TEST_F(CommunicatorLogTest, SwitchingTheLogOnAgainFailsOnTheOpenFileWithoutAWord) {
    Communicator communicator;
    communicator.set_id(3);
    communicator.set_log(true);
    communicator.to_engine("x");
    communicator.set_log(false);
    communicator.set_log(true);
    communicator.to_engine("y");
    EXPECT_EQ(text_of("comm_3.log"), "Communicator::to_engine       x\n");
}

TEST_F(CommunicatorLogTest, ALogThatCannotBeOpenedIsNotReported) {
    std::filesystem::create_directory("comm_4.log");
    Communicator communicator;
    communicator.set_id(4);
    communicator.set_log(true);
    communicator.to_engine("x");
    EXPECT_EQ(communicator.from_interface(), "x");
}

}  // namespace
}  // namespace orvelin
