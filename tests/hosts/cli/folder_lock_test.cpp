// SPDX-License-Identifier: MIT
// Who may work in an output folder at the same time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>

#include "check/input_check.h"
#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "hosts/chain/copies.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

auto anotherRunWorks() {
    return testing::ThrowsMessage<PlatformError>(testing::HasSubstr("Another run is working"));
}

struct FolderLocks : testing::Test {
    test::RunFixture f;
    std::string out = f.folder.file("out");
    IPlatform& platform = f.application.platform();

    FolderLocks() {
        platform.rasters().openFromFolder(out)->save(std::array{RasterToSave{
            "IREF", std::make_shared<MemoryRaster>(Grid({4, 3, 0, 3, 1, ""}, 0.5F)), "GRID"}});
    }
    int copied(const std::string& name, const std::string& options = "") const {
        const std::string line = std::string(VELMORA_PROGRAM) + " grid copy '" + out + "/IREF' '" +
                                 out + "/" + name + "' " + options + " >/dev/null 2>&1";
        return std::system(line.c_str());
    }
    bool has(const std::string& name) const { return fs::exists(out + "/" + name); }
};

TEST_F(FolderLocks, ACopyHoldsTheLockOfItsFolder) {
    const StepInputs::Copy name{"IREF", "faef_500"};
    {
        const auto run = platform.files().lockFolder(out);
        EXPECT_THAT([&] { copyToName(platform, out, name); }, anotherRunWorks());
        EXPECT_NE(copied("faef_500"), 0);
        EXPECT_FALSE(has("faef_500"));
    }
    copyToName(platform, out, name);
    EXPECT_TRUE(has("faef_500"));
    EXPECT_EQ(copied("faef_500"), 0);
    EXPECT_EQ(copied("other", "--no-sync"), 0);
    EXPECT_TRUE(has("other"));
    EXPECT_FALSE(has(".velmora-lock"));
}

TEST_F(FolderLocks, TheCheckSharesTheFolderAndRemovesNothing) {
    const std::string unfinished = std::string(kUnfinishedPrefix) + "GridOP.mdb";
    test::write(out + "/" + unfinished, "half");
    const auto errors = [&] {
        std::vector<std::string> texts;
        for (const Finding& finding : checkInputs(platform, f.settings)) {
            if (finding.file == out) texts.push_back(finding.text);
        }
        return texts;
    };
    {
        const auto reader = platform.files().shareFolder(out);
        EXPECT_THAT(errors(), testing::IsEmpty());
    }
    {
        const auto run = platform.files().lockFolder(f.folder.path());
        EXPECT_THAT(errors(), testing::IsEmpty());  // of another folder
    }
    EXPECT_TRUE(has(unfinished));
    const auto run = platform.files().lockFolder(out);
    EXPECT_THAT(errors(), testing::ElementsAre(testing::HasSubstr("Another run is working")));
}

}  // namespace
}  // namespace velmora
