// SPDX-License-Identifier: MIT
#include "crop/kc_maps.h"

#include "crop/kc_table.h"
#include "gis/errors.h"
#include "gis/gis_functions.h"
#include "gis/polygon_analysis.h"
#include "gis/text.h"
#include "gis/working_folder.h"
#include "modelling/products.h"
#include "modelling/run_record.h"
#include "settings/modelling_extent.h"

namespace velmora {

namespace {

constexpr double kSmallestCell = 100;
constexpr double kLargestCell = 500;

const Product& kcMaps() { return productMadeBy("kc"); }

std::string kcGridName(const RunSettings& settings, int month) {
    return gridName(kcMaps().made, settings, month);
}

void makeMonths(IApplication& application, const RunSettings& settings, const KcMapInputs& inputs,
                RunRecord& record) {
    IPlatform& platform = application.platform();
    IPrompts& prompts = application.prompts();
    const auto landCover =
        platform.features().openFeatureClass(inputs.landCover, domainCrs(platform, settings));
    const auto table = platform.features().openTable(inputs.kcTable);
    if (table->fields().empty()) {
        throw PlatformError("The crop coefficient table " + inputs.kcTable + " has no fields",
                            {.file = inputs.kcTable});
    }
    requireMetres(platform, *landCover, "land cover");
    const auto joined =
        platform.memoryRelationships().open({"JoinTable", table, table->fields().front().name,
                                             landCover, inputs.cropField, "Forward", "Backward"});
    prompts.message("Joined_kc");
    const auto conversion = platform.analysis().conversion();
    conversion->environment().SetCellSize(EnvironmentSetting::explicitValue, inputs.cellSize);
    conversion->environment().SetExtent(EnvironmentSetting::explicitValue, landCover->extent(),
                                        landCover->crs());
    prompts.message("pre");
    prompts.message(settings.OutputWorkspace);
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    prompts.message("post");
    prompts.message("Kc_loop");
    const std::vector<int> months = settings.months();
    FeedbackParts parts(application.feedback(), months.size());
    for (const int month : months) {
        parts.next(monthMessage(kcMaps(), month));
        const std::string column = table->name() + "." + kcFieldName(month);
        conversion->ToRasterDataset({*joined, "[" + column + "] <> 0", column}, "Grid", *workspace,
                                    kcGridName(settings, month));
        record.made(kcGridName(settings, month));
    }
}

}  // namespace

double boundedKcCellSize(double cellSize) {
    if (cellSize > kLargestCell) return kLargestCell;
    return cellSize < kSmallestCell ? kSmallestCell : cellSize;
}

void makeKcMaps(IApplication& application, const RunSettings& settings, const KcMapInputs& inputs) {
    WorkingFolder folder(application.platform().files(), settings.OutputWorkspace);
    RunRecord record(application, settings, "kc");
    record.during([&] {
        makeMonths(application, settings, inputs, record);
        folder.settle();
        record.finish();
    });
    application.feedback().advance(1);
    application.prompts().message("Kc-Maps have been generated successfully");
}

void showKcMaps(IApplication& application, const RunSettings& settings) {
    const auto workspace =
        application.platform().rasters().openFromFolder(settings.OutputWorkspace);
    for (const int month : settings.months()) {
        const std::string name = kcGridName(settings, month);
        auto layer =
            application.document().createRasterLayer(workspace->openRasterDataset(name)->path());
        ApplyColorRamp(application.prompts(), *layer, kcMaps().ramp.from, kcMaps().ramp.to);
        application.document().addLayer(std::move(layer));
    }
}

}  // namespace velmora
