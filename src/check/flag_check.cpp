// SPDX-License-Identifier: MIT
#include "check/flag_check.h"

#include "settings/weather_flags.h"

namespace velmora {

namespace {

std::vector<std::string> fieldNames(const ITable& table) {
    std::vector<std::string> names;
    for (const Field& field : table.fields()) names.push_back(field.name);
    return names;
}

}  // namespace

std::vector<Finding> checkFlags(const ITable& weather, const RunSettings& settings) {
    const auto names = fieldNames(weather);
    std::vector<Finding> findings;
    for (const FlagMismatch& mismatch : flagMismatches(settings, names)) {
        findings.push_back(
            {Severity::warning, weather.path(), mismatch.prefix + "...", {}, mismatch.text});
    }
    for (const char* prefix : {"RHM_", "RHN_", "RHA_"}) {
        const std::string field = fieldInAnyCase(names, prefix);
        if (field.empty()) continue;
        findings.push_back({Severity::note,
                            weather.path(),
                            field,
                            {},
                            "relative humidity is not used: dew points come from the fields TD_ "
                            "or are estimated from minimum temperatures"});
        break;
    }
    return findings;
}

}  // namespace velmora
