// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "gis/files.h"
#include "tests/support/failure_point.h"

namespace velmora::test {

// A file system without a disk. Files lie in any folder, also in one that nobody has made; a folder
// that is locked must be there. One lock does not keep out another.
class MemoryFiles : public IFileSystem {
  public:
    bool fileExists(const std::string& path) const override { return files.contains(path); }
    bool folderExists(const std::string& path) const override { return folders.contains(path); }
    std::string specialFolder(SpecialFolder) const override { return "/temporary"; }
    std::string lastModified(const std::string&) const override { return "2031-01-02 03:04:05"; }
    void deleteFile(const std::string& path) override { files.erase(path); }
    void createFolder(const std::string& path) override { folders[path] = true; }
    void copyFile(const std::string& from, const std::string& to) override;
    void replaceFile(const std::string& from, const std::string& to) override;
    void storeFile(const std::string& path, const std::string& bytes) override;
    std::string readBeginning(const std::string& path, std::size_t most) const override;
    void writeOver(const std::string& path, const std::string& bytes) override;
    std::unique_ptr<IFolderLock> lockFolder(const std::string& folder) override;
    std::unique_ptr<IFolderLock> shareFolder(const std::string& folder) override;
    void settle(const std::string& folder) override { settles.pass(folder); }
    std::optional<std::uint64_t> freeSpace(const std::string&) const override { return room; }
    std::optional<std::uint64_t> room = 1ULL << 40U;

    std::map<std::string, std::string> files;
    std::map<std::string, bool> folders;
    FailurePoint writes{"Cannot write the file "};
    mutable FailurePoint reads{"Cannot read the file "};
    FailurePoint locks{"Cannot lock the folder "};
    FailurePoint settles{"Cannot settle the folder "};
};

}  // namespace velmora::test
