// SPDX-License-Identifier: MIT
#include "settings/stored_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "settings/settings_file.h"
#include "tests/support/memory_files.h"

namespace velmora {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;

struct StoredSettings : testing::Test {
    test::MemoryFiles files;
    RunSettings store() {
        RunSettings settings;
        settings.Zones = "/in/zones.shp";
        writeSettings(files, "/config/Zav.inf", settings);
        return settings;
    }
};

TEST_F(StoredSettings, AreTheRecordOfTheDefaultFile) {
    const RunSettings settings = store();
    EXPECT_EQ(storedSettings(files, "/config"), settings);
    EXPECT_EQ(requiredSettings(files, "/config"), settings);
}

TEST_F(StoredSettings, AreNoneBeforeTheFirstApply) {
    EXPECT_FALSE(storedSettings(files, "/config").has_value());
    EXPECT_THAT([&] { requiredSettings(files, "/config"); },
                ThrowsMessage<PlatformError>("Run Settings First,Please!"));
}

TEST_F(StoredSettings, ADamagedFileIsNamed) {
    store();
    files.files["/config/Zav.inf"].resize(20);
    const auto named =
        ThrowsMessage<PlatformError>(AllOf(HasSubstr("/config/Zav.inf"), HasSubstr("Zones")));
    EXPECT_THAT([&] { storedSettings(files, "/config"); }, named);
    EXPECT_THAT([&] { requiredSettings(files, "/config"); }, named);
}

}  // namespace
}  // namespace velmora
