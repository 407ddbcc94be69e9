// SPDX-License-Identifier: MIT
// Crop ET from polygons, coefficients and reference ET to the table of the zones.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "crop/frm_kc_editor.h"
#include "gis/month_names.h"
#include "gis/zonal_tables.h"
#include "platform/threads/parallel_loop.h"
#include "settings/run_state.h"
#include "tests/support/crop_fixture.h"

namespace velmora {
namespace {

using test::CropFixture;
using test::Shape;
using testing::HasSubstr;

struct CropChain : testing::Test {
    CropFixture f;

    void makeMaps(const std::string& cellSize) {
        frmKcEditor form(f.application, f.settings);
        form.load();
        form.txtCellSize.enter(cellSize);
        form.cmdMakeMap.click();
        ASSERT_FALSE(form.failed()) << f.allMessages();
    }
    double coefficient(const std::string& use, int month) {
        for (const test::Crop& crop : CropFixture::crops()) {
            if (crop.type == use) return crop.monthly[static_cast<std::size_t>(month - 1)];
        }
        return 0;
    }
    // The coefficient of the cell of the Kc lattice that holds a place, 0 for none.
    double kcAt(Point p, int month, double size) {
        double xMin = HUGE_VAL;
        double yMax = -HUGE_VAL;
        for (const Shape& s : CropFixture::fields()) {
            for (const Point& q : s.ring) {
                xMin = std::min(xMin, q.x);
                yMax = std::max(yMax, q.y);
            }
        }
        const Point centre{xMin + (std::floor((p.x - xMin) / size) + 0.5) * size,
                           yMax - (std::floor((yMax - p.y) / size) + 0.5) * size};
        double kc = 0;
        for (const Shape& s : CropFixture::fields()) {
            if (coefficient(s.key, month) != 0 && test::contains(s, centre)) {
                kc = coefficient(s.key, month);
            }
        }
        return kc;
    }
    float valueAt(const Grid& grid, Point p) {
        const int c = grid.geometry.columnAt(p.x);
        const int r = grid.geometry.rowAt(p.y);
        if (c < 0 || c >= grid.geometry.columns || r < 0 || r >= grid.geometry.rows) return kNoData;
        return grid.at(c, r);
    }
};

TEST_F(CropChain, GridsAndTableAgreeWithThePlainCalculation) {
    for (const int size : {100, 250, 500}) {  // finer and coarser than the run's 400 m
        ASSERT_TRUE(f.run()) << f.allMessages();
        makeMaps(std::to_string(size));
        f.copyKcMaps({"Jun", "Jul"});
        ASSERT_TRUE(f.runCropEt()) << f.allMessages();
        const auto rows = f.tableRows("StatCET");
        ASSERT_EQ(rows.size(), 6U);
        for (const int month : {6, 7}) {
            const std::string label = GetMonthName(month);
            const Grid et = f.output("ET_" + label + "_4");
            const Grid reference = f.output("RefET_" + label + "_4");
            EXPECT_EQ(et.geometry.cellSize, std::min(size, 400));
            std::vector<double> sums(3, 0);
            std::vector<double> counts(3, 0);
            for (int r = 0; r < et.geometry.rows; ++r) {
                for (int c = 0; c < et.geometry.columns; ++c) {
                    const Point p{et.geometry.columnCentre(c), et.geometry.rowCentre(r)};
                    const double kc = kcAt(p, month, size);
                    const float ref = valueAt(reference, p);
                    if (kc == 0 || ref == kNoData) {
                        ASSERT_EQ(et.at(c, r), kNoData);
                        continue;
                    }
                    const double expected = static_cast<double>(static_cast<float>(kc)) * ref;
                    ASSERT_NEAR(et.at(c, r), expected, 1e-6 * std::fabs(expected));
                    const int zone = test::shapeAt(CropFixture::zones(), p);
                    if (zone < 0) continue;
                    sums[static_cast<std::size_t>(zone)] += static_cast<double>(et.at(c, r));
                    ++counts[static_cast<std::size_t>(zone)];
                }
            }
            const double cell = et.geometry.cellSize * et.geometry.cellSize;
            for (std::size_t z = 0; z < 3; ++z) {
                const auto& row = rows[static_cast<std::size_t>(month - 6) * 3 + z];
                const Shape zone = CropFixture::zones()[z];
                EXPECT_EQ(std::get<std::string>(row[0]), zone.key.substr(0, 25));
                EXPECT_NEAR(std::get<double>(row[1]), test::areaOf(zone) / 4047, 6e-4);
                EXPECT_NEAR(std::get<double>(row[2]), counts[z] * cell / 4047, 6e-4);
                EXPECT_EQ(std::get<double>(row[3]), month);
                const double depth = (month == 6 ? 30 : 31) * sums[z] / counts[z] / 304.8;
                EXPECT_NEAR(std::get<double>(row[4]) / depth, 1, 1e-9);
                EXPECT_NEAR(std::get<double>(row[5]) / (depth * counts[z] * cell / 4047), 1, 1e-9);
            }
        }
    }
}

TEST_F(CropChain, ZeroCoefficientsAndUnknownCropsMakeNoCells) {
    f.settings.BeginMonth = "Mar";
    f.settings.EndMonth = "Apr";
    makeMaps("250");
    for (const int month : {3, 4}) {  // barley begins in April, corn in May
        const Grid kc = f.output("Kc_" + GetMonthName(month) + "_4");
        std::size_t filled = 0;
        for (int r = 0; r < kc.geometry.rows; ++r) {
            for (int c = 0; c < kc.geometry.columns; ++c) {
                const double expected =
                    kcAt({kc.geometry.columnCentre(c), kc.geometry.rowCentre(r)}, month, 250);
                ASSERT_EQ(kc.at(c, r), expected == 0 ? kNoData : static_cast<float>(expected));
                filled += expected == 0 ? 0 : 1;
            }
        }
        EXPECT_GT(filled, 100U);
    }
}

TEST_F(CropChain, MessagesLayersAndTable) {
    ASSERT_TRUE(f.run());
    makeMaps("250");
    f.copyKcMaps({"Jun", "Jul"});
    f.application.prompts().messages.clear();
    f.application.document().layers.clear();
    ASSERT_TRUE(f.runCropEt());
    EXPECT_EQ(f.application.messages(),
              (std::vector<std::string>{"Ready to create table", "RefET_Jun_4", "RefET_Jul_4",
                                        "Potential crop ET calculation is completed ..."}));
    ASSERT_EQ(f.application.document().layers.size(), 2U);
    const auto& layer = static_cast<const test::FakeLayer&>(*f.application.document().layers[0]);
    EXPECT_EQ(layer.name(), "ET_Jun_4");
    EXPECT_EQ(layer.ramp.from, (Rgb{100, 50, 50}));
    EXPECT_EQ(layer.ramp.to, (Rgb{0, 255, 0}));
    ASSERT_EQ(f.application.document().tables.size(), 1U);
    EXPECT_EQ(f.application.document().tables[0]->name(), "StatCET");
    EXPECT_EQ(f.application.document().tables[0]->recordCount(), 6U);
    ASSERT_TRUE(f.runCropEt());  // again: a second set of layers, the table anew
    EXPECT_EQ(f.application.document().layers.size(), 4U);
    EXPECT_EQ(f.tableRows("StatCET").size(), 6U);
}

TEST_F(CropChain, NoMonthsMakeAnEmptyTable) {
    f.settings.BeginMonth = "Aug";
    f.settings.EndMonth = "Mar";
    ASSERT_TRUE(f.runCropEt());
    EXPECT_EQ(f.application.messages(),
              (std::vector<std::string>{"Ready to create table",
                                        "Potential crop ET calculation is completed ..."}));
    EXPECT_TRUE(f.tableRows("StatCET").empty());
    EXPECT_EQ(f.application.document().tables.size(), 1U);
    EXPECT_TRUE(f.application.document().layers.empty());
}

TEST_F(CropChain, AMissingGridKeepsWhatWasMade) {
    ASSERT_TRUE(f.run());
    makeMaps("250");
    f.copyKcMaps({"Jun"});
    f.application.document().layers.clear();
    EXPECT_FALSE(f.runCropEt());
    EXPECT_THAT(f.application.messages().back(), HasSubstr("There is no raster dataset"));
    EXPECT_THAT(f.application.messages().back(), HasSubstr("Kc_Jul"));
    EXPECT_TRUE(f.hasOutput("ET_Jun_4"));
    EXPECT_FALSE(f.hasOutput("ET_Jul_4"));
    EXPECT_EQ(f.application.document().layers.size(), 1U);
    EXPECT_EQ(f.tableRows("StatCET").size(), 3U);
}

TEST_F(CropChain, FailuresAreShownByTheirDescription) {
    f.settings.OutputWorkspace = f.folder.file("none");
    EXPECT_FALSE(f.runCropEt());
    EXPECT_THAT(f.application.messages().back(), HasSubstr("does not exist"));
    f.settings.OutputWorkspace = f.folder.file("out");
    ASSERT_TRUE(f.run());
    makeMaps("250");
    f.copyKcMaps({"Jun", "Jul"});
    f.settings.ZoneField = "NAME";
    EXPECT_FALSE(f.runCropEt());
    EXPECT_THAT(f.application.messages().back(), HasSubstr("has no field \"NAME\""));
    EXPECT_TRUE(f.hasOutput("ET_Jun_4"));
    f.settings.Zones = "";
    EXPECT_FALSE(f.runCropEt());
    EXPECT_THAT(f.application.messages().back(), HasSubstr("The zone shapefile is not set"));
}

TEST_F(CropChain, GridsThatLieApartAreNamed) {
    ASSERT_TRUE(f.run());
    std::vector<Shape> far = CropFixture::fields();
    for (Shape& s : far) {
        for (Point& p : s.ring) p.x += 50000;
    }
    f.makeLandCover(far);
    makeMaps("250");
    f.copyKcMaps({"Jun", "Jul"});
    EXPECT_FALSE(f.runCropEt());
    EXPECT_THAT(f.application.messages().back(),
                testing::AllOf(HasSubstr("[Kc]"), HasSubstr("[ETR]")));
}

TEST_F(CropChain, OneThreadAndManyGiveTheSameFiles) {
    ASSERT_TRUE(f.run());
    makeMaps("100");
    f.copyKcMaps({"Jun", "Jul"});
    const auto kc = f.output("Kc_Jun_4").values;
    platform::useThreads(1);
    ASSERT_TRUE(f.runCropEt());
    const std::string table = test::contentOf(f.folder.file("out/StatCET.dbf"));
    const auto et = f.output("ET_Jul_4").values;
    makeMaps("100");
    EXPECT_EQ(f.output("Kc_Jun_4").values, kc);
    platform::useThreads(0);
    ASSERT_TRUE(f.runCropEt());
    EXPECT_EQ(test::contentOf(f.folder.file("out/StatCET.dbf")), table);
    EXPECT_EQ(f.output("ET_Jul_4").values, et);
}

}  // namespace
}  // namespace velmora
