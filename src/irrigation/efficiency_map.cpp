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
#include "irrigation/efficiency_layers.h"
#include "irrigation/irrigation_database.h"
#include "modelling/products.h"
#include "modelling/run_record.h"
#include "settings/modelling_extent.h"

namespace velmora {

namespace {

constexpr const char* kEfficiency = "IREF";  // the field, in the database and the pieces
constexpr std::size_t kRepairsTold = 5;
// How much of the work has been done by then.
constexpr double kPiecesMade = 0.5;
constexpr double kEfficienciesFound = 0.9;

std::string piecesName() { return std::string(productMadeBy("eff").onTheWay); }

std::string piecesPath(const RunSettings& settings) {
    return joinedPath(settings.OutputWorkspace, piecesName());
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
    application.feedback().beginPart(0, kPiecesMade);
    DeleteFeatureClass(platform.features(), settings.OutputWorkspace, piecesName());
    const EfficiencyLayers layers = openEfficiencyLayers(platform, settings);
    if (layers.landCover->fields().empty() || layers.zones->fields().empty()) {
        application.prompts().failure("Table QI failed");
        return false;
    }
    requireOverlay(platform, settings, layers);
    const OverlayResult result = platform.analysis().overlay()->Intersect(
        {layers.landCover, kCropField}, {layers.zones, settings.ZoneField},
        piecesPath(settings) + ".shp");
    tellRepairs(application.prompts(), result.repairs);
    if (result.pieces == 0) throw noCommonLand(settings);
    return true;
}

void GetIREF(IApplication& application, const RunSettings& settings,
             const std::string& databasePath) {
    IFeedback& feedback = application.feedback();
    feedback.beginPart(kPiecesMade, kEfficienciesFound);
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
    std::size_t done = 0;
    for (; !pieces->eof(); pieces->moveNext()) ++count;
    for (pieces->moveFirst(); !pieces->eof(); pieces->moveNext()) {
        pieces->setValue(kEfficiency, lookup.of(keyText(pieces->value(settings.ZoneField)),
                                                keyText(pieces->value(kCropField))));
        pieces->update();
        feedback.advance(static_cast<double>(++done) / static_cast<double>(count));
        throwIfCancelled(feedback);
    }
    transaction->commit();
    application.prompts().message("Ready to make EF map");
}

void makeEfficiencyGrid(IApplication& application, const RunSettings& settings, RunRecord& record) {
    IPlatform& platform = application.platform();
    application.feedback().beginPart(kEfficienciesFound, 1);
    const auto pieces = platform.features().openFeatureClass(piecesPath(settings));
    const auto layer = platform.memoryRelationships().openUnjoined(pieces);
    const auto conversion = platform.analysis().conversion();
    conversion->environment().SetCellSize(EnvironmentSetting::explicitValue, settings.CellSize);
    conversion->environment().SetExtent(EnvironmentSetting::explicitValue, pieces->extent(),
                                        pieces->crs());
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    const std::string name = gridName(productMadeBy("eff").made, settings, 0);
    conversion->ToRasterDataset({*layer, "IREF <> 0", kEfficiency}, "Grid", *workspace, name);
    record.made(name);
}

void tellEfficiencyGrid(IApplication& application, const RunSettings& settings) {
    application.feedback().advance(1);
    application.prompts().message("EF map (IREF) generated successfully in < " +
                                  settings.OutputWorkspace + " > ");
}

}  // namespace velmora
