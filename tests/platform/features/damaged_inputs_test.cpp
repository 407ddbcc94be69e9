// SPDX-License-Identifier: MIT
// Shapefiles and tables that are cut off, damaged or of another kind are refused by name, before
// anything of them is used; so are numbers that are none.
#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>

#include "gis/errors.h"
#include "platform/platform.h"
#include "platform/tables/dbase_numbers.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

using testing::AllOf;
using testing::HasSubstr;

struct DamagedInputs : testing::Test {
    static constexpr std::size_t kZones = 6;
    test::TempFolder folder;
    Platform platform;

    DamagedInputs() { make("zones"); }
    void make(const std::string& name, std::size_t zones = kZones) {
        std::vector<NewFeature> features;
        for (std::size_t i = 0; i < zones; ++i) {
            const double x = 10.0 * static_cast<double>(i);
            features.push_back(rectangle({x, 0, x + 10, 10 + x}, {"Zone", x + 0.5}));
        }
        platform.features().createFeatureClass(
            folder.file(name + ".shp"), true, "",
            {{"NAME", FieldType::text, 20, 0}, {"SHARE", FieldType::number, 10, 4}}, features);
    }
    std::string zones(const std::string& part) const { return folder.file("zones." + part); }

    // All that a step reads of the zones.
    double used() {
        const auto layer = platform.features().openFeatureClass(zones("shp"));
        double sum = layer->extent().width();
        for (const double area : layer->areas()) sum += area;
        for (std::size_t r = 0; r < layer->recordCount(); ++r) {
            sum += std::get<double>(layer->value(r, "SHARE"));
        }
        return sum;
    }
    // The message with which the zones are refused after a change of one of their files.
    std::string refused(const std::string& part, const std::function<void(std::string&)>& change) {
        const std::string whole = test::contentOf(zones(part));
        std::string bytes = whole;
        change(bytes);
        test::write(zones(part), bytes);
        std::string message = "read";
        try {
            used();
        } catch (const PlatformError& e) {
            message = e.what();
            place = e.place();
        }
        test::write(zones(part), whole);
        return message;
    }
    ErrorPlace place;  // of the failure that refused() met
    std::string withByte(const std::string& part, std::size_t at, int value) {
        return refused(part, [&](std::string& b) { b.at(at) = static_cast<char>(value); });
    }
};

TEST_F(DamagedInputs, AFileThatIsCutAnywhereIsNamed) {
    const double whole = used();
    for (const std::string part : {"shp", "shx", "dbf"}) {
        const std::size_t size = test::contentOf(zones(part)).size();
        for (std::size_t twentieth = 0; twentieth < 20; ++twentieth) {
            EXPECT_THAT(refused(part, [&](std::string& b) { b.resize(size * twentieth / 20); }),
                        HasSubstr(zones(part)))
                << twentieth;
        }
    }
    EXPECT_EQ(used(), whole);
}

TEST_F(DamagedInputs, SizesThatDisagreeWithTheHeaders) {
    EXPECT_THAT(refused("shp", [](std::string& b) { b += "xx"; }), HasSubstr(zones("shp")));
    EXPECT_THAT(refused("shx", [](std::string& b) { b += "xxxxxxxx"; }), HasSubstr(zones("shx")));
    EXPECT_THAT(withByte("shp", 0, 1), HasSubstr("does not begin as a shapefile"));
    EXPECT_THAT(withByte("shp", 26, 9), HasSubstr("its header says"));
    EXPECT_THAT(withByte("dbf", 10, 200), HasSubstr(zones("dbf")));  // the record length
    EXPECT_THAT(withByte("dbf", 10, 7), HasSubstr("wider than its records"));
    EXPECT_THAT(withByte("dbf", 32 + 16, 80), HasSubstr("wider than its records"));
    EXPECT_THAT(withByte("dbf", 4, 3), HasSubstr("behind the 3 records"));
    make("few", 4);
    std::filesystem::copy_file(folder.file("few.dbf"), zones("dbf"),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_THAT([&] { used(); }, testing::ThrowsMessage<PlatformError>(AllOf(
                                     HasSubstr("do not belong together"),
                                     HasSubstr("lists 6 shapes"), HasSubstr("has 4 records"))));
}

TEST_F(DamagedInputs, WhatProgramsLeaveBehindTheRecordsIsAllowed) {
    const std::string ends = test::contentOf(zones("dbf"));
    ASSERT_EQ(ends.back(), '\x1A');
    for (const std::string& behind :
         {std::string(), std::string("\x1A\x1A"), std::string(500, '\0'),
          "\x1A" + std::string(500, ' '), std::string("  \r\n")}) {
        EXPECT_EQ(
            refused("dbf", [&](std::string& b) { b = ends.substr(0, ends.size() - 1) + behind; }),
            "read");
    }
}

TEST_F(DamagedInputs, ADamagedRecordIsNamed) {
    // A record of a rectangle: 8 bytes of header, type, box, parts, points, first part, 5 points.
    const std::size_t third = 100 + 2 * (8 + 48 + 80);
    const auto named =
        AllOf(HasSubstr(zones("shp")), testing::ContainsRegex("(Record|record|Feature) 3 of"));
    EXPECT_THAT(withByte("shp", third + 8, 3), named);  // its type
    EXPECT_THAT(withByte("shp", third + 8, 77), named);
    EXPECT_THAT(withByte("shp", third + 7, 20), named);      // its length
    EXPECT_THAT(withByte("shp", third + 8 + 36, 0), named);  // no part
    EXPECT_THAT(withByte("shp", third + 8 + 36, 2), named);  // two
    EXPECT_THAT(withByte("shp", third + 8 + 40, 4), named);  // a point less
    EXPECT_THAT(withByte("shp", third + 8 + 43, 0x7F), named);
    EXPECT_THAT(withByte("shp", third + 8 + 44, 1), named);  // where its part begins
    EXPECT_THAT(withByte("shp", third + 8 + 44, 99), named);
    EXPECT_THAT(withByte("shx", 100 + 2 * 8 + 3, 0), named);
    EXPECT_THAT(withByte("shx", 100 + 2 * 8 + 1, 9), named);
    EXPECT_THAT(refused("shp",
                        [&](std::string& b) {
                            const double none = std::nan("");
                            std::memcpy(b.data() + third + 8 + 48, &none, 8);
                        }),
                AllOf(named, HasSubstr("is no number")));
}

TEST_F(DamagedInputs, ARecordWithoutAShapeIsNone) {
    const std::size_t third = 100 + 2 * (8 + 48 + 80);
    std::string bytes = test::contentOf(zones("shp"));
    bytes[third + 8] = 0;
    test::write(zones("shp"), bytes);
    const auto areas = platform.features().openFeatureClass(zones("shp"))->areas();
    EXPECT_THAT(areas, testing::ElementsAre(100, 200, 0, 400, 500, 600));
}

TEST_F(DamagedInputs, ADamagedPointIsNamed) {
    const std::string path = folder.file("p.shp");
    platform.features().createFeatureClass(path, false, "", {{"N", FieldType::number, 5, 0}},
                                           {{{{1, 2}}, {1.0}}, {{{3, 4}}, {2.0}}});
    std::string bytes = test::contentOf(path);
    const double none = std::nan("");
    std::memcpy(bytes.data() + 100 + 28 + 12, &none, 8);
    test::write(path, bytes);
    EXPECT_THAT([&] { platform.features().openFeatureClass(path)->points(""); },
                testing::ThrowsMessage<PlatformError>(HasSubstr("Feature 2 of " + path)));
    bytes[100 + 28 + 8] = 5;
    test::write(path, bytes);
    EXPECT_THAT([&] { platform.features().openFeatureClass(path)->points(""); },
                testing::ThrowsMessage<PlatformError>(HasSubstr("ecord 2 of " + path)));
}

TEST_F(DamagedInputs, OtherKindsOfFilesAreNotOpened) {
    const std::string virtualLayer =
        "<OGRVRTDataSource><OGRVRTLayer name=\"zones\"><SrcDataSource>" + zones("shp") +
        "</SrcDataSource></OGRVRTLayer></OGRVRTDataSource>";
    const std::string features =
        R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{"A":1},)"
        R"("geometry":{"type":"Point","coordinates":[1,2]}}]})";
    for (const std::string name : {"a.vrt", "a.json", "a.gpkg", "a.csv", "a"}) {
        for (const std::string& content : {virtualLayer, features, std::string("A,B\n1,2\n")}) {
            test::write(folder.file(name), content);
            EXPECT_THAT([&] { platform.features().openFeatureClass(folder.file(name)); },
                        testing::ThrowsMessage<PlatformError>(HasSubstr(folder.file(name))))
                << content;
        }
    }
}

TEST_F(DamagedInputs, AGeoPackageIsRead) {
    {
        const std::unique_ptr<GDALDataset> shapes(
            GDALDataset::Open(zones("shp").c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
        const std::unique_ptr<GDALDataset> package(
            GetGDALDriverManager()->GetDriverByName("GPKG")->Create(folder.file("z.gpkg").c_str(),
                                                                    0, 0, 0, GDT_Unknown, nullptr));
        ASSERT_TRUE(package);
        ASSERT_TRUE(package->CopyLayer(shapes->GetLayer(0), "copied"));
    }
    const auto layer = platform.features().openFeatureClass(folder.file("z.gpkg"));
    EXPECT_THAT(layer->areas(), testing::ElementsAre(100, 200, 300, 400, 500, 600));
    EXPECT_EQ(std::get<double>(layer->value(2, "SHARE")), 20.5);
    EXPECT_FALSE(layer->takesEdits());
    EXPECT_THROW(platform.features().edit(layer), PlatformError);
}

TEST_F(DamagedInputs, NumbersThatAreNone) {
    const std::size_t records = 32 + 2 * 32 + 1;
    const std::size_t second = records + (1 + 20 + 10) + 1 + 20;
    const auto stored = [&](const std::string& text) {
        return refused("dbf", [&](std::string& b) {
            b.replace(second, 10, std::string(10 - text.size(), ' ') + text);
        });
    };
    for (const char* text : {"abc", "--5", "12,5", "1.2.3", "1e39", "-1e39", "nan", "inf", "1 2",
                             "0x10", "5-", "**1", "1e999"}) {
        EXPECT_THAT(stored(text), AllOf(HasSubstr("In " + zones("dbf") + ", record 2, field SHARE"),
                                        HasSubstr("\"" + std::string(text) + "\" is no number")));
    }
    for (const char* text : {"5", "+5", "5.", ".5", "-0.5", "1.5E+03", "3.4e38"}) {
        EXPECT_EQ(stored(text), "read") << text;
    }
    for (const std::string& text :
         {std::string("          "), std::string("**********"), std::string(10, '\0')}) {
        std::string bytes = test::contentOf(zones("dbf"));
        bytes.replace(second, 10, text);
        test::write(zones("dbf"), bytes);
        const auto table = platform.features().openTable(zones("dbf"));
        EXPECT_TRUE(isNull(table->value(1, "SHARE")));
        EXPECT_EQ(std::get<double>(table->value(2, "SHARE")), 20.5);
    }
}

TEST_F(DamagedInputs, TellTheirPlaceInFields) {
    const std::size_t second = 32 + 2 * 32 + 1 + (1 + 20 + 10) + 1 + 20;
    refused("dbf", [&](std::string& b) { b.replace(second, 4, "1,50"); });
    EXPECT_EQ(place, (ErrorPlace{.file = zones("dbf"), .field = "SHARE", .record = 2}));
    refused("shp", [](std::string& b) { b += "xx"; });
    EXPECT_EQ(place, (ErrorPlace{.file = zones("shp")}));
    withByte("shp", 100 + 2 * (8 + 48 + 80) + 8 + 36, 0);  // no part
    EXPECT_EQ(place.file, zones("shp"));
    EXPECT_EQ(place.record, 3U);
    const auto table = platform.features().openTable(zones("dbf"));
    try {
        table->value(0, "NOSUCH");
        FAIL();
    } catch (const PlatformError& e) {
        EXPECT_EQ(e.place(), (ErrorPlace{.file = zones("dbf"), .field = "NOSUCH"}));
    }
}

TEST_F(DamagedInputs, NumbersOfDeletedRecordsAreNotLookedAt) {
    const std::size_t second = 32 + 2 * 32 + 1 + (1 + 20 + 10);
    std::string bytes = test::contentOf(zones("dbf"));
    bytes[second] = '*';
    bytes.replace(second + 21, 3, "abc");
    test::write(zones("dbf"), bytes);
    const auto table = platform.features().openTable(zones("dbf"));
    EXPECT_EQ(std::get<double>(table->value(1, "SHARE")), 20.5);
}

// The room for files ends at every place of what is written.
TEST_F(DamagedInputs, ACoordinateSystemThatIsNoneIsNamed) {
    test::write(zones("prj"), "");  // tells nothing, and nothing wrong
    EXPECT_NO_THROW(used());
    test::write(zones("prj"), "PROJCS[");
    EXPECT_THAT([&] { used(); },
                testing::ThrowsMessage<PlatformError>(
                    AllOf(HasSubstr(zones("shp")), HasSubstr(zones("prj") + " tells none"))));
}

TEST_F(DamagedInputs, WhatAKilledWritingLeftGoesWithTheNextOne) {
    const std::string left = folder.file(".velmora-unfinished-999999999@0-zones");
    std::filesystem::create_directory(left);
    test::write(left + "/zones.dbf", "half");
    std::filesystem::last_write_time(
        left, std::filesystem::file_time_type::clock::now() - std::chrono::hours(48));
    make("others");
    EXPECT_FALSE(std::filesystem::exists(left));
}

TEST_F(DamagedInputs, WhatDoesNotReachTheDiskIsNotMade) {
    std::vector<NewFeature> features;
    std::vector<std::vector<FieldValue>> records;
    for (int i = 0; i < 200; ++i) {
        records.push_back({std::string("record"), 1.0 * i});
        features.push_back(rectangle({1.0 * i, 0, 1.0 * i + 1, 1}, records.back()));
    }
    const std::vector<Field> fields = {{"NAME", FieldType::text, 20, 0},
                                       {"SHARE", FieldType::number, 10, 4}};
    const std::string crs = platform.spatialReferences().createProjected(26912);
    const auto make = [&] {
        platform.features().createFeatureClass(folder.file("new/f.shp"), true, crs, fields,
                                               features);
        platform.features().createTable(folder.file("new/t.dbf"), fields, records);
    };
    std::filesystem::create_directory(folder.file("new"));
    rlimit old{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    std::size_t failed = 0;
    for (rlim_t room = 0; room < 28000; room += 311) {
        rlimit limited = old;
        limited.rlim_cur = room;
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
        bool made = true;
        try {
            make();
        } catch (const PlatformError& e) {
            made = false;
            ++failed;
            EXPECT_THAT(e.what(), HasSubstr(folder.file("new")));
        }
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &old), 0);
        const std::string table = folder.file("new/t.dbf");
        EXPECT_EQ(std::filesystem::exists(table), made) << room;
        for (const char* name : {"new/f.shp", "new/t.dbf"}) {
            if (!std::filesystem::exists(folder.file(name))) continue;
            const auto layer = platform.features().openFeatureClass(folder.file(name));
            EXPECT_EQ(layer->recordCount(), 200U);
            EXPECT_EQ(std::get<double>(layer->value(199, "SHARE")), 199.0);
            EXPECT_EQ(layer->crs().empty(), name == std::string("new/t.dbf"));
        }
        for (const auto& entry : std::filesystem::directory_iterator(folder.file("new"))) {
            EXPECT_NE(entry.path().filename().string()[0], '.') << entry.path();
        }
        std::filesystem::remove_all(folder.file("new"));
        std::filesystem::create_directory(folder.file("new"));
    }
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_GT(failed, 80U);  // all but the last few, in which there is room
}

}  // namespace
}  // namespace velmora::platform
