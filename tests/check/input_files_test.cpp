// SPDX-License-Identifier: MIT
// The check over files of the disk whose bytes are damaged, or that it must leave alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "check/input_check.h"
#include "platform/files/file_system.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

struct InputFiles : testing::Test {
    test::RunFixture f;
    std::vector<std::string> lines() {
        std::vector<std::string> all;
        for (const Finding& finding : checkInputs(f.application.platform(), f.settings)) {
            all.push_back(findingLine(finding));
        }
        return all;
    }
};

TEST_F(InputFiles, WhatTheIrrigationStepsNeed) {
    f.settings.Zones = f.folder.file("domain.shp");
    f.settings.LandCover = f.folder.file("domain.shp");
    EXPECT_THAT(lines(), Contains(HasSubstr("error: " + f.settings.LandCover +
                                            ": Descriptio: the field is missing")));
    EXPECT_THAT(lines(), Contains(HasSubstr("note: " + f.folder.file("IrDB.mdb") +
                                            ": there is no irrigation database yet")));
    test::write(f.folder.file("IrDB.mdb"), "x");
    EXPECT_THAT(lines(), testing::Not(Contains(HasSubstr("irrigation database"))));
}

// The copy that stands for one is the step's to make.
TEST_F(InputFiles, AnAccessDatabaseIsLeftAlone) {
    f.settings.Zones = f.settings.LandCover = f.folder.file("domain.shp");
    const std::string path = f.folder.file("IrDB.mdb");
    test::write(path, std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4096, '\0'));
    EXPECT_THAT(lines(), Contains(HasSubstr("note: " + path + ": is an Access file")));
    EXPECT_FALSE(f.application.platform().files().fileExists(path + ".sqlite"));
}

// Each input, cut to some part of it, is an error that names the file.
TEST_F(InputFiles, ACutInputIsAnError) {
    const auto layer = [&](const std::string& name) {
        f.application.platform().features().createFeatureClass(
            f.folder.file(name + ".shp"), true, f.geometry().crs,
            {{"NAME", FieldType::text, 20, 0}},
            {rectangle({400000, 4498000, 404000, 4500000}, {std::string("A")}),
             rectangle({404000, 4498000, 406000, 4500000}, {std::string("B")})});
        return f.folder.file(name + ".shp");
    };
    f.settings.Zones = layer("zones");
    f.settings.ZoneField = "NAME";
    f.settings.LandCover = layer("landcover");
    f.application.platform().features().createTable(
        f.folder.file("kc.dbf"), {{"CropType", FieldType::text, 20, 0}}, {{std::string("Barley")}});
    f.settings.KcTable = f.folder.file("kc.dbf");
    for (const std::string name :
         {"zones.shp", "zones.shx", "zones.dbf", "landcover.shp", "landcover.dbf", "weather.dbf",
          "stations.dbf", "stations.shp", "domain.shp", "kc.dbf"}) {
        const std::string path = f.folder.file(name);
        const std::string whole = test::contentOf(path);
        test::write(path, whole.substr(0, whole.size() * 6 / 10));
        EXPECT_THAT(lines(),
                    Contains(testing::AllOf(testing::StartsWith("error: "),
                                            HasSubstr(path + " is damaged or cut short"))));
        test::write(path, whole);
    }
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("damaged"))));
}

TEST_F(InputFiles, ADamagedShapeIsAnError) {
    const std::string path = f.folder.file("domain.shp");
    f.settings.Zones = path;
    std::string bytes = test::contentOf(path);
    bytes[100 + 8 + 36] = 7;  // parts of its polygon
    test::write(path, bytes);
    EXPECT_THAT(lines(), Contains(testing::AllOf(testing::StartsWith("error: " + path + ": "),
                                                 HasSubstr("Record 1 of " + path))));
}

TEST_F(InputFiles, NumbersThatAreNoneAreErrorsAndTheRestIsChecked) {
    f.makeWeather(f.stations(),
                  [](const std::string& p, const test::Station& s, int m) -> FieldValue {
                      if (p == "TM_" && s.name == "S4" && m == 6) return 7777.0;
                      if (p == "TN_" && s.name == "S5" && m == 7) return 88.0;
                      return test::RunFixture::usualWeather(p, s, m);
                  });
    const std::string path = f.folder.file("weather.dbf");
    std::string bytes = test::contentOf(path);
    bytes.replace(bytes.find(" 7777.0000"), 10, "   7777,00");
    test::write(path, bytes);
    const auto all = lines();
    EXPECT_THAT(all, Contains(testing::AllOf(
                         testing::StartsWith("error: " + path + ": TM_Jun: "),
                         HasSubstr("record 5, field TM_Jun: \"7777,00\" is no number"))));
    EXPECT_THAT(all, Contains(HasSubstr("TN_Jul: S5: 88 is not between")));
}

TEST_F(InputFiles, MoreCellsThanTheDiskTakes) {
    class FullDisk : public platform::FileSystem {
      public:
        std::optional<std::uint64_t> freeSpace(const std::string&) const override { return 1000; }
    } full;
    f.world.platform.otherFiles = &full;
    EXPECT_THAT(lines(),
                Contains(testing::AllOf(testing::StartsWith("error: "),
                                        HasSubstr("37 x 21 cells, whose reference ET takes "),
                                        HasSubstr(" has 1 MB left: make room"))));
}

}  // namespace
}  // namespace velmora
