// SPDX-License-Identifier: MIT
#include "refet/refet_run.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <string>
#include <utility>

#include "gis/error_trap.h"
#include "gis/errors.h"
#include "gis/gis_functions.h"
#include "gis/grid_tiles.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/raster_compare.h"
#include "gis/text.h"
#include "gis/units.h"
#include "modelling/products.h"
#include "refet/cell_rows.h"
#include "refet/cls_models.h"
#include "refet/equations/calendar.h"
#include "refet/refet_month.h"
#include "refet/run_size.h"
#include "refet/standard_run.h"
#include "refet/work_database.h"
#include "settings/modelling_extent.h"
#include "settings/run_choices.h"
#include "settings/run_state.h"

namespace velmora {

namespace {

constexpr int kGeographicNad83 = 4269;

constexpr std::array<const char*, 7> kMethodLines = {
    "",
    "use ASCE Std  Penman-Monteith (Tall Crop: Alfalfa) ...",
    "use ASCE Std  Penman-Monteith (Short Crop: Grass) ...",
    "use FAO56  Penman-Monteith (Grass) ...",
    "use Hargreaves Temperature Method 1985(Grass) ...",
    "use SCS Modified Blaney-Criddle ...",
    "use Priestley-Taylor  ..."};

// How much of a year's run on a large grid has been done by then.
constexpr double kPrepared = 0.05;
constexpr double kSurfacesMade = 0.5;
constexpr double kMonthsMade = 0.85;

}  // namespace

ReferenceEtRun::ReferenceEtRun(IApplication& application, const RunSettings& settings)
    : application_(application),
      platform_(application.platform()),
      settings_(settings),
      feedback_(application.feedback()),
      year_(settings.yearNumber()),
      runStatus_(processState().runStatus) {}

ReferenceEtRun::~ReferenceEtRun() = default;

template <class Body>
void ReferenceEtRun::trapped(const std::string& procedure, Body body) {
    if (!velmora::trapped(application_.prompts(), "Error in '" + procedure + "': ", body)) {
        runStatus_ = false;
    }
}

bool ReferenceEtRun::run() {
    runStatus_ = true;
    runSteps();
    storeCells();
    quality_.reset();
    record_.reset();
    folder_.reset();
    return runStatus_ && besideMade_;
}

void ReferenceEtRun::runSteps() {
    const double start = platform_.clock().seconds();
    show("Velmora is starting to run ...");
    show("Previous setttings has been loaded ...");
    feedback_.beginPart(0, kPrepared);
    SetupWorkDatabase();
    if (!runStatus_) return;
    if (application_.wantsWorkDatabase()) show("Access MDB has been created for operations ...");
    GetGeographicCoordinates();
    if (!runStatus_) return;
    GetRasterTemp();
    if (!runStatus_) return;
    feedback_.beginPart(kPrepared, kSurfacesMade);
    GetParameters();
    if (!runStatus_) return;
    show("All parameter layers are ready now...");
    show(kMethodLines.at(static_cast<std::size_t>(refEtMethod(settings_))));
    const std::vector<int> months = settings_.months();
    FeedbackParts parts(feedback_, months.size(), kSurfacesMade, kMonthsMade);
    for (const int month : months) {
        parts.next();
        if (!runMonth(month)) return;
    }
    feedback_.beginPart(kMonthsMade, 1);
    storeCells();
    settle();
    finishRecord();
    if (!runStatus_) return;
    feedback_.advance(1);
    const double minutes = (platform_.clock().seconds() - start) / 60;
    const std::string time =
        "Time for estimating referece ET: " + formatPlaces(minutes, 2) + " Minutes";
    show("Estimation of Reference ET is done ... ");
    show(time);
    application_.prompts().message(time);
}

bool ReferenceEtRun::runMonth(int month) {
    const std::string label = GetMonthName(month);
    ReadinGrids(month);
    if (!runStatus_) return false;
    GetSoilHeatFlux(month);
    if (!runStatus_) return false;
    CalculateRefET(month);
    if (!runStatus_) return false;
    show("Reference ET in " + label + "are estimated successfully ...");
    tellQuality(month);
    if (application_.wantsStandardRun()) makeStandard(month);
    return true;
}

// A grid of flags that cannot be made ends neither the month nor the run, but the run is not done
// then.
void ReferenceEtRun::tellQuality(int month) {
    quality_->tell(month, heatFluxTakenAsZero_ && settings_.needsFullWeather());
    if (application_.wantsQualityGrids()) besideMade_ = quality_->save(month) && besideMade_;
}

// What it cannot make ends neither the month nor the run, but the run is not done then.
void ReferenceEtRun::makeStandard(int month) {
    StandardRun standard(
        {application_, settings_, geometry_, *workspace_, *surfaces_, *maker_, *record_});
    besideMade_ = standard.make(inputs_, month) && besideMade_;
}

void ReferenceEtRun::SetupWorkDatabase() {
    trapped("SetupWorkDatabase", [&] {
        if (refEtMethod(settings_) == RefEtMethod::none) {
            throw PlatformError(
                "\"" + settings_.RefETMethod + "\" is no reference ET method: choose 1 to 6",
                {.field = "RefETMethod"});
        }
        folder_.emplace(platform_.files(), settings_.OutputWorkspace);
        workspace_ = platform_.rasters().openFromFolder(settings_.OutputWorkspace);
        record_.emplace(application_, settings_, "refet");
        if (application_.wantsWorkDatabase()) {
            createWorkDatabase(platform_, workDatabase());
        } else {
            removeWorkDatabase(platform_, workDatabase());
        }
    });
}

void ReferenceEtRun::GetGeographicCoordinates() {
    trapped("GetGeographicCoordinates", [&] {
        geometry_ = runGeometry(platform_, settings_);
        requireRoom(platform_.files(), settings_, geometry_, application_.wantsWorkDatabase());
        // The left edge of the extent stands for the whole row.
        std::vector<Point> leftEdge;
        for (int row = 0; row < geometry_.rows; ++row) {
            leftEdge.push_back({geometry_.xMin, geometry_.rowCentre(row)});
        }
        auto& systems = platform_.spatialReferences();
        const std::vector<Point> geographic =
            systems.project(leftEdge, geometry_.crs, systems.createGeographic(kGeographicNad83));
        std::vector<double> latitudes;
        for (const Point& row : geographic) latitudes.push_back(row.y);
        maker_.emplace(settings_, std::move(latitudes), noData_);
    });
}

void ReferenceEtRun::GetRasterTemp() {
    trapped("GetRasterTemp", [&] {
        const auto save = [&](const std::string& name, const RasterPtr& raster,
                              const std::string& format) {
            workspace_->save(std::array{RasterToSave{name, raster, format}});
        };
        save("RsTemplate", platform_.analysis().constant(geometry_, 1.0F), "Grid");
        template_ = workspace_->openRasterDataset("RsTemplate")->createDefaultRaster();

        const auto algebra = platform_.analysis().mapAlgebra();
        useCells(algebra->environment(), geometry_);
        algebra->BindRaster(template_, "TmpRS");
        algebra->BindRaster(algebra->Execute(" ( [TmpRS] + 1.00 ) / 100.00"), "RSTEMP");
        const auto dem = platform_.rasters().openRasterDataset(settings_.DEM);
        tellPassedOver(application_.prompts(), platform_.rasters(), *dem);
        algebra->BindRaster(dem->createDefaultRaster(), "FineDEM");
        const std::string toMetres = demUnit(settings_) == LengthUnit::feet
                                         ? " " + numberText(kMetresPerFoot) + " *"
                                         : std::string();
        save("NewDEM", algebra->Execute(toMetres + " [FineDEM] * [RSTEMP] / [RSTEMP]"), "GRID");
        const auto saved = workspace_->openRasterDataset("NewDEM");
        dem_ = saved->createDefaultRaster();
        noData_ = static_cast<double>(saved->noDataValue());
        maker_->useNoData(noData_);
        GridReadIn(dem_, CellField::Elevation);
        if (!readsElevations()) {
            throw PlatformError("The DEM " + settings_.DEM +
                                    " has no data within the modelling extent of " +
                                    settings_.ExtentProvider,
                                {.file = settings_.DEM});
        }
    });
}

// Whether any cell has an elevation.
bool ReferenceEtRun::readsElevations() {
    try {
        std::atomic<bool> any = false;
        forEachTile(platform_.loop(), geometry_, [&](const CellBlock& block) {
            CellTable table;
            maker_->make(table, block, inputs_);
            const auto z = table.values(CellField::Elevation);
            if (std::ranges::any_of(z, [&](double each) { return each != noData_; })) any = true;
        });
        return any;
    } catch (const UnreadableField& e) {
        tellUnreadable(e);
        return false;
    }
}

void ReferenceEtRun::GetParameters() {
    if (settings_.WeatherStations.empty() || settings_.WeatherData.empty()) {
        application_.prompts().failure(settings_.WeatherStations.empty()
                                           ? "Please set the Weather Stations Shapefile."
                                           : "Please set the Weather DataTable.");
        runStatus_ = false;
        return;
    }
    trapped("GetParameters", [&] {
        surfaces_ = std::make_unique<WeatherSurfaces>(platform_, settings_, geometry_, dem_,
                                                      application_.diagnostics(), &*record_);
        surfaces_->make(settings_.beginMonthNumber(), settings_.endMonthNumber(), *workspace_,
                        feedback_);
        quality_.emplace(RunQuality::Of{application_, settings_, geometry_, *maker_, inputs_,
                                        *workspace_, *surfaces_, *record_});
        surfaces_->storeWorkingField(application_);
        if (settings_.needsFullWeather()) tellEstimates();
    });
}

// Which quantities the weather table lacks, or the settings take as missing, in which months.
void ReferenceEtRun::tellEstimates() {
    for (const auto& [prefix, name, source] :
         {std::array{"TD_", "dew point", "minimum temperatures and Ko"},
          {"SR_", "solar radiation", "the daily range of temperature and Ks"},
          {"WS_", "wind speed", "EstimatedWindSpeed"}}) {
        std::vector<std::string> months;
        for (const int month : settings_.months()) {
            if (!hasGrid(prefix, month)) months.push_back(GetMonthName(month));
        }
        if (months.empty()) continue;
        feedback_.warning("The run has no " + std::string(name) + " (" + prefix + "...) for " +
                          joinedNames(months) + ": it is estimated from " + source);
    }
}

// Nothing is said to be done before it has reached the disk.
void ReferenceEtRun::settle() {
    runStatus_ = runStatus_ && velmora::trapped(application_.prompts(), [&] { folder_->settle(); });
}

void ReferenceEtRun::finishRecord() {
    runStatus_ = runStatus_ && velmora::trapped(application_.prompts(), [&] { record_->finish(); });
}

bool ReferenceEtRun::hasGrid(const std::string& prefix, int month) const {
    return surfaces_ && surfaces_->made(prefix + GetMonthName(month));
}

RasterPtr ReferenceEtRun::weatherGrid(const std::string& prefix, int month) {
    return workspace_->openRasterDataset(prefix + GetMonthName(month))->createDefaultRaster();
}

// Says nothing of its own when it fails; the status line of the monitor does.
void ReferenceEtRun::ReadinGrids(int month) {
    tried([&] { readWeather(month); },
          [&](const std::string& why) {
              feedback_.setStatus("ReadinGrids: " + why);
              application_.prompts().reason("ReadinGrids: " + why);
              runStatus_ = false;
          });
}

void ReferenceEtRun::readWeather(int month) {
    inputs_.date = {representativeDay(month, year_), month, year_};
    GridReadIn(weatherGrid("TM_", month), CellField::TM);
    GridReadIn(weatherGrid("TN_", month), CellField::TN);
    if (!settings_.needsFullWeather()) return;
    takeWeather("TD_", month, CellField::TD);
    takeWeather("SR_", month, CellField::SR);
    takeWeather("WS_", month, CellField::WS);
}

void ReferenceEtRun::takeWeather(const std::string& prefix, int month, CellField field) {
    if (hasGrid(prefix, month)) {
        GridReadIn(weatherGrid(prefix, month), field);
    } else {
        inputs_[field] = {FieldSource::Kind::estimate};
    }
}

void ReferenceEtRun::GetSoilHeatFlux(int month) {
    const int p = std::max(1, month - 1);
    const int n = std::min(12, month + 1);
    heatFluxTakenAsZero_ = false;
    for (const char* prefix : {"TM_", "TN_"}) {
        if (hasGrid(prefix, p) && hasGrid(prefix, n)) continue;
        inputs_[CellField::GG] = {FieldSource::Kind::estimate};
        if (!toldAboutHeatFlux_ && settings_.needsFullWeather()) {
            application_.prompts().message("The soil heat flux of " + GetMonthName(month) +
                                           " is taken as 0: the weather table has no temperatures "
                                           "of a neighbouring month");
        }
        toldAboutHeatFlux_ = true;
        heatFluxTakenAsZero_ = true;
        return;
    }
    const auto readFlux = [&] {
        const auto algebra = platform_.analysis().mapAlgebra();
        useCells(algebra->environment(), geometry_);
        algebra->BindRaster(weatherGrid("TM_", p), "TPMax");
        algebra->BindRaster(weatherGrid("TN_", p), "TPMin");
        algebra->BindRaster(weatherGrid("TM_", n), "TNMax");
        algebra->BindRaster(weatherGrid("TN_", n), "TNMin");
        GridReadIn(
            algebra->Execute(month == 1 || month == 12
                                 ? "0.70 / 18.0 * ( [TNMax] + [TNMin] - [TPMax] - [TPMin] )"
                                 : "0.35 / 18.0 * ( [TNMax] + [TNMin] - [TPMax] - [TPMin] ) "),
            CellField::GG);
    };
    tried(readFlux, [&](const std::string& why) {
        inputs_[CellField::GG] = {FieldSource::Kind::withoutData};
        application_.prompts().failure("Error in 'GetSoilHeatFlux': " + why);
    });
}

// The cells are computed as their grid is written, block by block.
void ReferenceEtRun::CalculateRefET(int month) {
    for (bool again = true; again;) {
        again = false;
        calculated_ = inputs_;
        const auto result =
            std::make_shared<RefEtMonth>(*maker_, inputs_, geometry_, quality_->watch(month));
        try {
            GridReadOut(month, result);
        } catch (const UnreadableField& e) {
            tellUnreadable(e);
            again = true;
        } catch (const CalculationFailed&) {
            tellCalculationFailure(month, *result);
        }
        if (!again && result->failedCells() > 0) {
            application_.prompts().failure(std::string(kBlaneyCriddleError) + " (" +
                                           std::to_string(result->failedCells()) + " cells in " +
                                           GetMonthName(month) + ")");
        }
    }
}

// What is being handled has ended the month; which cell of those that fail is met first depends on
// threads, which one is told does not.
void ReferenceEtRun::tellCalculationFailure(int month, const RefEtMonth& result) {
    const auto failure = [&] {
        result.throwFirstFailure(platform_.loop());
        throw;
    };
    tried(failure, [&](const std::string& why) {
        feedback_.setStatus(GetMonthName(month) + ": " + why);
        application_.prompts().reason(GetMonthName(month) + ": " + why);
        application_.prompts().failure("Error found in RefET calculation module");
        runStatus_ = false;
    });
}

void ReferenceEtRun::GridReadIn(RasterPtr raster, CellField field) {
    const auto check = [&] {
        const GridGeometry& cells = raster->geometry();
        if (cells.columns == geometry_.columns && cells.rows == geometry_.rows) return;
        throw PlatformError("the grid has " + std::to_string(cells.columns) + " x " +
                            std::to_string(cells.rows) + " cells, but the cell table has " +
                            std::to_string(geometry_.cells()) + " records");
    };
    inputs_[field] = {FieldSource::Kind::grid, raster};
    tried(check, [&](const std::string& why) { tellUnreadable({field, why}); });
}

// What cannot be read is no data, never what an earlier month left in the field.
void ReferenceEtRun::tellUnreadable(const UnreadableField& unreadable) {
    inputs_[unreadable.field()] = {FieldSource::Kind::withoutData};
    application_.prompts().failure("Error in 'GridReadin': " + std::string(unreadable.what()));
}

void ReferenceEtRun::GridReadOut(int month, RasterPtr result) {
    const Product& product = productMadeBy("refet");
    const std::string name = gridName(product.made, settings_, month);
    const auto save = [&] {
        workspace_->save(std::array{RasterToSave{name, std::move(result), "GRID"}});
        record_->made(name);
        auto layer =
            application_.document().createRasterLayer(joinedPath(settings_.OutputWorkspace, name));
        ApplyColorRamp(application_.prompts(), *layer, product.ramp.from, product.ramp.to);
        application_.document().addLayer(std::move(layer));
    };
    try {
        save();
    } catch (const UnreadableField&) {
        throw;
    } catch (const CalculationFailed&) {
        throw;
    } catch (const std::exception& e) {
        application_.prompts().failure("Errors in 'GridReadout':  " + std::string(e.what()));
        runStatus_ = false;
    }
}

// The work database shows the cells as the run left them, after a failure too.
void ReferenceEtRun::storeCells() {
    if (!folder_ || !maker_ || cellsStored_ || !application_.wantsWorkDatabase()) return;
    cellsStored_ = true;
    trapped("SetupWorkDatabase", [&] {
        CellRows rows({platform_.loop(), *maker_, geometry_, inputs_, calculated_});
        storeWorkDatabase(platform_, workDatabase(), rows);
    });
}

std::string ReferenceEtRun::workDatabase() const {
    return joinedPath(settings_.OutputWorkspace, "GridOP");
}

}  // namespace velmora
