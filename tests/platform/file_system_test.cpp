// SPDX-License-Identifier: MIT
#include "platform/files/file_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>

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

TEST_F(Files, LockingRemovesWhatKilledRunsLeft) {
    const std::string left = folder.file(std::string(kUnfinishedPrefix) + "99-TM_Jan");
    std::filesystem::create_directory(left);
    test::write(left + "/w001001.adf", "half");
    test::write(folder.file("mine.txt"), "x");
    files.lockFolder(folder.path());
    EXPECT_FALSE(std::filesystem::exists(left));
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
    EXPECT_GT(files.freeMemory(), 1U << 20U);
}

}  // namespace
}  // namespace velmora::platform
