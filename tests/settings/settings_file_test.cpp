// SPDX-License-Identifier: MIT
#include "settings/settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "gis/errors.h"
#include "settings/lost_characters.h"
#include "settings/settings_fields.h"
#include "tests/support/fakes.h"

namespace velmora {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

// A record written down by hand, field after field.
struct HandWritten {
    RunSettings settings;
    std::string hex;
};

HandWritten handWritten() {
    HandWritten h;
    RunSettings& s = h.settings;
    s.DEM = "/d";
    s.WeatherStations = "s\u00E9";  // one byte in the code page: E9
    s.WeatherData = "w.dbf";
    s.ZoneField = "N";
    s.OutputWorkspace = "o";
    s.ExtentProvider = "e";
    s.CellSize = 500;
    s.RefETMethod = "2";
    s.PrecipitationMethod = "EDK";
    s.TimeStep = "Monthly";
    s.Year = "2004";
    s.BeginMonth = "Jan";
    s.EndMonth = "Dec";
    s.BeginDay = "1";
    s.EndDay = "31";
    s.DemUnit = "Meters";
    s.SiteElevationUnit = "Feet";
    s.TemperatureUnit = "Degree C";
    s.ShowMonitor = true;
    s.HasTmin = true;
    s.HasWS = true;
    s.Ks = 0.16;
    s.Ko = 2;
    s.EstimatedWindSpeed = -0.5;
    h.hex =
        "0200 2F64"                                          // DEM "/d"
        "0200 73E9"                                          // WeatherStations
        "0500 772E646266"                                    // WeatherData "w.dbf"
        "0000 0000 0000"                                     // KcTable, LandCover, Zones
        "0100 4E"                                            // ZoneField "N"
        "0000"                                               // PrismGridFolder
        "0100 6F 0100 65"                                    // OutputWorkspace, ExtentProvider
        "0000000000407F40"                                   // CellSize 500
        "0100 32"                                            // RefETMethod "2"
        "0300 45444B"                                        // "EDK"
        "0700 4D6F6E74686C79"                                // "Monthly"
        "0400 32303034"                                      // "2004"
        "0300 4A616E 0300 446563"                            // "Jan" "Dec"
        "0100 31 0200 3331"                                  // "1" "31"
        "0600 4D6574657273"                                  // "Meters"
        "0400 46656574"                                      // "Feet"
        "0800 4465677265652043"                              // "Degree C"
        "FFFF 0000 FFFF 0000 0000 0000 0000 0000 0000 FFFF"  // the ten flags
        "7B14AE47E17AC43F"                                   // Ks 0.16
        "0000000000000040"                                   // Ko 2
        "000000000000E0BF";                                  // EstimatedWindSpeed -0.5
    return h;
}

std::string bytesOf(const std::string& hex) {
    std::string bytes;
    std::string digits;
    for (const char c : hex) {
        if (c == ' ') continue;
        digits += c;
        if (digits.size() == 2) {
            bytes += static_cast<char>(std::stoi(digits, nullptr, 16));
            digits.clear();
        }
    }
    return bytes;
}

TEST(SettingsFile, RecordMatchesTheHandWrittenBytes) {
    const HandWritten h = handWritten();
    EXPECT_EQ(settingsRecord(h.settings), bytesOf(h.hex));
    EXPECT_EQ(parseSettingsRecord(bytesOf(h.hex)), h.settings);
}

TEST(SettingsFile, AFlagIsTrueUnlessItIsZero) {
    const std::string bytes = settingsRecord({});
    const std::size_t flags = bytes.size() - 3 * 8 - 10 * 2;
    for (const char* hex : {"0100", "FFFF", "0001", "0080"}) {
        std::string foreign = bytes;
        foreign.replace(flags, 2, bytesOf(hex));
        EXPECT_TRUE(parseSettingsRecord(foreign).ShowMonitor) << hex;
        EXPECT_FALSE(parseSettingsRecord(foreign).HasTmax);
    }
}

TEST(SettingsFile, ValuesThatNoApplyStoresAreNamed) {
    RunSettings good = handWritten().settings;
    EXPECT_NO_THROW(requireRestorable(good));
    good.TimeStep = good.PrecipitationMethod = "";
    EXPECT_NO_THROW(requireRestorable(good));
    const auto names = [&](auto member, const auto& value, const std::string& text) {
        RunSettings bad = good;
        bad.*member = value;
        EXPECT_THAT([&] { requireRestorable(bad); }, ThrowsMessage<PlatformError>(HasSubstr(text)));
    };
    using R = RunSettings;
    names(&R::RefETMethod, "9", "The field RefETMethod holds \"9\"");
    names(&R::RefETMethod, "", "RefETMethod");
    names(&R::RefETMethod, "22", "RefETMethod");
    names(&R::PrecipitationMethod, "prism", "The field PrecipitationMethod holds \"prism\"");
    names(&R::TimeStep, "Weekly", "The field TimeStep holds \"Weekly\"");
    names(&R::CellSize, std::numeric_limits<double>::infinity(), "The field CellSize");
    names(&R::Ks, std::nan(""), "The field Ks");
    names(&R::Ko, std::nan(""), "The field Ko");
    names(&R::EstimatedWindSpeed, std::nan(""), "The field EstimatedWindSpeed");
}

TEST(SettingsFile, ChangesNameTheFieldsThatDiffer) {
    const RunSettings before = handWritten().settings;
    RunSettings after = before;
    EXPECT_TRUE(changesBetween(before, after).empty());
    after.Ks = 0.17;
    after.DEM = "";
    after.HasWS = false;
    const auto changes = changesBetween(before, after);
    ASSERT_EQ(changes.size(), 3U);
    EXPECT_EQ(changes[0].name, "DEM");
    EXPECT_EQ(changes[0].before, "/d");
    EXPECT_EQ(changes[1].after, "false");
    EXPECT_EQ(changes[2].before, "0.16");
}

TEST(SettingsFile, PathsThatLostCharactersAreFound) {
    test::MemoryFiles files;
    files.folders["/ref?"] = files.folders["/there?"] = true;
    RunSettings s = handWritten().settings;
    s.OutputWorkspace = "/there?";      // is so named
    s.PrismGridFolder = "/ref?/ppt01";  // the month's grid itself need not be there
    s.Year = "19??";                    // no path
    EXPECT_TRUE(lostPaths(files, s).empty());
    s.DEM = "/?/dem";
    s.PrismGridFolder = "/ref/ppt?01";
    const auto lost = lostPaths(files, s);
    ASSERT_EQ(lost.size(), 2U);
    EXPECT_EQ(lost[0].field, "DEM");
    EXPECT_THAT(lost[0].text, testing::StartsWith("\"/?/dem\" does not exist: the settings file"));
    EXPECT_EQ(lost[1].field, "PrismGridFolder");
}

TEST(SettingsFile, EmptyRecordIs94Bytes) { EXPECT_EQ(settingsRecord({}).size(), 94U); }

TEST(SettingsFile, EveryFieldIsInTheTableOnce) {
    EXPECT_EQ(settingsFields().size(), 35U);
    for (const SettingsField& field : settingsFields()) {
        EXPECT_EQ(findSettingsField(field.name), &field);
    }
}

TEST(SettingsFile, LostCharactersNameAnotherFile) {
    RunSettings settings;
    settings.DEM = "/\u5730/dem";
    EXPECT_EQ(parseSettingsRecord(settingsRecord(settings)).DEM, "/?/dem");
}

TEST(SettingsFile, ShortRecordOverALongerFileKeepsTheTail) {
    test::MemoryFiles files;
    RunSettings longer = handWritten().settings;
    longer.DEM = std::string(500, 'x');
    writeSettings(files, "/Zav.inf", longer);
    const std::size_t size = files.files["/Zav.inf"].size();
    writeSettings(files, "/Zav.inf", handWritten().settings);
    EXPECT_EQ(files.files["/Zav.inf"].size(), size);
    EXPECT_EQ(readSettings(files, "/Zav.inf"), handWritten().settings);
}

TEST(SettingsFile, AFileThatEndsInARecordNamesTheField) {
    const std::string bytes = bytesOf(handWritten().hex);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_THROW(parseSettingsRecord(bytes.substr(0, size)), PlatformError) << size;
    }
    EXPECT_THAT([&] { parseSettingsRecord(bytes.substr(0, bytes.size() - 1)); },
                ThrowsMessage<PlatformError>(HasSubstr("EstimatedWindSpeed")));
    EXPECT_THAT([] { parseSettingsRecord("\xFF\xFFyes"); },
                ThrowsMessage<PlatformError>(HasSubstr("DEM")));
}

TEST(SettingsFile, ATextThatIsTooLongIsRefused) {
    RunSettings settings;
    settings.Zones = std::string(65536, 'z');
    EXPECT_THAT([&] { settingsRecord(settings); },
                ThrowsMessage<PlatformError>(HasSubstr("Zones")));
}

TEST(SettingsFile, DefaultPathIsInTheExtensionFolder) {
    EXPECT_EQ(defaultSettingsPath("/home/u/.config/velmora"), "/home/u/.config/velmora/Zav.inf");
}

}  // namespace
}  // namespace velmora
