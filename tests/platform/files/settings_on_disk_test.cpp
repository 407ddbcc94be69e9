// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "platform/files/file_system.h"
#include "settings/settings_file.h"
#include "tests/support/temp_folder.h"

namespace velmora {
namespace {

TEST(SettingsOnDisk, OverwritingKeepsTheTail) {
    const test::TempFolder folder;
    platform::FileSystem files;
    RunSettings settings;
    settings.DEM = "/d";
    settings.CellSize = 500;
    test::write(folder.file("Zav.inf"), std::string(1000, '\x7F'));
    writeSettings(files, folder.file("Zav.inf"), settings);
    EXPECT_EQ(test::contentOf(folder.file("Zav.inf")).size(), 1000U);
    EXPECT_EQ(readSettings(files, folder.file("Zav.inf")), settings);
}

TEST(SettingsOnDisk, HostileFilesAreReadNoFurtherThanARecord) {
    const test::TempFolder folder;
    const platform::FileSystem files;
    EXPECT_THROW(readSettings(files, "/dev/zero"), PlatformError);
    test::write(folder.file("big.inf"), std::string(3000000, '\xFF'));
    // Every count is 65535; the record still ends within its largest size.
    EXPECT_EQ(readSettings(files, folder.file("big.inf")).DEM.size(), 65535U * 2);
}

}  // namespace
}  // namespace velmora
