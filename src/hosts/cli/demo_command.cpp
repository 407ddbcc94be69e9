// SPDX-License-Identifier: MIT
#include <filesystem>
#include <utility>

#include "examples/basin/sample_basin.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/results/grid_statistics.h"
#include "modelling/products.h"
#include "platform/platform.h"
#include "settings/stored_settings.h"

namespace velmora::cli {

namespace {

// The statistics of a product's months.
void printMonthlyTable(platform::Platform& platform, const RunSettings& settings,
                       const Product& product, const std::string& title) {
    print("\n{}\n{:<8}{:>10}{:>10}{:>10}\n", title, "month", "mean", "minimum", "maximum");
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    double year = 0;
    for (const int month : settings.months()) {
        const std::string label = GetMonthName(month);
        const std::string grid = gridName(product.made, settings, month);
        const GridStatistics s =
            statisticsOf(*workspace->openRasterDataset(grid)->createDefaultRaster());
        if (s.cells == 0) {
            print("{:<8}{:>10}{:>10}{:>10}\n", label, "-", "-", "-");
            continue;
        }
        print("{:<8}{:>10.2f}{:>10.2f}{:>10.2f}\n", label, s.mean, s.minimum, s.maximum);
        year += s.mean;
    }
    print("{:<8}{:>10.2f}\n\n", "year", year);
}

void printTables(platform::Platform& platform, const RunSettings& settings) {
    for (const auto& [step, where] :
         {std::pair{"refet", "the sample basin, inches (method 2, short grass)"},
          {"ppt", "the sample basin, inches (elevation-detrended kriging)"},
          {"cropet", "the sample basin's fields, inches"},
          {"irr", "the sample basin's fields, inches"}}) {
        const Product& product = productMadeBy(step);
        printMonthlyTable(platform, settings, product,
                          fmt::format("{} of {}", product.title, where));
    }
}

// Pictures of July; the exit status.
int drawPictures(const Session& session, const RunSettings& settings, const std::string& folder) {
    constexpr int july = 7;
    for (const char* step : {"refet", "cropet", "ppt", "irr"}) {
        const Product& product = productMadeBy(step);
        const std::string name = gridName(product.made, settings, july);
        const int drawn = gridPicture(session, name, joinedPath(folder, name + ".png"),
                                      fmt::format("{} in July, inches", product.title));
        if (drawn != kDone) return drawn;
    }
    return kDone;
}

}  // namespace

int demo(const Session& session, const std::string& folder, bool inputsOnly) {
    const std::string path = std::filesystem::absolute(folder).lexically_normal().string();
    platform::Platform platform;
    if (!session.terminal.quiet) tell("The sample basin goes into {}\n", path);
    examples::makeSampleBasin(platform, path);

    // The demo has settings of its own, so that it leaves the user's alone.
    Session own = session;
    own.settingsFolder = joinedPath(path, "settings");
    const int applied = applySettings(own, examples::sampleSettings(path));
    if (applied != kDone || inputsOnly) return applied;
    const int ran = runAll(own, {{{}, "0.9", "crop", false, false}, {}, {}, false, false, false});
    if (ran != kDone) return ran;
    const RunSettings settings = requiredSettings(platform.files(), own.settingsFolder);
    if (!session.json) printTables(platform, settings);
    const int drawn = drawPictures(own, settings, path);
    if (drawn != kDone) return drawn;
    const int reported = report(own, {.file = joinedPath(path, "report.html")});
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
