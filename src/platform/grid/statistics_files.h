// SPDX-License-Identifier: MIT
#pragma once

namespace velmora::platform {

// While it lives, rasters that this thread opens through GDAL, by whomever, will leave no file with
// statistics beside themselves: such a file would describe a grid that the next run replaces.
class WithoutStatisticsFiles {
  public:
    WithoutStatisticsFiles();
    ~WithoutStatisticsFiles();
    WithoutStatisticsFiles(const WithoutStatisticsFiles&) = delete;
    WithoutStatisticsFiles& operator=(const WithoutStatisticsFiles&) = delete;
};

}  // namespace velmora::platform
