// SPDX-License-Identifier: MIT
// How files take each other's names, and what is left of processes that are gone.
#include "platform/files/posix_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>

#include "gis/errors.h"
#include "gis/files.h"
#include "platform/files/file_system.h"
#include "tests/support/small_files.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

namespace fs = std::filesystem;

// The number of a process that has ended.
pid_t goneProcess() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    ::waitpid(child, nullptr, 0);
    return child;
}

struct PosixFiles : testing::Test {
    test::TempFolder folder;

    std::string make(const std::string& name, const std::string& content) const {
        fs::create_directories(folder.file(name));
        test::write(folder.file(name + "/hdr.adf"), content);
        return folder.file(name);
    }
    std::string content(const std::string& name) const {
        return test::contentOf(folder.file(name + "/hdr.adf"));
    }
    std::string left(pid_t process, const std::string& rest) const {
        return kUnfinishedPrefix + std::to_string(process) + rest;
    }
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder.path())) {
            all.push_back(entry.path().filename().string());
        }
        return all;
    }
};

TEST_F(PosixFiles, ATreeTakesANameInBothWays) {
    for (const Exchange exchange : {Exchange::whereItCan, Exchange::never}) {
        make("old", "old");
        replaceTree(make("new", "new"), folder.file("old"), exchange);
        EXPECT_EQ(content("old"), "new");
        EXPECT_THAT(names(), testing::ElementsAre("old"));
        replaceTree(make("new", "first"), folder.file("other"), exchange);
        EXPECT_EQ(content("other"), "first");
        fs::remove_all(folder.file("other"));
        test::write(folder.file("file"), "a file");
        replaceTree(make("new", "over a file"), folder.file("file"), exchange);
        EXPECT_EQ(content("file"), "over a file");
        fs::remove_all(folder.file("file"));
    }
}

TEST_F(PosixFiles, TheOldTreeStaysWhenTheNewOneCannotHaveItsName) {
    for (const Exchange exchange : {Exchange::whereItCan, Exchange::never}) {
        make("old", "old");
        EXPECT_THROW(replaceTree(folder.file("none"), folder.file("old"), exchange), PlatformError);
        EXPECT_EQ(content("old"), "old");
        EXPECT_THAT(names(), testing::ElementsAre("old"));
    }
}

TEST_F(PosixFiles, WhatIsLeftOfProcessesThatAreGoneIsSwept) {
    const pid_t gone = goneProcess();
    make(left(gone, "-TM_Jan"), "half");
    test::write(folder.file(left(gone, "-stations.dbf")), "half");
    test::write(folder.file("mine"), "mine");
    sweepUnfinished(folder.path());
    EXPECT_THAT(names(), testing::ElementsAre("mine"));
}

TEST_F(PosixFiles, WhatLivingProcessesWorkOnStays) {
    const std::string own = unfinishedPath(folder.file("TM_Jan"));
    fs::create_directory(own);
    const std::string elsewhere = left(goneProcess(), "@00000000-TM_Jan");  // another machine
    make(elsewhere, "half");
    test::write(folder.file(std::string(kUnfinishedPrefix) + "GridOP.mdb"), "no process told");
    sweepUnfinished(folder.path());
    EXPECT_TRUE(fs::exists(own));
    EXPECT_TRUE(fs::exists(folder.file(elsewhere)));
    EXPECT_EQ(names().size(), 3U);
}

// The number of a process that is gone may be another's by now, also this one's: it began after the
// last change.
TEST_F(PosixFiles, ANumberThatIsUsedAgainProtectsNothing) {
    const std::string old = unfinishedPath(folder.file("TM_Jan"));
    test::write(old, "half");
    sweepUnfinished(folder.path());
    EXPECT_TRUE(fs::exists(old));
    fs::last_write_time(old, fs::file_time_type::clock::now() - std::chrono::hours(72));
    sweepUnfinished(folder.path());
    EXPECT_TRUE(names().empty());
}

TEST_F(PosixFiles, WhatStoodAsideComesBack) {
    const pid_t gone = goneProcess();
    make(left(gone, "+TM_Jan"), "old");
    make(left(gone, "+TM_Feb"), "old");
    make("TM_Feb", "new");
    sweepUnfinished(folder.path());
    EXPECT_EQ(content("TM_Jan"), "old");
    EXPECT_EQ(content("TM_Feb"), "new");
    EXPECT_EQ(names().size(), 2U);
    EXPECT_EQ(fs::path(asidePath(folder.file("TM_Jan"))).parent_path(), folder.path());
}

TEST_F(PosixFiles, AFileThatCannotBeWrittenWholeIsAFailure) {
    FileSystem files;
    test::write(folder.file("a"), std::string(5000, 'x'));
    test::write(folder.file("old"), "old");
    const test::SmallFiles full(1000);
    EXPECT_THROW(writeWholeFile(folder.file("b"), std::string(5000, 'x')), PlatformError);
    EXPECT_THROW(files.copyFile(folder.file("a"), folder.file("old")), PlatformError);
    EXPECT_EQ(test::contentOf(folder.file("old")), "old");
    EXPECT_EQ(names().size(), 3U);
}

TEST_F(PosixFiles, SyncingFindsWhatIsNotThere) {
    setSyncing(true);
    EXPECT_THROW(syncToDisk(folder.file("none")), PlatformError);
    EXPECT_THROW(syncFileSystemOf(folder.file("none")), PlatformError);
    FileSystem files;
    EXPECT_NO_THROW(files.settle(folder.path()));
    EXPECT_THROW(files.settle(folder.file("none")), PlatformError);
    setSyncing(false);
    EXPECT_NO_THROW(files.settle(folder.file("none")));
}

}  // namespace
}  // namespace velmora::platform
