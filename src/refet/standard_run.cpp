// SPDX-License-Identifier: MIT
#include "refet/standard_run.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "gis/error_trap.h"
#include "gis/gis_functions.h"
#include "gis/grid_tiles.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "refet/equations/failure.h"
#include "refet/equations/soil_heat_flux.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

constexpr int kMonths = 12;

int monthBefore(int month) { return month == 1 ? kMonths : month - 1; }
int monthAfter(int month) { return month == kMonths ? 1 : month + 1; }

double rounded(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    return std::round(value * scale) / scale;
}

std::string signedText(double value, int decimals) {
    const double shown = rounded(value, decimals);
    return (shown > 0 ? "+" : "") + numberText(shown == 0 ? 0 : shown);
}

}  // namespace

// The papers' reference ET; sums up beside it how the method's differs, tile by tile, so that the
// sums do not depend on threads.
class StandardRun::PapersRefEt : public IRaster {
  public:
    PapersRefEt(const CellMaker& maker, const GridGeometry& geometry, const CellInputs& ours,
                const CellInputs& papers)
        : maker_(maker),
          geometry_(geometry),
          ours_(ours),
          papers_(papers),
          tiles_(geometry),
          sums_(tiles_.count()) {}

    const GridGeometry& geometry() const override { return geometry_; }

    void read(const CellBlock& block, std::span<float> values) const override {
        CellTable ours;
        maker_.make(ours, block, ours_);
        maker_.calculate(ours, ours_.date);
        CellTable papers;
        maker_.make(papers, block, papers_, kPaperConventions);
        // Cells where Blaney-Criddle has no daylight are those of the method, which told them.
        maker_.calculate(papers, papers_.date, kPaperConventions);
        add(block, ours.values(CellField::RefET), papers.values(CellField::RefET));
        fieldIntoCells(papers, CellField::RefET, values);
    }

    Sums sums() const {
        Sums all;
        for (const Sums& tile : sums_) {
            all.ours += tile.ours;
            all.papers += tile.papers;
            all.cells += tile.cells;
        }
        return all;
    }

  private:
    void add(const CellBlock& block, std::span<const double> ours,
             std::span<const double> papers) const {
        Sums sums;
        for (std::size_t k = 0; k < ours.size(); ++k) {
            if (ours[k] == maker_.noData() || papers[k] == maker_.noData()) continue;
            sums.ours += ours[k];
            sums.papers += papers[k];
            ++sums.cells;
        }
        sums_[tiles_.indexOf(block)] = sums;
    }

    const CellMaker& maker_;
    const GridGeometry& geometry_;
    const CellInputs& ours_;
    const CellInputs& papers_;
    GridTiles tiles_;
    mutable std::vector<Sums> sums_;
};

bool StandardRun::make(const CellInputs& inputs, int month) {
    const std::string name = gridName(kStandardGrids, run_.settings, month);
    return trapped(run_.application.prompts(), name + ": ", [&] {
        const CellInputs papers = papersInputs(inputs, month);
        const auto grid = std::make_shared<PapersRefEt>(run_.maker, run_.geometry, inputs, papers);
        run_.workspace.save(std::array{RasterToSave{name, grid, "GRID"}});
        run_.record.made(name);
        show(name);
        tellDifference(grid->sums(), month);
    });
}

CellInputs StandardRun::papersInputs(const CellInputs& inputs, int month) {
    CellInputs papers = inputs;
    const int year = run_.settings.yearNumber();
    papers.date = {representativeDay(month, year, kPaperConventions), month, year};
    if (run_.settings.needsFullWeather()) papers[CellField::GG] = heatFlux(month);
    return papers;
}

bool StandardRun::hasTemperatures(int month) const {
    return run_.surfaces.made("TM_" + GetMonthName(month)) &&
           run_.surfaces.made("TN_" + GetMonthName(month));
}

FieldSource StandardRun::heatFlux(int month) {
    const int before = monthBefore(month);
    const int after = monthAfter(month);
    if (!hasTemperatures(before)) {
        run_.application.prompts().notice(
            gridName(kStandardGrids, run_.settings, month) +
            " takes the soil heat flux as 0: the run has no temperatures of " +
            GetMonthName(before));
        return {FieldSource::Kind::estimate};
    }
    const bool both = hasTemperatures(after);
    const auto algebra = run_.application.platform().analysis().mapAlgebra();
    useCells(algebra->environment(), run_.geometry);
    const auto bind = [&](const std::string& grid, const std::string& symbol) {
        algebra->BindRaster(run_.workspace.openRasterDataset(grid)->createDefaultRaster(), symbol);
    };
    const std::string first = GetMonthName(before);
    const std::string last = GetMonthName(both ? after : month);
    bind("TM_" + first, "TPMax");
    bind("TN_" + first, "TPMin");
    bind("TM_" + last, "TNMax");
    bind("TN_" + last, "TNMin");
    const double factor = both ? kHeatFluxOverTwoMonths : kHeatFluxOverOneMonth;
    return {FieldSource::Kind::grid,
            algebra->Execute(numberText(factor) +
                             " / 2.0 * ( [TNMax] + [TNMin] - [TPMax] - [TPMin] )")};
}

void StandardRun::show(const std::string& name) {
    IMxDocument& document = run_.application.document();
    auto layer = document.createRasterLayer(joinedPath(run_.settings.OutputWorkspace, name));
    const AlgorithmicColorRamp& ramp = productMadeBy("refet").ramp;
    ApplyColorRamp(run_.application.prompts(), *layer, ramp.from, ramp.to);
    document.addLayer(std::move(layer));
}

void StandardRun::tellDifference(const Sums& sums, int month) {
    if (sums.cells == 0) return;
    const auto cells = static_cast<double>(sums.cells);
    const double mean = sums.papers / cells;
    const double difference = mean - sums.ours / cells;
    std::string text = gridName(kStandardGrids, run_.settings, month) +
                       ": by the papers' choices the mean is " + numberText(rounded(mean, 3)) +
                       " inches, " + signedText(difference, 3);
    if (sums.ours > 0) {
        text += " (" + signedText(100 * (sums.papers / sums.ours - 1), 1) + " %)";
    }
    run_.application.prompts().notice(text + " against " +
                                      gridName(productMadeBy("refet").made, run_.settings, month));
}

}  // namespace velmora
