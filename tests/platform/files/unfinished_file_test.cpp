// SPDX-License-Identifier: MIT
#include "platform/files/unfinished_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gis/errors.h"
#include "gis/files.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"
#include "platform/tables/unfinished_database.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

namespace fs = std::filesystem;

struct UnfinishedFiles : testing::Test {
    test::TempFolder folder;

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder.path())) {
            all.push_back(entry.path().filename().string());
        }
        return all;
    }
    // What a process that has ended left.
    std::string leftover() const {
        const pid_t child = ::fork();
        if (child == 0) ::_exit(0);
        ::waitpid(child, nullptr, 0);
        std::string path = folder.file(kUnfinishedPrefix + std::to_string(child) + "-left");
        test::write(path, "half");
        return path;
    }
};

TEST_F(UnfinishedFiles, TheNameStandsForTheOldOneUntilTheNewOneIsFinished) {
    test::write(folder.file("a"), "old");
    {
        UnfinishedFile file(folder.file("a"));
        EXPECT_EQ(parentFolderName(file.path()), folder.path());
        EXPECT_TRUE(tellsItsProcess(fileName(file.path())));
        test::write(file.path(), "new");
        EXPECT_EQ(test::contentOf(folder.file("a")), "old");
        file.finish();
    }
    EXPECT_EQ(test::contentOf(folder.file("a")), "new");
    EXPECT_THAT(names(), testing::ElementsAre("a"));
}

TEST_F(UnfinishedFiles, WhatIsNotFinishedIsRemoved) {
    test::write(folder.file("a"), "old");
    {
        const UnfinishedFile file(folder.file("a"));
        test::write(file.path(), "half");
        const UnfinishedFile tree(folder.file("b"));
        fs::create_directory(tree.path());
        test::write(tree.path() + "/hdr.adf", "half");
    }
    EXPECT_EQ(test::contentOf(folder.file("a")), "old");
    EXPECT_THAT(names(), testing::ElementsAre("a"));
}

TEST_F(UnfinishedFiles, WhatCannotHaveItsNameIsRemoved) {
    fs::create_directory(folder.file("a"));
    const auto finished = [&] {
        UnfinishedFile file(folder.file("a"));
        test::write(file.path(), "new");
        file.finish();
    };
    EXPECT_THAT(finished,
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("Cannot replace")));
    EXPECT_THAT(names(), testing::ElementsAre("a"));
}

TEST_F(UnfinishedFiles, AFolderTakesTheNameOfAnother) {
    fs::create_directory(folder.file("g"));
    test::write(folder.file("g/old"), "old");
    UnfinishedFile tree(folder.file("g"));
    fs::create_directory(tree.path());
    test::write(tree.path() + "/new", "new");
    tree.finishTree();
    EXPECT_FALSE(fs::exists(folder.file("g/old")));
    EXPECT_EQ(test::contentOf(folder.file("g/new")), "new");
    EXPECT_THAT(names(), testing::ElementsAre("g"));
}

TEST_F(UnfinishedFiles, OneThatIsMovedIsRemovedOnce) {
    std::optional<UnfinishedFile> last;
    {
        UnfinishedFile first(folder.file("a"));
        test::write(first.path(), "new");
        last.emplace(std::move(first));
    }
    EXPECT_EQ(names().size(), 1U);
    last.reset();
    EXPECT_TRUE(names().empty());
}

TEST_F(UnfinishedFiles, WhatOthersLeftIsSweptUnlessTheFolderWasSweptBefore) {
    const std::string left = leftover();
    { const UnfinishedFile file(folder.file("a"), Leftovers::left); }
    EXPECT_TRUE(fs::exists(left));
    { const UnfinishedFile file(folder.file("a")); }
    EXPECT_FALSE(fs::exists(left));
}

TEST_F(UnfinishedFiles, WhatAnOlderProcessOfTheSameNumberLeftIsRemoved) {
    test::write(unfinishedPath(folder.file("a")), "half");
    const UnfinishedFile file(folder.file("a"), Leftovers::left);
    EXPECT_FALSE(fs::exists(file.path()));
}

// A journal beside a database is undone in it, whoever left it there.
TEST_F(UnfinishedFiles, NoJournalStaysBesideADatabase) {
    test::write(folder.file("d.mdb-journal"), "of the old one");
    const std::string begun = unfinishedPath(folder.file("d.mdb"));
    test::write(begun + "-journal", "of an older process of this number");
    {
        UnfinishedDatabase database(folder.file("d.mdb"));
        EXPECT_EQ(database.path(), begun);
        EXPECT_FALSE(fs::exists(begun + "-journal"));
        test::write(database.path(), "new");
        database.finish();
    }
    EXPECT_THAT(names(), testing::ElementsAre("d.mdb"));
    {
        const UnfinishedDatabase database(folder.file("d.mdb"));
        test::write(database.path(), "half");
        test::write(database.path() + "-journal", "half");
    }
    EXPECT_THAT(names(), testing::ElementsAre("d.mdb"));
}

}  // namespace
}  // namespace velmora::platform
