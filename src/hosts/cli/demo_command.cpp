// SPDX-License-Identifier: MIT
#include <fmt/core.h>

#include <filesystem>

#include "examples/basin/sample_basin.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/grid_statistics.h"
#include "platform/platform.h"

namespace velmora::cli {

namespace {

void printMonthlyTable(platform::Platform& platform, const std::string& output) {
    fmt::print("\nReference ET of the sample basin, inches (method 2, short grass)\n");
    fmt::print("{:<8}{:>10}{:>10}{:>10}\n", "month", "mean", "minimum", "maximum");
    const auto workspace = platform.rasters().openFromFolder(output);
    double year = 0;
    for (int month = 1; month <= 12; ++month) {
        const std::string label = GetMonthName(month);
        const GridStatistics s = statisticsOf(
            *workspace->openRasterDataset("RefET_" + label + "_2")->createDefaultRaster());
        fmt::print("{:<8}{:>10.2f}{:>10.2f}{:>10.2f}\n", label, s.mean, s.minimum, s.maximum);
        year += s.mean;
    }
    fmt::print("{:<8}{:>10.2f}\n\n", "year", year);
}

}  // namespace

int demo(const Session& session, const std::string& folder) {
    const std::string path = std::filesystem::absolute(folder).lexically_normal().string();
    const std::string output = joinedPath(path, "output");
    platform::Platform platform;
    fmt::print("The sample basin goes into {}\n", path);
    examples::makeSampleBasin(platform, path);

    // The demo has settings of its own, so that it leaves the user's alone.
    Session own = session;
    own.settingsFolder = joinedPath(path, "settings");
    const int applied = applySettings(own, examples::sampleSettings(path));
    if (applied != kDone) return applied;
    const int ran = runStep(own, "refet");
    if (ran != kDone) return ran;
    printMonthlyTable(platform, output);
    const int drawn = gridPicture(own, "RefET_Jul_2", joinedPath(path, "RefET_Jul_2.png"),
                                  "Reference ET in July, inches");
    fmt::print(
        "\nGo on with:\n  velmora --settings-folder {} check\n  velmora --settings-folder {} "
        "grid stats RefET_Jul_2\n",
        own.settingsFolder, own.settingsFolder);
    return drawn;
}

}  // namespace velmora::cli
