// SPDX-License-Identifier: MIT
#include "modelling/station_interpolation.h"

#include <gtest/gtest.h>

#include "gis/errors.h"
#include "gis/memory_raster.h"

namespace velmora {
namespace {

// Notes what it is asked for; kriging gives nothing, fails or works.
class FakeInterpolation : public IInterpolationOp {
  public:
    enum class Kriging { works, givesNothing, fails };
    explicit FakeInterpolation(Kriging kriging) : kriging_(kriging) {}

    IRasterAnalysisEnvironment& environment() override {
        throw PlatformError("not asked for here");
    }
    RasterPtr IDW(const std::vector<Sample>&, double power, int nearest) override {
        EXPECT_EQ(power, 2.0);
        EXPECT_EQ(nearest, 12);
        return weighted;
    }
    RasterPtr Krige(const std::vector<Sample>&, SemivariogramType type, int nearest) override {
        EXPECT_EQ(static_cast<int>(type), 2);
        EXPECT_EQ(nearest, 12);
        if (kriging_ == Kriging::fails) throw PlatformError("no kriging today");
        return kriging_ == Kriging::works ? kriged : nullptr;
    }
    std::optional<Semivariogram> semivariogram(const std::vector<Sample>&) const override {
        return std::nullopt;
    }

    RasterPtr weighted = std::make_shared<MemoryRaster>(Grid({1, 1, 0, 1, 1, ""}, 1));
    RasterPtr kriged = std::make_shared<MemoryRaster>(Grid({1, 1, 0, 1, 1, ""}, 2));

  private:
    Kriging kriging_;
};

TEST(StationInterpolation, InverseDistanceWhereKrigingHasNoSurface) {
    using Kriging = FakeInterpolation::Kriging;
    FakeInterpolation works(Kriging::works);
    const auto made = [](FakeInterpolation& fake, Estimator estimator) {
        const Interpolated surface = interpolate(fake, estimator, {});
        EXPECT_EQ(surface.kriged, surface.raster == fake.kriged);
        return surface.raster;
    };
    EXPECT_EQ(made(works, Estimator::kriging), works.kriged);
    FakeInterpolation nothing(Kriging::givesNothing);
    EXPECT_EQ(made(nothing, Estimator::kriging), nothing.weighted);
    FakeInterpolation fails(Kriging::fails);
    EXPECT_EQ(made(fails, Estimator::kriging), fails.weighted);
    EXPECT_EQ(made(works, Estimator::inverseDistance), works.weighted);
}

}  // namespace
}  // namespace velmora
