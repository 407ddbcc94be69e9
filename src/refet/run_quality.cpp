// SPDX-License-Identifier: MIT
#include "refet/run_quality.h"

#include <algorithm>
#include <array>
#include <mutex>

#include "gis/error_trap.h"
#include "gis/gis_functions.h"
#include "gis/grid_tiles.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "modelling/quality_text.h"

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

// The flags of a month as a grid; each block is computed once more.
class RunQuality::FlagsRaster : public IRaster {
  public:
    explicit FlagsRaster(const RunQuality& quality) : quality_(quality) {}
    const GridGeometry& geometry() const override { return quality_.run_.geometry; }
    void read(const CellBlock& block, std::span<float> values) const override {
        CellTable table;
        quality_.run_.maker.make(table, block, quality_.run_.inputs);
        const auto result = quality_.run_.maker.calculate(table, quality_.run_.inputs.date);
        std::vector<double> bits(table.rowCount());
        quality_.month_->mark(table, result.radiation, bits);
        quality_.mark(table, bits);
        recordsIntoCells(bits, block, values);
    }

  private:
    const RunQuality& quality_;
};

RunQuality::RunQuality(const Of& run) : run_(run), noData_(run.maker.noData()) {}

std::string RunQuality::name(int month) const {
    return gridName(kQualityGrids, run_.settings, month);
}

MonthQuality& RunQuality::watch(int month) {
    const SurfaceGround* wind = run_.surfaces.ground("WS_" + GetMonthName(month));
    return month_.emplace(noData_, run_.settings.needsFullWeather(),
                          wind ? std::optional(wind->values) : std::nullopt);
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

template <class Tally>
QualityTally RunQuality::sum(Tally tally) {
    QualityTally all;
    std::mutex mutex;
    CellInputs elevations;
    elevations[CellField::Elevation] = run_.inputs[CellField::Elevation];
    forEachTile(run_.application.platform().loop(), run_.geometry, [&](const CellBlock& block) {
        CellTable table;
        run_.maker.make(table, block, elevations);
        const QualityTally found = tally(table);
        const std::lock_guard lock(mutex);
        all.merge(found);
    });
    return all;
}

QualityTally RunQuality::beyond(const Range& range) {
    const auto before =
        std::ranges::find(elevationsBeyond_, range, [](const auto& pair) { return pair.first; });
    if (before != elevationsBeyond_.end()) return before->second;
    elevationsBeyond_.emplace_back(
        range, sum([&](const CellTable& table) { return tallyElevations(table, noData_, range); }));
    return elevationsBeyond_.back().second;
}

void RunQuality::countDistances(const std::vector<Point>& places) {
    if (places == places_) return;
    places_ = places;
    distances_ = sum([&](const CellTable& table) {
        return tallyDistances(table, noData_, run_.geometry, places_, kFarFromStations);
    });
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
    told.share = static_cast<double>(tally.cells) / static_cast<double>(told.cells);
    told.cells = tally.cells;
    told.worst =
        QualityNote::Worst{toldValue(flag, tally.worst), static_cast<std::size_t>(tally.column) + 1,
                           static_cast<std::size_t>(tally.row) + 1};
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
    stations_ = stationsOf(month);
    countDistances(stations_.places);
    std::vector<std::string> ofStations;
    const auto addOfStations = [&](QualityFlag flag, const QualityTally& tally) {
        if (add(flag, tally)) ofStations.push_back(flagText(note.flags.back()));
    };
    if (stations_.elevation) {
        addOfStations(QualityFlag::elevationBeyondStations, beyond(*stations_.elevation));
    }
    addOfStations(QualityFlag::farFromStations, distances_);
    ofAllCells_ = estimatedIn(month);  // told before the months
    if (heatFluxTakenAsZero) {
        ofAllCells_.push_back(QualityFlag::heatFluxTakenAsZero);
        lines.emplace_back(textOf(QualityFlag::heatFluxTakenAsZero).text);
    }
    for (const QualityFlag flag : ofAllCells_) note.flags.push_back(flagOfAll(flag));
    if (stations_.ofChance && add(QualityFlag::trendNotSignificant, beyond(*stations_.ofChance))) {
        note.flags.back().surfaces = stations_.byChance;
        lines.push_back(flagText(note.flags.back()));
    }
    run_.record.quality(note);
    if (ofStations != toldOfStations_) {
        lines.insert(lines.end(), ofStations.begin(), ofStations.end());
    }
    toldOfStations_ = ofStations;
    if (!lines.empty()) run_.application.feedback().warning(qualityLine(note, lines));
}

void RunQuality::mark(const CellTable& table, std::span<double> bits) const {
    if (stations_.elevation) {
        addElevationBits(table, noData_, *stations_.elevation, QualityFlag::elevationBeyondStations,
                         bits);
    }
    if (stations_.ofChance) {
        addElevationBits(table, noData_, *stations_.ofChance, QualityFlag::trendNotSignificant,
                         bits);
    }
    tallyDistances(table, noData_, run_.geometry, places_, kFarFromStations, bits);
    unsigned ofAllCells = 0;
    for (const QualityFlag flag : ofAllCells_) ofAllCells += bitOf(flag);
    for (double& cell : bits) cell += cell == noData_ ? 0 : ofAllCells;
}

bool RunQuality::save(int month) {
    const std::string grid = name(month);
    return trapped(run_.application.prompts(), grid + ": ", [&] {
        run_.workspace.save(
            std::array{RasterToSave{grid, std::make_shared<FlagsRaster>(*this), "GRID"}});
        run_.record.made(grid);
        IMxDocument& document = run_.application.document();
        auto layer = document.createRasterLayer(joinedPath(run_.settings.OutputWorkspace, grid));
        const AlgorithmicColorRamp& ramp = productMadeBy("refet").ramp;
        ApplyColorRamp(run_.application.prompts(), *layer, ramp.from, ramp.to);
        document.addLayer(std::move(layer));
    });
}

}  // namespace velmora
