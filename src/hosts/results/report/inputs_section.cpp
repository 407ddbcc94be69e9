// SPDX-License-Identifier: MIT
#include "hosts/results/report/inputs_section.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "gis/text.h"
#include "hosts/results/report/html.h"
#include "settings/settings_fields.h"

namespace velmora {

namespace {

using Rows = std::vector<std::vector<std::string>>;

// A value of a settings field, and the steps that ran with it.
struct SettingValue {
    std::string text;
    std::vector<std::string> steps;
};

// The values of a field but "", in the order of the steps.
std::vector<SettingValue> valuesOf(const RunResults& results, const SettingsField& field) {
    std::vector<SettingValue> values;
    const auto add = [&](const RunSettings& settings, const std::vector<std::string>& steps) {
        const std::string text = settingsText(settings, field);
        if (text.empty()) return;
        auto found = std::ranges::find(values, text, &SettingValue::text);
        if (found == values.end()) found = values.insert(values.end(), {text, {}});
        found->steps.insert(found->steps.end(), steps.begin(), steps.end());
    };
    for (const RecordedStep& step : results.records.steps) add(step.settings, {step.step});
    if (results.records.steps.empty()) add(results.settings, {});
    return values;
}

// A dataset as the last step that has read it found it.
struct ReadInput {
    std::string path;
    std::string written;
    std::uintmax_t bytes = 0;
    std::vector<std::string> steps;
};

// Records tell paths in their folder from there on.
std::string wholePath(const std::string& path, const std::string& folder) {
    const std::string whole = (std::filesystem::path(folder) / path).lexically_normal().string();
    return whole.ends_with('/') ? whole.substr(0, whole.size() - 1) : whole;
}

// The inputs that no step has made, in the order in which they were read.
std::vector<ReadInput> readInputs(const RunResults& results) {
    std::vector<ReadInput> inputs;
    for (const RecordedStep& step : results.records.steps) {
        for (const RecordedInput& recorded : step.inputs) {
            if (!recorded.madeBy.empty()) continue;
            const std::string path = wholePath(recorded.path, results.settings.OutputWorkspace);
            auto input = std::ranges::find(inputs, path, &ReadInput::path);
            if (input == inputs.end()) input = inputs.insert(inputs.end(), {path, "", 0, {}});
            input->written.clear();
            input->bytes = 0;
            for (const RecordedFile& file : recorded.files) {
                input->written = std::max(input->written, file.modified);
                input->bytes += file.bytes;
            }
            input->steps.push_back(step.step);
        }
    }
    return inputs;
}

std::string sizeText(std::uintmax_t bytes) {
    if (bytes < 10'000) return fmt::format("{} bytes", bytes);
    if (bytes < 10'000'000) return fmt::format("{:.0f} kB", static_cast<double>(bytes) / 1e3);
    return fmt::format("{:.1f} MB", static_cast<double>(bytes) / 1e6);
}

std::vector<std::string> rowOf(const std::string& name, const ReadInput& input) {
    return {name, pathHtml(input.path), escaped(timeToSecond(input.written)),
            escaped(joinedNames(input.steps)), sizeText(input.bytes)};
}

// Of the fields that name inputs, and then of what was read without being named there.
Rows inputRows(const RunResults& results) {
    Rows rows;
    std::vector<ReadInput> inputs = readInputs(results);
    std::vector<std::string> named;
    const char* unread = results.records.none() ? "no record" : "not read";
    for (const SettingsField& field : settingsFields()) {
        if (field.kind != FieldKind::path || field.name == "OutputWorkspace") continue;
        for (const SettingValue& value : valuesOf(results, field)) {
            const std::string path = wholePath(value.text, results.settings.OutputWorkspace);
            const auto input = std::ranges::find(inputs, path, &ReadInput::path);
            rows.push_back(input == inputs.end()
                               ? std::vector<std::string>{std::string(field.name),
                                                          pathHtml(value.text), unread, "", ""}
                               : rowOf(std::string(field.name), *input));
            named.push_back(path);
        }
    }
    for (const ReadInput& input : inputs) {
        if (std::ranges::find(named, input.path) == named.end()) {
            rows.push_back(rowOf("&ndash;", input));
        }
    }
    return rows;
}

std::string valueHtml(const std::vector<SettingValue>& values) {
    if (values.size() == 1) return escaped(values.front().text);
    std::string html;
    for (const SettingValue& value : values) {
        html += (html.empty() ? "" : "<br>") +
                escaped(value.text + " (" + joinedNames(value.steps) + ")");
    }
    return html;
}

Rows settingRows(const RunResults& results) {
    Rows rows;
    for (const SettingsField& field : settingsFields()) {
        if (field.kind == FieldKind::path && field.name != "OutputWorkspace") continue;
        const std::vector<SettingValue> values = valuesOf(results, field);
        if (values.empty()) continue;
        rows.push_back(
            {std::string(field.name), valueHtml(values), escaped(std::string(field.help))});
    }
    return rows;
}

}  // namespace

std::string inputsSection(const RunResults& results) {
    const char* note = results.records.none()
                           ? "As the settings are now: there are no records of runs."
                           : "As the runs found and used them, by their records.";
    return fmt::format("<h2 id=\"inputs\">Inputs and settings</h2>\n<p class=\"note\">{}</p>\n",
                       note) +
           htmlTable({"Input", "Path", "Last written", "Read by", "Size"}, inputRows(results), 4) +
           folded("Settings",
                  inTwo(htmlTable({"Setting", "Value", "Meaning"}, settingRows(results), 3)));
}

}  // namespace velmora
