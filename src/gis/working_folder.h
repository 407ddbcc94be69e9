// SPDX-License-Identifier: MIT
// A folder while somebody makes something in it: held alone, and asked to reach the disk at the
// end, also when the work fails midway and leaves what it had made.
#pragma once

#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "gis/files.h"

namespace velmora {

class WorkingFolder {
  public:
    // Throws PlatformError as IFileSystem::lockFolder does.
    WorkingFolder(IFileSystem& files, std::string folder)
        : files_(files), folder_(std::move(folder)), lock_(files.lockFolder(folder_)) {}
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

    // After work that has not come to its end: whoever failed has said so, and this can do no more.
    ~WorkingFolder() {
        if (settled_) return;
        try {
            files_.settle(folder_);
        } catch (const std::exception&) {
            return;
        }
    }

    // The last act of work that has come to its end, before it says so. Throws PlatformError when
    // something could not be stored.
    void settle() {
        settled_ = true;
        files_.settle(folder_);
    }

  private:
    IFileSystem& files_;
    std::string folder_;
    std::unique_ptr<IFolderLock> lock_;
    bool settled_ = false;
};

}  // namespace velmora
