// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora {

enum class DatasetKind { featureClass, raster };

// The host's choosers. Each returns a full path, or "" when the user cancels.
class IBrowsers {
  public:
    virtual ~IBrowsers() = default;
    virtual std::string browseFolder(const std::string& title) = 0;
    virtual std::string browseDataset(DatasetKind kind, const std::string& title,
                                      const std::string& startFolder,
                                      const std::string& buttonCaption) = 0;
    // `filter` is a caption and a pattern, as in "INFO Files (*.inf)|*.inf".
    virtual std::string openFile(const std::string& filter) = 0;
    virtual std::string saveFile(const std::string& filter) = 0;
    // Where a dataset was last chosen, "" when unknown.
    virtual std::string lastBrowseLocation() = 0;
};

}  // namespace velmora
