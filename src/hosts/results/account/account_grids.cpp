// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_grids.h"

#include <cmath>

#include "gis/errors.h"
#include "irrigation/net_irrigation_run.h"
#include "irrigation/requirement_series.h"
#include "modelling/products.h"

namespace velmora {

namespace {

// Whether the cells of both are cells of one endless grid.
bool sameLattice(const GridGeometry& a, const GridGeometry& b) {
    const auto whole = [&](double distance) {
        const double cells = distance / b.cellSize;
        return std::fabs(cells - std::round(cells)) < 1e-6;
    };
    return std::fabs(a.cellSize / b.cellSize - 1) < 1e-9 && whole(a.xMin - b.xMin) &&
           whole(a.yMax - b.yMax);
}

// The steps whose grids are made on the cells of the account; those of others may lie elsewhere.
bool sharesCells(std::string_view maker) {
    return maker == "cropet" || maker == "nir" || maker == "irr";
}

std::unique_ptr<IMapAlgebraOp> algebraOn(IPlatform& platform, const GridGeometry& cells) {
    auto algebra = platform.analysis().mapAlgebra();
    useCells(algebra->environment(), cells);
    return algebra;
}

}  // namespace

AccountGridSource::AccountGridSource(IPlatform& platform, const RunSettings& settings)
    : platform_(platform), settings_(settings) {
    if (!platform.files().folderExists(settings.OutputWorkspace)) {
        throw PlatformError("There is no output folder " + settings.OutputWorkspace,
                            {.file = settings.OutputWorkspace});
    }
    workspace_ = platform.rasters().openFromFolder(settings.OutputWorkspace);
}

RasterPtr AccountGridSource::grid(std::string_view maker, int month) const {
    const std::string name = gridName(productMadeBy(maker).read, settings_, month);
    if (!workspace_->exists(name)) return nullptr;
    return workspace_->openRasterDataset(name)->createDefaultRaster();
}

std::optional<GridGeometry> AccountGridSource::cellsOf(int month) const {
    const RasterPtr cropEt = grid("cropet", month);
    if (!cropEt) return std::nullopt;
    const RasterPtr precipitation = grid("ppt", month);
    if (!precipitation) return cropEt->geometry();
    const auto algebra = platform_.analysis().mapAlgebra();
    useInputs(algebra->environment());
    return netIrrigationRequirement(*algebra, cropEt, precipitation)->geometry();
}

RasterPtr AccountGridSource::opened(std::string_view maker, int month, const GridGeometry& cells) {
    const Product& product = productMadeBy(maker);
    const std::string name = gridName(product.read, settings_, month);
    const RasterPtr found = grid(maker, month);
    if (!found) {
        notes_.push_back("There is no grid " + name + " (" + std::string(product.quantity) +
                         "), which velmora run " + std::string(maker) + " makes");
        return nullptr;
    }
    if (sharesCells(maker) && !sameLattice(found->geometry(), cells)) {
        notes_.push_back("The grid " + name + " lies on other cells than the account: each cell " +
                         "takes the value at its centre, so sums differ from the zone table's");
    }
    const auto algebra = algebraOn(platform_, cells);
    algebra->BindRaster(found, "grid");
    return algebra->Execute("[grid]");
}

AccountGrids AccountGridSource::open(int month, const GridGeometry& cells) {
    AccountGrids grids;
    grids.cropEt = opened("cropet", month, cells);
    grids.precipitation = opened("ppt", month, cells);
    grids.net = opened("nir", month, cells);
    grids.efficiency = opened("eff", month, cells);
    grids.water = opened("irr", month, cells);
    grids.coefficient = opened("kc", month, cells);
    if (grids.cropEt && grids.precipitation) {
        grids.effective = effectivePrecipitation(*algebraOn(platform_, cells), grids.precipitation);
        grids.surplus =
            precipitationSurplus(*algebraOn(platform_, cells), grids.cropEt, grids.precipitation);
    }
    return grids;
}

}  // namespace velmora
