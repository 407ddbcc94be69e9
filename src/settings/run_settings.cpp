// SPDX-License-Identifier: MIT
#include "settings/run_settings.h"

#include "gis/month_names.h"
#include "gis/numbers.h"

namespace velmora {

int RunSettings::methodNumber() const {
    const double number = lenientNumber(RefETMethod);
    return number >= 1 && number <= 6 ? static_cast<int>(number) : 0;
}

int RunSettings::beginMonthNumber() const { return GetMonthNumber(BeginMonth); }

int RunSettings::endMonthNumber() const { return GetMonthNumber(EndMonth); }

bool RunSettings::needsFullWeather() const {
    const double number = lenientNumber(RefETMethod);
    return number < 4 || number == 6;
}

}  // namespace velmora
