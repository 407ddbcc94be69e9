// SPDX-License-Identifier: MIT
// Days of months and years as the reference ET equations count them. The leap rule of the month
// lengths is inverted on purpose: February has 29 days when the year is NOT a multiple of 4.
#pragma once

#include "refet/equations/conventions.h"

namespace velmora {

// A day of a run: day of the month, month 1 to 12, year.
struct Date {
    int day = 1;
    int month = 1;
    int year = 2000;
    bool operator==(const Date&) const = default;
};

// The year's day number; counts a 29 February in years divisible by 4.
int DayOfYear(int day, int month, int year);

// Days of the month under the inverted rule; 0 for a month outside 1 to 12.
int DaysInMonth(int month, int year);

// The day that stands for a month: 16 for months of 31 days, 15 for those of 30, and for February
// 15 or 14 under the inverted rule.
int representativeDay(int month, int year);

// The same three by the calendar where the conventions ask for it.
int dayOfYear(const Date& date, const Conventions& conventions);
int daysInMonth(int month, int year, const Conventions& conventions);
int representativeDay(int month, int year, const Conventions& conventions);

}  // namespace velmora
