// SPDX-License-Identifier: MIT
// The water account over a small piece of land on which every kind of land comes up.
#include "hosts/results/account/account.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "gis/errors.h"
#include "gis/gis_functions.h"
#include "gis/memory_raster.h"
#include "hosts/results/account/account_annex.h"
#include "hosts/results/account/account_json.h"
#include "hosts/results/account/account_layer.h"
#include "hosts/results/account/account_residuals.h"
#include "hosts/results/account/account_section.h"
#include "hosts/results/account/account_table.h"
#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/net_irrigation_run.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kNorth = "A long name of a district, north";
constexpr const char* kSouth = "A long name of a district, south";
constexpr double kCellAcres = 100.0 * 100 / 4047;

// Six columns and four rows of cells of 100 m. From left to right: two columns of corn, hops (of
// which nobody knows an efficiency) and water (without a coefficient) in two zones, corn outside
// them, and no land cover.
struct WaterAccount : testing::Test {
    test::MemoryIrrigation f;
    IPlatform& platform = f.application.platform();
    const GridGeometry cells{6, 4, 400000, 4500000, 100, f.geometry().crs};

    test::Shape land(const std::string& key, int column, int columns, int row, int rows) const {
        const double left = cells.xMin + column * 100;
        const double top = cells.yMax - row * 100;
        return {key,
                {{left, top - rows * 100},
                 {left, top},
                 {left + columns * 100, top},
                 {left + columns * 100, top - rows * 100}}};
    }
    Grid grid(float value) const { return Grid(cells, value); }
    void store(const std::string& name, const Grid& values) {
        f.save(name, std::make_shared<MemoryRaster>(values));
    }

    WaterAccount() {
        f.storeSettings();
        f.makeCropLand({land("Corn", 0, 2, 0, 4), land("Hops", 2, 1, 0, 4),
                        land("Water", 3, 1, 0, 4), land("Corn", 4, 1, 0, 4)});
        f.makeZones(
            {land(kNorth, 0, 4, 0, 2), land("Far & away", 90, 2, 0, 1), land(kSouth, 0, 4, 2, 2)});
        Grid kc = grid(1);
        Grid efficiency = grid(0.5F);
        for (int row = 0; row < 4; ++row) {
            kc.at(3, row) = kc.at(5, row) = kNoData;
            for (int column = 2; column < 6; ++column) efficiency.at(column, row) = kNoData;
        }
        efficiency.at(1, 2) = 0;  // by which nothing can be divided
        store("faef_500", efficiency);
        for (const auto& [month, corn, rain] :
             {std::tuple{"Jun", 5.0F, 2.0F}, {"Jul", 7.0F, 1.0F}}) {
            Grid et = kc;
            for (float& value : et.values) value = value == kNoData ? kNoData : corn;
            for (int row = 0; row < 4; ++row) et.at(2, row) = corn - 1;  // hops
            et.at(0, 0) = kNoData;  // has a coefficient, but no reference ET
            Grid ppt = grid(rain);
            if (std::string(month) == "Jun") ppt.at(1, 0) = 10;
            ppt.at(1, 3) = kNoData;
            store(std::string("Kc_") + month, kc);
            store(std::string("ET_") + month + "_4", et);
            store(std::string("PPT_") + month, ppt);
        }
        EXPECT_TRUE(runNetIrrigation(f.application, f.settings)) << f.allMessages();
        EXPECT_TRUE(runIrrigationRequirement(f.application, f.settings)) << f.allMessages();
    }

    Account account() { return makeAccount(platform, f.settings, f.application.feedback()); }

    // The figure of the row whose first columns hold the keys.
    static FieldValue figure(const AccountTable& table, const std::vector<std::string>& keys,
                             const std::string& column) {
        for (const auto& row : table.rows) {
            bool same = true;
            for (std::size_t k = 0; k < keys.size(); ++k) same = same && keyText(row[k]) == keys[k];
            if (!same) continue;
            for (std::size_t c = 0; c < table.columns.size(); ++c) {
                if (table.columns[c].name == column) return row[c];
            }
        }
        ADD_FAILURE() << "no " << column;
        return {};
    }
    static double number(const AccountTable& table, const std::vector<std::string>& keys,
                         const std::string& column) {
        const FieldValue value = figure(table, keys, column);
        return isNull(value) ? -1 : std::get<double>(value);
    }
    std::vector<std::string> open() { return unclosed(residualsOf(account())); }
    void change(const std::string& name, int column, int row, float value) {
        Grid changed = f.output(name);
        changed.at(column, row) = value;
        store(name, changed);
    }
};

TEST_F(WaterAccount, EachCellIsOfOneKindOfLand) {
    const AccountTable june = accountTable(account(), {.month = true, .land = true}, usUnits());
    const auto count = [&](const char* kind) {
        return number(june, {"Jun", kind}, "land_acres") / kCellAcres;
    };
    EXPECT_NEAR(count("with efficiency"), 3 + 2, 1e-9);
    EXPECT_NEAR(count("without efficiency"), 1 + 4 + 4, 1e-9);
    EXPECT_NEAR(count("without precipitation"), 1, 1e-9);
    EXPECT_NEAR(count("without reference ET"), 1, 1e-9);
    EXPECT_NEAR(count("without Kc"), 4, 1e-9);
    EXPECT_NEAR(count("without land cover"), 4, 1e-9);
    const AccountTable all = accountTable(account(), {}, usUnits());
    EXPECT_NEAR(number(all, {}, "land_acres") / kCellAcres, 24, 1e-9);
    EXPECT_NEAR(number(all, {}, "land_with_crop_et_acres") / kCellAcres, 15, 1e-9);
    EXPECT_NEAR(number(all, {}, "land_without_kc_acres") / kCellAcres, 4, 1e-9);
}

TEST_F(WaterAccount, APeriodCountsACellByTheLeastThatItLacksInAnyMonth) {
    change("Kc_Jul", 4, 0, kNoData);
    change("ET_Jul_4", 4, 0, kNoData);
    change("Kc_Jun", 4, 1, kNoData);
    change("ET_Jun_4", 4, 1, kNoData);
    const AccountTable months = accountTable(account(), {.month = true}, usUnits());
    EXPECT_NEAR(number(months, {"Jun"}, "land_with_crop_et_acres"), 14 * kCellAcres, 1e-9);
    EXPECT_NEAR(number(months, {"Jul"}, "land_without_kc_acres"), 5 * kCellAcres, 1e-9);
    const AccountTable period = accountTable(account(), {}, usUnits());
    EXPECT_NEAR(number(period, {}, "land_with_crop_et_acres"), 15 * kCellAcres, 1e-9);
    EXPECT_NEAR(number(period, {}, "land_without_kc_acres"), 4 * kCellAcres, 1e-9);
    EXPECT_NEAR(number(period, {}, "crop_et_in") * 15,
                number(period, {}, "crop_et_acft") / kCellAcres * 12, 1e-9);
}

TEST_F(WaterAccount, FiguresByHand) {
    const AccountTable table =
        accountTable(account(), {.zone = true, .crop = true, .month = true}, usUnits());
    // June's northern corn: of four cells one lacks reference ET, one has 10 inches of rain.
    const std::vector<std::string> corn = {kNorth, "Corn", "Jun"};
    const double inch = kCellAcres / 12;  // of water over a cell, acre-feet
    EXPECT_NEAR(number(table, corn, "land_acres"), 4 * kCellAcres, 1e-9);
    EXPECT_NEAR(number(table, corn, "land_with_crop_et_acres"), 3 * kCellAcres, 1e-9);
    EXPECT_NEAR(number(table, corn, "crop_et_acft"), 15 * inch, 1e-6);
    EXPECT_NEAR(number(table, corn, "precipitation_acft"), 14 * inch, 1e-6);
    EXPECT_NEAR(number(table, corn, "effective_precipitation_acft"), 11.2 * inch, 1e-6);
    EXPECT_NEAR(number(table, corn, "surplus_acft"), 3 * inch, 1e-6);
    EXPECT_NEAR(number(table, corn, "net_requirement_acft"), 6.8 * inch, 1e-6);
    EXPECT_NEAR(number(table, corn, "water_requirement_acft"), 13.6 * inch, 1e-6);
    EXPECT_NEAR(number(table, corn, "efficiency"), 0.5, 1e-7);
    EXPECT_NEAR(number(table, corn, "crop_et_in"), 5, 1e-6);
    EXPECT_NEAR(number(table, corn, "net_requirement_in"), 6.8 / 3, 1e-6);
    // The southern corn has a cell without efficiency and one without precipitation, whose crop ET
    // counts all the same.
    const std::vector<std::string> south = {kSouth, "Corn", "Jul"};
    EXPECT_NEAR(number(table, south, "crop_et_acft"), 28 * inch, 1e-6);
    EXPECT_NEAR(number(table, south, "precipitation_acft"), 3 * inch, 1e-6);
    EXPECT_NEAR(number(table, south, "net_requirement_acft"), 3 * 6.2 * inch, 1e-6);
    EXPECT_NEAR(number(table, south, "net_requirement_without_efficiency_acft"), 6.2 * inch, 1e-6);
    EXPECT_NEAR(number(table, south, "water_requirement_acft"), 2 * 12.4 * inch, 1e-6);
    EXPECT_NEAR(number(table, south, "efficiency"), 0.5, 1e-7);  // of the land that has one
    EXPECT_NEAR(number(table, {"(outside all zones)", "Corn", "Jun"}, "net_requirement_acft"),
                4 * 3.4 * inch, 1e-6);
    EXPECT_NEAR(number(table, {"(outside all zones)", "(no land cover)", "Jun"}, "land_acres"),
                4 * kCellAcres, 1e-9);
    EXPECT_TRUE(isNull(figure(table, {kNorth, "Water", "Jun"}, "crop_et_in")));
    // Hops have a net requirement, but nobody knows for how much water.
    EXPECT_TRUE(isNull(figure(table, {kNorth, "Hops", "Jun"}, "efficiency")));
    EXPECT_TRUE(isNull(figure(table, {kNorth, "Hops", "Jun"}, "water_requirement_acft")));
    EXPECT_EQ(number(table, {kNorth, "Water", "Jun"}, "water_requirement_acft"), 0);
}

TEST_F(WaterAccount, MetricUnits) {
    const AccountTable table = accountTable(account(), {.crop = true}, metricUnits());
    EXPECT_NEAR(number(table, {"Hops"}, "land_ha"), 4, 1e-12);
    EXPECT_NEAR(number(table, {"Hops"}, "crop_et_m3"), (4 + 6) * 4 * 0.0254 * 10000, 1e-6);
    EXPECT_NEAR(number(table, {"Hops"}, "crop_et_mm"), 254, 1e-9);
}

TEST_F(WaterAccount, ZonesGoByTheirFullTextAndThoseWithoutACellAreListed) {
    const Account made = account();
    const AccountTable table = accountTable(made, {.zone = true}, usUnits());
    std::vector<std::string> keys;
    for (const auto& row : table.rows) keys.push_back(keyText(row[0]));
    EXPECT_THAT(keys, ElementsAre(kNorth, "Far & away", kSouth, "(outside all zones)"));
    EXPECT_EQ(number(table, {"Far & away"}, "net_requirement_acft"), 0);
    EXPECT_NEAR(number(table, {"Far & away"}, "polygon_acres"), 2 * kCellAcres, 1e-6);
    EXPECT_NEAR(number(table, {kSouth}, "polygon_acres"), 8 * kCellAcres, 1e-6);
    EXPECT_THAT(made.notes, testing::Contains("Zones without a cell: Far & away"));
}

TEST_F(WaterAccount, ItsReaderIsToldOfLandWithoutEfficiencyAndWithoutKc) {
    // Inches over cells, both months. Corn: 3 + 2 with and 1 without efficiency, and 4 outside;
    // hops: 4.
    const double corn = 2 * 3.4 + 3 * 6.2 + 3 * (3.4 + 6.2);
    const double bareCorn = 3.4 + 6.2;
    const double total = corn + 4 * (3.4 + 6.2) + 4 * (2.4 + 5.2);
    EXPECT_THAT(
        account().notes,
        testing::Contains(AllOf(HasSubstr(fmt::format("{:.2g} % of the net requirement",
                                                      (total - corn + bareCorn) / total * 100)),
                                HasSubstr("outside all zones: Corn ("),
                                HasSubstr(std::string(kNorth) + ": Hops ("))));
    EXPECT_THAT(account().notes,
                testing::Contains("20 % of the land cover has no crop coefficient in any month, "
                                  "and so no crop ET: Water (20 %)"));
}

TEST_F(WaterAccount, EveryIdentityCloses) {
    const auto residuals = residualsOf(account());
    EXPECT_EQ(residuals.size(), 14U);
    for (const AccountResidual& residual : residuals) {
        EXPECT_LT(residual.relative(), 1e-6) << residual.identity;
        EXPECT_GT(residual.of, 0) << residual.identity;
    }
    EXPECT_THAT(open(), IsEmpty());
}

TEST_F(WaterAccount, ANetRequirementOfOtherGridsDoesNotClose) {
    change("NIR_Jul", 0, 2, 6.5F);
    EXPECT_THAT(open(),
                ElementsAre(HasSubstr("Net requirement = crop ET"),
                            AllOf(HasSubstr("Net requirement = crop ET"), HasSubstr(kSouth),
                                  HasSubstr("crop \"Corn\", Jul")),
                            HasSubstr("Water requirement x"), HasSubstr("Water requirement x")));
}

TEST_F(WaterAccount, AWaterRequirementOfAnotherEfficiencyDoesNotClose) {
    change("faef_500", 0, 1, 0.6F);
    EXPECT_THAT(open(), ElementsAre(HasSubstr("Water requirement x"),
                                    AllOf(HasSubstr("Water requirement x"), HasSubstr(kNorth))));
}

TEST_F(WaterAccount, CellsThatLackARequirementDoNotClose) {
    change("IRR_Jun", 0, 1, kNoData);
    EXPECT_THAT(open(), testing::Contains(HasSubstr("but no water requirement = 0")));
    change("NIR_Jun", 2, 1, kNoData);
    EXPECT_THAT(open(), testing::Contains(HasSubstr("but no net requirement = 0")));
}

TEST_F(WaterAccount, RequirementsBeyondTheBalanceDoNotClose) {
    change("NIR_Jun", 5, 1, 2);  // where there is no crop
    change("IRR_Jun", 2, 1, 2);  // where there is no efficiency
    EXPECT_THAT(open(),
                ElementsAre(HasSubstr("Net irrigation requirement of zones and outside"),
                            HasSubstr("Irrigation water requirement of zones and outside")));
}

TEST_F(WaterAccount, WhatIsNotThereIsADashAndNoZero) {
    for (const char* name : {"IRR_Jul", "NIR_Jul", "faef_500"}) {
        DeleteRasterDataset(platform.rasters(), f.folder.file("out"), name);
    }
    const Account made = account();
    EXPECT_THAT(made.notes, testing::Contains(HasSubstr("There is no grid NIR_Jul")));
    const AccountTable months = accountTable(made, {.month = true}, usUnits());
    EXPECT_GT(number(months, {"Jun"}, "net_requirement_acft"), 0);
    EXPECT_TRUE(isNull(figure(months, {"Jul"}, "net_requirement_acft")));
    EXPECT_GT(number(months, {"Jul"}, "crop_et_acft"), 0);
    const AccountTable year = accountTable(made, {}, usUnits());
    for (const char* column : {"net_requirement_acft", "water_requirement_acft", "efficiency"}) {
        EXPECT_TRUE(isNull(figure(year, {}, column))) << column;
    }
    EXPECT_EQ(figureText({}, figure(year, {}, "efficiency")), "-");
    EXPECT_THAT(unclosed(residualsOf(made)), IsEmpty());
}

TEST_F(WaterAccount, WithoutPrecipitationThereIsCropEtAlone) {
    for (const char* name : {"PPT_Jun", "PPT_Jul"}) {
        DeleteRasterDataset(platform.rasters(), f.folder.file("out"), name);
    }
    const AccountTable year = accountTable(account(), {}, usUnits());
    EXPECT_NEAR(number(year, {}, "crop_et_acft"), (11 * 12 + 4 * 10) * kCellAcres / 12, 1e-6);
    EXPECT_TRUE(isNull(figure(year, {}, "precipitation_acft")));
}

TEST_F(WaterAccount, MonthsWithoutCropEtAreToldAndLeftOut) {
    f.settings.EndMonth = "Aug";
    const Account made = account();
    EXPECT_EQ(made.months.size(), 2U);
    EXPECT_THAT(made.notes, testing::Contains(HasSubstr("without crop ET: ET_Aug_4")));
    f.settings.BeginMonth = "Aug";
    EXPECT_THAT([&] { account(); }, testing::ThrowsMessage<PlatformError>(
                                        HasSubstr("There is no crop ET of Aug to Aug")));
}

TEST_F(WaterAccount, FieldsThatAreNotThereAreNamed) {
    f.settings.ZoneField = "District";
    EXPECT_THAT([&] { account(); }, testing::ThrowsMessage<PlatformError>(
                                        AllOf(HasSubstr("zones.shp"), HasSubstr("\"District\""))));
    f.settings.ZoneField = "ZONE";
    EXPECT_THAT(
        [&] { makeAccount(platform, f.settings, f.application.feedback(), {.cropField = "Use"}); },
        testing::ThrowsMessage<PlatformError>(AllOf(HasSubstr("land.shp"), HasSubstr("\"Use\""))));
}

TEST_F(WaterAccount, TheAnnexHasTheTablesAsTheyStandAndWhetherTheyAgree) {
    const Account made = account();
    const AccountAnnex annex = annexOf(platform, made);
    // Both districts look alike in the tables, and their rows are taken together.
    ASSERT_EQ(annex.zones.size(), 2U);
    EXPECT_EQ(annex.zones[0].key, "A long name of a district");
    const TableReading nir = annex.zones[0].tables.at("StatNIR");
    const double june = 2 * 3.4 + 3 * 3.4 + 4 * 2.4;
    const double july = 3 * 6.2 + 3 * 6.2 + 4 * 5.2;
    const double inch = kCellAcres / 12;
    EXPECT_NEAR(*nir.account, (june + july) * inch, 1e-6);
    EXPECT_NEAR(*nir.inches, (june + july) * inch, 1e-6);
    EXPECT_NEAR(*nir.table, (june * 30 + july * 31) / 25.4 * inch, 1e-6);
    EXPECT_FALSE(annex.zones[0].tables.at("StatCET").table);  // there is no such table
    ASSERT_EQ(annex.factors.size(), 2U);
    EXPECT_DOUBLE_EQ(annex.factors[1].factor, 31 / 25.4);
    ASSERT_EQ(annex.agreements.size(), 2U);
    EXPECT_LT(annex.agreements[0].difference, 1e-12);
    EXPECT_THAT(agreementText(annex.agreements[0]), HasSubstr("StatNIR"));

    f.settings.BeginMonth = "Jul";  // the table is made anew, and lacks June then
    ASSERT_TRUE(runNetIrrigation(f.application, f.settings));
    const AccountAnnex other = annexOf(platform, made);
    EXPECT_DOUBLE_EQ(other.agreements[0].difference, 1);
    EXPECT_THAT(agreementText(other.agreements[0]),
                AllOf(HasSubstr("differs from the account by 100 %"), HasSubstr("Jun")));
}

TEST_F(WaterAccount, AZoneWithoutAnyEfficiencyHasNoWaterRequirementBesideItsTable) {
    f.makeZones({land("Hops alone", 2, 1, 0, 4), land("Corn", 0, 2, 0, 4)});
    AccountAnnex annex = annexOf(platform, account());
    EXPECT_FALSE(annex.zones[0].tables["StatIRR"].account);
    EXPECT_TRUE(annex.zones[0].tables["StatNIR"].account);
    EXPECT_TRUE(annex.zones[1].tables["StatIRR"].account);
}

TEST_F(WaterAccount, AsASectionOfAPage) {
    change("NIR_Jul", 0, 2, 6.5F);
    const Account made = account();
    const std::string html = accountSection(made, annexOf(platform, made));
    EXPECT_THAT(html, testing::StartsWith("<h2 id=\"account\">Water account, Jun to Jul 2006"));
    EXPECT_THAT(html, AllOf(HasSubstr("<td>Far &amp; away</td>"), HasSubstr("<td>all land</td>"),
                            HasSubstr("does not close"), HasSubstr("22 % more"),
                            HasSubstr("Zones without a cell")));
    EXPECT_THAT(html, Not(HasSubstr("Far & away")));
    EXPECT_THAT(html, HasSubstr("<h3>By zone, acre-feet</h3>\n<div"));
    for (const char* part : {"By month, acre-feet", "By crop, acre-feet",
                             "By kind of land, acre-feet", "Annex: the zone tables' reading"}) {
        EXPECT_THAT(html, HasSubstr("<details><summary><h3>" + std::string(part) + "</h3>"));
    }
    EXPECT_THAT(html, testing::ContainsRegex("<h3>What is left over: 1[0-9] of 1[0-9] sums close"));
    // What does not close is told outside of what is folded.
    const std::string outside = html.substr(html.find("does not close"));
    EXPECT_THAT(outside.substr(outside.find("</details>")),
                testing::StartsWith("</details>\n<p class=\"error\">"));
}

TEST_F(WaterAccount, AsJson) {
    const Account made = account();
    const auto json = accountJson(made, {.crop = true}, usUnits(), annexOf(platform, made));
    EXPECT_EQ(json.at("closes"), true);
    EXPECT_EQ(json.at("units").at("volume"), "acre-feet");
    EXPECT_EQ(json.at("rows").size(), 4U);
    EXPECT_EQ(json.at("rows").at(0).at("crop"), "Corn");
    EXPECT_EQ(json.at("byZone").at(0).at("zone"), kNorth);
    EXPECT_TRUE(json.at("byCrop").at(1).at("efficiency").is_null());  // hops
    EXPECT_EQ(json.at("residuals").size(), 14U);
    EXPECT_EQ(json.at("annex").at("factors").size(), 2U);
    double sum = 0;
    for (const auto& row : json.at("byZone")) sum += row.at("crop_et_acft").get<double>();
    EXPECT_NEAR(sum, json.at("total").at("crop_et_acft").get<double>(), 1e-9);
}

TEST_F(WaterAccount, AsAttributesOfItsZones) {
    const Account made = account();
    const AccountLayer layer = accountLayer(platform, made, usUnits(), annexOf(platform, made));
    EXPECT_EQ(layer.zones.recordCount(), 3U);
    EXPECT_EQ(keyText(layer.zones.value(2, "zone")), kSouth);
    const double inch = kCellAcres / 12;
    EXPECT_NEAR(std::get<double>(layer.zones.value(2, "net_requirement_acft_jul")),
                (3 * 6.2 + 2 * 5.2) * inch, 1e-6);
    EXPECT_NEAR(std::get<double>(layer.zones.value(2, "net_requirement_acft")),
                (3 * 9.6 + 2 * 7.6) * inch, 1e-6);
    EXPECT_THAT(layer.zoneOfPolygon, ElementsAre(0, 1, 2));
    EXPECT_EQ(layer.residuals.recordCount(), 14U);
}

}  // namespace
}  // namespace velmora
