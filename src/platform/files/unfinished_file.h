// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora::platform {

// Whether what processes that are gone left in the folder is removed first.
enum class Leftovers { swept, left };

// A file or folder that is made under an unfinished name beside the name that it is to have, so
// that the name stands for the old one or the new one, whole. What has not taken its name when the
// object ends is removed.
class UnfinishedFile {
  public:
    // Of `target`. What an older process of this number left under the unfinished name is removed.
    explicit UnfinishedFile(std::string target, Leftovers leftovers = Leftovers::swept);
    ~UnfinishedFile();
    UnfinishedFile(UnfinishedFile&& other) noexcept;
    UnfinishedFile& operator=(UnfinishedFile&&) = delete;

    const std::string& path() const { return path_; }  // where it is to be made

    // Gives the file its name, or another one, durably. Throws PlatformError, and then what had the
    // name stays.
    void finish() { finishAs(target_); }
    void finishAs(const std::string& target);
    // Gives a folder, which has reached the disk, its name. Throws PlatformError, and then what had
    // the name stays.
    void finishTree();

  private:
    std::string target_;
    std::string path_;  // "" when nothing is left to remove
};

}  // namespace velmora::platform
