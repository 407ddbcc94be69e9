// SPDX-License-Identifier: MIT
#include "platform/files/file_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <thread>

#include "gis/errors.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

struct Files : testing::Test {
    test::TempFolder folder;
    FileSystem files;
};

TEST_F(Files, OneRunAtATimeInAFolder) {
    auto lock = files.lockFolder(folder.path());
    EXPECT_THAT(
        [&] { files.lockFolder(folder.path()); },
        testing::ThrowsMessage<PlatformError>(testing::HasSubstr("Another run is working")));
    lock.reset();
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    EXPECT_NO_THROW(files.lockFolder(folder.path()));
}

// A run's own unfinished work must not be swept by a copy, which takes the lock as well.
TEST_F(Files, ReadersShareTheFolderAndSweepNothing) {
    const std::string left = folder.file(std::string(kUnfinishedPrefix) + "GridOP.mdb");
    test::write(left, "half");
    auto first = files.shareFolder(folder.path());
    auto second = files.shareFolder(folder.path());
    EXPECT_TRUE(files.fileExists(left));
    first.reset();
    EXPECT_TRUE(files.fileExists(folder.file(".velmora-lock")));  // the second holds it
    second.reset();
    EXPECT_FALSE(files.fileExists(folder.file(".velmora-lock")));
    EXPECT_TRUE(files.fileExists(left));
}

TEST_F(Files, NobodyReadsWhileARunWorks) {
    const auto run = files.lockFolder(folder.path());
    EXPECT_THAT(
        [&] { files.shareFolder(folder.path()); },
        testing::ThrowsMessage<PlatformError>(testing::HasSubstr("Another run is working")));
}

TEST_F(Files, ARunWaitsForReaders) {
    auto reader = files.shareFolder(folder.path());
    std::thread later([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        reader.reset();
    });
    EXPECT_NO_THROW(files.lockFolder(folder.path()));
    later.join();
}

// Whoever lets go removes the file; those who opened it before must not lock what has no name.
TEST_F(Files, ManyTakeTurns) {
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::atomic<int> turns = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            FileSystem own;
            for (int i = 0; i < 200; ++i) {
                try {
                    const auto lock = own.lockFolder(folder.path());
                    const int now = ++inside;
                    if (now > most) most = now;
                    --inside;
                    ++turns;
                } catch (const PlatformError& e) {
                    EXPECT_THAT(e.what(), testing::HasSubstr("Another run is working"));
                }
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(most, 1);
    EXPECT_GT(turns, 100);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(Files, LockingRemovesWhatKilledRunsLeft) {
    const pid_t gone = ::fork();
    if (gone == 0) ::_exit(0);
    ::waitpid(gone, nullptr, 0);
    const std::string left = folder.file(kUnfinishedPrefix + std::to_string(gone) + "-TM_Jan");
    std::filesystem::create_directory(left);
    test::write(left + "/w001001.adf", "half");
    const std::string nameless = folder.file(std::string(kUnfinishedPrefix) + "GridOP.mdb");
    test::write(nameless, "half");
    test::write(folder.file("mine.txt"), "x");
    files.lockFolder(folder.path());
    EXPECT_FALSE(std::filesystem::exists(left));
    EXPECT_FALSE(std::filesystem::exists(nameless));
    EXPECT_TRUE(files.fileExists(folder.file("mine.txt")));
}

TEST(Clock, TheYearIsTheUsers) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    EXPECT_EQ(SystemClock().currentYear(), local.tm_year + 1900);
}

TEST_F(Files, FoldersThatDoNotServe) {
    EXPECT_THAT([&] { files.lockFolder(folder.file("none")); },
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("does not exist")));
    EXPECT_THROW(files.lockFolder("/proc"), PlatformError);  // nobody writes there
}

TEST_F(Files, ReadsBeginningsAndWritesOver) {
    test::write(folder.file("a"), "0123456789");
    EXPECT_EQ(files.readBeginning(folder.file("a"), 4), "0123");
    files.writeOver(folder.file("a"), "abc");
    EXPECT_EQ(test::contentOf(folder.file("a")), "abc3456789");
    files.writeOver(folder.file("b"), "new");
    EXPECT_EQ(test::contentOf(folder.file("b")), "new");
    EXPECT_THROW(files.readBeginning(folder.file("none"), 4), PlatformError);
    EXPECT_THROW(files.readBeginning("/dev/zero", 4), PlatformError);
    EXPECT_THROW(files.writeOver(folder.file("none/b"), "x"), PlatformError);
    files.replaceFile(folder.file("b"), folder.file("a"));
    EXPECT_EQ(test::contentOf(folder.file("a")), "new");
    EXPECT_NO_THROW(files.deleteFile(folder.file("none")));
    EXPECT_TRUE(files.folderExists(files.specialFolder(SpecialFolder::temporary)));
    EXPECT_GT(files.freeSpace("/tmp").value(), 1U << 20U);
    EXPECT_FALSE(files.freeSpace("/none").has_value());
}

}  // namespace
}  // namespace velmora::platform
