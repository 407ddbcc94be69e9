// SPDX-License-Identifier: MIT
#include "refet/run_quality.h"

#include <algorithm>
#include <array>

#include "gis/error_trap.h"
#include "gis/gis_functions.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "modelling/quality_text.h"
#include "refet/cell_transfer.h"

namespace velmora {

namespace {

constexpr double kMetresPerKilometre = 1000;

constexpr std::array kOfTheMonth = {QualityFlag::negativeEt,
                                    QualityFlag::dewPointAboveMean,
                                    QualityFlag::dewPointAboveMaximum,
                                    QualityFlag::maximumBelowMinimum,
                                    QualityFlag::radiationAboveExtraterrestrial,
                                    QualityFlag::radiationLow,
                                    QualityFlag::windBeyondStations};

// Reference ET and shares are told as they are, the others as how far they are beyond.
double toldValue(QualityFlag flag, double badness) {
    using enum QualityFlag;
    if (flag == negativeEt || flag == radiationLow) return -badness;
    return flag == farFromStations ? badness / kMetresPerKilometre : badness;
}

// What both hold.
void narrow(std::optional<Range>& range, const Range& other) {
    range =
        range ? Range{std::max(range->low, other.low), std::min(range->high, other.high)} : other;
}

}  // namespace

RunQuality::RunQuality(const Of& run)
    : run_(run), elevations_(run.cells.values(CellField::Elevation)) {
    if (wanted()) bits_.resize(run.cells.rowCount());
}

std::string RunQuality::name(int month) const {
    return gridName(kQualityGrids, run_.settings, month);
}

PieceSeen RunQuality::watch(int month) {
    const SurfaceGround* wind = run_.surfaces.ground("WS_" + GetMonthName(month));
    month_.emplace(run_.cells, static_cast<std::size_t>(run_.geometry.rows), run_.noData,
                   run_.settings.needsFullWeather(),
                   wind ? std::optional(wind->values) : std::nullopt, bits_);
    return [this](std::size_t begin, std::size_t end,
                  std::span<const std::optional<double>> radiation) {
        month_->look(begin, end, radiation);
    };
}

RunQuality::Stations RunQuality::stationsOf(int month) const {
    Stations found;
    for (const char* prefix : {"TM_", "TN_", "TD_"}) {
        const std::string surface = prefix + GetMonthName(month);
        const SurfaceGround* ground = run_.surfaces.ground(surface);
        if (!ground || !ground->elevation) continue;
        if (found.places.empty()) found.places = ground->stations;
        narrow(found.elevation, *ground->elevation);
        if (!ground->slopeIsChance()) continue;
        narrow(found.ofChance, *ground->elevation);
        found.byChance.push_back(surface);
    }
    return found;
}

QualityTally RunQuality::beyond(const Range& range) {
    const auto before =
        std::ranges::find(elevationsBeyond_, range, [](const auto& pair) { return pair.first; });
    if (before != elevationsBeyond_.end()) return before->second;
    elevationsBeyond_.emplace_back(range, tallyElevations(run_.application.platform().loop(),
                                                          elevations_, run_.noData, range));
    return elevationsBeyond_.back().second;
}

void RunQuality::countStations(const Stations& stations) {
    if (stations.places == places_) return;
    places_ = stations.places;
    distances_ = tallyDistances(run_.application.platform().loop(), elevations_, run_.noData,
                                run_.geometry, places_, kFarFromStations);
}

std::vector<QualityFlag> RunQuality::estimatedIn(int month) const {
    std::vector<QualityFlag> flags;
    if (!run_.settings.needsFullWeather()) return flags;
    using enum QualityFlag;
    for (const auto& [prefix, flag] :
         {std::pair{"TD_", dewPointEstimated}, std::pair{"SR_", radiationEstimated},
          std::pair{"WS_", windEstimated}}) {
        if (!run_.surfaces.made(prefix + GetMonthName(month))) flags.push_back(flag);
    }
    return flags;
}

QualityNote::Flag RunQuality::flagOf(QualityFlag flag, const QualityTally& tally) const {
    QualityNote::Flag told = flagOfAll(flag);
    const auto rows = static_cast<std::size_t>(run_.geometry.rows);
    told.share = static_cast<double>(tally.cells) / static_cast<double>(told.cells);
    told.cells = tally.cells;
    told.worst = QualityNote::Worst{toldValue(flag, tally.worst), tally.record / rows + 1,
                                    tally.record % rows + 1};
    return told;
}

// Of all cells with data.
QualityNote::Flag RunQuality::flagOfAll(QualityFlag flag) const {
    QualityNote::Flag told;
    told.flag = textOf(flag).text;
    told.unit = textOf(flag).unit;
    told.bit = bitOf(flag);
    told.cells = month_->cells();
    told.share = 1;
    return told;
}

void RunQuality::tell(int month, bool heatFluxTakenAsZero) {
    if (month_->cells() == 0) return;
    QualityNote note;
    note.grid = gridName(productMadeBy("refet").made, run_.settings, month);
    note.month = GetMonthName(month);
    note.cells = month_->cells();
    std::vector<std::string> lines;
    const auto add = [&](QualityFlag flag, const QualityTally& tally) {
        if (tally.cells > 0) note.flags.push_back(flagOf(flag, tally));
        return tally.cells > 0;
    };
    for (const QualityFlag flag : kOfTheMonth) {
        if (add(flag, month_->tally(flag))) lines.push_back(flagText(note.flags.back()));
    }
    // What the stations do not bear out is mostly the same in each month, and told once then.
    const Stations stations = stationsOf(month);
    countStations(stations);
    std::vector<std::string> ofStations;
    const auto addOfStations = [&](QualityFlag flag, const QualityTally& tally) {
        if (add(flag, tally)) ofStations.push_back(flagText(note.flags.back()));
    };
    if (stations.elevation) {
        addOfStations(QualityFlag::elevationBeyondStations, beyond(*stations.elevation));
    }
    addOfStations(QualityFlag::farFromStations, distances_);
    std::vector<QualityFlag> ofAll = estimatedIn(month);  // told before the months
    if (heatFluxTakenAsZero) {
        ofAll.push_back(QualityFlag::heatFluxTakenAsZero);
        lines.emplace_back(textOf(QualityFlag::heatFluxTakenAsZero).text);
    }
    for (const QualityFlag flag : ofAll) note.flags.push_back(flagOfAll(flag));
    if (stations.ofChance && add(QualityFlag::trendNotSignificant, beyond(*stations.ofChance))) {
        note.flags.back().surfaces = stations.byChance;
        lines.push_back(flagText(note.flags.back()));
    }
    run_.record.quality(note);
    if (ofStations != toldOfStations_) {
        lines.insert(lines.end(), ofStations.begin(), ofStations.end());
    }
    toldOfStations_ = ofStations;
    if (!lines.empty()) run_.application.feedback().warning(qualityLine(note, lines));
    if (!wanted()) return;
    markStations(stations);
    markAll(ofAll);
}

void RunQuality::markStations(const Stations& stations) {
    if (stations.elevation) {
        addElevationBits(elevations_, run_.noData, *stations.elevation,
                         QualityFlag::elevationBeyondStations, bits_);
    }
    if (stations.ofChance) {
        addElevationBits(elevations_, run_.noData, *stations.ofChance,
                         QualityFlag::trendNotSignificant, bits_);
    }
    tallyDistances(run_.application.platform().loop(), elevations_, run_.noData, run_.geometry,
                   places_, kFarFromStations, bits_);
}

void RunQuality::markAll(const std::vector<QualityFlag>& flags) {
    for (double& cell : bits_) {
        if (cell == run_.noData) continue;
        for (const QualityFlag flag : flags) cell += bitOf(flag);
    }
}

bool RunQuality::save(int month) {
    const std::string grid = name(month);
    return trapped(run_.application.prompts(), grid + ": ", [&] {
        run_.workspace.save(
            std::array{RasterToSave{grid, valuesAsGrid(bits_, run_.geometry), "GRID"}});
        run_.record.made(grid);
        IMxDocument& document = run_.application.document();
        auto layer = document.createRasterLayer(joinedPath(run_.settings.OutputWorkspace, grid));
        const AlgorithmicColorRamp& ramp = productMadeBy("refet").ramp;
        ApplyColorRamp(run_.application.prompts(), *layer, ramp.from, ramp.to);
        document.addLayer(std::move(layer));
    });
}

}  // namespace velmora
