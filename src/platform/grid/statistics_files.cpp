// SPDX-License-Identifier: MIT
#include "platform/grid/statistics_files.h"

#include <cpl_conv.h>

namespace velmora::platform {

namespace {

constexpr const char* kOption = "GDAL_PAM_ENABLED";

}  // namespace

WithoutStatisticsFiles::WithoutStatisticsFiles() { CPLSetThreadLocalConfigOption(kOption, "NO"); }

WithoutStatisticsFiles::~WithoutStatisticsFiles() {
    CPLSetThreadLocalConfigOption(kOption, nullptr);
}

}  // namespace velmora::platform
