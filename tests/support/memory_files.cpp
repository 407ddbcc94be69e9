// SPDX-License-Identifier: MIT
#include "tests/support/memory_files.h"

#include <algorithm>

#include "gis/errors.h"

namespace velmora::test {

void MemoryFiles::copyFile(const std::string& from, const std::string& to) {
    writes.pass(to);
    files[to] = files.at(from);
}

void MemoryFiles::replaceFile(const std::string& from, const std::string& to) {
    writes.pass(to);
    files[to] = files.at(from);
    files.erase(from);
}

void MemoryFiles::storeFile(const std::string& path, const std::string& bytes) {
    writes.pass(path);
    files[path] = bytes;
}

std::string MemoryFiles::readBeginning(const std::string& path, std::size_t most) const {
    reads.pass(path);
    if (!files.contains(path)) throw PlatformError("There is no file " + path);
    return files.at(path).substr(0, most);
}

void MemoryFiles::writeOver(const std::string& path, const std::string& bytes) {
    writes.pass(path);
    std::string& content = files[path];
    content.replace(0, std::min(content.size(), bytes.size()), bytes);
}

std::unique_ptr<IFolderLock> MemoryFiles::lockFolder(const std::string& folder) {
    locks.pass(folder);
    if (!folderExists(folder)) throw PlatformError("There is no folder " + folder);
    return std::make_unique<IFolderLock>();
}

std::unique_ptr<IFolderLock> MemoryFiles::shareFolder(const std::string& folder) {
    return lockFolder(folder);
}

}  // namespace velmora::test
