// SPDX-License-Identifier: MIT
#include "hosts/results/standard/standard_differences.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "gis/errors.h"
#include "gis/field_value.h"
#include "gis/month_names.h"
#include "gis/polygon_analysis.h"
#include "hosts/results/grid_statistics.h"
#include "hosts/results/report/html.h"
#include "modelling/products.h"
#include "modelling/step_record.h"
#include "refet/standard_run.h"

namespace velmora {

namespace {

struct GridPair {
    RasterPtr ours;
    RasterPtr papers;
};

// The two grids of a month when the last run made both and both are there.
std::optional<GridPair> gridsOf(const StepRecord& run, IRasterWorkspace& workspace,
                                const RunSettings& settings, int month) {
    const std::string ours = gridName(productMadeBy("refet").made, settings, month);
    const std::string papers = gridName(kStandardGrids, settings, month);
    for (const std::string& name : {ours, papers}) {
        if (!run.lists(name) || !workspace.exists(name)) return std::nullopt;
    }
    return GridPair{workspace.openRasterDataset(ours)->createDefaultRaster(),
                    workspace.openRasterDataset(papers)->createDefaultRaster()};
}

// A raster only where both have data.
RasterPtr whereBoth(IPlatform& platform, const RasterPtr& raster, const RasterPtr& other) {
    const auto algebra = platform.analysis().mapAlgebra();
    useCells(algebra->environment(), raster->geometry());
    algebra->BindRaster(raster, "RASTER");
    algebra->BindRaster(other, "OTHER");
    return algebra->Execute("[RASTER] + 0 * [OTHER]");
}

void addZones(IPlatform& platform, const RunSettings& settings, const GridPair& grids, int month,
              std::vector<StandardDifference>& all) {
    const auto zones =
        platform.features().openFeatureClass(settings.Zones, grids.ours->geometry().crs);
    const auto tableOf = [&](const RasterPtr& raster) {
        return platform.analysis().zonal()->ZonalStatisticsAsTable(zones, settings.ZoneField,
                                                                   raster, true);
    };
    // Both have the same cells, and so the same zones in one order.
    const auto ours = tableOf(grids.ours);
    const auto papers = tableOf(grids.papers);
    for (std::size_t r = 0; r < ours->recordCount(); ++r) {
        const auto number = [&](const ITable& table, const char* field) {
            return std::get<double>(table.value(r, field));
        };
        all.push_back({month, keyText(ours->value(r, settings.ZoneField)),
                       static_cast<std::size_t>(number(*ours, "Count")), number(*ours, "Mean"),
                       number(*papers, "Mean")});
    }
}

void addMonth(IPlatform& platform, const RunSettings& settings, const GridPair& grids, int month,
              std::vector<StandardDifference>& all) {
    const GridStatistics ours = statisticsOf(*grids.ours);
    if (ours.cells == 0) return;
    all.push_back({month, "", ours.cells, ours.mean, statisticsOf(*grids.papers).mean});
    if (settings.Zones.empty() || settings.ZoneField.empty()) return;
    try {
        addZones(platform, settings, grids, month, all);
    } catch (const PlatformError&) {
        // The whole grid stands; zones that cannot be read are among the findings of a check.
    }
}

std::string cellText(const StandardDifference& d) {
    std::string text = fmt::format("{:+.3f}", d.difference());
    if (d.ours > 0) text += fmt::format(" ({:+.1f} %)", 100 * d.difference() / d.ours);
    return text;
}

// The names of the rows, in their order.
std::vector<std::string> zonesOf(const std::vector<StandardDifference>& differences) {
    std::vector<std::string> zones;
    for (const StandardDifference& d : differences) {
        if (std::ranges::find(zones, d.zone) == zones.end()) zones.push_back(d.zone);
    }
    return zones;
}

}  // namespace

std::vector<StandardDifference> standardDifferences(IPlatform& platform,
                                                    const RunSettings& settings) {
    std::vector<StandardDifference> all;
    const auto run = lastRun(platform.files(), settings.OutputWorkspace, "refet");
    if (!run) return all;
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    for (const int month : settings.months()) {
        const auto grids = gridsOf(*run, *workspace, settings, month);
        if (!grids) continue;
        addMonth(platform, settings,
                 {whereBoth(platform, grids->ours, grids->papers),
                  whereBoth(platform, grids->papers, grids->ours)},
                 month, all);
    }
    return all;
}

std::string standardSection(const std::vector<StandardDifference>& differences) {
    if (differences.empty()) return {};
    const std::vector<std::string> zones = zonesOf(differences);
    std::vector<std::string> heads = {"Inches"};
    std::vector<std::vector<std::string>> rows = {{"Mean of the method"}, {"By the papers"}};
    for (const std::string& zone : zones) {
        rows.push_back({zone.empty() ? "All cells" : escaped(zone)});
    }
    for (const StandardDifference& d : differences) {
        if (d.zone.empty()) {  // a month begins
            heads.push_back(GetMonthName(d.month));
            for (auto& row : rows) row.emplace_back("&ndash;");
            rows[0].back() = fmt::format("{:.3f}", d.ours);
            rows[1].back() = fmt::format("{:.3f}", d.papers);
        }
        const auto row = std::ranges::find(zones, d.zone) - zones.begin();
        rows.at(static_cast<std::size_t>(row) + 2).back() = cellText(d);
    }
    return "<h2 id=\"standard\">By the papers' choices</h2>\n<p class=\"note\">What the mean "
           "reference ET of a month, inches, would be more (+) or less (-) by the choices of the "
           "papers: their soil heat flux per degree, calendar years, a clear-sky ratio not below "
           "0.3, the floor of Blaney-Criddle's coefficient, nothing below 0. No other number of "
           "this run rests on it.</p>\n<div class=\"scroll\">" +
           htmlTable(heads, rows, 1) + "</div>\n";
}

}  // namespace velmora
