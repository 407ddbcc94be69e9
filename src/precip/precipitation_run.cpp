// SPDX-License-Identifier: MIT
#include "precip/precipitation_run.h"

#include <array>

#include "gis/error_trap.h"
#include "gis/errors.h"
#include "gis/gis_functions.h"
#include "gis/month_names.h"
#include "gis/raster_compare.h"
#include "gis/text.h"
#include "modelling/products.h"
#include "precip/precipitation_rules.h"
#include "settings/modelling_extent.h"
#include "settings/run_choices.h"

namespace velmora {

PrecipitationRun::~PrecipitationRun() = default;

bool PrecipitationRun::run() {
    openOutputWorkspace();
    const PrecipitationMethod method = precipitationMethod(settings_);
    if (method == PrecipitationMethod::detrended) {
        application_.prompts().message("Using EDK to interpolate precipitation...");
        return runMethod(&PrecipitationRun::PPT_EDK);
    }
    if (method == PrecipitationMethod::reference) {
        application_.prompts().message(
            "Using PRISM GRID as reference to interpolate precipitation...");
        return runMethod(&PrecipitationRun::PPT_PRISM);
    }
    application_.prompts().reason(
        "\"" + settings_.PrecipitationMethod +
        "\" is no precipitation method, so nothing is made: choose EDK or "
        "PRISM_REF in the General Settings");
    return false;
}

void PrecipitationRun::openOutputWorkspace() {
    IFileSystem& files = platform_.files();
    const std::string& folder = settings_.OutputWorkspace;
    if (folder.empty()) {
        throw PlatformError(
            "The setting OutputWorkspace is empty: name a folder for output in the General "
            "Settings",
            {.field = "OutputWorkspace"});
    }
    if (!files.folderExists(folder)) {
        const std::string parent = parentFolderName(folder);
        if (!files.folderExists(parent)) {
            throw PlatformError(
                "The output folder " + folder + " cannot be made: there is no folder " + parent,
                {.file = folder});
        }
        files.createFolder(folder);
    }
    folder_.emplace(files, folder);
    workspace_ = platform_.rasters().openFromFolder(folder);
}

// Both methods show a failure by its description; the grids made before it stay.
bool PrecipitationRun::runMethod(void (PrecipitationRun::*method)()) {
    return pathsAreSet() && trapped(application_.prompts(), [&] { (this->*method)(); });
}

bool PrecipitationRun::pathsAreSet() {
    if (!settings_.WeatherStations.empty() && !settings_.WeatherData.empty()) return true;
    application_.prompts().failure(settings_.WeatherStations.empty()
                                       ? "Please set the Weather Stations Shapefile."
                                       : "Please set the Weather DataTable.");
    return false;
}

void PrecipitationRun::prepare() {
    record_.emplace(application_, settings_, "ppt");
    geometry_ = runGeometry(platform_, settings_);
    stations_ =
        std::make_unique<WeatherStations>(platform_, settings_, kPrecipitationField, geometry_.crs);
    interpolation_ = platform_.analysis().interpolation();
    algebra_ = platform_.analysis().mapAlgebra();
    useCells(interpolation_->environment(), geometry_);
    useCells(algebra_->environment(), geometry_);
}

void PrecipitationRun::makeMonths(void (PrecipitationRun::*make)(int month)) {
    const std::vector<int> months = settings_.months();
    FeedbackParts parts(application_.feedback(), months.size());
    for (const int month : months) {
        parts.next(monthMessage(productMadeBy("ppt"), month));
        (this->*make)(month);
    }
    stations_->storeWorkingField(application_);
    folder_->settle();
    record_->finish();
    application_.feedback().advance(1);
}

std::string PrecipitationRun::surfaceName(int month) const {
    return gridName(productMadeBy("ppt").made, settings_, month);
}

void PrecipitationRun::finishMonth(int month, const RasterPtr& grid) {
    const Product& product = productMadeBy("ppt");
    const std::string name = surfaceName(month);
    workspace_->save(std::array{RasterToSave{name, grid, "GRID"}});
    record_->made(name);
    auto layer =
        application_.document().createRasterLayer(joinedPath(settings_.OutputWorkspace, name));
    ApplyColorRamp(application_.prompts(), *layer, product.ramp.from, product.ramp.to);
    application_.document().addLayer(std::move(layer));
    application_.prompts().message("PPT Calculation for " + GetMonthName(month) + " is Over!");
}

bool PrecipitationRun::rainlessMonth(int month, const std::string& field) {
    const WeatherStations::Zeros zeros = stations_->zeros(field);
    if (!zeros.all()) return false;
    bindDem();
    finishMonth(month, algebra_->Execute("[DEM] * 0"));
    application_.feedback().warning(
        surfaceName(month) + ": all " + std::to_string(zeros.stations) +
        " stations with a value of " + field +
        " hold 0, a month without rain: the grid is 0 where the DEM has "
        "data");
    return true;
}

void PrecipitationRun::tellZeros(int month, const std::string& field,
                                 const std::vector<std::size_t>& valid) {
    const WeatherStations::Zeros zeros = stations_->zeros(field);
    std::size_t left = zeros.zero;
    for (const std::size_t station : valid) left -= stations_->number(station, field) == 0.0;
    if (left == 0) return;
    application_.feedback().warning(surfaceName(month) + ": " + std::to_string(left) + " of " +
                                    std::to_string(zeros.stations) + " stations hold 0 in field " +
                                    field + " and take no part");
}

void PrecipitationRun::bindDem() {
    const auto dem = platform_.rasters().openRasterDataset(settings_.DEM);
    if (!demBound_) tellPassedOver(application_.prompts(), platform_.rasters(), *dem);
    algebra_->BindRaster(dem->createDefaultRaster(), "DEM");
    demBound_ = true;
}

void PrecipitationRun::explain(StationSurface& surface) {
    record_->surface(surface);
    if (IDiagnostics* diagnostics = application_.diagnostics()) {
        diagnostics->add(diagnose(platform_.analysis(), surface));
    }
}

}  // namespace velmora
