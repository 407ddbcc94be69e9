// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/clock.h"
#include "gis/files.h"

namespace velmora::platform {

// Whether what is written is also asked to reach the disk (the default). Off, a power cut may lose
// what a program that has ended wrote; a killed program loses nothing either way.
void setSyncing(bool on);

class FileSystem : public IFileSystem {
  public:
    bool fileExists(const std::string& path) const override;
    bool folderExists(const std::string& path) const override;
    std::string specialFolder(SpecialFolder folder) const override;
    std::string lastModified(const std::string& path) const override;
    void deleteFile(const std::string& path) override;
    void createFolder(const std::string& path) override;
    void copyFile(const std::string& from, const std::string& to) override;
    void replaceFile(const std::string& from, const std::string& to) override;
    void storeFile(const std::string& path, const std::string& bytes) override;
    std::string readBeginning(const std::string& path, std::size_t most) const override;
    void writeOver(const std::string& path, const std::string& bytes) override;
    std::unique_ptr<IFolderLock> lockFolder(const std::string& folder) override;
    std::unique_ptr<IFolderLock> shareFolder(const std::string& folder) override;
    void settle(const std::string& folder) override;
    std::optional<std::uint64_t> freeSpace(const std::string& folder) const override;
};

class SystemClock : public IClock {
  public:
    double seconds() const override;
    int currentYear() const override;
};

}  // namespace velmora::platform
