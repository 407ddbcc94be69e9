// SPDX-License-Identifier: MIT
#include "gis/working_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "tests/support/fakes.h"

namespace velmora {
namespace {

// Notes what happens to the folder, in its order.
struct NotingFiles : test::MemoryFiles {
    struct Lock : IFolderLock {
        explicit Lock(std::vector<std::string>& events) : events_(events) {}
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        ~Lock() override { events_.emplace_back("free"); }
        std::vector<std::string>& events_;
    };
    std::unique_ptr<IFolderLock> lockFolder(const std::string& folder) override {
        if (folder == "taken") throw PlatformError("taken");
        events.push_back("lock " + folder);
        return std::make_unique<Lock>(events);
    }
    void settle(const std::string& folder) override {
        events.push_back("settle " + folder);
        if (settlingFails) throw PlatformError("no space");
    }
    std::vector<std::string> events;
    bool settlingFails = false;
};

using testing::ElementsAre;

TEST(WorkingFolder, IsSettledOnceBeforeItIsFree) {
    NotingFiles files;
    WorkingFolder(files, "out").settle();
    EXPECT_THAT(files.events, ElementsAre("lock out", "settle out", "free"));
}

TEST(WorkingFolder, IsSettledWhenTheWorkFails) {
    NotingFiles files;
    const auto fail = [&] {
        const WorkingFolder folder(files, "out");
        throw PlatformError("no month");
    };
    EXPECT_THROW(fail(), PlatformError);
    EXPECT_THAT(files.events, ElementsAre("lock out", "settle out", "free"));
    files.settlingFails = true;
    EXPECT_THAT(fail, testing::ThrowsMessage<PlatformError>("no month"));
}

TEST(WorkingFolder, TellsWhatCouldNotBeStoredAtTheEnd) {
    NotingFiles files;
    files.settlingFails = true;
    EXPECT_THAT([&] { WorkingFolder(files, "out").settle(); },
                testing::ThrowsMessage<PlatformError>("no space"));
    EXPECT_THAT(files.events, ElementsAre("lock out", "settle out", "free"));
}

TEST(WorkingFolder, OneThatIsTakenIsLeftAlone) {
    NotingFiles files;
    EXPECT_THROW(WorkingFolder(files, "taken"), PlatformError);
    EXPECT_TRUE(files.events.empty());
}

}  // namespace
}  // namespace velmora
