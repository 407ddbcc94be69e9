// SPDX-License-Identifier: MIT
// The reference ET run: one reference ET grid, inches, for each month of the settings' period. Its
// procedures carry the names under which the run's messages know them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gis/application.h"
#include "gis/working_folder.h"
#include "modelling/run_record.h"
#include "refet/cell_maker.h"
#include "refet/refet_month.h"
#include "refet/run_quality.h"
#include "refet/weather_surfaces.h"
#include "settings/run_settings.h"

namespace velmora {

class ReferenceEtRun {
  public:
    ReferenceEtRun(IApplication& application, const RunSettings& settings);

    ~ReferenceEtRun();
    ReferenceEtRun(const ReferenceEtRun&) = delete;
    ReferenceEtRun& operator=(const ReferenceEtRun&) = delete;

    // Runs from beginning to end, or to the first procedure whose error trap clears the run-status
    // flag. Shows its messages as it goes. True when the run is done. Throws Cancelled; the grids
    // made before stay.
    bool run();

  private:
    void runSteps();
    bool runMonth(int month);
    void makeStandard(int month);
    void tellQuality(int month);
    void readWeather(int month);
    // A field from its grid, or by its estimate where the run has none.
    void takeWeather(const std::string& prefix, int month, CellField field);
    bool readsElevations();

    // Each traps its own failures; a failure is shown and clears the run-status flag, except where
    // the procedure says otherwise.
    void SetupWorkDatabase();
    void GetGeographicCoordinates();
    void GetRasterTemp();
    void GetParameters();
    void ReadinGrids(int month);
    void GetSoilHeatFlux(int month);  // leaves the flag alone
    void CalculateRefET(int month);
    // Throws UnreadableField and CalculationFailed, which are the computation's.
    void GridReadOut(int month, RasterPtr result);
    void tellCalculationFailure(int month, const RefEtMonth& result);

    // Takes the field from the grid, which is read when cells are made. Shows its failures and
    // leaves the flag alone: a grid of other cells leaves its field without data.
    void GridReadIn(RasterPtr raster, CellField field);
    // A grid that could not be read whole: its field is without data from now on.
    void tellUnreadable(const UnreadableField& unreadable);

    // Shows a failure behind the procedure's name and clears the run-status flag.
    template <class Body>
    void trapped(const std::string& procedure, Body body);
    void show(const std::string& text) { feedback_.setMessage(text); }
    RasterPtr weatherGrid(const std::string& prefix, int month);
    void tellEstimates();
    bool hasGrid(const std::string& prefix, int month) const;
    void storeCells();
    std::string workDatabase() const;  // its path without the extension
    void settle();
    void finishRecord();

    IApplication& application_;
    IPlatform& platform_;
    const RunSettings& settings_;
    IFeedback& feedback_;
    int year_;
    bool& runStatus_;
    std::optional<WorkingFolder> folder_;
    std::unique_ptr<IRasterWorkspace> workspace_;
    std::optional<RunRecord> record_;
    GridGeometry geometry_;
    std::optional<CellMaker> maker_;
    CellInputs inputs_;                     // as the run has them by now
    std::optional<CellInputs> calculated_;  // those of the last month that was computed
    RasterPtr template_;
    RasterPtr dem_;
    double noData_ = static_cast<double>(kNoData);
    std::unique_ptr<WeatherSurfaces> surfaces_;
    bool toldAboutHeatFlux_ = false;
    bool cellsStored_ = false;
    bool besideMade_ = true;  // what is made beside the grids of the method, where it is asked for
    bool heatFluxTakenAsZero_ = false;  // in the month
    std::optional<RunQuality> quality_;
};

}  // namespace velmora
