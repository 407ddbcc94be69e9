// SPDX-License-Identifier: MIT
#include "settings/run_settings.h"

#include <algorithm>

#include "gis/month_names.h"
#include "gis/numbers.h"

namespace velmora {

int RunSettings::methodNumber() const {
    const double number = lenientNumber(RefETMethod);
    return number >= 1 && number <= 6 ? static_cast<int>(number) : 0;
}

std::string RunSettings::methodTag() const { return "_" + RefETMethod; }

int RunSettings::yearNumber() const {
    return static_cast<int>(std::clamp(lenientNumber(Year), -9999.0, 9999.0));
}

int RunSettings::beginMonthNumber() const { return GetMonthNumber(BeginMonth); }

int RunSettings::endMonthNumber() const { return GetMonthNumber(EndMonth); }

std::vector<int> RunSettings::months() const {
    std::vector<int> months;
    const int last = endMonthNumber();
    for (int month = std::max(1, beginMonthNumber()); month <= last; ++month) {
        months.push_back(month);
    }
    return months;
}

bool RunSettings::needsFullWeather() const {
    const double number = lenientNumber(RefETMethod);
    return number < 4 || number == 6;
}

}  // namespace velmora
