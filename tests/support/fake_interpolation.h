// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "gis/analysis.h"
#include "tests/support/fake_environment.h"

namespace velmora::test {

// Inverse distance weighting cell by cell. Coincident stations are not made one, and there is no
// kriging: it never has a surface, so that steps fall back on the weighting.
class FakeInterpolation : public IInterpolationOp {
  public:
    FakeEnvironment& environment() override { return environment_; }
    RasterPtr IDW(const std::vector<Sample>& samples, double power, int nearest) override;
    RasterPtr Krige(const std::vector<Sample>&, SemivariogramType, int) override { return nullptr; }
    std::optional<Semivariogram> semivariogram(const std::vector<Sample>&) const override {
        return std::nullopt;
    }

  private:
    FakeEnvironment environment_;
};

}  // namespace velmora::test
