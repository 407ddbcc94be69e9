// SPDX-License-Identifier: MIT
#include "check/run_needs.h"

#include <cmath>
#include <filesystem>
#include <optional>
#include <system_error>

#include "gis/numbers.h"
#include "gis/text.h"
#include "refet/run_size.h"

namespace velmora {

namespace {

// A grid holds 4 bytes a cell, and some more in tiles that are not full.
constexpr double kGridBytes = 4.25;
constexpr double kWorkDatabaseBytes = 92;  // a row of its table
constexpr double kLayerBytes = 4096;       // folders and small files of a grid
// Grids of a month: surfaces with reference ET, then Kc twice, ET, PPT, NIR and IRR.
constexpr double kGridsOfRefEt = 6;
constexpr double kGridsOfTemperatures = 3;
constexpr double kGridsOfLaterSteps = 6;
constexpr double kGridsOfNoMonth = 4;  // NewDEM, RsTemplate, IREF and its copy

// Seconds per cell and month on two threads of a machine of 2026 (docs/performance.md).
constexpr double kRefEtSeconds = 1.5e-7;
constexpr double kLaterSeconds = 2.5e-7;

std::string sizeText(double bytes) {
    return bytes < 1e9 ? numberText(std::ceil(bytes / 1e6)) + " MB"
                       : numberText(std::round(bytes / 1e8) / 10) + " GB";
}

std::string timeText(double seconds) {
    if (seconds < 10) return "some seconds";
    if (seconds < 90) return "about " + numberText(std::round(seconds / 10) * 10) + " s";
    return "about " + numberText(std::round(seconds / 60)) + " minutes";
}

// Nothing where that cannot be known, as of a folder that is not there.
std::optional<double> freeBytes(const std::string& folder) {
    std::error_code error;
    const auto space = std::filesystem::space(folder, error);
    return error ? std::nullopt : std::optional(static_cast<double>(space.available));
}

}  // namespace

double bytesOnDisk(const RunSettings& settings, std::size_t cells, std::size_t months) {
    const double ofMonth =
        (settings.needsFullWeather() ? kGridsOfRefEt : kGridsOfTemperatures) + kGridsOfLaterSteps;
    const double grids = ofMonth * static_cast<double>(months) + kGridsOfNoMonth;
    return static_cast<double>(cells) * (grids * kGridBytes + kWorkDatabaseBytes) +
           grids * kLayerBytes;
}

std::vector<Finding> checkRunNeeds(const RunSettings& settings, const GridGeometry& geometry) {
    const std::size_t months = settings.months().size();
    const auto cells = static_cast<double>(geometry.cells());
    const double disk = bytesOnDisk(settings, geometry.cells(), months);
    const double work = cells * static_cast<double>(months);
    std::vector<Finding> findings = {{Severity::note,
                                      settings.ExtentProvider,
                                      {},
                                      {},
                                      "all steps over " + counted(months, "month") + " take some " +
                                          sizeText(memoryForRun(geometry)) + " of memory, " +
                                          sizeText(disk) + " on disk and " +
                                          timeText(work * (kRefEtSeconds + kLaterSeconds))}};
    const auto room = freeBytes(settings.OutputWorkspace);
    if (room && *room < disk) {
        findings.push_back({Severity::warning,
                            settings.OutputWorkspace,
                            {},
                            {},
                            "has " + sizeText(*room) + " left on its disk, but all steps take " +
                                sizeText(disk) + ": make room, or give a larger cell size"});
    }
    return findings;
}

}  // namespace velmora
