// SPDX-License-Identifier: MIT
// The crop ET run: for each month of the settings' period the crop coefficient grid times the
// reference ET grid, saved as "ET_" + month + "_" + method and summarised by zone in "StatCET".
#pragma once

#include <memory>
#include <string>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

class CropEtRun {
  public:
    CropEtRun(IApplication& application, const RunSettings& settings)
        : application_(application), platform_(application.platform()), settings_(settings) {}

    // Shows its messages as it goes; the first failure is shown and ends the run, what was made
    // before stays. True when the run is done.
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
