// SPDX-License-Identifier: MIT
#include "refet/equations/calendar.h"

#include <chrono>
#include <cmath>

namespace velmora {

int DayOfYear(int day, int month, int year) {
    const int beforeMonth = 275 * month / 9 + (day - 32) + 2 * (3 / (month + 1));
    const double leap = month / 100.0 - (year % 4) / 4.0 + 0.975;
    return beforeMonth + static_cast<int>(std::floor(leap));
}

int DaysInMonth(int month, int year) {
    switch (month) {
        case 1:
        case 3:
        case 5:
        case 7:
        case 8:
        case 10:
        case 12:
            return 31;
        case 4:
        case 6:
        case 9:
        case 11:
            return 30;
        case 2:
            return year % 4 == 0 ? 28 : 29;
        default:
            return 0;
    }
}

int representativeDay(int month, int year) { return (DaysInMonth(month, year) + 1) / 2; }

int dayOfYear(const Date& date, const Conventions& conventions) {
    if (!conventions.calendarYears) return DayOfYear(date.day, date.month, date.year);
    int day = date.day;
    for (int month = 1; month < date.month; ++month) {
        day += daysInMonth(month, date.year, conventions);
    }
    return day;
}

int daysInMonth(int month, int year, const Conventions& conventions) {
    if (!conventions.calendarYears || month != 2) return DaysInMonth(month, year);
    return std::chrono::year(year).is_leap() ? 29 : 28;
}

int representativeDay(int month, int year, const Conventions& conventions) {
    return (daysInMonth(month, year, conventions) + 1) / 2;
}

}  // namespace velmora
