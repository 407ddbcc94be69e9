// SPDX-License-Identifier: MIT
#include <map>
#include <nlohmann/json.hpp>

#include "check/finding_groups.h"
#include "check/input_check.h"
#include "gis/errors.h"
#include "hosts/chain/steps.h"
#include "hosts/cli/commands.h"
#include "hosts/components/loaded_extension.h"
#include "hosts/components/menu_item.h"
#include "platform/platform.h"
#include "settings/stored_settings.h"
#include "shell/interfaces.h"

namespace velmora::cli {

namespace {

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
    const std::string step = stepOfProgId(progId);
    if (!step.empty()) return "velmora run " + step;
    return progId == "Tarnwick.clsSettings" ? "velmora settings" : std::string();
}

void printItems(const nlohmann::ordered_json& items, int depth) {
    for (const auto& item : items) {
        if (item.at("beginsGroup").get<bool>()) print("{:{}}--------\n", "", depth * 2);
        const std::string step = stepOf(item.at("id"));
        print("{:{}}{}{}\n", "", depth * 2, item.at("caption").get<std::string>(),
              step.empty() ? "" : "   [" + step + "]");
        if (item.contains("items")) printItems(item.at("items"), depth + 1);
    }
}

}  // namespace

int listCommands(const Session& session) {
    const LoadedExtension extension;
    const auto toolbar = extension.create<IToolBarDef>("Tarnwick.clsToolBar_Zav");
    nlohmann::ordered_json tree;
    tree["name"] = toolbar->Name();
    tree["caption"] = toolbar->Caption();
    tree["items"] = itemsOf(extension, *toolbar.get());
    if (session.json) {
        printJson(tree);
    } else {
        print("{}\n", toolbar->Caption());
        printItems(tree["items"], 1);
    }
    return kDone;
}

int checkSettings(const Session& session, bool all) {
    platform::Platform platform;
    const auto settings = storedSettings(platform.files(), session.settingsFolder);
    if (!settings) return failWithoutSettings(session);
    const std::vector<Finding> findings = checkInputs(platform, *settings);
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
        printJson(list);
    } else {
        const auto lines = all ? allFindingLines(findings) : findingLines(findings);
        for (const std::string& line : lines) print("{}\n", oneLine(line));
        print("{}\n", findingCounts(findings));
    }
    return counts[Severity::error] == 0 ? kDone : kFailed;
}

}  // namespace velmora::cli
