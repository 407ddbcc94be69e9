// SPDX-License-Identifier: MIT
#include "settings/lost_characters.h"

#include "gis/text.h"
#include "gis/windows1252.h"
#include "settings/settings_fields.h"

namespace velmora {

namespace {

// The setting of the reference grids names a grid of some month, which need not be there itself.
bool namesSomething(const IFileSystem& files, const SettingsField& field, const std::string& path) {
    if (files.fileExists(path) || files.folderExists(path)) return true;
    return field.name == "PrismGridFolder" && fileName(path).find('?') == std::string::npos &&
           files.folderExists(parentFolderName(path));
}

}  // namespace

std::vector<LostText> textsToBeLost(const RunSettings& settings) {
    std::vector<LostText> texts;
    for (const SettingsField& field : settingsFields()) {
        const std::string text = settingsText(settings, field);
        const std::string lost = lostCharacters(text);
        if (lost.empty()) continue;
        texts.push_back({std::string(field.name),
                         "the settings file cannot hold \"" + lost + "\": \"" + text +
                             "\" is stored as \"" + utf8FromWindows1252(windows1252FromUtf8(text)) +
                             "\"" +
                             (field.kind == FieldKind::path
                                  ? ", which names something else: rename or move it so "
                                    "that its path has letters of Western Europe only "
                                    "(Windows-1252), and apply again"
                                  : "")});
    }
    return texts;
}

std::vector<LostText> lostPaths(const IFileSystem& files, const RunSettings& settings) {
    std::vector<LostText> texts;
    for (const SettingsField& field : settingsFields()) {
        const std::string path = settingsText(settings, field);
        if (field.kind != FieldKind::path || path.find('?') == std::string::npos) continue;
        if (namesSomething(files, field, path)) continue;
        texts.push_back({std::string(field.name),
                         "\"" + path +
                             "\" does not exist: the settings file stores ? for characters that it "
                             "cannot hold (those outside Windows-1252), so rename or move what is "
                             "meant, and apply again"});
    }
    return texts;
}

}  // namespace velmora
