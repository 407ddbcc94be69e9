// SPDX-License-Identifier: MIT
#include "hosts/results/report/station_map.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <span>

#include "gis/text.h"
#include "hosts/results/cell_image.h"
#include "hosts/results/grid_statistics.h"
#include "hosts/results/report/html.h"
#include "modelling/station_fields.h"
#include "settings/modelling_extent.h"

namespace velmora {

namespace {

constexpr int kLongestSide = 720;      // pixels of the terrain
constexpr double kMargin = 60;         // for stations beside the domain
constexpr double kSmallestStep = 0.7;  // pixels between the points of an outline

// Map coordinates to pixels.
class Frame {
  public:
    explicit Frame(const GridGeometry& g) : extent_(g.extent()) {
        scale_ = kLongestSide / std::max(extent_.width(), extent_.height());
    }
    double x(double easting) const { return kMargin + (easting - extent_.xMin) * scale_; }
    double y(double northing) const { return kMargin + (extent_.yMax - northing) * scale_; }
    double width() const { return extent_.width() * scale_; }
    double height() const { return extent_.height() * scale_; }
    bool shows(Point p) const {
        return x(p.x) > 6 && y(p.y) > 6 && x(p.x) < width() + 2 * kMargin - 6 &&
               y(p.y) < height() + 2 * kMargin - 6;
    }

  private:
    Envelope extent_;
    double scale_ = 1;
};

void appendRing(std::string& path, std::span<const Point> ring, const Frame& frame) {
    double lastX = 0;
    double lastY = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const double x = frame.x(ring[i].x);
        const double y = frame.y(ring[i].y);
        if (i > 0 && std::hypot(x - lastX, y - lastY) < kSmallestStep) continue;
        path += fmt::format("{}{:.1f},{:.1f}", i == 0 ? "M" : "L", x, y);
        lastX = x;
        lastY = y;
    }
    path += "Z";
}

std::string zoneOutlines(IPlatform& platform, const RunSettings& settings, const std::string& crs,
                         const Frame& frame) {
    if (settings.Zones.empty()) return {};
    std::string path;
    platform.features()
        .openFeatureClass(settings.Zones)
        ->forEachRing(crs, [&](std::span<const Point> ring) { appendRing(path, ring, frame); });
    return "<path d=\"" + path + "\" class=\"zone\"/>\n";
}

std::string stations(IPlatform& platform, const RunSettings& settings, const std::string& crs,
                     const Frame& frame) {
    const auto layer = platform.features().openFeatureClass(settings.WeatherStations);
    const std::vector<Point> points = layer->points(crs);
    const bool named = layer->fieldIndex(kStationNameField) >= 0;
    std::string svg;
    std::size_t outside = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!frame.shows(points[i])) {
            ++outside;
            continue;
        }
        const std::string name =
            named ? keyText(layer->value(i, kStationNameField)) : std::string();
        const double x = frame.x(points[i].x);
        const bool leftward = x > frame.width();
        svg += fmt::format(
            "<circle cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"4.5\" class=\"station\"/>"
            "<text x=\"{:.1f}\" y=\"{:.1f}\" class=\"station\" text-anchor=\"{}\">{}</text>\n",
            x, frame.y(points[i].y), x + (leftward ? -8 : 8), frame.y(points[i].y) + 4,
            leftward ? "end" : "start", escaped(name));
    }
    if (outside > 0) {
        svg += fmt::format(
            "<text x=\"8\" y=\"16\" class=\"axis\">{} more station(s) outside this "
            "map</text>\n",
            outside);
    }
    return svg;
}

}  // namespace

std::string stationMap(IPlatform& platform, const RunSettings& settings) {
    const GridGeometry cells = runGeometry(platform, settings);
    const auto algebra = platform.analysis().mapAlgebra();
    useCells(algebra->environment(), cells);
    algebra->BindRaster(platform.rasters().openRasterDataset(settings.DEM)->createDefaultRaster(),
                        "DEM");
    const RasterPtr terrain = algebra->Execute("[DEM]");
    const GridStatistics s = statisticsOf(*terrain);
    const Frame frame(cells);
    const AlgorithmicColorRamp heights{{86, 125, 70}, {245, 240, 225}};
    const std::string image =
        pngBytes(cellImage(*terrain, colorsOf({heights.colors(), s.minimum, s.maximum}),
                           static_cast<int>(frame.width()), static_cast<int>(frame.height())));
    return fmt::format(
        "<svg class=\"stations\" viewBox=\"0 0 {:.0f} {:.0f}\" role=\"img\" aria-label=\"Weather "
        "stations, zones and terrain\">\n<image x=\"{}\" y=\"{}\" width=\"{:.1f}\" "
        "height=\"{:.1f}\" "
        "href=\"data:image/png;base64,{}\"/>\n{}{}</svg>\n<p class=\"note\">Terrain of the run's "
        "grid, {:.0f} m (green) to {:.0f} m (light), with the zones' outlines and the weather "
        "stations.</p>\n",
        frame.width() + 2 * kMargin, frame.height() + 2 * kMargin, kMargin, kMargin, frame.width(),
        frame.height(), base64(image), zoneOutlines(platform, settings, cells.crs, frame),
        stations(platform, settings, cells.crs, frame), s.minimum, s.maximum);
}

}  // namespace velmora
