// SPDX-License-Identifier: MIT
#include "settings/weather_flags.h"

#include <array>

#include "gis/month_names.h"
#include "gis/text.h"
#include "settings/weather_inspection.h"

namespace velmora {

namespace {

struct Quantity {
    WeatherParameter parameter;
    bool RunSettings::*flag;
    const char* prefix;
    const char* name;
    bool fullWeatherOnly;  // not used by methods that need temperatures alone
};

constexpr std::array<Quantity, 6> kQuantities = {{
    {WeatherParameter::Tmax, &RunSettings::HasTmax, "TM_", "maximum temperature", false},
    {WeatherParameter::Tmin, &RunSettings::HasTmin, "TN_", "minimum temperature", false},
    {WeatherParameter::Tmean, &RunSettings::HasTmean, "TA_", "mean temperature", false},
    {WeatherParameter::Tdew, &RunSettings::HasTdew, "TD_", "dew point", true},
    {WeatherParameter::SR, &RunSettings::HasSR, "SR_", "solar radiation", true},
    {WeatherParameter::WS, &RunSettings::HasWS, "WS_", "wind speed", true},
}};

const char* const kAgain =
    ": let the table be inspected again (Get Info and Apply, or velmora settings apply "
    "WeatherData=...)";

// What is wrong with the flag, "" for nothing.
std::string mismatch(const Quantity& quantity, bool flag, const std::vector<std::string>& names) {
    const std::string prefix = quantity.prefix;
    const std::string name = quantity.name;
    const std::string field = fieldInAnyCase(names, prefix);
    const bool found = holdsParameter(names, quantity.parameter);
    if (flag && !found && field.empty()) {
        return "the settings say that the table holds " + name + ", but it has no field " + prefix +
               "Jan to " + prefix + "Dec" + kAgain;
    }
    if (flag || field.empty()) return {};
    if (found) {
        return "the settings say that the table lacks " + name + ", but it has " + field + kAgain;
    }
    return "the table has " + field + ", but the settings take " + name +
           " as missing: spell the names of its fields with " + prefix + " in capitals";
}

}  // namespace

std::string fieldInAnyCase(const std::vector<std::string>& names, const std::string& prefix) {
    for (std::size_t i = 1; i < names.size(); ++i) {
        for (int month = 1; month <= 12; ++month) {
            if (sameIgnoringCase(names[i], prefix + GetMonthName(month))) return names[i];
        }
    }
    return {};
}

std::vector<FlagMismatch> flagMismatches(const RunSettings& settings,
                                         const std::vector<std::string>& fieldNames) {
    std::vector<FlagMismatch> mismatches;
    for (const Quantity& quantity : kQuantities) {
        if (quantity.fullWeatherOnly && !settings.needsFullWeather()) continue;
        const std::string text = mismatch(quantity, settings.*quantity.flag, fieldNames);
        if (!text.empty()) mismatches.push_back({quantity.prefix, text});
    }
    return mismatches;
}

std::vector<std::string> fieldsInOtherCase(const std::vector<std::string>& fieldNames) {
    std::vector<std::string> texts;
    for (const Quantity& quantity : kQuantities) {
        const std::string text =
            mismatch(quantity, holdsParameter(fieldNames, quantity.parameter), fieldNames);
        if (!text.empty()) texts.push_back(text);
    }
    return texts;
}

}  // namespace velmora
