// SPDX-License-Identifier: MIT
#include "settings/modelling_extent.h"

#include <algorithm>
#include <cmath>

#include "gis/errors.h"
#include "gis/projection.h"
#include "gis/text.h"

namespace velmora {

namespace {

constexpr double kLargestCount = 32767;

int truncated(double count) {
    return static_cast<int>(std::floor(std::clamp(count, 0.0, 2147483647.0)));
}

bool is16Bit(double count) { return std::fabs(count) <= kLargestCount; }  // false for not-a-number

}  // namespace

Envelope extentOf(IFeatureWorkspaceFactory& features, const std::string& providerPath) {
    return features.openFeatureClass(providerPath)->extent();
}

float proposedCellSize(const Envelope& extent) {
    return static_cast<float>(std::min(extent.width(), extent.height()) / 250);
}

CellCounts truncatedCounts(const Envelope& extent, double cellSize) {
    if (!(cellSize > 0)) throw PlatformError("The extent has no width or height");
    return {truncated(extent.width() / cellSize), truncated(extent.height() / cellSize)};
}

std::optional<CellCounts> roundedCounts(const Envelope& extent, double cellSize) {
    const double width = std::nearbyint(extent.width() / cellSize);
    const double height = std::nearbyint(extent.height() / cellSize);
    if (cellSize == 0 || !is16Bit(width) || !is16Bit(height)) return std::nullopt;
    return CellCounts{static_cast<int>(width), static_cast<int>(height)};
}

std::string domainCrs(IPlatform& platform, const RunSettings& settings) {
    if (settings.ExtentProvider.empty()) return {};
    return platform.features().openFeatureClass(settings.ExtentProvider)->crs();
}

void requireMetres(IPlatform& platform, const IFeatureClass& layer, const std::string& what) {
    if (layer.crs().empty()) return;  // nothing tells that it is not
    ISpatialReferenceFactory& systems = platform.spatialReferences();
    const std::string unit = unitOtherThanMetres(systems, layer.crs());
    if (unit.empty()) return;
    throw PlatformError(
        "The " + what + " " + withoutEnding(layer.path(), ".shp") + " is in " + unit + " (" +
            systems.name(layer.crs()) +
            "), but cell sizes are metres: project it, or set an extent provider in "
            "metres in the General Settings",
        {.file = layer.path()});
}

GridGeometry runGeometry(IPlatform& platform, const RunSettings& settings) {
    const auto provider = platform.features().openFeatureClass(settings.ExtentProvider);
    const std::string crs = provider->crs();
    if (crs.empty()) {
        throw PlatformError(
            "The extent provider " + settings.ExtentProvider +
                " has no coordinate system (.prj): give it one, since latitudes are "
                "computed from it",
            {.file = settings.ExtentProvider});
    }
    auto& systems = platform.spatialReferences();
    const std::string unit = unitOtherThanMetres(systems, crs);
    if (!unit.empty()) {
        throw PlatformError(
            "The extent provider " + settings.ExtentProvider + " is in " + unit + " (" +
                systems.name(crs) +
                "), but cell sizes are metres: project it to a system in metres, such "
                "as UTM",
            {.file = settings.ExtentProvider});
    }
    return GridGeometry::covering(provider->extent(), settings.CellSize, crs);
}

}  // namespace velmora
