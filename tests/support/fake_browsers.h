// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "gis/browsers.h"

namespace velmora::test {

// Choosers that answer from a list.
class FakeBrowsers : public IBrowsers {
  public:
    std::string browseFolder(const std::string& title) override { return next(title); }
    std::string browseDataset(DatasetKind, const std::string& title, const std::string&,
                              const std::string&) override {
        return next(title);
    }
    std::string openFile(const std::string& filter) override { return next(filter); }
    std::string saveFile(const std::string& filter) override { return next(filter); }
    std::string lastBrowseLocation() override;
    std::deque<std::string> answers;  // then "" (cancelled)
    std::vector<std::string> asked;   // titles and filters
    bool locationFails = false;

  private:
    std::string next(const std::string& what);
};

}  // namespace velmora::test
