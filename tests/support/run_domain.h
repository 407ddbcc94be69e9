// SPDX-License-Identifier: MIT
// A small model domain of made-up inputs in a folder of any platform, and runs over it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "gis/grid.h"
#include "settings/run_settings.h"
#include "tests/support/folder.h"
#include "tests/support/test_application.h"

namespace velmora::test {

struct Station {
    std::string name;
    double x;
    double y;
    double elevation;
};

// A value of a station's weather: by prefix ("TM_"), station and month (1 to 12).
using Weather = std::function<FieldValue(const std::string&, const Station&, int)>;

class RunDomain {
  public:
    // Both must outlive it. The output folder "out" is made in the folder.
    RunDomain(IPlatform& platform, const Folder& where);

    // Files of the run, each replaceable before run().
    void makeDem(const std::function<float(int column, int row)>& value);
    void makeStations(const std::vector<Station>& stations, bool withCrs = true);
    void makeWeather(const std::vector<Station>& stations, const Weather& weather,
                     const std::vector<std::string>& prefixes = {"TM_", "TN_", "TD_", "SR_",
                                                                 "WS_"});
    void makeDomain(const Envelope& extent, const std::string& crs);

    // The month's reference precipitation grid "ref" + its two digits.
    void makeReferenceGrid(int month, const GridGeometry& geometry,
                           const std::function<float(int column, int row)>& value);

    bool run();               // a reference ET run on `settings`
    bool runPrecipitation();  // a precipitation run
    Grid output(const std::string& name);
    bool hasOutput(const std::string& name);
    std::string allMessages() const;

    static std::vector<Station> stations();
    static FieldValue usualWeather(const std::string& prefix, const Station& station, int month);
    const GridGeometry& geometry() const { return geometry_; }

    const Folder& folder;
    TestApplication application;
    RecordingMonitor monitor;
    RunSettings settings;

  private:
    GridGeometry geometry_;
};

}  // namespace velmora::test
