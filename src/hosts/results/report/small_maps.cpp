// SPDX-License-Identifier: MIT
#include "hosts/results/report/small_maps.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <span>

#include "gis/errors.h"
#include "hosts/results/report/html.h"

namespace velmora {

namespace {

constexpr int kLongerSide = 250;       // pixels of an image
constexpr double kShownWidth = 180;    // of a map on a screen
constexpr double kSmallestStep = 0.3;  // of that, between the points of an outline

void appendRing(std::string& path, std::span<const Point> ring, const GridGeometry& g) {
    const double step = kSmallestStep * g.columns / kShownWidth;
    double lastX = 0;
    double lastY = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const double x = (ring[i].x - g.xMin) / g.cellSize;
        const double y = (g.yMax - ring[i].y) / g.cellSize;
        if (i > 0 && std::hypot(x - lastX, y - lastY) < step) continue;
        path += fmt::format("{}{:.1f},{:.1f}", i == 0 ? "M" : "L", x, y);
        lastX = x;
        lastY = y;
    }
    path += "Z";
}

// On paper maps that are wider than high get more room (style sheet).
const char* shapeOf(const GridGeometry& g) { return g.columns > g.rows ? "wide" : "high"; }

}  // namespace

std::string SmallMaps::figure(const IRaster& raster, const CellColors& colors,
                              const std::string& name, const std::string& caption) {
    const GridGeometry& g = raster.geometry();
    const double pixels = static_cast<double>(kLongerSide) / std::max(g.columns, g.rows);
    const auto side = [&](int cells) {
        return std::max(1, static_cast<int>(std::lround(cells * pixels)));
    };
    return fmt::format(
        "<figure class=\"{}\"><div class=\"map\"><img alt=\"{}\" "
        "src=\"data:image/png;base64,{}\">{}</div>"
        "<figcaption>{}</figcaption></figure>\n",
        shapeOf(g), escaped(name),
        base64(pngBytes(cellImage(raster, colors, side(g.columns), side(g.rows)))), outlinesOver(g),
        caption);
}

std::string SmallMaps::outlinesOver(const GridGeometry& g) {
    if (settings_.Zones.empty() || failed_) return {};
    const std::string key =
        fmt::format("{} {} {} {} {}", g.columns, g.rows, g.xMin, g.yMax, g.cellSize);
    const auto [place, isNew] =
        outlines_.try_emplace(key, fmt::format("zones-{}", outlines_.size()));
    const std::string inner =
        isNew ? drawnOutlines(g, place->second) : "<use href=\"#" + place->second + "\"/>";
    if (failed_) return {};
    return fmt::format("<svg class=\"over\" viewBox=\"0 0 {} {}\">{}</svg>", g.columns, g.rows,
                       inner);
}

std::string SmallMaps::drawnOutlines(const GridGeometry& g, const std::string& id) {
    try {
        std::string path;
        platform_.features()
            .openFeatureClass(settings_.Zones)
            ->forEachRing(g.crs, [&](std::span<const Point> ring) { appendRing(path, ring, g); });
        // Its look goes with it, as style sheets may not reach what a reference shows.
        return "<path id=\"" + id +
               "\" fill=\"none\" stroke=\"#20343d\" style=\"stroke-width:var(--outline)\" "
               "vector-effect=\"non-scaling-stroke\" d=\"" +
               path + "\"/>";
    } catch (const PlatformError& e) {
        failed_ = true;
        if (missing_) {
            missing_->push_back("The report's maps have no zones: " + std::string(e.what()));
        }
        return {};
    }
}

std::string SmallMaps::scaleBar(const GridGeometry& cells) {
    const double width = cells.columns * cells.cellSize;
    const double magnitude = std::pow(10.0, std::floor(std::log10(width / 2)));
    double length = magnitude;
    for (const double step : {2.0, 5.0}) {
        if (step * magnitude <= width / 2) length = step * magnitude;
    }
    return fmt::format(
        "<p class=\"bar {}\"><i style=\"width:calc({:.4f}*var(--map))\"></i>{}</p>\n",
        shapeOf(cells), length / width,
        length >= 1000 ? fmt::format("{:g} km", length / 1000) : fmt::format("{:g} m", length));
}

}  // namespace velmora
