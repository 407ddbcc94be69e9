// SPDX-License-Identifier: MIT
// The precipitation run: one precipitation grid "PPT_" + month, inches, for each month of the
// settings' period, by one of two methods.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gis/application.h"
#include "gis/working_folder.h"
#include "modelling/run_record.h"
#include "modelling/surface_diagnostics.h"
#include "modelling/weather_stations.h"
#include "settings/run_settings.h"

namespace velmora {

class PrecipitationRun {
  public:
    PrecipitationRun(IApplication& application, const RunSettings& settings)
        : application_(application), platform_(application.platform()), settings_(settings) {}
    ~PrecipitationRun();
    PrecipitationRun(const PrecipitationRun&) = delete;
    PrecipitationRun& operator=(const PrecipitationRun&) = delete;

    // Shows which method it uses and runs it; a method that is neither "EDK" nor "PRISM_REF" makes
    // nothing, and that is told. An output folder that does not exist is made. True when no failure
    // was shown. Throws PlatformError when the output folder cannot be made or opened.
    bool run();

  private:
    // Elevation-detrended kriging: a straight line of station precipitation over elevation, its
    // residuals kriged, the line put back over the DEM, negative cells set to 0.
    void PPT_EDK();
    void edkMonth(int month);

    // Scaling of a reference precipitation grid of the month with the kriged ratios of the
    // stations to it.
    void PPT_PRISM();
    void prismMonth(int month);
    // Writes the reference value under every station into the working field; a station without one
    // keeps what it has. The values, by station.
    std::vector<std::optional<double>> ExtractPRISMValue(const IRaster& prism);
    void warnOfKeptValues(const std::string& path, const std::string& field,
                          const std::vector<std::optional<double>>& references);

    void openOutputWorkspace();
    bool pathsAreSet();
    bool runMethod(void (PrecipitationRun::*method)());
    void prepare();
    // Every month of the period; then the working field goes into the stations' table.
    void makeMonths(void (PrecipitationRun::*make)(int month));
    std::string surfaceName(int month) const;
    void finishMonth(int month, const RasterPtr& grid);
    // When every station that has a value holds 0, makes and tells a grid of 0 where the DEM has
    // data, and returns true.
    bool rainlessMonth(int month, const std::string& field);
    // Tells how many stations hold 0 and are not among the valid ones.
    void tellZeros(int month, const std::string& field, const std::vector<std::size_t>& valid);
    void bindDem();
    void explain(StationSurface& surface);

    IApplication& application_;
    IPlatform& platform_;
    const RunSettings& settings_;
    std::optional<WorkingFolder> folder_;
    std::unique_ptr<IRasterWorkspace> workspace_;
    std::optional<RunRecord> record_;
    GridGeometry geometry_;
    std::unique_ptr<WeatherStations> stations_;
    std::unique_ptr<IInterpolationOp> interpolation_;
    std::unique_ptr<IMapAlgebraOp> algebra_;
    bool toldOfKeptValues_ = false;
    bool demBound_ = false;
};

}  // namespace velmora
