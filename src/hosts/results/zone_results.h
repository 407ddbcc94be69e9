// SPDX-License-Identifier: MIT
// The zone tables of an output folder, read for summaries, and the two ways to take their depths.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "gis/application.h"

namespace velmora {

// A row of StatCET, StatNIR or StatIRR.
struct ZoneMonth {
    std::string zone;
    int month = 0;
    double totalAcres = 0;
    double countedAcres = 0;
    double depthFeet = 0;  // as the table has it: days x mean / 304.8
    double acreFeet = 0;   // depth x counted area
};

// The rows of a table; none when it is not there.
std::vector<ZoneMonth> zoneMonths(IPlatform& platform, const std::string& outputFolder,
                                  const std::string& table);

// The tables take a grid's mean as millimetres per day. The grids are inches per month, of which
// the depth in feet is mean / 12, so a table's figure is days / 25.4 times as large as the one that
// follows from the grids' own unit. 0 for a month without days.
double tableOverInches(int month, int year);

// The reading in short, and a sentence on it for whoever is shown the table of that name.
std::string zoneTableReading();
std::string zoneTableNote(const std::string& table);

// What a zone table was made for; rows of other months are none of its run's.
struct ZoneTableScope {
    std::string table;
    int year = 0;
    std::vector<int> months;

    bool holds(const ZoneMonth& row) const;
};

// The sums of the volumes over the scopes' months by zone, acre-feet, zones in the tables' order.
struct ZoneTotals {
    std::string zone;
    std::map<std::string, double> table;   // by table: as the table has them
    std::map<std::string, double> inches;  // by table: from the grids' own unit
};
std::vector<ZoneTotals> zoneTotals(IPlatform& platform, const std::string& outputFolder,
                                   const std::vector<ZoneTableScope>& tables);

}  // namespace velmora
