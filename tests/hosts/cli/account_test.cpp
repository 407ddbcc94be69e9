// SPDX-License-Identifier: MIT
// `velmora account` as a user types it.
#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ogrsf_frmts.h>

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "gis/memory_raster.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using test::Outcome;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

struct AccountCommand : test::ChainCommand {
    AccountCommand() { EXPECT_EQ(run("run all --cvef 0.9 --default-shares crop").status, 0); }
    std::string file(const std::string& name) const { return folder + "/" + name; }
};

TEST_F(AccountCommand, ShowsTheAccountInEveryForm) {
    const Outcome text = run("account");
    EXPECT_EQ(text.status, 0) << text.told;
    EXPECT_THAT(text.results,
                AllOf(StartsWith("Water account, Jun to Jul 2006"), HasSubstr("\nBy zone: acres, "),
                      HasSubstr("Middle Valley Irrigators' District"),
                      HasSubstr("\nWhat is left over\n"), HasSubstr("\nAnnex: ")));
    const Outcome months = run("account --by month,zone --units metric");
    EXPECT_THAT(months.results, AllOf(HasSubstr("hectares, cubic metres\nzone, month  "),
                                      HasSubstr("\nO'Dell's, Jul ")));

    const Outcome csv = run("account --csv");
    EXPECT_THAT(csv.results, StartsWith("zone,crop,month,land,land_acres,"));
    EXPECT_EQ(run("account --csv all.csv").status, 0);
    EXPECT_EQ(test::contentOf(file("all.csv")), csv.results);

    const auto json = nlohmann::json::parse(run("--json account --by crop").results);
    EXPECT_EQ(json.at("closes"), true);
    EXPECT_EQ(json.at("months"), (std::vector<std::string>{"Jun", "Jul"}));
    for (const auto& agreement : json.at("annex").at("agreement")) {
        EXPECT_LT(agreement.at("largestDifference").get<double>(), 1e-9);
    }
    EXPECT_EQ(run("account --by field").status, 2);
    EXPECT_EQ(run("account --units imperial").status, 2);
}

TEST_F(AccountCommand, AGeoPackageHasTheZonesWithTheirSums) {
    ASSERT_EQ(run("account --gpkg account.gpkg").status, 0);
    const auto close = [](GDALDataset* dataset) { GDALClose(dataset); };
    const std::unique_ptr<GDALDataset, decltype(close)> dataset(
        GDALDataset::Open(file("account.gpkg").c_str(), GDAL_OF_VECTOR), close);
    ASSERT_TRUE(dataset);
    OGRLayer* zones = dataset->GetLayerByName("zones");
    ASSERT_TRUE(zones);
    ASSERT_EQ(zones->GetFeatureCount(), 3);
    const auto json = nlohmann::json::parse(run("--json account").results);
    for (const auto& row : json.at("byZone")) {
        if (row.at("zone") == "(outside all zones)") continue;
        const std::unique_ptr<OGRFeature> zone(zones->GetNextFeature());
        EXPECT_EQ(zone->GetFieldAsString("zone"), row.at("zone").get<std::string>());
        EXPECT_EQ(zone->GetFieldAsDouble("net_requirement_acft"),
                  row.at("net_requirement_acft").get<double>());
        EXPECT_NEAR(
            zone->GetFieldAsDouble("crop_et_acft_jun") + zone->GetFieldAsDouble("crop_et_acft_jul"),
            row.at("crop_et_acft").get<double>(), 1e-6);
        ASSERT_TRUE(zone->GetGeometryRef());
        EXPECT_NEAR(zone->GetGeometryRef()->toMultiPolygon()->get_Area() / 4047,
                    row.at("polygon_acres").get<double>(), 1e-6);
    }
    EXPECT_EQ(dataset->GetLayerByName("account")->GetFeatureCount(),
              static_cast<GIntBig>(json.at("rows").size()));
    EXPECT_EQ(dataset->GetLayerByName("residuals")->GetFeatureCount(), 14);
}

TEST_F(AccountCommand, NothingHalfWrittenTakesTheNameOfAGeoPackage) {
    std::filesystem::create_directory(file("taken.gpkg"));
    const Outcome refused = run("account --gpkg taken.gpkg");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.told, HasSubstr("taken.gpkg"));
    EXPECT_TRUE(std::filesystem::is_empty(file("taken.gpkg")));
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        EXPECT_THAT(entry.path().filename().string(), testing::Not(HasSubstr("unfinished")));
    }
}

TEST_F(AccountCommand, AnAccountThatDoesNotCloseIsAFailure) {
    Grid net = crops.output("NIR_Jul");
    for (float& value : net.values) value = value == kNoData ? value : value * 1.01F;
    crops.save("NIR_Jul", std::make_shared<MemoryRaster>(net));
    const Outcome text = run("account");
    EXPECT_EQ(text.status, 1);
    EXPECT_THAT(text.results, HasSubstr("DOES NOT CLOSE"));
    EXPECT_THAT(text.told, HasSubstr("The account does not close: Net requirement = crop ET"));
}

}  // namespace
}  // namespace velmora
