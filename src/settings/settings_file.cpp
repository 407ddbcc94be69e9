// SPDX-License-Identifier: MIT
#include "settings/settings_file.h"

#include <bit>
#include <cstdint>
#include <variant>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "gis/windows1252.h"
#include "settings/run_choices.h"
#include "settings/settings_fields.h"

namespace velmora {

namespace {

constexpr std::size_t kLongestText = 65535;
constexpr std::size_t kLongestRecord = 94 + 21 * kLongestText;

void appendLittleEndian(std::string& out, std::uint64_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i, value >>= 8U) out += static_cast<char>(value & 0xFFU);
}

struct FieldWriter {
    const RunSettings& settings;
    const SettingsField& field;
    std::string& out;

    void operator()(std::string RunSettings::*member) const {
        const std::string bytes = windows1252FromUtf8(settings.*member);
        if (bytes.size() > kLongestText) {
            throw PlatformError("The setting " + std::string(field.name) + " is longer than " +
                                    std::to_string(kLongestText) + " characters",
                                {.field = std::string(field.name)});
        }
        appendLittleEndian(out, bytes.size(), 2);
        out += bytes;
    }
    void operator()(double RunSettings::*member) const {
        appendLittleEndian(out, std::bit_cast<std::uint64_t>(settings.*member), 8);
    }
    void operator()(bool RunSettings::*member) const {
        appendLittleEndian(out, settings.*member ? 0xFFFFU : 0U, 2);
    }
};

struct FieldReader {
    RunSettings& settings;
    const SettingsField& field;
    std::string_view& rest;

    std::string_view take(std::size_t count) const {
        if (rest.size() < count) {
            throw PlatformError(
                "The settings file ends inside the field " + std::string(field.name),
                {.field = std::string(field.name)});
        }
        const std::string_view taken = rest.substr(0, count);
        rest.remove_prefix(count);
        return taken;
    }
    std::uint64_t number(std::size_t bytes) const {
        std::uint64_t value = 0;
        const std::string_view taken = take(bytes);
        for (std::size_t i = bytes; i > 0; --i) {
            value = value << 8U | static_cast<unsigned char>(taken[i - 1]);
        }
        return value;
    }
    void operator()(std::string RunSettings::*member) const {
        settings.*member = utf8FromWindows1252(take(number(2)));
    }
    void operator()(double RunSettings::*member) const {
        settings.*member = std::bit_cast<double>(number(8));
    }
    void operator()(bool RunSettings::*member) const { settings.*member = number(2) != 0; }
};

}  // namespace

std::string defaultSettingsPath(const std::string& extensionFolder) {
    return joinedPath(extensionFolder, "Zav.inf");
}

std::string settingsRecord(const RunSettings& settings) {
    std::string bytes;
    for (const SettingsField& field : settingsFields()) {
        std::visit(FieldWriter{settings, field, bytes}, field.member);
    }
    return bytes;
}

RunSettings parseSettingsRecord(std::string_view bytes) {
    RunSettings settings;
    for (const SettingsField& field : settingsFields()) {
        std::visit(FieldReader{settings, field, bytes}, field.member);
    }
    return settings;
}

void requireRestorable(const RunSettings& settings) {
    const auto require = [](bool holds, const SettingsField& field, const std::string& value,
                            const std::string& wanted) {
        if (holds) return;
        throw PlatformError("The field " + std::string(field.name) + " holds \"" + value +
                                "\", but it should be " + wanted,
                            {.field = std::string(field.name)});
    };
    const std::string& method = settings.RefETMethod;
    require(method.size() == 1 && method >= "1" && method <= "6", *findSettingsField("RefETMethod"),
            method, "1 to 6");
    for (const SettingsField& field : settingsFields()) {
        if (field.options.empty()) continue;
        const std::string value = settingsText(settings, field);
        require(value.empty() || optionOf(field, value), field, value, optionNames(field));
    }
    for (const SettingsField& field : settingsFields()) {
        if (field.kind != FieldKind::number) continue;
        const std::string number = settingsText(settings, field);
        require(strictNumber(number).has_value(), field, number, "a number");
    }
}

void writeSettings(IFileSystem& files, const std::string& path, const RunSettings& settings) {
    files.writeOver(path, settingsRecord(settings));
}

RunSettings readSettings(const IFileSystem& files, const std::string& path) {
    try {
        return parseSettingsRecord(files.readBeginning(path, kLongestRecord));
    } catch (const PlatformError& e) {
        ErrorPlace place = e.place();
        place.file = path;
        throw PlatformError(path + ": " + e.what(), place);
    }
}

}  // namespace velmora
