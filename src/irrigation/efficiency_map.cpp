// SPDX-License-Identifier: MIT
#include "irrigation/efficiency_map.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include "gis/connection_text.h"
#include "gis/errors.h"
#include "gis/gis_functions.h"
#include "gis/polygon_analysis.h"
#include "gis/text.h"
#include "irrigation/crop_summary.h"
#include "irrigation/irrigation_database.h"
#include "modelling/products.h"
#include "modelling/step_record.h"
#include "settings/modelling_extent.h"

namespace velmora {

namespace {

constexpr const char* kEfficiency = "IREF";  // the field, in the database and the pieces
constexpr std::size_t kRepairsTold = 5;

std::string piecesName() { return std::string(productMadeBy("eff").onTheWay); }

std::string piecesPath(const RunSettings& settings) {
    return joinedPath(settings.OutputWorkspace, piecesName());
}

std::shared_ptr<IFeatureClass> opened(IPlatform& platform, const RunSettings& settings,
                                      const std::string& path, const std::string& what) {
    if (path.empty()) {
        throw PlatformError("The " + what +
                            " shapefile is not set: choose it in the General Settings");
    }
    return platform.features().openFeatureClass(path, domainCrs(platform, settings));
}

void tellRepairs(IPrompts& prompts, const std::vector<std::string>& repairs) {
    if (repairs.empty()) return;
    std::string text;
    for (std::size_t i = 0; i < std::min(repairs.size(), kRepairsTold); ++i) {
        text += (text.empty() ? "" : "; ") + repairs[i];
    }
    if (repairs.size() > kRepairsTold) {
        text += "; and " + std::to_string(repairs.size() - kRepairsTold) + " more";
    }
    prompts.message(text);
}

// The efficiency of zone and crop, 0 where the table has none or none has been estimated. Asked
// once for each pair.
class EfficiencyLookup {
  public:
    EfficiencyLookup(IPlatform& platform, const std::string& databasePath)
        : database_(platform, databasePath) {}

    FieldValue of(const std::string& zone, const std::string& crop) {
        const auto [entry, isNew] = known_.try_emplace({zone, crop}, 0.0);
        if (isNew) {
            const auto rows =
                database_.query("Select * from IREF WHERE [ZONEUNIT] =" + quotedText(zone) +
                                " AND [CropType]=" + quotedText(crop));
            if (!rows->eof() && !isNull(rows->value(kEfficiency))) {
                entry->second = rows->value(kEfficiency);
            }
        }
        return entry->second;
    }

  private:
    IrrigationDatabase database_;
    std::map<std::pair<std::string, std::string>, FieldValue> known_;
};

// Adds the field of efficiencies, unless the pieces have it.
void ensureEfficiencyField(IFeatureWorkspaceFactory& features, const std::string& path) {
    const std::shared_ptr<ITable> pieces = features.openFeatureClass(path);
    if (pieces->fieldIndex(kEfficiency) >= 0) return;
    const auto session = features.edit(pieces);
    session->addNumericField(kEfficiency);
    session->save();
}

}  // namespace

bool GetLuIntersected(IApplication& application, const RunSettings& settings) {
    IPlatform& platform = application.platform();
    DeleteFeatureClass(platform.features(), settings.OutputWorkspace, piecesName());
    const auto landCover = opened(platform, settings, settings.LandCover, "land cover");
    const auto zones = opened(platform, settings, settings.Zones, "zone");
    if (landCover->fields().empty() || zones->fields().empty()) {
        application.prompts().failure("Table QI failed");
        return false;
    }
    for (const auto& [layer, field] :
         {std::pair{landCover, std::string(kCropField)}, {zones, settings.ZoneField}}) {
        if (layer->fieldIndex(field) < 0) {
            throw PlatformError(
                "The shapefile " + layer->path() + " has no field \"" + field + "\"",
                {.file = layer->path(), .field = field});
        }
    }
    requireMetres(platform, *landCover, "land cover");
    const OverlayResult result = platform.analysis().overlay()->Intersect(
        {landCover, kCropField}, {zones, settings.ZoneField}, piecesPath(settings) + ".shp");
    tellRepairs(application.prompts(), result.repairs);
    if (result.pieces == 0) {
        throw PlatformError("The land cover " + settings.LandCover + " and the zones " +
                            settings.Zones + " have no land in common");
    }
    return true;
}

void GetIREF(IApplication& application, const RunSettings& settings,
             const std::string& databasePath, ProgressBar& progress) {
    IPlatform& platform = application.platform();
    ensureEfficiencyField(platform.features(), piecesPath(settings));
    EfficiencyLookup lookup(platform, databasePath);
    const auto shapefiles = platform.connections().open(
        "Provider=ESRI.GeoDB.Oledb.1;Data Source=" + connectionValue(settings.OutputWorkspace) +
        ";" +
        "Extended Properties=workspacetype=esriCore.ShapefileWorkspaceFactory.1;Geometry=OBJECT");
    const auto transaction = shapefiles->beginTransaction();
    const auto pieces = shapefiles->open("Select * from " + piecesName());
    std::size_t count = 0;
    for (; !pieces->eof(); pieces->moveNext()) ++count;
    progress.begin(count);
    for (pieces->moveFirst(); !pieces->eof(); pieces->moveNext()) {
        pieces->setValue(kEfficiency, lookup.of(keyText(pieces->value(settings.ZoneField)),
                                                keyText(pieces->value(kCropField))));
        pieces->update();
        progress.advance();
    }
    transaction->commit();
    application.prompts().message("Ready to make EF map");
}

void makeEfficiencyGrid(IApplication& application, const RunSettings& settings,
                        WorkingFolder& folder) {
    IPlatform& platform = application.platform();
    const auto pieces = platform.features().openFeatureClass(piecesPath(settings));
    const auto layer = platform.memoryRelationships().openUnjoined(pieces);
    const auto conversion = platform.analysis().conversion();
    conversion->environment().SetCellSize(EnvironmentSetting::explicitValue, settings.CellSize);
    conversion->environment().SetExtent(EnvironmentSetting::explicitValue, pieces->extent(),
                                        pieces->crs());
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    StepRecorder recorder(platform.files(), settings, "eff");
    const std::string name = gridName(productMadeBy("eff").made, settings, 0);
    conversion->ToRasterDataset({*layer, "IREF <> 0", kEfficiency}, "Grid", *workspace, name);
    recorder.made(name);
    folder.settle();
    application.prompts().message("EF map (IREF) generated successfully in < " +
                                  settings.OutputWorkspace + " > ");
}

}  // namespace velmora
