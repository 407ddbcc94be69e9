// SPDX-License-Identifier: MIT
// The platform in memory, on which unit tests stand, gives what the real one gives.
#include <gtest/gtest.h>

#include "crop/frm_kc_editor.h"
#include "gis/memory_raster.h"
#include "irrigation/net_irrigation_run.h"
#include "tests/support/irrigation_fixture.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using test::IrrigationDomain;

struct MemoryPlatform : testing::Test {
    test::IrrigationFixture disk;
    test::MemoryIrrigation memory;

    template <class Step>
    void onBoth(Step step) {
        step(static_cast<IrrigationDomain&>(disk));
        step(static_cast<IrrigationDomain&>(memory));
    }
    void expectSameGrid(const std::string& name) {
        const Grid real = disk.output(name);
        const Grid fake = memory.output(name);
        EXPECT_TRUE(real.geometry.sameCells(fake.geometry)) << name;
        EXPECT_EQ(real.values, fake.values) << name;
    }
};

TEST_F(MemoryPlatform, RequirementsAndTheirTable) {
    onBoth([](IrrigationDomain& f) {
        f.saveMonths(6, 7);
        Grid ppt(f.cells, 2);
        for (int c = 0; c < 4; ++c) ppt.at(c, 6) = kNoData;
        f.save("PPT_Jul", std::make_shared<MemoryRaster>(ppt));
        ASSERT_TRUE(runNetIrrigation(f.application, f.settings)) << f.allMessages();
    });
    expectSameGrid("NIR_Jun");
    expectSameGrid("NIR_Jul");
    const auto real = disk.tableRows("StatNIR");
    const auto fake = memory.tableRows("StatNIR");
    ASSERT_EQ(real.size(), fake.size());
    for (std::size_t r = 0; r < real.size(); ++r) {
        EXPECT_EQ(keyText(real[r][0]), keyText(fake[r][0]));
        for (std::size_t c = 1; c < real[r].size(); ++c) {
            EXPECT_NEAR(std::get<double>(real[r][c]), std::get<double>(fake[r][c]), 2e-3) << c;
        }
    }
}

TEST_F(MemoryPlatform, MapsOfPolygons) {
    onBoth([](IrrigationDomain& f) {
        frmKcEditor form(f.application, f.settings);
        form.load();
        form.cmdMakeMap.click();
        ASSERT_FALSE(form.failed()) << f.allMessages();
    });
    expectSameGrid("Kc_Jun_4");
    expectSameGrid("Kc_Jul_4");
}

TEST_F(MemoryPlatform, CropEtOnMapsOfAnotherCellSize) {
    onBoth([](IrrigationDomain& f) {
        const GridGeometry fine{120, 70, 400250, 4499875, 125, f.cells.crs};
        Grid kc(fine);
        for (std::size_t i = 0; i < kc.values.size(); ++i) {
            kc.values[i] = static_cast<float>(i % 13) / 10;
        }
        Grid reference(f.cells);
        for (std::size_t i = 0; i < reference.values.size(); ++i) {
            reference.values[i] = static_cast<float>(i % 17) / 3;
        }
        for (const std::string month : {"Jun", "Jul"}) {
            f.save("Kc_" + month, std::make_shared<MemoryRaster>(kc));
            f.save("RefET_" + month + "_4", std::make_shared<MemoryRaster>(reference));
        }
        ASSERT_TRUE(f.runCropEt()) << f.allMessages();
    });
    expectSameGrid("ET_Jun_4");
    expectSameGrid("ET_Jul_4");
}

}  // namespace
}  // namespace velmora
