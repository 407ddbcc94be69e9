// SPDX-License-Identifier: MIT
// The map that the user looks at.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "gis/features.h"
#include "gis/rasters.h"

namespace velmora {

struct Rgb {
    std::int16_t red = 0;
    std::int16_t green = 0;
    std::int16_t blue = 0;
    bool operator==(const Rgb&) const = default;
};

// Colours from one to another, computed by an algorithm of the host's colour ramps (1: through the
// CIE L*a*b* space, so that equal steps look equal).
struct AlgorithmicColorRamp {
    Rgb from;
    Rgb to;
    int algorithm = 1;
    int size = 256;
    // The ramp's colours, first to last. Throws PlatformError when a colour is outside 0..255 or
    // the size is below 2.
    std::vector<Rgb> colors() const;
};

// A raster shown in the map.
class IRasterLayer {
  public:
    virtual ~IRasterLayer() = default;
    virtual std::string name() const = 0;
    virtual std::string path() const = 0;
    // Shows band 0 stretched over the ramp. Throws PlatformError.
    virtual void setStretchedRenderer(const AlgorithmicColorRamp& ramp) = 0;
};

// The open document with its focus map.
class IMxDocument {
  public:
    virtual ~IMxDocument() = default;
    virtual std::unique_ptr<IRasterLayer> createRasterLayer(const std::string& path) = 0;
    virtual void addLayer(std::unique_ptr<IRasterLayer> layer) = 0;
    virtual void addTable(std::shared_ptr<ITable> table) = 0;
    virtual void refreshContents() = 0;
};

}  // namespace velmora
