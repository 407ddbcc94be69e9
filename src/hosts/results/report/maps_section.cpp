// SPDX-License-Identifier: MIT
#include "hosts/results/report/maps_section.h"

#include <fmt/format.h>

#include "gis/text.h"
#include "hosts/results/report/html.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

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

std::string captionOf(const ProductGrid& grid) {
    return fmt::format("<b>{}</b> mean {:.3g}, {:.3g} to {:.3g}", grid.label, grid.statistics.mean,
                       grid.statistics.minimum, grid.statistics.maximum);
}

std::string mapsOf(const ProductGrids& product, IRasterWorkspace& workspace, SmallMaps& maps) {
    const std::vector<Rgb> colors = product.product->ramp.colors();
    const CellColors scale = colorsOf({colors, product.minimum, product.maximum});
    std::string figures;
    std::string bar;
    std::vector<std::string> empty;
    for (const ProductGrid& grid : product.grids) {
        if (grid.statistics.cells == 0) {
            empty.push_back(grid.label);
            continue;
        }
        const RasterPtr raster = workspace.openRasterDataset(grid.name)->createDefaultRaster();
        if (bar.empty()) bar = SmallMaps::scaleBar(raster->geometry());
        figures += maps.figure(*raster, scale, grid.name + " " + grid.label, captionOf(grid));
    }
    std::string html =
        legendOf(product, colors) + bar + "<div class=\"maps\">\n" + figures + "</div>\n";
    if (!empty.empty()) {
        html += "<p class=\"note\">No cell has data in: " + joinedNames(empty) + ".</p>\n";
    }
    return html;
}

}  // namespace

std::string mapsSection(IPlatform& platform, const RunResults& results, SmallMaps& maps) {
    std::string html = "<h2 id=\"maps\">Maps</h2>\n";
    const auto workspace = platform.rasters().openFromFolder(results.settings.OutputWorkspace);
    for (const ProductGrids& product : results.products) {
        html += fmt::format("<section class=\"product\"><h3>{}</h3>\n<p class=\"note\">{}.</p>\n",
                            product.product->title, meaningOf(results.records, *product.product));
        if (product.minimum <= product.maximum) {
            html += mapsOf(product, *workspace, maps);
        } else if (!product.grids.empty()) {
            html += "<p>No cell of these grids has data.</p>\n";
        }
        if (!product.missing.empty()) {
            html +=
                "<p class=\"note\">Not made: " + escaped(joinedNames(product.missing)) + ".</p>\n";
        }
        html += "</section>\n";
    }
    return html;
}

}  // namespace velmora
