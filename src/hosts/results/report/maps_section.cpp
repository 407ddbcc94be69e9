// SPDX-License-Identifier: MIT
#include "hosts/results/report/maps_section.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <span>

#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/results/cell_image.h"
#include "hosts/results/report/html.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

constexpr int kMapSide = 250;          // pixels of a small map's longer side
constexpr double kShownWidth = 180;    // of a map on the page
constexpr double kSmallestStep = 0.3;  // of that, between the points of an outline

// The zones' outlines over maps: drawn once for each extent, then referred to.
class Outlines {
  public:
    Outlines(IPlatform& platform, const RunSettings& settings, std::vector<std::string>* missing)
        : platform_(platform), settings_(settings), missing_(missing) {}

    // Over a map of these cells; "" where zones cannot be drawn.
    std::string over(const GridGeometry& g) {
        if (settings_.Zones.empty() || failed_) return {};
        const std::string key =
            fmt::format("{} {} {} {} {}", g.columns, g.rows, g.xMin, g.yMax, g.cellSize);
        const auto [place, isNew] = ids_.try_emplace(key, fmt::format("zones-{}", ids_.size()));
        const std::string inner =
            isNew ? drawn(g, place->second) : "<use href=\"#" + place->second + "\"/>";
        if (failed_) return {};
        return fmt::format("<svg class=\"over\" viewBox=\"0 0 {} {}\">{}</svg>", g.columns, g.rows,
                           inner);
    }

  private:
    std::string drawn(const GridGeometry& g, const std::string& id) {
        try {
            std::string path;
            platform_.features()
                .openFeatureClass(settings_.Zones)
                ->forEachRing(g.crs, [&](std::span<const Point> ring) { append(path, ring, g); });
            // Its look goes with it, as style sheets may not reach what a reference shows.
            return "<path id=\"" + id +
                   "\" fill=\"none\" stroke=\"#20343d\" stroke-width=\".8\" "
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

    static void append(std::string& path, std::span<const Point> ring, const GridGeometry& g) {
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

    IPlatform& platform_;
    const RunSettings& settings_;
    std::vector<std::string>* missing_;
    std::map<std::string, std::string> ids_;  // by extent
    bool failed_ = false;
};

// A bar of a round length, at most half as wide as the product's maps.
std::string scaleOf(IRasterWorkspace& workspace, const ProductGrids& product) {
    const RasterPtr raster =
        workspace.openRasterDataset(product.grids.front().name)->createDefaultRaster();
    const GridGeometry& g = raster->geometry();
    const double half = g.columns * g.cellSize / 2;
    const double magnitude = std::pow(10.0, std::floor(std::log10(half)));
    double length = magnitude;
    for (const double step : {2.0, 5.0}) {
        if (step * magnitude <= half) length = step * magnitude;
    }
    return fmt::format(
        "<p class=\"bar\"><i style=\"width:{:.1f}px\"></i>{}</p>\n",
        length / (g.columns * g.cellSize) * kShownWidth,
        length >= 1000 ? fmt::format("{:g} km", length / 1000) : fmt::format("{:g} m", length));
}

std::string legendOf(const ProductGrids& product, const std::vector<Rgb>& colors) {
    std::string stops;
    for (std::size_t i = 0; i <= 8; ++i) {
        const Rgb& color = colors[i * (colors.size() - 1) / 8];
        stops += fmt::format("{}rgb({},{},{})", i ? "," : "", color.red, color.green, color.blue);
    }
    return fmt::format(
        "<p class=\"ramp\">{:.3g}<i style=\"background:linear-gradient(to right,{})"
        "\"></i>{:.3g} {} &middot; light grey: no data</p>\n",
        product.minimum, stops, product.maximum, product.product->unit);
}

// How the grids came about; of precipitation its record tells by which of two ways.
std::string_view meaningOf(const RunRecords& records, const Product& product) {
    if (product.maker != "ppt") return product.meaning;
    const RecordedStep* run = records.of(product.maker);
    if (!run) return "The water that falls in the month; no record tells how it was made";
    return precipitationMethod(run->settings) == PrecipitationMethod::reference
               ? "Reference grids, scaled by their ratios to the stations, which are interpolated"
               : product.meaning;
}

std::string smallMap(IRasterWorkspace& workspace, Outlines& outlines, const ProductGrid& grid,
                     const ColorScale& scale) {
    const RasterPtr raster = workspace.openRasterDataset(grid.name)->createDefaultRaster();
    const GridGeometry& g = raster->geometry();
    const double pixels = static_cast<double>(kMapSide) / std::max(g.columns, g.rows);
    const auto side = [&](int cells) {
        return std::max(1, static_cast<int>(std::lround(cells * pixels)));
    };
    return fmt::format(
        "<figure><div class=\"map\"><img alt=\"{} {}\" "
        "src=\"data:image/png;base64,{}\">{}</div><figcaption><b>{}</b> mean "
        "{:.3g}, {:.3g} to {:.3g}</figcaption></figure>\n",
        escaped(grid.name), grid.label,
        base64(pngBytes(cellImage(*raster, scale, side(g.columns), side(g.rows)))),
        outlines.over(g), grid.label, grid.statistics.mean, grid.statistics.minimum,
        grid.statistics.maximum);
}

}  // namespace

std::string mapsSection(IPlatform& platform, const RunResults& results,
                        std::vector<std::string>* missing) {
    std::string html = "<h2 id=\"maps\">Maps</h2>\n";
    Outlines outlines(platform, results.settings, missing);
    const auto workspace = platform.rasters().openFromFolder(results.settings.OutputWorkspace);
    for (const ProductGrids& product : results.products) {
        html += fmt::format("<h3>{}</h3>\n<p class=\"note\">{}.</p>\n", product.product->title,
                            meaningOf(results.records, *product.product));
        if (product.minimum <= product.maximum) {
            const std::vector<Rgb> colors = product.product->ramp.colors();
            html +=
                legendOf(product, colors) + scaleOf(*workspace, product) + "<div class=\"maps\">\n";
            std::vector<std::string> empty;
            for (const ProductGrid& grid : product.grids) {
                if (grid.statistics.cells == 0) {
                    empty.push_back(grid.label);
                } else {
                    html += smallMap(*workspace, outlines, grid,
                                     {colors, product.minimum, product.maximum});
                }
            }
            html += "</div>\n";
            if (!empty.empty()) {
                html += "<p class=\"note\">No cell has data in: " + joinedNames(empty) + ".</p>\n";
            }
        } else if (!product.grids.empty()) {
            html += "<p>No cell of these grids has data.</p>\n";
        }
        if (!product.missing.empty()) {
            html +=
                "<p class=\"note\">Not made: " + escaped(joinedNames(product.missing)) + ".</p>\n";
        }
    }
    return html;
}

}  // namespace velmora
