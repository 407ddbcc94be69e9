// SPDX-License-Identifier: MIT
// The net irrigation requirement run: for each month of the settings' period what crop ET needs
// beyond effective precipitation, saved as "NIR_" + month and summarised by zone in "StatNIR".
#pragma once

#include <memory>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// max(ET - 0.8 PPT, 0), in the unit of the inputs: 0.8 is the share of precipitation that crops can
// use. No data in either gives no data. The operation's environment decides on the cells.
RasterPtr netIrrigationRequirement(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                                   const RasterPtr& precipitation);

class NetIrrigationRun {
  public:
    NetIrrigationRun(IApplication& application, const RunSettings& settings)
        : application_(application), platform_(application.platform()), settings_(settings) {}

    // The first failure is shown and ends the run; what was made before stays. True when the run is
    // done, which shows nothing: the layers and the table are the result.
    bool run();

  private:
    void runMonths();
    void runMonth(int month);

    IApplication& application_;
    IPlatform& platform_;
    const RunSettings& settings_;
    std::unique_ptr<IFolderLock> lock_;
    std::unique_ptr<IRasterWorkspace> workspace_;
};

}  // namespace velmora
