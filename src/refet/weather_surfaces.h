// SPDX-License-Identifier: MIT
// Surfaces of the weather quantities over the modelling extent. Temperatures are detrended with
// station elevation, interpolated and retrended with the DEM; radiation and wind are interpolated
// as they are.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "gis/application.h"
#include "modelling/run_record.h"
#include "modelling/surface_ground.h"
#include "modelling/weather_stations.h"
#include "refet/weather_rules.h"
#include "settings/run_settings.h"

namespace velmora {

class WeatherSurfaces {
  public:
    // `dem` holds metres on `geometry`. Opens stations and weather table and joins them. Throws
    // PlatformError naming the file, field or keys when that fails. `diagnostics` is told what
    // stands behind the temperature surfaces, `record` what every surface is made of, unless they
    // are null.
    WeatherSurfaces(IPlatform& platform, const RunSettings& settings, const GridGeometry& geometry,
                    RasterPtr dem, IDiagnostics* diagnostics, RunRecord* record);

    // Makes every grid that the method needs for the months `begin` to `end`, and TM and TN of the
    // month before and after where the table has them, and saves them all in `workspace`. A month
    // that cannot be made ends with a PlatformError that names quantity, month and station count;
    // the grids before it are saved. Each grid is told when it is saved. Throws Cancelled.
    void make(int begin, int end, IRasterWorkspace& workspace, IFeedback& feedback);

    // Whether make() has saved the grid of that name.
    bool made(const std::string& name) const { return made_.contains(name); }
    // What the stations bear out of the grid of that name; nullptr where it is not made.
    const SurfaceGround* ground(const std::string& name) const {
        const auto found = grounds_.find(name);
        return found == grounds_.end() || !made(name) ? nullptr : &found->second;
    }

    // Stores the field "TempTTT" (the detrended values last interpolated) in the stations'
    // attribute table. Where that cannot be, the user is told and the table stays as it was.
    void storeWorkingField(IApplication& application) { stations_.storeWorkingField(application); }

  private:
    // As one save while it is small: the neighbours of a tile are searched once for all surfaces of
    // a save. On a large grid the months become ready one after the other.
    void saveWhenLarge(IRasterWorkspace& workspace, IFeedback& feedback);
    void save(IRasterWorkspace& workspace, IFeedback& feedback);
    void prepareMonth(int month);
    void prepareNeighbour(int month);
    void prepare(const WeatherQuantity& quantity, int month);
    bool hasField(const WeatherQuantity& quantity, int month) const;

    const std::vector<WeatherQuantity> quantities_;
    IAnalysisFactory& analysis_;
    IDiagnostics* diagnostics_;
    RunRecord* record_;
    WeatherStations stations_;
    std::unique_ptr<IInterpolationOp> interpolation_;
    std::unique_ptr<IMapAlgebraOp> algebra_;
    std::vector<RasterToSave> prepared_;
    std::vector<std::string> reports_;
    std::set<std::string> made_;
    std::map<std::string, SurfaceGround> grounds_;
    std::size_t cells_;
};

}  // namespace velmora
