// SPDX-License-Identifier: MIT
#include "refet/standard_run.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "gis/error_trap.h"
#include "gis/gis_functions.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "refet/cell_transfer.h"
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

// Keeps columns of the cells and puts them back at the end.
class ColumnsKept {
  public:
    ColumnsKept(CellTable& cells, std::initializer_list<CellField> fields) : cells_(cells) {
        for (const CellField field : fields) {
            const auto values = cells.values(field);
            if (!values.empty())
                kept_.emplace_back(field, std::vector(values.begin(), values.end()));
        }
    }
    ColumnsKept(const ColumnsKept&) = delete;
    ColumnsKept& operator=(const ColumnsKept&) = delete;
    ColumnsKept(ColumnsKept&&) = delete;
    ColumnsKept& operator=(ColumnsKept&&) = delete;
    ~ColumnsKept() {
        for (const auto& [field, values] : kept_) {
            std::ranges::copy(values, cells_.writable(field).begin());
        }
    }
    std::span<const double> values(CellField field) const {
        const auto found = std::ranges::find(kept_, field, [](const auto& k) { return k.first; });
        return found == kept_.end() ? std::span<const double>() : found->second;
    }

  private:
    CellTable& cells_;
    std::vector<std::pair<CellField, std::vector<double>>> kept_;
};

}  // namespace

bool StandardRun::make(CellTable& cells, int month) {
    const std::string name = gridName(kStandardGrids, run_.settings, month);
    return trapped(run_.application.prompts(), name + ": ", [&] {
        using enum CellField;
        const ColumnsKept kept(cells, {GG, SA, SR, RefET});
        calculate(cells, month);
        save(cells, name);
        tellDifference(cells, kept.values(RefET), month);
    });
}

bool StandardRun::hasTemperatures(int month) const {
    return run_.surfaces.made("TM_" + GetMonthName(month)) &&
           run_.surfaces.made("TN_" + GetMonthName(month));
}

void StandardRun::setHeatFlux(CellTable& cells, int month) {
    const int before = monthBefore(month);
    const int after = monthAfter(month);
    if (!hasTemperatures(before)) {
        std::ranges::fill(cells.writable(CellField::GG), 0.0);
        run_.application.prompts().notice(
            gridName(kStandardGrids, run_.settings, month) +
            " takes the soil heat flux as 0: the run has no temperatures of " +
            GetMonthName(before));
        return;
    }
    const bool both = hasTemperatures(after);
    IPlatform& platform = run_.application.platform();
    const auto algebra = platform.analysis().mapAlgebra();
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
    gridIntoField(platform.loop(),
                  *algebra->Execute(numberText(factor) +
                                    " / 2.0 * ( [TNMax] + [TNMin] - [TPMax] - [TPMin] )"),
                  cells, CellField::GG);
}

void StandardRun::calculate(CellTable& cells, int month) {
    IParallelLoop& loop = run_.application.platform().loop();
    const int year = run_.settings.yearNumber();
    const auto rows = static_cast<std::size_t>(run_.geometry.rows);
    const Date date{representativeDay(month, year, kPaperConventions), month, year};
    if (run_.settings.needsFullWeather()) {
        setHeatFlux(cells, month);
        if (!run_.surfaces.made("SR_" + GetMonthName(month))) {
            estimateSolarRadiation(loop, cells, run_.settings.Ks, date, rows, run_.noData,
                                   kPaperConventions);
        }
    }
    // Cells where Blaney-Criddle has no daylight are those of the method, which told them.
    calculateRefEt(loop, cells, run_.elevationParts, refEtMethod(run_.settings), date, rows,
                   run_.noData, kPaperConventions);
}

void StandardRun::save(const CellTable& cells, const std::string& name) {
    const RasterPtr grid = fieldAsGrid(cells, CellField::RefET, run_.geometry);
    run_.workspace.save(std::array{RasterToSave{name, grid, "GRID"}});
    run_.record.made(name);
    IMxDocument& document = run_.application.document();
    auto layer = document.createRasterLayer(joinedPath(run_.settings.OutputWorkspace, name));
    const AlgorithmicColorRamp& ramp = productMadeBy("refet").ramp;
    ApplyColorRamp(run_.application.prompts(), *layer, ramp.from, ramp.to);
    document.addLayer(std::move(layer));
}

void StandardRun::tellDifference(const CellTable& cells, std::span<const double> ours, int month) {
    const std::span<const double> papers = cells.values(CellField::RefET);
    double sumOfOurs = 0;
    double sumOfPapers = 0;
    std::size_t count = 0;
    for (std::size_t k = 0; k < ours.size(); ++k) {
        if (ours[k] == run_.noData || papers[k] == run_.noData) continue;
        sumOfOurs += ours[k];
        sumOfPapers += papers[k];
        ++count;
    }
    if (count == 0) return;
    const auto cellCount = static_cast<double>(count);
    const double mean = sumOfPapers / cellCount;
    const double difference = mean - sumOfOurs / cellCount;
    std::string text = gridName(kStandardGrids, run_.settings, month) +
                       ": by the papers' choices the mean is " + numberText(rounded(mean, 3)) +
                       " inches, " + signedText(difference, 3);
    if (sumOfOurs > 0) {
        text += " (" + signedText(100 * (sumOfPapers / sumOfOurs - 1), 1) + " %)";
    }
    run_.application.prompts().notice(text + " against " +
                                      gridName(productMadeBy("refet").made, run_.settings, month));
}

}  // namespace velmora
