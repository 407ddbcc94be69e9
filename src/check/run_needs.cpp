// SPDX-License-Identifier: MIT
#include "check/run_needs.h"

#include <cmath>

#include "gis/numbers.h"
#include "gis/text.h"
#include "refet/run_size.h"

namespace velmora {

namespace {

// Of a month: Kc twice, ET, PPT, NIR and IRR. Of none: IREF and its copy.
constexpr std::size_t kGridsOfLaterSteps = 6;
constexpr std::size_t kGridsOfNoMonth = 2;

// Seconds per cell and month on two threads of a machine of 2026 (docs/performance.md).
constexpr double kRefEtSeconds = 1.5e-7;
constexpr double kLaterSeconds = 2.5e-7;

std::string timeText(double seconds) {
    if (seconds < 10) return "some seconds";
    if (seconds < 90) return "about " + numberText(std::round(seconds / 10) * 10) + " s";
    return "about " + numberText(std::round(seconds / 60)) + " minutes";
}

}  // namespace

double bytesOnDisk(const RunSettings& settings, std::size_t cells) {
    return bytesOfRun(settings, cells) +
           bytesOfGrids(cells, kGridsOfLaterSteps * settings.months().size() + kGridsOfNoMonth);
}

std::vector<Finding> checkRunNeeds(const IFileSystem& files, const RunSettings& settings,
                                   const GridGeometry& geometry) {
    const std::size_t months = settings.months().size();
    const double disk = bytesOnDisk(settings, geometry.cells());
    const double work = static_cast<double>(geometry.cells()) * static_cast<double>(months);
    std::vector<Finding> findings = {{Severity::note,
                                      settings.ExtentProvider,
                                      {},
                                      {},
                                      "all steps over " + counted(months, "month") + " take some " +
                                          sizeText(disk) + " on disk and " +
                                          timeText(work * (kRefEtSeconds + kLaterSeconds))}};
    const auto room = files.freeSpace(settings.OutputWorkspace);
    if (room && static_cast<double>(*room) < disk) {
        findings.push_back({Severity::warning,
                            settings.OutputWorkspace,
                            {},
                            {},
                            "has " + sizeText(static_cast<double>(*room)) +
                                " left on its disk, but all steps take " + sizeText(disk) +
                                ": make room, or give a larger cell size"});
    }
    return findings;
}

}  // namespace velmora
