// SPDX-License-Identifier: MIT
// What each subcommand of `velmora` does. Every function returns the exit status: 0 done, 1 a
// failure that has been reported, 2 bad usage.
#pragma once

#include <string>
#include <vector>

#include "hosts/cli/terminal.h"

namespace velmora {
class Form;
}

namespace velmora::cli {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kBadUsage = 2;

// What all subcommands share.
struct Session {
    std::string settingsFolder;
    TerminalOptions terminal;
    bool json = false;
};

// A path as the user types it, made whole; "" stays "".
std::string wholePath(const std::string& path);

// `velmora settings`: the buttons of the General Settings form.
int applySettings(const Session& session, const std::vector<std::string>& assignments);
int showSettings(const Session& session);
int saveSettingsAs(const Session& session, const std::string& file);
int loadSettings(const Session& session, const std::string& file);

// `velmora run STEP [--diagnose]`: clicks the step's command; with diagnostics, shows what stands
// behind the step's surfaces and writes it into the output folder.
int runStep(const Session& session, const std::string& step, bool diagnose = false);
std::vector<std::string> stepNames();

// `velmora kc`: the Kc-Map Maker on the settings' table and land cover.
struct KcOptions {
    std::string table;     // another crop coefficient table
    std::string field;     // another field of the land cover
    std::string cellSize;  // another cell size of the maps
};
int kcNew(const Session& session, const std::string& file);
int kcList(const Session& session, const KcOptions& options);
int kcMatch(const Session& session, const KcOptions& options);
int kcSet(const Session& session, const KcOptions& options, const std::string& crop,
          const std::vector<std::string>& assignments, bool isNew);
int kcMaps(const Session& session, const KcOptions& options);
// Sets the form's controls as the options say, and presses "Make Kc Maps".
void pressMakeKcMaps(const Session& session, Form& form, const KcOptions& options);

// `velmora table NAME`: a table of the output folder, or some of its columns.
enum class TableForm { aligned, csv };
int showTable(const Session& session, const std::string& name,
              const std::vector<std::string>& columns, TableForm form);

// `velmora commands`: the toolbar and menus as the host sees them.
int listCommands(const Session& session);

// `velmora check`: what is wrong or suspicious in the inputs.
int checkSettings(const Session& session);

// `velmora grid`: datasets by path, or by name in the output folder.
int gridInfo(const Session& session, const std::string& dataset);
int gridStatistics(const Session& session, const std::vector<std::string>& datasets);
int gridCopy(const Session& session, const std::string& from, const std::string& to);
int gridExport(const Session& session, const std::string& dataset, const std::string& file);
int gridPicture(const Session& session, const std::string& dataset, const std::string& file,
                const std::string& title);

// `velmora demo DIR`: the sample basin from nothing to reference ET and precipitation.
int demo(const Session& session, const std::string& folder);

}  // namespace velmora::cli
