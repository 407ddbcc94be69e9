// SPDX-License-Identifier: MIT
#include <fmt/core.h>

#include <filesystem>
#include <utility>

#include "examples/basin/sample_basin.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/grid_statistics.h"
#include "platform/platform.h"

namespace velmora::cli {

namespace {

// The month's statistics of a product whose grids are called prefix + month + suffix.
void printMonthlyTable(platform::Platform& platform, const std::string& output,
                       const std::string& title, const std::string& prefix,
                       const std::string& suffix) {
    fmt::print("\n{}\n{:<8}{:>10}{:>10}{:>10}\n", title, "month", "mean", "minimum", "maximum");
    const auto workspace = platform.rasters().openFromFolder(output);
    double year = 0;
    for (int month = 1; month <= 12; ++month) {
        const std::string label = GetMonthName(month);
        const GridStatistics s = statisticsOf(
            *workspace->openRasterDataset(prefix + label + suffix)->createDefaultRaster());
        if (s.cells == 0) {
            fmt::print("{:<8}{:>10}{:>10}{:>10}\n", label, "-", "-", "-");
            continue;
        }
        fmt::print("{:<8}{:>10.2f}{:>10.2f}{:>10.2f}\n", label, s.mean, s.minimum, s.maximum);
        year += s.mean;
    }
    fmt::print("{:<8}{:>10.2f}\n\n", "year", year);
}

void printZoneTable(platform::Platform& platform, const std::string& output) {
    const auto table = platform.features().openTable(joinedPath(output, "StatCET"));
    fmt::print("Crop ET by zone (StatCET; depth and volume take a grid's mean as mm per day)\n");
    for (const Field& field : table->fields()) {
        fmt::print("{:<{}}", field.name, field.type == FieldType::text ? 22 : 14);
    }
    fmt::print("\n");
    for (std::size_t r = 0; r < table->recordCount(); ++r) {
        for (const Field& field : table->fields()) {
            const FieldValue value = table->value(r, field.name);
            if (const auto* number = std::get_if<double>(&value)) {
                fmt::print("{:<14}", fmt::format("{:.7g}", *number));
            } else {
                fmt::print("{:<22}", keyText(value));
            }
        }
        fmt::print("\n");
    }
    fmt::print("\n");
}

// The steps in their order. Kc maps carry the method in their names, crop ET looks for them without
// it: the copies are made in the open.
int runSteps(const Session& own) {
    for (const char* step : {"refet", "kc"}) {
        const int ran = runStep(own, step);
        if (ran != kDone) return ran;
    }
    for (int month = 1; month <= 12; ++month) {
        const std::string name = "Kc_" + GetMonthName(month);
        const int copied = gridCopy(own, name + "_2", name);
        if (copied != kDone) return copied;
    }
    for (const char* step : {"cropet", "ppt"}) {
        const int ran = runStep(own, step);
        if (ran != kDone) return ran;
    }
    return kDone;
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
    const int ran = runSteps(own);
    if (ran != kDone) return ran;
    printMonthlyTable(platform, output,
                      "Reference ET of the sample basin, inches (method 2, short grass)", "RefET_",
                      "_2");
    printMonthlyTable(platform, output,
                      "Precipitation of the sample basin, inches (elevation-detrended kriging)",
                      "PPT_", "");
    printMonthlyTable(platform, output, "Crop ET of the sample basin's fields, inches", "ET_",
                      "_2");
    printZoneTable(platform, output);
    for (const auto& [name, title] : {std::pair{"RefET_Jul_2", "Reference ET in July, inches"},
                                      std::pair{"ET_Jul_2", "Crop ET in July, inches"},
                                      std::pair{"PPT_Jul", "Precipitation in July, inches"}}) {
        const int drawn =
            gridPicture(own, name, joinedPath(path, std::string(name) + ".png"), title);
        if (drawn != kDone) return drawn;
    }
    fmt::print(
        "\nGo on with:\n  velmora --settings-folder {0} check\n  velmora --settings-folder {0} "
        "run ppt --diagnose\n  velmora --settings-folder {0} grid stats RefET_Jul_2 PPT_Jul\n",
        own.settingsFolder);
    return kDone;
}

}  // namespace velmora::cli
