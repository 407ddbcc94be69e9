// SPDX-License-Identifier: MIT
#include <array>
#include <filesystem>
#include <utility>

#include "examples/basin/sample_basin.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/results/grid_statistics.h"
#include "platform/platform.h"

namespace velmora::cli {

namespace {

// The month's statistics of a product whose grids are called prefix + month + suffix.
void printMonthlyTable(platform::Platform& platform, const std::string& output,
                       const std::string& title, const std::string& prefix,
                       const std::string& suffix) {
    print("\n{}\n{:<8}{:>10}{:>10}{:>10}\n", title, "month", "mean", "minimum", "maximum");
    const auto workspace = platform.rasters().openFromFolder(output);
    double year = 0;
    for (int month = 1; month <= 12; ++month) {
        const std::string label = GetMonthName(month);
        const GridStatistics s = statisticsOf(
            *workspace->openRasterDataset(prefix + label + suffix)->createDefaultRaster());
        if (s.cells == 0) {
            print("{:<8}{:>10}{:>10}{:>10}\n", label, "-", "-", "-");
            continue;
        }
        print("{:<8}{:>10.2f}{:>10.2f}{:>10.2f}\n", label, s.mean, s.minimum, s.maximum);
        year += s.mean;
    }
    print("{:<8}{:>10.2f}\n\n", "year", year);
}

void printTables(platform::Platform& platform, const std::string& output) {
    for (const auto& [title, prefix, suffix] :
         {std::array{"Reference ET of the sample basin, inches (method 2, short grass)", "RefET_",
                     "_2"},
          std::array{"Precipitation of the sample basin, inches (elevation-detrended kriging)",
                     "PPT_", ""},
          std::array{"Crop ET of the sample basin's fields, inches", "ET_", "_2"},
          std::array{"Irrigation water requirement of the sample basin's fields, inches", "IRR_",
                     ""}}) {
        printMonthlyTable(platform, output, title, prefix, suffix);
    }
}

}  // namespace

int demo(const Session& session, const std::string& folder, bool inputsOnly) {
    const std::string path = std::filesystem::absolute(folder).lexically_normal().string();
    const std::string output = joinedPath(path, "output");
    platform::Platform platform;
    if (!session.terminal.quiet) tell("The sample basin goes into {}\n", path);
    examples::makeSampleBasin(platform, path);

    // The demo has settings of its own, so that it leaves the user's alone.
    Session own = session;
    own.settingsFolder = joinedPath(path, "settings");
    const int applied = applySettings(own, examples::sampleSettings(path));
    if (applied != kDone || inputsOnly) return applied;
    const int ran = runAll(own, {{{}, "0.9", "crop", false, false}, {}, {}, false});
    if (ran != kDone) return ran;
    if (!session.json) printTables(platform, output);
    for (const auto& [name, title] :
         {std::pair{"RefET_Jul_2", "Reference ET in July, inches"},
          std::pair{"ET_Jul_2", "Crop ET in July, inches"},
          std::pair{"PPT_Jul", "Precipitation in July, inches"},
          std::pair{"IRR_Jul", "Irrigation water requirement in July, inches"}}) {
        const int drawn =
            gridPicture(own, name, joinedPath(path, std::string(name) + ".png"), title);
        if (drawn != kDone) return drawn;
    }
    const int reported = report(own, joinedPath(path, "report.html"));
    if (reported != kDone) return reported;
    sayDone(
        session,
        "\nGo on with:\n  velmora --settings-folder {0} eff show\n  velmora --settings-folder "
        "{0} table StatIRR --columns ZoneUnit,Month,IRR_V_acft\n  velmora --settings-folder {0} "
        "run ppt --diagnose\n",
        shellWord(own.settingsFolder));
    return kDone;
}

}  // namespace velmora::cli
