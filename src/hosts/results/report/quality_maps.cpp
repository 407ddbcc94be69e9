// SPDX-License-Identifier: MIT
#include "hosts/results/report/quality_maps.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>

#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "hosts/results/report/html.h"
#include "modelling/quality.h"
#include "modelling/quality_text.h"
#include "modelling/step_record.h"

namespace velmora {

namespace {

struct FlagColor {
    QualityFlag flag;
    Rgb color;
};

// Gravest first, and before a flag those that are never without it. A flag of all cells of a month
// would hide the others and is left to the table.
constexpr std::array kFlagColors = {
    FlagColor{QualityFlag::negativeEt, {165, 0, 38}},
    FlagColor{QualityFlag::maximumBelowMinimum, {90, 20, 90}},
    FlagColor{QualityFlag::dewPointAboveMaximum, {228, 88, 40}},
    FlagColor{QualityFlag::dewPointAboveMean, {253, 174, 97}},
    FlagColor{QualityFlag::radiationAboveExtraterrestrial, {231, 41, 138}},
    FlagColor{QualityFlag::radiationLow, {140, 109, 49}},
    FlagColor{QualityFlag::trendNotSignificant, {254, 224, 110}},
    FlagColor{QualityFlag::farFromStations, {84, 110, 190}},
    FlagColor{QualityFlag::windBeyondStations, {120, 190, 200}},
    FlagColor{QualityFlag::elevationBeyondStations, {171, 196, 226}},
};
constexpr Rgb kUnflagged = {222, 238, 217};

// nullptr for none, and for what is no sum of bits.
const FlagColor* gravestOf(float cell) {
    const bool isSum = cell >= 0 && cell < static_cast<float>(1U << kQualityFlags);
    const auto bits = isSum ? static_cast<unsigned>(cell) : 0;
    const auto* const found = std::ranges::find_if(
        kFlagColors, [&](const FlagColor& entry) { return (bits & bitOf(entry.flag)) != 0; });
    return found == kFlagColors.end() ? nullptr : found;
}

Rgb colorOf(float cell) {
    const FlagColor* gravest = gravestOf(cell);
    return gravest ? gravest->color : kUnflagged;
}

// The flags that a map shows, by their places among the colours.
struct Shown {
    std::array<bool, kFlagColors.size()> flags{};
    std::size_t flagged = 0;
    std::size_t cells = 0;  // with data
};

Shown shownIn(const Grid& grid) {
    Shown shown;
    for (const float cell : grid.values) {
        if (cell == kNoData) continue;
        ++shown.cells;
        const FlagColor* gravest = gravestOf(cell);
        if (!gravest) continue;
        ++shown.flagged;
        shown.flags.at(static_cast<std::size_t>(gravest - kFlagColors.data())) = true;
    }
    return shown;
}

std::string legendEntry(const Rgb& color, std::string_view text) {
    return fmt::format("<span><i class=\"box\" style=\"background:rgb({},{},{})\"></i>{}</span>",
                       color.red, color.green, color.blue, text);
}

std::string legendOf(const std::array<bool, kFlagColors.size()>& flags) {
    std::string html = "<p class=\"legend\">";
    for (std::size_t i = 0; i < flags.size(); ++i) {
        if (!flags.at(i)) continue;
        html += legendEntry(kFlagColors.at(i).color, textOf(kFlagColors.at(i).flag).text);
    }
    return html + legendEntry(kUnflagged, "none of these") + "</p>\n";
}

}  // namespace

std::string qualityMaps(IPlatform& platform, const RunSettings& settings, SmallMaps& maps) {
    const auto run = lastRun(platform.files(), settings.OutputWorkspace, "refet");
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    std::array<bool, kFlagColors.size()> flags{};
    std::string figures;
    for (const int month : settings.months()) {
        const std::string name = gridName(kQualityGrids, settings, month);
        if (!run || !run->lists(name) || !workspace->exists(name)) continue;
        const RasterPtr raster = workspace->openRasterDataset(name)->createDefaultRaster();
        const Shown shown = shownIn(wholeGrid(*raster));
        std::ranges::transform(flags, shown.flags, flags.begin(), std::logical_or<>());
        figures += maps.figure(
            *raster, colorOf, name,
            fmt::format("<b>{}</b> {}", GetMonthName(month),
                        shown.cells == 0
                            ? "no cell has data"
                            : shareText(shown.flagged, static_cast<double>(shown.flagged) /
                                                           static_cast<double>(shown.cells))));
    }
    if (figures.empty()) {
        return "<p class=\"note\">For maps of these cells let the command make a grid of flags "
               "with "
               "each month, <code>velmora run refet --quality</code>, and the report anew.</p>\n";
    }
    return "<section class=\"product\"><h3>Where</h3>\n<p class=\"note\">A cell with several flags "
           "has the colour of the first of them here; under each map, the share of cells with "
           "any.</p>\n" +
           legendOf(flags) + "<div class=\"maps\">\n" + figures + "</div></section>\n";
}

}  // namespace velmora
