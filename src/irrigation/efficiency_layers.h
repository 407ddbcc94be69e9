// SPDX-License-Identifier: MIT
// The land cover and the zones that the efficiency map cuts by each other.
#pragma once

#include <memory>

#include "gis/application.h"
#include "gis/errors.h"
#include "irrigation/irrigation_inputs.h"
#include "settings/run_settings.h"

namespace velmora {

struct EfficiencyLayers {
    std::shared_ptr<IFeatureClass> landCover;
    std::shared_ptr<IFeatureClass> zones;
};

// Both in the coordinate system of the extent provider. Throws PlatformError.
EfficiencyLayers openEfficiencyLayers(IPlatform& platform, const RunSettings& settings);

// Throws PlatformError for layers that cannot be cut: without the field of crop types or of zones,
// or with a land cover that is not in metres.
void requireOverlay(IPlatform& platform, const RunSettings& settings,
                    const EfficiencyLayers& layers);

// Whether the boxes around them show that they have no land in common. Layers that come near each
// other may have none either, which the cutting tells. Throws PlatformError.
bool areApart(const EfficiencyLayers& layers);

PlatformError noCommonLand(const RunSettings& settings);

}  // namespace velmora
