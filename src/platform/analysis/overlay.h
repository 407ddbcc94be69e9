// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/polygon_analysis.h"

namespace velmora::platform {

class OverlayOp : public IOverlayOp {
  public:
    OverlayResult Intersect(const OverlayLayer& first, const OverlayLayer& second,
                            const std::string& path) override;
};

}  // namespace velmora::platform
