// SPDX-License-Identifier: MIT
#include "irrigation/net_irrigation_run.h"

#include <algorithm>
#include <array>
#include <exception>
#include <string>

#include "gis/gis_functions.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "settings/zonal_settings.h"

namespace velmora {

namespace {

constexpr const char* kTable = "StatNIR";

}  // namespace

RasterPtr netIrrigationRequirement(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                                   const RasterPtr& precipitation) {
    algebra.BindRaster(cropEt, "ET");
    algebra.BindRaster(precipitation, "PPT");
    algebra.BindRaster(algebra.Execute("[ET] - 0.8 * [PPT]"), "AllCell");
    algebra.BindRaster(algebra.Execute("[AllCell] >= 0"), "PosiOne");
    return algebra.Execute("[AllCell] * [PosiOne]");
}

bool NetIrrigationRun::run() {
    try {
        runMonths();
        return true;
    } catch (const std::exception& e) {
        application_.prompts().message(e.what());
        return false;
    }
}

void NetIrrigationRun::runMonths() {
    lock_ = platform_.files().lockFolder(settings_.OutputWorkspace);
    workspace_ = platform_.rasters().openFromFolder(settings_.OutputWorkspace);
    CreateStatTable(platform_, application_.prompts(), settings_.OutputWorkspace, kTable);
    const int last = settings_.endMonthNumber();
    for (int month = std::max(1, settings_.beginMonthNumber()); month <= last; ++month) {
        runMonth(month);
    }
    AddTable(application_.prompts(), application_.document(),
             OpenTable(platform_, application_.prompts(), settings_.OutputWorkspace, kTable));
}

void NetIrrigationRun::runMonth(int month) {
    const std::string label = GetMonthName(month);
    const auto open = [&](const std::string& name) {
        return workspace_->openRasterDataset(name)->createDefaultRaster();
    };
    const RasterPtr precipitation = open("PPT_" + label);
    const RasterPtr cropEt = open("ET_" + label + settings_.methodTag());
    const auto algebra = platform_.analysis().mapAlgebra();
    useInputs(algebra->environment());
    const std::string name = "NIR_" + label;
    workspace_->save(std::array{
        RasterToSave{name, netIrrigationRequirement(*algebra, cropEt, precipitation), "GRID"}});

    auto layer =
        application_.document().createRasterLayer(joinedPath(settings_.OutputWorkspace, name));
    ApplyColorRamp(application_.prompts(), *layer, {100, 50, 50}, {0, 255, 0});
    application_.document().addLayer(std::move(layer));
    MakeZonalStat(platform_, application_.prompts(), zonalTableSettings(settings_), open(name),
                  kTable, month);
}

}  // namespace velmora
