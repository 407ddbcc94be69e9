// SPDX-License-Identifier: MIT
#include <fmt/core.h>

#include <map>
#include <nlohmann/json.hpp>

#include "gis/errors.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/run_log.h"
#include "hosts/components/loaded_extension.h"
#include "hosts/components/menu_item.h"
#include "settings/finding_groups.h"
#include "settings/input_check.h"
#include "settings/settings_file.h"
#include "shell/interfaces.h"

namespace velmora::cli {

namespace {

// The steps in their order, with the classes of their commands.
const std::vector<std::pair<std::string, std::string>> kSteps = {
    {"refet", "Tarnwick.clsET_ReferenceET"},
    {"kc", "Tarnwick.clsET_CropCoefficient"},
    {"cropet", "Tarnwick.clsET_CropET"},
    {"ppt", "Tarnwick.clsPPT"},
    {"nir", "Tarnwick.clsIR_NIR"},
    {"eff", "Tarnwick.clsIR_EFF"},
    {"irr", "Tarnwick.clsIR_IRR"}};

// Anything with items: the toolbar and the menus.
template <class Definition>
nlohmann::ordered_json itemsOf(const LoadedExtension& extension, Definition& definition);

nlohmann::ordered_json entryOf(const LoadedExtension& extension, const MenuItem& item) {
    nlohmann::ordered_json entry;
    entry["id"] = item.id;
    entry["beginsGroup"] = item.group;
    if (item.isMenu()) {
        const auto menu = extension.create<IMenuDef>(item.id);
        entry["caption"] = menu->Caption();
        entry["items"] = itemsOf(extension, *menu.get());
    } else {
        const auto command = extension.create<ICommand>(item.id);
        entry["caption"] = command->Caption();
        entry["name"] = command->Name();
        entry["message"] = command->Message();
    }
    return entry;
}

template <class Definition>
nlohmann::ordered_json itemsOf(const LoadedExtension& extension, Definition& definition) {
    auto items = nlohmann::ordered_json::array();
    for (std::int32_t i = 0; i < definition.ItemCount(); ++i) {
        MenuItem item;
        definition.GetItemInfo(i, item);
        items.push_back(entryOf(extension, item));
    }
    return items;
}

std::string stepOf(const std::string& progId) {
    for (const auto& [step, id] : kSteps) {
        if (id == progId) return "velmora run " + step;
    }
    return progId == "Tarnwick.clsSettings" ? "velmora settings" : std::string();
}

void printItems(const nlohmann::ordered_json& items, int depth) {
    for (const auto& item : items) {
        if (item.at("beginsGroup").get<bool>()) fmt::print("{:{}}--------\n", "", depth * 2);
        const std::string step = stepOf(item.at("id"));
        fmt::print("{:{}}{}{}\n", "", depth * 2, item.at("caption").get<std::string>(),
                   step.empty() ? "" : "   [" + step + "]");
        if (item.contains("items")) printItems(item.at("items"), depth + 1);
    }
}

}  // namespace

namespace {

void showDiagnostics(const Session& session, HeadlessApplication& application,
                     const std::string& step) {
    const DiagnosticsReport& report = application.report();
    if (report.surfaces().empty()) {
        fmt::print("There are no diagnostics: the step made no surface over stations\n");
        return;
    }
    fmt::print("{}\n", session.json ? report.json() : report.table());
    const std::string settings = defaultSettingsPath(session.settingsFolder);
    const std::string folder =
        readSettings(application.platform().files(), settings).OutputWorkspace;
    const auto files =
        report.write(folder, step == "ppt" ? "PPT_diagnostics" : "RefET_diagnostics");
    if (session.json) return;
    fmt::print("{} is written", files.front());
    if (files.size() > 1)
        fmt::print(", with {} pictures *_semivariogram.png beside it", files.size() - 1);
    fmt::print("\n");
}

}  // namespace

std::vector<std::string> stepNames() {
    std::vector<std::string> names;
    for (const auto& [step, id] : kSteps) names.push_back(step);
    return names;
}

int runStep(const Session& session, const std::string& step, bool diagnose,
            const EfficiencyOptions& efficiency) {
    if (step == "eff") requireShares(session, efficiency);
    HeadlessApplication application(session.settingsFolder, session.terminal);
    if (diagnose) application.askForDiagnostics();
    application.dialogs().driver = [&](Form& form) {
        if (form.name() == "frmKcEditor") pressMakeKcMaps(session, form, {});
        if (form.name() == "frmEfficiency") {
            useEfficiencyDialog(application.prompts(), form, efficiency);
        }
        if (form.name() == "frmStatistics" && !session.terminal.quiet) {
            fmt::print("{}; velmora table StatIRR shows them\n",
                       form.control<Label>("lblNote").text());
        }
    };
    const IClock& clock = application.platform().clock();
    const double began = clock.seconds();
    const LoadedExtension extension;
    for (const auto& [name, progId] : kSteps) {
        if (name != step) continue;
        const auto command = extension.create<ICommand>(progId);
        command->OnCreate(&application);
        command->OnClick();
    }
    const bool done = application.outcome() == StepOutcome::done;
    noteRun(application.platform().files(), session.settingsFolder,
            {step, done, clock.seconds() - began, application.prompts().messages(), {}});
    if (diagnose) showDiagnostics(session, application, step);
    return done ? kDone : kFailed;
}

int listCommands(const Session& session) {
    const LoadedExtension extension;
    const auto toolbar = extension.create<IToolBarDef>("Tarnwick.clsToolBar_Zav");
    nlohmann::ordered_json tree;
    tree["name"] = toolbar->Name();
    tree["caption"] = toolbar->Caption();
    tree["items"] = itemsOf(extension, *toolbar.get());
    if (session.json) {
        fmt::print("{}\n", tree.dump(2));
    } else {
        fmt::print("{}\n", toolbar->Caption());
        printItems(tree["items"], 1);
    }
    return kDone;
}

int checkSettings(const Session& session) {
    platform::Platform platform;
    const std::string path = defaultSettingsPath(session.settingsFolder);
    if (!platform.files().fileExists(path)) {
        fmt::print("error: {}: there are no settings yet: velmora settings apply makes them\n",
                   path);
        return kFailed;
    }
    const std::vector<Finding> findings =
        checkInputs(platform, readSettings(platform.files(), path));
    std::map<Severity, int> counts;
    auto list = nlohmann::ordered_json::array();
    for (const Finding& finding : findings) {
        ++counts[finding.severity];
        list.push_back({{"severity", findingLine({finding.severity, {}, {}, {}, {}})},
                        {"file", finding.file},
                        {"field", finding.field},
                        {"station", finding.station},
                        {"text", finding.text}});
    }
    if (session.json) {
        fmt::print("{}\n", list.dump(2));
    } else {
        for (const std::string& line : findingLines(findings)) fmt::print("{}\n", oneLine(line));
        fmt::print("{}\n", findingCounts(findings));
    }
    return counts[Severity::error] == 0 ? kDone : kFailed;
}

}  // namespace velmora::cli
