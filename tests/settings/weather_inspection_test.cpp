// SPDX-License-Identifier: MIT
#include "settings/weather_inspection.h"

#include <gtest/gtest.h>

#include "gis/errors.h"
#include "tests/support/worlds.h"

namespace velmora {
namespace {

using Names = std::vector<std::string>;

TEST(WeatherInspection, TwoCharactersTellTheParameter) {
    EXPECT_TRUE(holdsParameter({"STN", "TM_Jan"}, WeatherParameter::Tmax));
    EXPECT_TRUE(holdsParameter({"STN", "TMAX"}, WeatherParameter::Tmax));
    EXPECT_FALSE(holdsParameter({"STN", "tm_Jan"}, WeatherParameter::Tmax));
    EXPECT_FALSE(holdsParameter({"STN", "T"}, WeatherParameter::Tmax));
    EXPECT_TRUE(holdsParameter({"STN", "TA_Jan"}, WeatherParameter::Tmean));
    EXPECT_FALSE(holdsParameter({}, WeatherParameter::Tmax));
}

TEST(WeatherInspection, OnlyMaximumTemperatureInAPlainTable) {
    const Names names = {"STN", "TM_Jan", "TM_Feb", "TM_Dec"};
    for (int p = 0; p < kWeatherParameters; ++p) {
        EXPECT_EQ(holdsParameter(names, static_cast<WeatherParameter>(p)), p == 0);
    }
}

TEST(WeatherInspection, HumidityIsNeverFound) {
    const Names names = {"STN", "RHM_Jan", "RHN_Jan", "RHA_Jan"};
    EXPECT_FALSE(holdsParameter(names, WeatherParameter::RHmax));
    EXPECT_FALSE(holdsParameter(names, WeatherParameter::RHmin));
    EXPECT_FALSE(holdsParameter(names, WeatherParameter::RHmean));
}

TEST(WeatherInspection, TheFirstFieldIsNoParameter) {
    EXPECT_FALSE(holdsParameter({"TM_ID", "WS_Jan"}, WeatherParameter::Tmax));
}

TEST(WeatherInspection, ReadsTheNamesThroughTheDataSource) {
    test::MemoryWorld world;
    test::FakePlatform& platform = world.platform;
    const test::Folder& folder = world.folder;
    platform.features().createTable(
        folder.file("wx 1.dbf"),
        {{"STN", FieldType::text, 10, 0}, {"TM_Jan", FieldType::number, 8, 2}}, {});
    EXPECT_EQ(weatherFieldNames(platform.connections(), folder.file("wx 1.dbf")),
              (Names{"STN", "TM_Jan"}));
    EXPECT_EQ(weatherQuery("/a/wx.dbf"), "SELECT * FROM /a/wx");
    EXPECT_THROW(weatherFieldNames(platform.connections(), "/none.dbf"), PlatformError);
}

}  // namespace
}  // namespace velmora
