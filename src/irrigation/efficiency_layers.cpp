// SPDX-License-Identifier: MIT
#include "irrigation/efficiency_layers.h"

#include "settings/modelling_extent.h"

namespace velmora {

namespace {

std::shared_ptr<IFeatureClass> opened(IPlatform& platform, const RunSettings& settings,
                                      const std::string& path, const std::string& what) {
    if (path.empty()) {
        throw PlatformError("The " + what +
                            " shapefile is not set: choose it in the General Settings");
    }
    return platform.features().openFeatureClass(path, domainCrs(platform, settings));
}

void requireField(const IFeatureClass& layer, const std::string& field) {
    if (layer.fieldIndex(field) >= 0) return;
    throw PlatformError("The shapefile " + layer.path() + " has no field \"" + field + "\"");
}

}  // namespace

EfficiencyLayers openEfficiencyLayers(IPlatform& platform, const RunSettings& settings) {
    return {opened(platform, settings, settings.LandCover, "land cover"),
            opened(platform, settings, settings.Zones, "zone")};
}

void requireOverlay(IPlatform& platform, const RunSettings& settings,
                    const EfficiencyLayers& layers) {
    requireField(*layers.landCover, kCropField);
    requireField(*layers.zones, settings.ZoneField);
    requireMetres(platform, *layers.landCover, "land cover");
}

bool areApart(const EfficiencyLayers& layers) {
    if (layers.landCover->recordCount() == 0 || layers.zones->recordCount() == 0) return true;
    const Envelope a = layers.landCover->extent();
    const Envelope b = layers.zones->extent();
    return a.xMax < b.xMin || b.xMax < a.xMin || a.yMax < b.yMin || b.yMax < a.yMin;
}

PlatformError noCommonLand(const RunSettings& settings) {
    return PlatformError("The land cover " + settings.LandCover + " and the zones " +
                         settings.Zones + " have no land in common");
}

}  // namespace velmora
